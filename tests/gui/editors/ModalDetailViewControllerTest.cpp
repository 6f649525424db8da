// The split-booking editor, opened from the entry list of a shown window and
// driven through the calls its controls make (no exec()): the working copy,
// the form on it, the split-booking table, "OK" as one step that can be
// undone and "Abbrechen". The sums and the write-back plan are the core's
// rules (tests/core/editors). Then the date fields of the editor and of the
// window, typed into as a German user does.
#include "editors/ModalDetailViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/DetailViewController.h"
#include "editors/EntryForm.h"
#include "editors/SplitBookingTableModel.h"
#include "entrylist/ViewController.h"
#include "gui/support/Recorders.h"
#include "model/Kategorien.h"
#include "platform/Calendar.h"
#include "platform/DateField.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <functional>

namespace saldo::gui {
namespace {

using namespace testing;
using namespace std::string_literals;

constexpr int kBrutto = 5; // positions in the split-booking table
constexpr int kSteuer = 7;
constexpr int kLeistungsart = 11;

class ModalDetailViewControllerTest : public ::testing::Test {
protected:
    ModalDetailViewControllerTest()
    {
        defaults.setStringArray(Kategorien::kKey, { "4930 Buerobedarf ", "8400 Erloese " });
        entries = namedEntries({ "Miete", "Einkauf", "Honorar" });
        auto ordner = Einnahme::make("Ordner", "", 63.4f, 19.0f);
        auto lampe = Einnahme::make("Lampe", "", 124.0f, 19.0f);
        for (const auto& child : { ordner, lampe })
            child->setArt(kArtAusgabe);
        // Stored as the old detail form left it: 200 where the split bookings make 187,40.
        entries[1]->setArt(kArtAusgabe);
        entries[1]->setBrutto(200.0f);
        entries[1]->setChildTransactions({ ordner, lampe });
        document.replaceAllEntries(entries);
        document.makeWindowControllers();
        window()->show();
    }
    DocumentWindow* window() const { return document.windowController(); }
    ViewController* list() const { return window()->splitViewController()->viewController(); }

    // Double-clicks the row and answers the editor that opened.
    ModalDetailViewController* openOn(int row)
    {
        QTableView* table = list()->tableView();
        const QPoint cell = table->visualRect(table->model()->index(row, EntryColumn::Netto)).center();
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
        auto* editor = window()->findChild<ModalDetailViewController*>();
        EXPECT_TRUE(editor && editor->isVisible());
        if (editor)
            tester = std::make_unique<QAbstractItemModelTester>(
                editor->model(), QAbstractItemModelTester::FailureReportingMode::Warning);
        return editor;
    }
    static bool edit(ModalDetailViewController* editor, int row, int column, const QVariant& value)
    {
        return editor->model()->setData(editor->model()->index(row, column), value);
    }
    // The steps after the fixture's own, the load of its entries.
    int steps() const { return document.undoManager()->count() - 1; }

    QtWarningRecorder qtWarnings;
    DiagnosticRecorder diagnostics;
    SoundRecorder sounds;
    InMemoryUserDefaults defaults;
    Document document { defaults };
    EinnahmeList entries;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

TEST_F(ModalDetailViewControllerTest, OkWritesTheCopyBackAsOneStepThatSelectsIt)
{
    ModalDetailViewController* editor = openOn(1);
    ASSERT_TRUE(editor);
    const EinnahmePtr copy = editor->selectedEinnahme();
    EXPECT_EQ(editor->size(), QSize(450, 375));
    EXPECT_EQ(editor->model()->rowCount(), 2);
    // Name, kind and gross amount show without scrolling (the gross amount
    // used to start beyond the window's edge), and a double-click edits a cell.
    QTableView* table = editor->tableView();
    for (const EntryColumn::Id column : { EntryColumn::Name, EntryColumn::Art, EntryColumn::Brutto }) {
        const int position = SplitBookingTableModel::positionOf(column);
        EXPECT_LE(table->columnViewportPosition(position) + table->columnWidth(position), table->viewport()->width())
            << column;
    }
    const QModelIndex gross = editor->model()->index(0, kBrutto);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(gross).center());
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(gross).center());
    QWidget* cellEditor = table->indexWidget(gross);
    ASSERT_TRUE(cellEditor);
    emit table->itemDelegateForIndex(gross)->closeEditor(cellEditor);
    // The gross field shows the signed sum of the split bookings, not the stored 200.
    QLineEdit* brutto = editor->form()->bruttoField();
    EXPECT_EQ(brutto->text(), "-187,40");
    EXPECT_TRUE(brutto->isReadOnly());

