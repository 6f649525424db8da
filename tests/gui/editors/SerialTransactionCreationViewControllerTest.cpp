// The recurring-entries sheet, opened from the Eintrag menu of a shown window
// and driven through the calls its pop-ups and buttons make (no exec()). The
// series and its description are the core's rules (tests/core/editors).
#include "editors/SerialTransactionCreationViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/RecurringSeries.h"
#include "entrylist/ViewController.h"
#include "gui/support/Recorders.h"

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

class SerialTransactionCreationViewControllerTest : public ::testing::Test {
protected:
    SerialTransactionCreationViewControllerTest()
    {
        entries = namedEntries({ "Miete", "Abo", "Honorar" });
        document.replaceAllEntries(entries);
        document.makeWindowControllers();
        document.windowController()->show();
    }
    ViewController* list() const { return document.windowController()->splitViewController()->viewController(); }

    // Opens the sheet from the menu on the given row.
    SerialTransactionCreationViewController* openOn(int row)
    {
        list()->tableView()->selectRow(row);
        document.windowController()->actions()->serialTransactionAction()->trigger();
        return document.windowController()->findChild<SerialTransactionCreationViewController*>();
    }
    // A user's choice in a pop-up.
    static void choose(QComboBox* popUp, int index)
    {
        popUp->setCurrentIndex(index);
        emit popUp->activated(index);
    }

    InMemoryUserDefaults defaults;
    Document document { defaults };
    EinnahmeList entries;
};

TEST_F(SerialTransactionCreationViewControllerTest, OkIsOffUntilTheUserChoosesBothAbbrechenDropsTheSeriesAndOkPutsItInOneStep)
{
    // Ctrl+Shift+S is "Save As" on the desktop.
    EXPECT_FALSE(document.windowController()->actions()->serialTransactionAction()->shortcuts().contains(
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S)));
    SerialTransactionCreationViewController* sheet = openOn(1);
    ASSERT_TRUE(sheet && sheet->isVisible());
    EXPECT_EQ(sheet->transactionDescriptionLabel()->toPlainText().toStdString(),
        RecurringSeries::descriptionText(*entries[1]));
    // The pop-ups used to show their first items as if chosen, while "OK" did nothing.
    for (QComboBox* popUp : { sheet->whenInMonthSelection(), sheet->intervallSelection() })
        EXPECT_EQ(std::pair(popUp->currentIndex(), popUp->currentText()), std::pair(-1, QString()));
    EXPECT_FALSE(sheet->okButton()->isEnabled());
    choose(sheet->intervallSelection(), 2);
    EXPECT_FALSE(sheet->okButton()->isEnabled());
    choose(sheet->whenInMonthSelection(), 0);
    EXPECT_TRUE(sheet->okButton()->isEnabled());
    // Abbrechen drops the series computed by now.
    ASSERT_FALSE(sheet->newlyCreatedTransactions().empty());
    sheet->cancelButton()->click();
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(document.einnahmen(), entries);
    EXPECT_FALSE(document.isDocumentEdited());

    // "OK" replaces the template by the series as one step.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    sheet = openOn(1);
    ASSERT_TRUE(sheet);
    choose(sheet->whenInMonthSelection(), 1);
    choose(sheet->intervallSelection(), 0);
    ASSERT_EQ(sheet->newlyCreatedTransactions().size(), 12u);
    const EinnahmeList series = sheet->newlyCreatedTransactions();
    sheet->okButton()->click();

    EinnahmeList expected { entries[0], entries[2] };
    expected.insert(expected.end(), series.begin(), series.end());
    EXPECT_EQ(document.backupEinnahmen(), expected);
    EXPECT_EQ(list()->selectedRows(), (std::vector<std::size_t> { 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13 }));
    // Its undo and redo are the document's (DocumentTest).
    EXPECT_EQ(document.undoManager()->undoText(), "Serienbuchung");
}

} // namespace
} // namespace saldo::gui
