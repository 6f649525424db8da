// Export and import of entry lists and the spreadsheet export, driven through
// the window's menu items with the panels answered from a script: which list
// goes out and when, what an import replaces and what it leaves alone, and how
// a failure shows. The file's form and the table's are tested in tests/core.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/DetailViewController.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/ViewController.h"
#include "exchange/CsvExport.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"

#include <QAction>
#include <QDir>
#include <QLineEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

class EntryListExchangeTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        document = openedDocument(defaults, dir.filePath(QStringLiteral("Kasse.saldo")), 0);
        document->replaceAllEntries(namedEntries({ "Miete Januar", "Strom", "Miete Februar", "Porto", "Miete Maerz" }));
        window = document->windowController();
        window->show();
        list = window->splitViewController()->viewController();
    }
    WindowActions& actions() const { return *window->actions(); }
    QString statusLine() const { return window->statusBar()->currentMessage(); }
    // Shows the "Miete" entries, last name first.
    void searchAndSort()
    {
        list->searchFieldController()->searchField()->setText(QStringLiteral("Miete"));
        document->sortEinnahmen("name", false);
        ASSERT_EQ(namesOf(document->einnahmen()), (Names { "Miete Maerz", "Miete Januar", "Miete Februar" }));
    }

    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    DiagnosticRecorder diagnostics;
    SoundRecorder sounds;
    std::unique_ptr<Document> document;
    DocumentWindow* window = nullptr;
    ViewController* list = nullptr;
};

TEST_F(EntryListExchangeTest, BothExportsWriteTheShownEntriesOfTheMomentThePanelClosesAndChangeNothing)
{
    // The save panel does not block: the list is searched and sorted while it is open.
    actions().exportEntriesAction()->trigger();
    ASSERT_EQ(dialogs.openSavePanels.size(), 1u);
    searchAndSort();
    const EinnahmeList shown = document->einnahmen();
    dialogs.finishSave(dir.filePath(QStringLiteral("Januar")));

    const QString exported = dir.filePath(QStringLiteral("Januar.plist"));
    const QByteArray bytes = readBytes(exported);
    EXPECT_EQ(bytes, encoded(shown));
    EXPECT_EQ(diagnostics.lines,
        (std::vector<std::string> { "Einnahmen erfolgreich verschluesselt: " + std::to_string(bytes.size()) + " bytes",
            "Einnahmen erfolgreich auf Disk geschrieben: file://" + exported.toStdString() }));
    EXPECT_FALSE(document->isDocumentEdited());

    dialogs.saveFileNames = { dir.filePath(QStringLiteral("Januar")) };
    actions().exportTableAction()->trigger();
    const QByteArray table = readBytes(dir.filePath(QStringLiteral("Januar.csv")));
    EXPECT_EQ(table.toStdString(), CsvExport::encode(shown));

    // Cancelled, nothing is written; a failed write leaves one line in the
    // status bar and no alert, no sound, no second diagnostic line.
    const QStringList files = QDir(dir.path()).entryList(QDir::Files);
    actions().exportEntriesAction()->trigger();
    dialogs.finishSave(QString());
    diagnostics.lines.clear();
    actions().exportEntriesAction()->trigger();
    dialogs.finishSave(dir.filePath(QStringLiteral("fehlt/Februar")));
    EXPECT_TRUE(statusLine().startsWith(QStringLiteral("Die Datei „Februar.plist“ konnte nicht geschrieben werden. "
                                                       "Die Datei kann in diesem Ordner nicht angelegt werden.")))
        << statusLine().toStdString();
    EXPECT_EQ(diagnostics.lines.size(), 1u);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), files);
    EXPECT_TRUE(dialogs.errors.isEmpty() && sounds.lines.empty());
}

TEST_F(EntryListExchangeTest, AnImportedExportHoldsTheSameEntriesBitForBitAndLeavesTheRestAlone)
{
    searchAndSort();
    actions().exportEntriesAction()->trigger();
    dialogs.finishSave(dir.filePath(QStringLiteral("Miete")));
    const QString exported = dir.filePath(QStringLiteral("Miete.plist"));

    // The window as the user left it: a search, a selected row, an undo step, all saved.
    list->searchFieldController()->searchField()->setText(QStringLiteral("o"));
    document->addEntry();
    ASSERT_TRUE(document->save());
    list->tableView()->selectRow(1);
    const PostCounter tableViewUpdated("TableViewUpdated");

    const EinnahmeList shownBefore = document->einnahmen();
    const int steps = document->undoManager()->count();

    dialogs.openFileNames = { exported };
    actions().importEntriesAction()->trigger();
    EXPECT_EQ(encoded(document->backupEinnahmen()), readBytes(exported));
    EXPECT_FALSE(document->isDocumentEdited());
    // The same row stays selected, and the detail panel shows its new entry.
    EXPECT_EQ(list->selectedRows(), std::vector<std::size_t> { 1 });
    EXPECT_EQ(window->splitViewController()->detailViewController()->selectedEinnahme(), document->einnahmen()[1]);
    EXPECT_EQ(list->searchFieldController()->searchField()->text(), QStringLiteral("o"));
    EXPECT_EQ(tableViewUpdated.count(), 0u);

    // The load is a step (DocumentTest undoes it), and the status bar says so
    // until the next step.
    EXPECT_EQ(statusLine(),
        QStringLiteral("3 Eintraege geladen, 6 bisherige ersetzt. Bearbeiten ▸ Widerrufen holt den vorigen Stand zurueck."));
    EXPECT_EQ(document->undoManager()->count(), steps + 1);
    actions().undoAction()->trigger();
    EXPECT_TRUE(statusLine().isEmpty());
    EXPECT_EQ(document->einnahmen(), shownBefore);
}

TEST_F(EntryListExchangeTest, AFileThatCannotBeReadChangesNothingAndSaysSoInTheStatusBar)
{
    document->addEntry();
    const EinnahmeList before = document->backupEinnahmen();
    const int steps = document->undoManager()->count();
    ASSERT_TRUE(writeBytes(dir.filePath(QStringLiteral("Notizen.txt")), "Miete;100\nStrom;45\n"));
    // The reason in a few words; the system's own text for a missing file.
    const std::pair<QString, QString> files[] = { { QStringLiteral("Notizen.txt"), QStringLiteral("kein Ledger.") },
        { QStringLiteral("Fehlt.plist"), QStringLiteral("nicht lesbar: ") } };
    for (const auto& [name, reason] : files) {
        dialogs.openFileNames = { dir.filePath(name) };
        actions().importEntriesAction()->trigger();
        EXPECT_EQ(document->backupEinnahmen(), before);
        EXPECT_EQ(document->einnahmen(), before);
        EXPECT_EQ(document->undoManager()->count(), steps);
        EXPECT_TRUE(statusLine().startsWith(QStringLiteral("Die Datei „%1“ konnte nicht gelesen werden: %2").arg(name, reason)))
            << statusLine().toStdString();
    }
    EXPECT_TRUE(dialogs.errors.isEmpty() && sounds.lines.empty());
}

} // namespace
} // namespace saldo::gui
