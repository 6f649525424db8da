// The document, with and without its window: every verb as one step undone
// and redone exactly, the file saved in place, automatically and on closing,
// saves that fail, files changed by other programs, and the recovery copies
// of untitled documents. Where the verbs put entries is the core's rule
// (tests/core/entrylist); here it is the document's bookkeeping.
#include "app/Document.h"
#include "app/AutosaveStore.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "core/support/Unprivileged.h"
#include "editors/DetailViewController.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/SearchOutcome.h"
#include "entrylist/ViewController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QLockFile>
#include <QScopeGuard>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace saldo::gui {
namespace {

using namespace testing;
using Choice = Dialogs::FileChangedChoice;

// Both lists as they are: which objects, in which order, with which values.
struct Snapshot {
    EinnahmeList shown, complete;
    std::vector<Einnahme::Stored> values;

    explicit Snapshot(const Document& document)
        : shown(document.einnahmen())
        , complete(document.backupEinnahmen())
    {
        for (const auto& entry : complete)
            values.push_back(entry->stored());
    }
    bool operator==(const Snapshot& other) const
    {
        return shown == other.shown && complete == other.complete
            && std::equal(values.begin(), values.end(), other.values.begin(), other.values.end(),
                [](const auto& a, const auto& b) { return Einnahme::sameValues(a, b); });
    }
};

class DocumentTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        path = dir.filePath(QStringLiteral("Kasse.saldo"));
        AutosaveStore::setFolder(dir.filePath(QStringLiteral("Autosave")));
    }
    void TearDown() override
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        AutosaveStore::setFolder(QString());
    }

    std::unique_ptr<Document> opened(int count) { return openedDocument(defaults, path, count); }
    // What the autosave timer does when it fires, waiting for the worker.
    static void autosaveNow(Document& document)
    {
        ASSERT_TRUE(document.autosaveTimer().isActive()) << "no autosave is due";
        QMetaObject::invokeMethod(&document.autosaveTimer(), "timeout");
        document.finishBackgroundSave();
    }

    QtWarningRecorder qtWarnings;
    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    QString path;
    ScriptedDialogs dialogs;
    DiagnosticRecorder diagnostics;
    SoundRecorder sounds;
};

// --- the verbs ---------------------------------------------------------------

