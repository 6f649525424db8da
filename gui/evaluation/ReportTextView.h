#pragma once

class QPlainTextEdit;

namespace saldo::gui {

// The look of every view that shows a report text: read-only, fixed-pitch,
// no wrapping, and tab stops that line the amounts up. The report pads its
// labels to the amounts with one to three tabs, written for a proportional
// font, so no even tab width lines up every block; stops at 14 and 19
// characters and then every 12 put the amounts of the totals and of nearly
// every VAT-class and flag block in one column each.
class ReportTextView {
public:
    static void style(QPlainTextEdit* view);
};

}  // namespace saldo::gui