    // The form changes the copy only: nothing is posted, no step is pushed.
    PostCounter posts(kDetailViewUpdated);
    editor->form()->nameField()->setText("Einkauf Buero");
    editor->textFieldEdited();
    EXPECT_EQ(std::tuple(copy->name(), entries[1]->name()), std::tuple("Einkauf Buero"s, "Einkauf"s));
    EXPECT_EQ(std::tuple(posts.count(), steps()), std::tuple(0u, 0));

    // A split booking turned into income makes the copy an income on "OK".
    ASSERT_TRUE(edit(editor, 1, EntryColumn::Art, 0));
    EXPECT_EQ(brutto->text(), "60,60");
    editor->okButton()->click();
    EXPECT_FALSE(editor->isVisible());
    EXPECT_EQ(document.backupEinnahmen()[1], copy);
    EXPECT_EQ(std::tuple(copy->art(), copy->brutto()), std::tuple("Einnahme"s, 60.6f));
    EXPECT_EQ(document.undoManager()->undoText(), "Splitbuchung");
    EXPECT_EQ(list()->selectedRows(), std::vector<std::size_t> { 1 });
    EXPECT_EQ(window()->splitViewController()->detailViewController()->selectedEinnahme(), copy);

    document.undoManager()->undo();
    EXPECT_EQ(document.einnahmen()[1], entries[1]);
    EXPECT_TRUE(qtWarnings.warnings.isEmpty()) << qtWarnings.warnings.join('\n').toStdString();
}

TEST_F(ModalDetailViewControllerTest, SplitBookingsAreAddedRemovedARefusedGrossSoundsBassoAndAbbrechenKeepsSharedOnes)
{
    window()->actions()->splitBookingAction()->trigger(); // Ctrl+Return on the selected row
    ModalDetailViewController* editor = window()->findChild<ModalDetailViewController*>();
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->selectedEinnahme()->name(), "Miete");
    QLineEdit* brutto = editor->form()->bruttoField();
    EXPECT_FALSE(brutto->isReadOnly());

    editor->addButton()->click();
    ASSERT_EQ(editor->model()->rowCount(), 1);
    EXPECT_TRUE(editor->tableView()->selectionModel()->isRowSelected(0));
    EXPECT_EQ(std::tuple(brutto->text(), brutto->isReadOnly()), std::tuple(QString("0,00"), true));

    // A refused gross amount: "Basso", and the cell shows the stored value.
    EXPECT_FALSE(edit(editor, 0, kBrutto, "-5"));
    EXPECT_EQ(editor->model()->index(0, kBrutto).data().toString(), "0,00");
    EXPECT_EQ(sounds.lines, std::vector<std::string> { "Basso" });
    EXPECT_TRUE(edit(editor, 0, kBrutto, "25"));
    EXPECT_TRUE(edit(editor, 0, kLeistungsart, "Wartung"));
    EXPECT_EQ(brutto->text(), "25,00");
    // The "Row:" line names the column's position in this table.
    EXPECT_EQ(diagnostics.lines.back(), "Row:  0 , Column:  11  Inhalt:  Wartung");

    editor->removeButton()->click();
    EXPECT_EQ(editor->model()->rowCount(), 0);
    EXPECT_EQ(std::tuple(brutto->text(), brutto->isReadOnly()), std::tuple(QString("25,00"), false));
    editor->addButton()->click();
    editor->cancelButton()->click();
    EXPECT_TRUE(entries[0]->childTransactions().empty());
    EXPECT_FALSE(document.isDocumentEdited());

    // An edit of a split booking the copy shares with its entry stays after
    // Abbrechen, and is saved.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    editor = openOn(1);
    ASSERT_TRUE(editor);
    ASSERT_TRUE(edit(editor, 0, kSteuer, "7"));
    EXPECT_TRUE(document.isDocumentEdited());
    editor->cancelButton()->click();
    EXPECT_EQ(entries[1]->childTransactions()[0]->steuersatz(), 7.0f);
    EXPECT_EQ(entries[1]->brutto(), 200.0f);
    EXPECT_EQ(steps(), 0);
}

// 24.11.2026 17:45:30 local time, the date every field shows before typing.
const Calendar::Fields kBefore { 2026, 11, 24, 17, 45, 30 };