TEST_F(DocumentTest, EveryVerbIsOneStepUndoneAndRedoneExactly)
{
    ASSERT_TRUE(writeBytes(path, encoded(namedEntries({ "Miete", "Strom", "Honorar", "Porto" }))));
    Document document(defaults);
    ASSERT_TRUE(document.readFromFile(path));
    QAbstractItemModelTester tester(document.model(), QAbstractItemModelTester::FailureReportingMode::Warning);
    const auto at = [&](std::size_t row) { return document.einnahmen().at(row); };
    const auto split = Einnahme::make("Teil", "", 5.0f, 19.0f);
    struct Verb {
        const char* name;
        std::function<void()> run;
        // Undoing a deletion appends the entries at the end rather than where they stood.
        bool undoAppends = false;
        // A loaded list is not a change of the ledger; its undo and redo are.
        bool marksChanged = true;
    };
    const std::vector<Verb> verbs = {
        { "Neuer Eintrag", [&] { document.addEntry(); } },
        { "Duplizieren", [&] { document.duplicateEntry(1); } },
        { "Loeschen",
            [&] {
                document.deleteRows({ 0, 2 });
            },
            true },
        { "Eingabe", [&] { document.editCell(0, EntryColumn::Brutto, CellEdit::Text { "1.234,56" }); } },
        { "Eingabe",
            [&] {
                document.editForm(
                    at(1), { "Stromrechnung", "R-1", "St-1", "Lieferung", "8400 Erloese ", "45,10", "7" });
            } },
        { "Eingabe", [&] { document.editEntry(at(2), [](Einnahme& e) { e.setIsNonEU(true); }); } },
        { "Kontoauszug", [&] { document.appendStatementEntries(namedEntries({ "Lastschrift" })); } },
        { "Splitbuchung",
            [&] {
                auto copy = at(0)->copy();
                copy->setChildTransactions({ split });
                document.replaceEntry(at(0), copy);
            } },
        { "Serienbuchung",
            [&] {
                document.appendSeries(1, { at(1)->copy(), at(1)->copy() });
            } },
        { "Kategorie umbenennen", [&] { document.renameKategorie("8400 Erloese ", "8400 Erlöse 19 % "); } },
        { "Eintraege laden",
            [&] {
                document.replaceAllEntries(namedEntries({ "Beleg 1", "Beleg 2" }));
            },
            false, false },
    };
    // A search hides entries while the verbs run: they change the complete list too.
    document.applySearch(SearchOutcome::decide("Name", "o"));
    for (const Verb& verb : verbs) {
        SCOPED_TRACE(verb.name);
        ASSERT_TRUE(document.save());
        const Snapshot before(document);
        const int steps = document.undoManager()->count();
        verb.run();
        ASSERT_EQ(document.undoManager()->count(), steps + 1);
        EXPECT_EQ(document.undoManager()->undoText(), QString::fromUtf8(verb.name));
        EXPECT_EQ(document.isDocumentEdited(), verb.marksChanged);
        const Snapshot after(document);
        EXPECT_FALSE(after == before);
        ASSERT_TRUE(document.save());
        document.undoManager()->undo();
        EXPECT_TRUE(document.isDocumentEdited());
        if (verb.undoAppends) {
            const auto sorted = [](EinnahmeList list) {
                std::sort(list.begin(), list.end());
                return list;
            };
            EXPECT_EQ(sorted(document.backupEinnahmen()), sorted(before.complete));
        } else {
            EXPECT_TRUE(Snapshot(document) == before);
        }
        document.undoManager()->redo();
        EXPECT_TRUE(Snapshot(document) == after);
        EXPECT_EQ(document.model()->rowCount(), static_cast<int>(document.einnahmen().size()));
    }
    document.undoManager()->undo(); // the list before the load, with every verb's result
    EXPECT_FLOAT_EQ(document.backupEinnahmen().back()->brutto(), 45.1f); // a series copy of the form's edit
    EXPECT_EQ(document.backupEinnahmen().back()->kategorie(), "8400 Erlöse 19 % ");

    // The file holds the complete list with its split bookings.
    ASSERT_TRUE(document.save());
    EXPECT_TRUE(readBytes(path) == encoded(document.backupEinnahmen()));
    // A split booking edited in place in its editor is saved too.
    document.noteChangeOutsideVerbs();
    EXPECT_TRUE(document.isDocumentEdited());
    EXPECT_TRUE(qtWarnings.warnings.isEmpty()) << qtWarnings.warnings.join('\n').toStdString();
}

TEST_F(DocumentTest, ACellEditWritesItsRowLineAndARefusalSoundsAndLeavesNoStep)
{
    Document document(defaults);
    document.replaceAllEntries(namedEntries({ "Miete" }));
    const EinnahmePtr first = document.einnahmen()[0];
    struct Case {
        EntryColumn::Id column;
        CellEdit::Value value;
        CellEdit::Outcome outcome;
        std::vector<std::string> lines;
        bool basso;
        bool step;
    };
    const std::vector<Case> cases = {
        { EntryColumn::Brutto, CellEdit::Text { "1e39" }, CellEdit::Outcome::Refused,
            { "Row:  0 , Column:  5  Inhalt:  1e39" }, true, false },
        { EntryColumn::Name, CellEdit::Text { "Miete" }, CellEdit::Outcome::Stored,
            { "Row:  0 , Column:  0  Inhalt:  Miete" }, false, false }, // the same value: no step
        { EntryColumn::NonEU, CellEdit::Check { true }, CellEdit::Outcome::Stored, {}, false, true },
    };
    for (const Case& c : cases) {
        diagnostics.lines.clear();
        sounds.lines.clear();
        const int steps = document.undoManager()->count();
        EXPECT_EQ(document.editCell(0, c.column, c.value), c.outcome) << c.column;
        EXPECT_EQ(diagnostics.lines, c.lines);
        EXPECT_EQ(sounds.lines, c.basso ? std::vector<std::string> { "Basso" } : std::vector<std::string> {});
        EXPECT_EQ(document.undoManager()->count(), steps + (c.step ? 1 : 0)) << c.column;
    }
    EXPECT_FLOAT_EQ(first->brutto(), 10.0f);
    EXPECT_TRUE(first->isNonEU());

    // Unreadable data fails with the fixed error and keeps the entries; an
    // empty list is a list and replaces them.
    const Snapshot before(document);
    EXPECT_FALSE(document.readFromData(QByteArray("<plist><dict/></plist>")));
    EXPECT_EQ(document.errorCode(), Document::kFileErrorCode);
    EXPECT_TRUE(Snapshot(document) == before);
    ASSERT_TRUE(document.readFromData(encoded({})));
    EXPECT_TRUE(document.backupEinnahmen().empty());
}

