#include "entrylist/CellEditorPalette.h"

#include "platform/Contrast.h"

#include <QApplication>
#include <QStyleOptionViewItem>
#include <QWidget>

namespace saldo::gui {

namespace {
Contrast::Rgb rgbOf(const QColor& colour)
{
    const QColor c = colour.toRgb();
    return { static_cast<std::uint8_t>(c.red()), static_cast<std::uint8_t>(c.green()),
        static_cast<std::uint8_t>(c.blue()) };
}
} // namespace

QPalette CellEditorPalette::of(const QWidget* view)
{
    QPalette palette = view ? view->palette() : QApplication::palette();
    // Every colour counts as set, so that none is taken from the viewport.
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive, QPalette::Disabled }) {
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            const auto r = static_cast<QPalette::ColorRole>(role);
            if (r != QPalette::NoRole)
                palette.setBrush(group, r, palette.brush(group, r));
        }
    }
    static constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> kPairs[] = {
        { QPalette::Text, QPalette::Base },
        { QPalette::HighlightedText, QPalette::Highlight },
        { QPalette::ButtonText, QPalette::Button },
        { QPalette::WindowText, QPalette::Window },
    };
    for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive }) {
        for (const auto& [text, background] : kPairs) {
            const QColor before = palette.color(group, text);
            const Contrast::Rgb legible = Contrast::legibleText(rgbOf(before), rgbOf(palette.color(group, background)));
            if (legible != rgbOf(before))
                palette.setColor(group, text, QColor(legible.red, legible.green, legible.blue));
        }
    }
    return palette;
}

void CellEditorPalette::apply(QWidget* editor, const QStyleOptionViewItem& option)
{
    editor->setPalette(of(option.widget));
    editor->setAutoFillBackground(true);
}

} // namespace saldo::gui
