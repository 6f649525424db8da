// What a German user types into every date field of the program: the detail
// form, the entry table's date cell, and in the split-booking editor its form
// and its table's date cell. Before these fields, "15.03.2026" typed with the
// cursor in the month stored 15.01.2026, because the typed points skipped
// sections, and Tab needed one press per section.
#include "platform/DateField.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/DetailViewController.h"
#include "editors/EntryForm.h"
#include "editors/ModalDetailViewController.h"
#include "editors/SplitBookingTableModel.h"
#include "entrylist/ViewController.h"
#include "gui/support/Recorders.h"
#include "platform/Calendar.h"

#include <QAction>
#include <QApplication>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>

namespace saldo::gui {
namespace {

using namespace testing;

// 24.11.2026 17:45:30 local time, the date every field shows before typing.
const Calendar::Fields kBefore { 2026, 11, 24, 17, 45, 30 };

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