TEST_F(DocumentTest, TheEditMenuRunsTheVerbsAndCtrlZReachesItFromAFormField)
{
    auto document = shownDocument(defaults, 3);
    WindowActions* actions = document->windowController()->actions();
    EXPECT_FALSE(actions->undoAction()->isEnabled());
    actions->addEntryAction()->trigger();
    ASSERT_EQ(document->backupEinnahmen().size(), 4u);
    EXPECT_EQ(actions->undoAction()->text(), QStringLiteral("&Widerrufen Neuer Eintrag"));
    actions->duplicateAction()->trigger();
    EXPECT_EQ(document->backupEinnahmen().back()->name(), "Neu Kopie");
    actions->undoAction()->trigger();
    EXPECT_EQ(actions->redoAction()->text(), QStringLiteral("Wieder&holen Duplizieren"));
    EXPECT_EQ(document->backupEinnahmen().size(), 4u);

    // Ctrl+Z in a form field undoes the field's own typing first, then the
    // document's last step (the field used to keep the key to itself).
    QApplication::setActiveWindow(document->windowController());
    SplitViewController* split = document->windowController()->splitViewController();
    split->viewController()->tableView()->selectRow(0);
    split->detailViewController()->finishAnimationsForTesting();
    QLineEdit* name = split->detailViewController()->nameField();
    name->setFocus();
    ASSERT_TRUE(name->hasFocus());
    QTest::keyClicks(name, QStringLiteral("x"));
    QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document->backupEinnahmen().size(), 4u);
    EXPECT_FALSE(name->isUndoAvailable());
    QTest::keyClick(name, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(document->backupEinnahmen().size(), 3u);
    QTest::keyRelease(name, Qt::Key_Control); // no Ctrl held for the tests after this one

    // Without a document controller the program-wide actions are off.
    EXPECT_FALSE(actions->newDocumentAction()->isEnabled());
    EXPECT_TRUE(actions->saveAction()->isEnabled());
}

// --- the file ----------------------------------------------------------------

TEST_F(DocumentTest, SavingWritesTheCompleteListInPlaceKeepingPermissionsAndSaysSoOnce)
{
    auto document = opened(10);
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner));
    const QFile::Permissions permissions = QFile::permissions(path);
    document->addEntry();
    document->applySearch(SearchOutcome::decide("Name", "Posten 1"));
    ASSERT_EQ(document->einnahmen().size(), 2u); // "Posten 1" and "Posten 10"
    diagnostics.lines.clear();

    ASSERT_TRUE(document->save());
    EXPECT_EQ(diagnostics.lines, std::vector<std::string> { "data saved" });
    EXPECT_EQ(namesOf(decodeFile(path)), namesOf(document->backupEinnahmen()));
    EXPECT_EQ(document->backupEinnahmen().size(), 11u);
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_EQ(QFile::permissions(path), permissions);

    // Closing saves a changed document without asking.
    document->windowController()->show();
    document->addEntry();
    EXPECT_TRUE(document->windowController()->close());
    EXPECT_EQ(decodeFile(path).size(), 12u);
    EXPECT_TRUE(dialogs.asked.isEmpty());
}

TEST_F(DocumentTest, AChangeIsSavedAfterTheAutosaveDelayAndEachChangeRestartsIt)
{
    auto document = opened(2);
    QTimer& timer = document->autosaveTimer();
    EXPECT_EQ(timer.interval(), 3000);
    EXPECT_TRUE(timer.isSingleShot());
    EXPECT_FALSE(timer.isActive());

    document->addEntry();
    EXPECT_TRUE(document->windowController()->isWindowModified());
    ASSERT_TRUE(timer.isActive());
    EXPECT_EQ(decodeFile(path).size(), 2u); // nothing written before the delay
    QTest::qWait(30);
    const int remainingBefore = timer.remainingTime();
    document->editCell(0, EntryColumn::Name, CellEdit::Text { "Posten eins" });
    EXPECT_GT(timer.remainingTime(), remainingBefore);

    // The entries are written on a worker. A change made meanwhile is not in
    // the file, and the next save writes it.
    const auto firstName = [&] { return decodeFile(path).at(0)->name(); };
    QMetaObject::invokeMethod(&timer, "timeout");
    EXPECT_TRUE(document->isSaving());
    document->editCell(0, EntryColumn::Name, CellEdit::Text { "Posten zwei" });
    document->finishBackgroundSave();
    EXPECT_EQ(decodeFile(path).size(), 3u);
    EXPECT_EQ(firstName(), "Posten eins");
    EXPECT_TRUE(document->windowController()->isWindowModified());
    autosaveNow(*document);
    EXPECT_EQ(firstName(), "Posten zwei");
    EXPECT_FALSE(timer.isActive());
    EXPECT_FALSE(document->windowController()->isWindowModified());
}

