#pragma once

#include "model/Einnahme.h"

#include <QPlainTextEdit>

#include <cstddef>
#include <vector>

namespace saldo::gui {

// The text view beside the entry table that evaluates the selected rows
// ("selectedEntriesView"): read-only, fixed pitch, its text the core's
// SelectionSummary of the selected rows of the shown list, or blank when no
// row is selected. It keeps nothing up to date by itself; the entry list
// rebuilds it on every selection change and after every cell edit.
class SelectionSummaryView : public QPlainTextEdit {
    Q_OBJECT
public:
    explicit SelectionSummaryView(QWidget* parent = nullptr);

    // Shows the evaluation of the entries of `einnahmen` at `rows`; blank for
    // no rows.
    void showSelection(const EinnahmeList& einnahmen, const std::vector<std::size_t>& rows);
};

} // namespace saldo::gui
