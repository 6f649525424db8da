// The editors opened in the entry table's cells: legible over the table's
// blue (which stays where no row covers it), and the date editor wide enough
// for the whole date and time.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "platform/Contrast.h"
#include "platform/DateField.h"

#include <QAbstractItemDelegate>
#include <QCoreApplication>
#include <QLineEdit>
#include <QTableView>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

Contrast::Rgb rgbOf(const QColor& colour)
{
    return { static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
        static_cast<std::uint8_t>(colour.blue()) };
}

TEST(CellEditorTest, EditorsAreLegibleAndTheDateEditorShowsTheWholeDateAndTime)
{
    InMemoryUserDefaults defaults;
    const auto document = testing::shownDocument(defaults, 2);
    QTableView* table = document->windowController()->splitViewController()->viewController()->tableView();
    EXPECT_EQ(table->viewport()->palette().color(QPalette::Base), QColor(0, 0, 255));
    for (const EntryColumn::Id column : { EntryColumn::Name, EntryColumn::Art, EntryColumn::Date }) {
        const QModelIndex index = table->model()->index(0, column);
        table->setCurrentIndex(index);
        table->edit(index);
        QWidget* editor = table->indexWidget(index);
        ASSERT_NE(editor, nullptr) << column;
        const QPalette palette = editor->palette();
        for (const QPalette::ColorGroup group : { QPalette::Active, QPalette::Inactive }) {
            for (const auto& [text, background] : { std::pair { QPalette::Text, QPalette::Base },
                     std::pair { QPalette::HighlightedText, QPalette::Highlight },
                     std::pair { QPalette::ButtonText, QPalette::Button } }) {
                EXPECT_GE(Contrast::ratio(rgbOf(palette.color(group, text)), rgbOf(palette.color(group, background))),
                    Contrast::kLegible)
                    << "column " << column << ", roles " << text << " on " << background;
            }
        }
        if (auto* field = qobject_cast<DateField*>(editor)) {
            EXPECT_EQ(field->text().size(), 16); // dd.MM.yyyy HH:mm
            EXPECT_GE(field->contentsRect().width() - 4, field->fontMetrics().horizontalAdvance(field->text()));
        }
        emit table->itemDelegateForColumn(column)->closeEditor(editor);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace
} // namespace saldo::gui