// A save that cannot be written loses nothing, is told once, and succeeds by
// itself at the next autosave once the cause is gone. (Which causes there are
// is the writer's, tests/core/platform; here a folder made read-only.)
TEST_F(DocumentTest, AFailedSaveIsReportedOnceAndTheNextAutosaveSucceedsOnceTheCauseIsGone)
{
    auto document = opened(20);
    const QByteArray saved = readBytes(path);
    saldo::testing::Unprivileged unprivileged(dir.path().toStdString());
    const auto readOnly = [&](bool on) {
        QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner | (on ? QFile::Permissions() : QFile::WriteOwner));
    };
    readOnly(true);
    // A failed check must not leave the folder read-only for later ones.
    const auto writable = qScopeGuard([&] { readOnly(false); });

    document->addEntry();
    for (int i = 0; i < 3; ++i)
        autosaveNow(*document);
    EXPECT_EQ(readBytes(path), saved);
    EXPECT_TRUE(document->isDocumentEdited());
    ASSERT_EQ(dialogs.errors.size(), 1);
    EXPECT_TRUE(dialogs.errors[0].startsWith(QStringLiteral("Das Dokument „Kasse.saldo“ konnte nicht gesichert werden.")));

    readOnly(false);
    autosaveNow(*document);
    EXPECT_FALSE(document->isDocumentEdited());
    EXPECT_FALSE(document->autosaveTimer().isActive());
    EXPECT_EQ(decodeFile(path).size(), 21u);

    // A new failure after that success is news again.
    readOnly(true);
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.errors.size(), 2);
    EXPECT_TRUE(document->isDocumentEdited());
}

// Another program writes 7 entries into the file while the window holds its
// own and one added (an undo step): the autosave asks what to do. Also when
// the file changes while the worker writes a ledger large enough to take a
// good tenth of a second (the check once came before the worker coded the
// entries, and such a change was overwritten without a question); the bytes
// wait beside the file until the answer, and no longer.
TEST_F(DocumentTest, AFileChangedByAnotherProgramIsOverwrittenReloadedOrLeftAsTheUserChooses)
{
    struct Case {
        Choice choice;
        bool fileWritten;
        bool edited;
    };
    const QByteArray outside = encoded(sampleEntries(7));
    for (const std::size_t count : { 3, 100'000 }) {
        for (const Case& c : { Case { Choice::Overwrite, true, false }, Case { Choice::Reload, false, false },
                 Case { Choice::Cancel, false, true } }) {
            SCOPED_TRACE(std::to_string(count) + " entries, choice " + std::to_string(static_cast<int>(c.choice)));
            dialogs.asked.clear();
            auto document = opened(static_cast<int>(count));
            document->addEntry();
            dialogs.fileChangedChoices = { c.choice };
            if (count < 100) {
                ASSERT_TRUE(writeBytes(path, outside));
                autosaveNow(*document);
            } else {
                QMetaObject::invokeMethod(&document->autosaveTimer(), "timeout");
                ASSERT_TRUE(document->isSaving());
                ASSERT_TRUE(writeBytes(path, outside));
                document->finishBackgroundSave();
            }
            const std::size_t entries = c.choice == Choice::Reload ? 7 : count + 1;
            EXPECT_EQ(dialogs.asked, QStringList { QStringLiteral("Kasse.saldo") });
            EXPECT_EQ(decodeFile(path).size(), c.fileWritten ? count + 1 : 7);
            EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList { QStringLiteral("Kasse.saldo") });
            EXPECT_EQ(document->backupEinnahmen().size(), entries);
            EXPECT_EQ(document->model()->rowCount(), static_cast<int>(entries));
            EXPECT_EQ(document->isDocumentEdited(), c.edited);
            EXPECT_EQ(document->undoManager()->count(), c.choice == Choice::Reload ? 0 : 1);

            // Edits afterwards: saved without a question, except after Abbrechen,
            // where the file is left alone without asking again.
            document->addEntry();
            autosaveNow(*document);
            EXPECT_EQ(dialogs.asked.size(), 1);
            EXPECT_EQ(readBytes(path) == outside, c.choice == Choice::Cancel);
        }
    }
}

