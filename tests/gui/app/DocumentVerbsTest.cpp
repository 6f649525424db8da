// A document with no window: opened from a file, changed through its verbs,
// each verb undone and redone, and saved. Where the verbs put entries is the
// core's rule (tests/core/entrylist); here it is the document's bookkeeping:
// the model follows, undo gives back exactly what was there, redo exactly
// what the verb made, and the file holds the complete list.
#include "app/Document.h"
#include "app/DocumentEntries.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/SearchOutcome.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/Recorders.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/UserDefaults.h"

#include <QAbstractItemModelTester>
#include <QTemporaryDir>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace saldo::gui {
namespace {

using namespace testing;

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
        if (shown != other.shown || complete != other.complete)
            return false;
        for (std::size_t i = 0; i < values.size(); ++i)
            if (!Einnahme::sameValues(values[i], other.values[i]))
                return false;
        return true;
    }
};

class DocumentVerbsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        path = dir.filePath(QStringLiteral("Kasse.saldo"));
        ASSERT_TRUE(writeBytes(path, encoded(namedEntries({ "Miete", "Strom", "Honorar", "Porto" }))));
        ASSERT_TRUE(document.readFromFile(path));
    }

    QtWarningRecorder qtWarnings;
    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    QString path;
    DiagnosticRecorder diagnostics;
    SoundRecorder sounds;
    Document document { defaults };
    QAbstractItemModelTester tester { document.model(), QAbstractItemModelTester::FailureReportingMode::Warning };
};

TEST_F(DocumentVerbsTest, EveryVerbIsUndoneAndRedoneExactlyAndTheFileHoldsTheResult)
{
    const auto at = [this](std::size_t row) { return document.einnahmen().at(row); };
    const auto split = Einnahme::make("Teil", "", 5.0f, 19.0f);
    struct Verb {
        const char* name;
        std::function<void()> run;
        // Undoing a deletion appends the entries at the end rather than where they stood.
        bool undoAppends = false;
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
    };
    // A search hides entries while the verbs run: they change the complete list too.
    document.applySearch(SearchOutcome::decide("Name", "o"));
    for (const Verb& verb : verbs) {
        SCOPED_TRACE(verb.name);
        const Snapshot before(document);
        const int steps = document.undoManager()->count();
        verb.run();
        ASSERT_EQ(document.undoManager()->count(), steps + 1);
        EXPECT_EQ(document.undoManager()->undoText(), QString::fromUtf8(verb.name));
        const Snapshot after(document);
        EXPECT_FALSE(after == before);
        document.undoManager()->undo();
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
    EXPECT_FLOAT_EQ(document.backupEinnahmen().back()->brutto(), 45.1f); // a series copy of the form's edit

    ASSERT_TRUE(document.save());
    const EinnahmeList saved = decodeFile(path);
    ASSERT_EQ(saved.size(), document.backupEinnahmen().size());
    for (std::size_t i = 0; i < saved.size(); ++i) {
        Einnahme::Stored values = saved[i]->stored();
        values.childTransactions = document.backupEinnahmen()[i]->childTransactions(); // equal by value, not identity
        EXPECT_EQ(saved[i]->childTransactions().size(), values.childTransactions.size());
        EXPECT_TRUE(Einnahme::sameValues(values, document.backupEinnahmen()[i]->stored())) << saved[i]->name();
    }
    EXPECT_TRUE(qtWarnings.warnings.isEmpty()) << qtWarnings.warnings.join('\n').toStdString();
}

TEST_F(DocumentVerbsTest, ACellEditWritesItsRowLineAndARefusalSoundsAndLeavesNoStep)
{
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
}

TEST_F(DocumentVerbsTest, StepsAndTheirUndoMarkTheDocumentChanged)
{
    document.addEntry();
    EXPECT_TRUE(document.isDocumentEdited());
    ASSERT_TRUE(document.save());
    document.undoManager()->undo();
    EXPECT_TRUE(document.isDocumentEdited());
    EXPECT_TRUE(document.autosaveTimer().isActive());
    ASSERT_TRUE(document.save());

    // (An import leaving the document unchanged: EntryListExchangeTest.)
    // A split booking edited in place in its editor is saved too.
    document.noteChangeOutsideVerbs();
    EXPECT_TRUE(document.isDocumentEdited());
}

TEST_F(DocumentVerbsTest, UnreadableDataFailsWithTheFixedErrorAndKeepsTheEntries)
{
    const Snapshot before(document);
    EXPECT_FALSE(document.readFromData(QByteArray("<plist><dict/></plist>")));
    EXPECT_EQ(document.errorCode(), Document::kFileErrorCode);
    EXPECT_TRUE(Snapshot(document) == before);
    // An empty list is a list: it replaces the entries.
    ASSERT_TRUE(document.readFromData(encoded({})));
    EXPECT_TRUE(document.backupEinnahmen().empty());
}

} // namespace
} // namespace saldo::gui