// What a German user types into every date field of the program: the detail
// form, the entry table's date cell, and in the split-booking editor its form
// and its table's date cell. Before these fields, "15.03.2026" typed with the
// cursor in the month stored 15.01.2026, because the typed points skipped
// sections, and Tab needed one press per section.
class DateFieldTest : public ::testing::Test {
protected:
    DateFieldTest()
    {
        auto entry = Einnahme::make("Miete", "", 500.0f, 19.0f);
        auto child = Einnahme::make("Anteil", "", 100.0f, 19.0f);
        entry->setChildTransactions({ child });
        for (const auto& e : { entry, child })
            e->setDatum(Calendar::fromLocalFields(kBefore));
        document.replaceAllEntries({ entry });
        document.makeWindowControllers();
        window()->show();
    }
    DocumentWindow* window() const { return document.windowController(); }
    SplitViewController* split() const { return window()->splitViewController(); }

    // Opens the date cell's editor of `table` at row 0.
    static DateField* openCell(QTableView* table, int column)
    {
        const QModelIndex index = table->model()->index(0, column);
        table->setCurrentIndex(index);
        table->edit(index);
        return qobject_cast<DateField*>(table->indexWidget(index));
    }
    ModalDetailViewController* splitEditor()
    {
        if (!editor_) {
            window()->actions()->splitBookingAction()->trigger();
            editor_ = window()->findChild<ModalDetailViewController*>();
        }
        return editor_;
    }

    SoundRecorder sounds;
    InMemoryUserDefaults defaults;
    Document document { defaults };
    ModalDetailViewController* editor_ = nullptr;
};

TEST_F(DateFieldTest, EveryDateFieldTakesTheDayFirstKeepsTheTimeAndIsLeftWithOneTab)
{
    struct Kind {
        const char* name;
        std::function<DateField*()> open;
        std::function<ReferenceSeconds()> stored;
    };
    const EinnahmePtr entry = document.einnahmen()[0];
    const std::vector<Kind> kinds = {
        { "detail form", [&] { return split()->detailViewController()->datumPicker(); },
            [&] { return entry->datum(); } },
        { "entry table", [&] { return openCell(split()->viewController()->tableView(), EntryColumn::Date); },
            [&] { return entry->datum(); } },
        { "split-booking form", [&] { return splitEditor()->form()->datumPicker(); },
            [&] { return splitEditor()->selectedEinnahme()->datum(); } },
        { "split-booking table", [&] { return openCell(splitEditor()->tableView(), EntryColumn::Date); },
            [&] { return splitEditor()->selectedEinnahme()->childTransactions()[0]->datum(); } },
    };
    struct Typed {
        const char* text;
        int day, month; // 0: refused, the stored date stays
    };
    const Typed typings[] = { { "15.03.2026", 15, 3 }, { "16.3.26", 16, 3 }, { "17032026", 17, 3 },
        { "31.02.2026", 0, 0 }, { "1.4.", 1, 4 } };

    for (const Kind& kind : kinds) {
        Calendar::Fields expected = kBefore;
        for (const Typed& typed : typings) {
            SCOPED_TRACE(std::string(kind.name) + ": " + typed.text);
            sounds.lines.clear();
            split()->detailViewController()->finishAnimationsForTesting();
            DateField* field = kind.open();
            ASSERT_TRUE(field);
            QApplication::setActiveWindow(field->window());
            field->setFocus();
            // The cursor in the month: typing still starts with the day.
            field->setCursorPosition(4);
            QTest::keyClicks(field, QString::fromLatin1(typed.text));
            QTest::keyClick(field, Qt::Key_Tab);
            EXPECT_NE(QApplication::focusWidget(), field);

            if (typed.day != 0) {
                expected.day = typed.day;
                expected.month = typed.month;
            }
            const Calendar::Fields stored = Calendar::localFields(kind.stored());
            EXPECT_EQ(std::tuple(stored.year, stored.month, stored.day, stored.hour, stored.minute, stored.second),
                std::tuple(
                    expected.year, expected.month, expected.day, expected.hour, expected.minute, expected.second));
            EXPECT_EQ(
                sounds.lines, typed.day == 0 ? std::vector<std::string> { "Basso" } : std::vector<std::string> {});
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    // The two forms' fields show the stored value again after a refusal.
    EXPECT_EQ(split()->detailViewController()->datumPicker()->text(), QStringLiteral("01.04.2026 17:45"));
}

} // namespace
} // namespace saldo::gui