TEST_F(DocumentTest, ADeclinedChangeIsAskedAgainWhenTheFileChangesOnSichernAndOnClosing)
{
    auto document = opened(3);
    document->addEntry();
    ASSERT_TRUE(writeBytes(path, encoded(sampleEntries(7))));
    dialogs.fileChangedChoices = { Choice::Cancel, Choice::Cancel };
    autosaveNow(*document);

    // The other program writes again: asked again.
    const QByteArray again = encoded(sampleEntries(2));
    ASSERT_TRUE(writeBytes(path, again));
    document->addEntry();
    autosaveNow(*document);
    EXPECT_EQ(dialogs.asked.size(), 2);
    EXPECT_EQ(readBytes(path), again);

    // Declined at closing: the window stays unless the user discards.
    dialogs.fileChangedChoices = { Choice::Cancel, Choice::Cancel };
    dialogs.saveChoices = { Dialogs::SaveChoice::Cancel, Dialogs::SaveChoice::DontSave };
    EXPECT_FALSE(document->canClose());
    EXPECT_TRUE(document->autosaveTimer().isActive());
    EXPECT_TRUE(document->canClose());
    EXPECT_EQ(readBytes(path), again);

    // "Sichern" asks even about a change that was declined; overwriting saves.
    dialogs.fileChangedChoices = { Choice::Overwrite };
    EXPECT_TRUE(document->saveDocument());
    EXPECT_TRUE(dialogs.fileChangedChoices.empty());
    EXPECT_EQ(decodeFile(path).size(), 5u);
    EXPECT_FALSE(document->isDocumentEdited());

    // Reloading at closing leaves nothing to save.
    dialogs.fileChangedChoices = { Choice::Reload };
    document->addEntry();
    ASSERT_TRUE(writeBytes(path, encoded(sampleEntries(4))));
    EXPECT_TRUE(document->canClose());
    EXPECT_EQ(dialogs.asked.last(), QStringLiteral("Kasse.saldo"));
    EXPECT_FALSE(document->isDocumentEdited());
}

// Neither the same bytes written again as a new file (as a backup tool
// restores it) nor a file deleted or moved away is an outside change: the
// autosave writes the file at its path again.
TEST_F(DocumentTest, SameBytesOrAMissingFileAreNoOutsideChange)
{
    auto document = opened(3);
    const QString moved = dir.filePath(QStringLiteral("Archiv.saldo"));
    const std::function<void()> changes[] = {
        [&] {
            const QByteArray same = readBytes(path);
            QFile::remove(path);
            writeBytes(path, same);
        },
        [&] { QFile::remove(path); },
        [&] { QFile::rename(path, moved); },
    };
    for (const auto& change : changes) {
        change();
        document->addEntry();
        autosaveNow(*document);
        EXPECT_EQ(decodeFile(path).size(), document->backupEinnahmen().size());
    }
    EXPECT_EQ(decodeFile(moved).size(), 5u);
    EXPECT_TRUE(dialogs.asked.isEmpty());
    EXPECT_TRUE(dialogs.errors.isEmpty());
    EXPECT_FALSE(document->isDocumentEdited());
}

// --- untitled documents and their recovery copies ------------------------------

