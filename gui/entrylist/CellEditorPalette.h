#pragma once

#include <QPalette>

class QStyleOptionViewItem;
class QWidget;

namespace saldo::gui {

// The colours of an editor opened in a table cell. The editor is a child of
// the table's viewport and would take its colours, and the entry table's
// viewport is blue; so the editor gets the colours of the table itself, and
// every text colour that does not stand out legibly from its background (the
// usual white on a selection's middle blue among them) becomes black or white.
class CellEditorPalette {
public:
    // The palette for editors of the view.
    static QPalette of(const QWidget* view);
    // Gives the editor that palette and lets it paint its own background over the cell.
    static void apply(QWidget* editor, const QStyleOptionViewItem& option);
};

} // namespace saldo::gui