TEST_F(DocumentTest, AnUntitledDocumentKeepsACopyUntilSavedUnderANameOrDropped)
{
    Document untitled(defaults);
    untitled.makeWindowControllers();
    untitled.windowController()->show();
    untitled.addEntry();
    autosaveNow(untitled);
    ASSERT_EQ(AutosaveStore::files().size(), 1);
    const QString copy = AutosaveStore::files().front();
    EXPECT_EQ(copy, untitled.recoveryFilePath());
    EXPECT_EQ(QFileInfo(copy).absolutePath(), QFileInfo(dir.filePath(QStringLiteral("Autosave"))).absoluteFilePath());
    EXPECT_EQ(decodeFile(copy).size(), 2u); // "Neu" and the added entry
    EXPECT_TRUE(untitled.isDocumentEdited()); // a copy is not a save
    // Later changes go into the same copy.
    untitled.addEntry();
    autosaveNow(untitled);
    EXPECT_EQ(AutosaveStore::files(), QStringList { copy });
    EXPECT_EQ(decodeFile(copy).size(), 3u);

    // Closing asks; "Abbrechen" and a cancelled save panel keep the window and the copy.
    EXPECT_EQ(untitled.windowController()->windowTitle(), QStringLiteral("Unbenannt[*]"));
    dialogs.saveChoices = { Dialogs::SaveChoice::Cancel, Dialogs::SaveChoice::Save, Dialogs::SaveChoice::Save };
    EXPECT_FALSE(untitled.windowController()->close());
    EXPECT_FALSE(untitled.windowController()->close());
    EXPECT_EQ(AutosaveStore::files().size(), 1);
    // Saved under a name (".saldo" added), the copy goes with its lock.
    dialogs.saveFileNames = { dir.filePath(QStringLiteral("Neu")) };
    EXPECT_TRUE(untitled.windowController()->close());
    const QString saved = dir.filePath(QStringLiteral("Neu.saldo"));
    EXPECT_EQ(untitled.filePath(), QFileInfo(saved).canonicalFilePath());
    EXPECT_EQ(decodeFile(saved).size(), 3u);
    EXPECT_TRUE(AutosaveStore::files().isEmpty());
    EXPECT_FALSE(QFile::exists(copy + QStringLiteral(".lock")));

    // Closed without saving, the copy goes too.
    Document dropped(defaults);
    dropped.makeWindowControllers();
    dropped.addEntry();
    autosaveNow(dropped);
    dialogs.saveChoices = { Dialogs::SaveChoice::DontSave };
    EXPECT_TRUE(dropped.canClose());
    EXPECT_TRUE(AutosaveStore::files().isEmpty());
}

TEST_F(DocumentTest, TheNextStartOffersEachCopyLeftByACrash)
{
    const QString folder = dir.filePath(QStringLiteral("Autosave"));
    // Leaves a copy of `count` entries behind as a program that crashed does:
    // written, and its lock held by a process that no longer runs.
    const auto copyLeftByACrash = [&](int count) {
        EXPECT_TRUE(QDir().mkpath(folder));
        const QString copy = QDir(folder).filePath(QStringLiteral("Unbenannt-abgestuerzt-%1.saldo").arg(count));
        const QByteArray bytes = encoded(sampleEntries(count));
        const pid_t child = ::fork();
        if (child == 0) {
            QLockFile lock(copy + QStringLiteral(".lock"));
            const bool ok = lock.tryLock(0) && writeBytes(copy, bytes);
            ::_exit(ok ? 0 : 1); // no destructors: the lock file stays
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        return copy;
    };
    const QString kept = copyLeftByACrash(4);
    const QString dropped = copyLeftByACrash(2);
    // A copy of an untitled document that is open right now belongs to this
    // running program: never offered, never deleted.
    Document running(defaults);
    running.makeWindowControllers();
    running.addEntry();
    autosaveNow(running);
    const QString live = running.recoveryFilePath();

    DocumentController controller(defaults);
    dialogs.restoreAnswers = { true, false };
    controller.startUp({});
    ASSERT_EQ(dialogs.asked.size(), 2);
    for (const QString& question : dialogs.asked)
        EXPECT_TRUE(
            question.startsWith(QStringLiteral("Saldo wurde beendet, ohne ein unbenanntes Dokument zu sichern")));
    EXPECT_TRUE(QFile::exists(live));

    // One restored window and no extra new document; the discarded copy is gone.
    ASSERT_EQ(controller.documents().size(), 1u);
    Document* restored = controller.documents().front();
    const bool keptFirst = dialogs.asked[0].contains(QStringLiteral("4 Eintraege"));
    const QString restoredCopy = keptFirst ? kept : dropped;
    EXPECT_TRUE(restored->isUntitled());
    EXPECT_TRUE(restored->windowController()->isWindowModified());
    EXPECT_EQ(restored->recoveryFilePath(), restoredCopy);
    EXPECT_EQ(restored->backupEinnahmen().size(), keptFirst ? 4u : 2u);
    EXPECT_FALSE(QFile::exists(keptFirst ? dropped : kept));

    // The restored document keeps its copy up to date, under the same name.
    restored->addEntry();
    autosaveNow(*restored);
    EXPECT_EQ(decodeFile(restoredCopy).size(), keptFirst ? 5u : 3u);

    // A second start while both are running finds nothing to offer.
    DocumentController second(defaults);
    EXPECT_EQ(second.restoreAutosavedDocuments(), 0);
    EXPECT_EQ(dialogs.asked.size(), 2);
}

} // namespace
} // namespace saldo::gui
