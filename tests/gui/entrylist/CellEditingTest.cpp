// Editing entries in the table's cells, driven through the calls a user's
// edit makes: the model's setData (what the line edit's delegate calls), the
// delegates' editors, and a click on a check box.
#include "app/SplitViewController.h"
#include "editors/DetailViewController.h"
#include "entrylist/CheckBoxDelegate.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/ViewController.h"
#include "gui/entrylist/EntryListTestSupport.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTableView>
#include <gtest/gtest.h>

#include <memory>

using namespace saldo;
using namespace saldo::gui;
using namespace saldo::gui::testing;

namespace {

class CellEditing : public ::testing::Test {
protected:
    void SetUp() override
    {
        defaults.setStringArray("Kategorien", { "1000 Kasse Kasse ", "1200 Bank Bank " });
        split = std::make_unique<SplitViewController>(defaults);
        vc = split->viewController();
        entries = namedEntries({ "A", "B", "C" });
        vc->setEntries(entries);
        changes = std::make_unique<QSignalSpy>(vc, &ViewController::changeDone);
    }

    QAbstractItemModel* model() const { return vc->tableView()->model(); }
    QModelIndex at(int row, EntryColumn::Id column) const { return model()->index(row, column); }
    bool edit(int row, EntryColumn::Id column, const QVariant& value)
    {
        const int role = EntryColumn::kind(column) == EntryColumn::Kind::CheckBox ? Qt::CheckStateRole : Qt::EditRole;
        return model()->setData(at(row, column), value, role);
    }
    QStyleOptionViewItem option() const
    {
        QStyleOptionViewItem option;
        option.initFrom(vc->tableView()->viewport());
        option.rect = QRect(0, 0, 70, 20);
        option.widget = vc->tableView();
        return option;
    }
    QAbstractItemDelegate* delegate(EntryColumn::Id column) const
    {
        return vc->tableView()->itemDelegateForColumn(column);
    }
    // The cell's editor as the table opens it, filled from the cell.
    template <class Editor> std::unique_ptr<Editor> openEditor(int row, EntryColumn::Id column) const
    {
        const QModelIndex index = at(row, column);
        std::unique_ptr<Editor> editor(
            qobject_cast<Editor*>(delegate(column)->createEditor(vc->tableView()->viewport(), option(), index)));
        if (editor)
            delegate(column)->setEditorData(editor.get(), index);
        return editor;
    }
    // A click in the middle of a check-box cell.
    bool clickCheckBox(int row, EntryColumn::Id column)
    {
        const QPointF centre = QRectF(CheckBoxDelegate::indicatorRect(option())).center();
        QMouseEvent press(QEvent::MouseButtonPress, centre, centre, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QMouseEvent release(QEvent::MouseButtonRelease, centre, centre, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        delegate(column)->editorEvent(&press, model(), option(), at(row, column));
        return delegate(column)->editorEvent(&release, model(), option(), at(row, column));
    }
    DetailViewController* detail() const { return split->detailViewController(); }

    InMemoryUserDefaults defaults;
    std::unique_ptr<SplitViewController> split;
    ViewController* vc = nullptr;
    EinnahmeList entries;
    std::unique_ptr<QSignalSpy> changes;
    SoundRecorder sounds;
    DiagnosticRecorder diagnostics;
};

} // namespace

TEST_F(CellEditing, GrossAmountMustBePositiveAndBelongToAnEntryWithoutSplitBookings)
{
    vc->tableView()->selectRow(0);

    EXPECT_TRUE(edit(0, EntryColumn::Brutto, QStringLiteral("12,50")));
    EXPECT_EQ(entries[0]->brutto(), 12.5f);
    EXPECT_TRUE(edit(0, EntryColumn::Brutto, QStringLiteral("7.25")));
    EXPECT_EQ(entries[0]->brutto(), 7.25f);
    EXPECT_EQ(changes->count(), 2);
    EXPECT_TRUE(sounds.lines.empty());
    // Each text edit writes one line, a refused one too (before it is refused).
    EXPECT_EQ(diagnostics.lines,
        std::vector<std::string>({ "Row:  0 , Column:  5  Inhalt:  12,50", "Row:  0 , Column:  5  Inhalt:  7.25" }));

    // Refused: not greater than 0, or no number at all (reads as 0).
    for (const char* text : { "0", "-3", "0,00", "abc" }) {
        EXPECT_FALSE(edit(0, EntryColumn::Brutto, QString::fromLatin1(text))) << text;
        EXPECT_EQ(entries[0]->brutto(), 7.25f) << text;
        EXPECT_EQ(model()->data(at(0, EntryColumn::Brutto)).toString(), "7,25") << text;
    }
    EXPECT_EQ(sounds.lines, std::vector<std::string>(4, "Basso"));
    EXPECT_EQ(changes->count(), 2);

    // An entry with split bookings refuses every gross amount.
    entries[1]->setChildTransactions({ Einnahme::make("Teil", "", 1.0f, 19.0f) });
    EXPECT_FALSE(edit(1, EntryColumn::Brutto, QStringLiteral("50")));
    EXPECT_EQ(entries[1]->brutto(), 20.0f);
    EXPECT_EQ(sounds.lines.size(), 5u);
    EXPECT_EQ(changes->count(), 2);
    ASSERT_EQ(diagnostics.lines.size(), 7u);
    EXPECT_EQ(diagnostics.lines[3], "Row:  0 , Column:  5  Inhalt:  -3");
    EXPECT_EQ(diagnostics.lines[6], "Row:  1 , Column:  5  Inhalt:  50");
}

TEST_F(CellEditing, RateAndTextsAreStoredUnchecked)
{
    vc->tableView()->selectRow(2);
    EXPECT_TRUE(edit(1, EntryColumn::Steuer, QStringLiteral("-7")));
    EXPECT_EQ(entries[1]->steuersatz(), -7.0f);
    EXPECT_TRUE(edit(1, EntryColumn::Steuer, QStringLiteral("7,5")));
    EXPECT_EQ(entries[1]->steuersatz(), 7.5f);
    EXPECT_TRUE(edit(1, EntryColumn::Steuer, QStringLiteral("keine")));
    EXPECT_EQ(entries[1]->steuersatz(), 0.0f);
    // The derived net amount shows the new rate at once: 20 at 0 %.
    EXPECT_EQ(model()->data(at(1, EntryColumn::Netto)).toString(), "20,00");

    EXPECT_TRUE(edit(1, EntryColumn::Name, QStringLiteral("Miete Mai")));
    EXPECT_TRUE(edit(1, EntryColumn::Rechnungsnummer, QStringLiteral("R 1")));
    EXPECT_TRUE(edit(1, EntryColumn::Steuernummer, QStringLiteral("")));
    EXPECT_TRUE(edit(1, EntryColumn::Leistungsart, QStringLiteral("Büro")));
    EXPECT_EQ(entries[1]->name(), "Miete Mai");
    EXPECT_EQ(entries[1]->rechnungsnummer(), "R 1");
    EXPECT_EQ(entries[1]->leistungsart(), "Büro");
    EXPECT_TRUE(sounds.lines.empty());
    EXPECT_EQ(changes->count(), 7);
    // The change is seen through the complete list: it is the same entry.
    EXPECT_EQ(vc->backupEinnahmen()[1]->name(), "Miete Mai");
    EXPECT_EQ(diagnostics.lines[3], "Row:  1 , Column:  0  Inhalt:  Miete Mai");

    // The line edit of a cell starts with the cell's text and hands back what was typed.
    auto lineEdit = openEditor<QLineEdit>(2, EntryColumn::Brutto);
    ASSERT_NE(lineEdit, nullptr);
    EXPECT_EQ(lineEdit->text(), "30,00");
    lineEdit->setText(QStringLiteral("31,5"));
    delegate(EntryColumn::Brutto)->setModelData(lineEdit.get(), model(), at(2, EntryColumn::Brutto));
    EXPECT_EQ(entries[2]->brutto(), 31.5f);
    // Taking an amount with more than two decimals over unchanged keeps it exact.
    entries[2]->setBrutto(12.345f);
    lineEdit = openEditor<QLineEdit>(2, EntryColumn::Brutto);
    EXPECT_EQ(lineEdit->text(), "12,345");
    delegate(EntryColumn::Brutto)->setModelData(lineEdit.get(), model(), at(2, EntryColumn::Brutto));
    EXPECT_EQ(entries[2]->brutto(), 12.345f);
}

// The flags' exclusivity is the entry's rule (tested with the model); here the
// clicks reach the entry and the other box shows the cleared flag at once.
TEST_F(CellEditing, SwitchingOneFlagOnSwitchesTheOtherOff)
{
    vc->tableView()->selectRow(0);
    EXPECT_TRUE(clickCheckBox(0, EntryColumn::Innergem));
    EXPECT_TRUE(entries[0]->innergemeinschaftlicherErwerb());
    EXPECT_TRUE(clickCheckBox(0, EntryColumn::NonEU));
    EXPECT_TRUE(entries[0]->isNonEU());
    EXPECT_FALSE(entries[0]->innergemeinschaftlicherErwerb());
    // The other box shows the cleared flag at once.
    EXPECT_EQ(model()->data(at(0, EntryColumn::Innergem), Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_TRUE(clickCheckBox(0, EntryColumn::NonEU)); // a second click switches off
    EXPECT_FALSE(entries[0]->isNonEU());
    EXPECT_EQ(changes->count(), 3);

    // The split-booking box does not react to a click.
    EXPECT_FALSE(clickCheckBox(0, EntryColumn::Splitbuchung));
    EXPECT_TRUE(entries[0]->childTransactions().empty());
    EXPECT_EQ(changes->count(), 3);
    EXPECT_TRUE(diagnostics.lines.empty()); // only text edits write a line
}

TEST_F(CellEditing, PopUpsStoreTheChosenKindAndCategory)
{
    vc->tableView()->selectRow(0);
    auto choose = [&](EntryColumn::Id column, int row, int item) {
        auto combo = openEditor<QComboBox>(row, column);
        EXPECT_NE(combo, nullptr);
        QStringList items;
        for (int i = 0; combo && i < combo->count(); ++i)
            items << combo->itemText(i);
        if (combo) {
            combo->setCurrentIndex(item);
            delegate(column)->setModelData(combo.get(), model(), at(row, column));
        }
        return items;
    };

    EXPECT_EQ(choose(EntryColumn::Art, 1, 1), QStringList({ "Einnahme", "Ausgabe" }));
    EXPECT_EQ(entries[1]->art(), "Ausgabe");
    choose(EntryColumn::Art, 1, 0);
    EXPECT_EQ(entries[1]->art(), "Einnahme");
    EXPECT_EQ(choose(EntryColumn::Kategorie, 2, 1), QStringList({ "1000 Kasse Kasse ", "1200 Bank Bank " }));
    EXPECT_EQ(entries[2]->kategorie(), "1200 Bank Bank ");
    EXPECT_EQ(changes->count(), 3);

    // Closing a pop-up on the item it showed, or without any item, changes nothing.
    choose(EntryColumn::Kategorie, 2, 1);
    choose(EntryColumn::Kategorie, 0, -1);
    EXPECT_EQ(entries[2]->kategorie(), "1200 Bank Bank ");
    EXPECT_EQ(entries[0]->kategorie(), "");
    EXPECT_EQ(changes->count(), 3);
    EXPECT_TRUE(diagnostics.lines.empty()); // only text edits write a line
}

TEST_F(CellEditing, TheDateFieldStoresTheChosenLocalDateAndTime)
{
    vc->tableView()->selectRow(0);
    auto* delegate = this->delegate(EntryColumn::Date);
    const QModelIndex index = at(0, EntryColumn::Date);
    auto field = openEditor<QDateTimeEdit>(0, EntryColumn::Date);
    ASSERT_NE(field, nullptr);
    delegate->setModelData(field.get(), model(), index); // unchanged: nothing happens
    EXPECT_EQ(changes->count(), 0);

    field->setDateTime(QDateTime(QDate(2018, 3, 4), QTime(5, 6)));
    delegate->setModelData(field.get(), model(), index);
    EXPECT_EQ(entries[0]->datum(), 541829160.0); // 2018-03-04 05:06 in Berlin
    EXPECT_EQ(model()->data(index).toString(), "04.03.2018 05:06");
    EXPECT_EQ(changes->count(), 1);
    EXPECT_TRUE(diagnostics.lines.empty()); // only text edits write a line
}

TEST_F(CellEditing, TheDocumentIsMarkedChangedOnlyWhileARowIsSelected)
{
    // Nothing selected: the entry changes, the document does not hear of it.
    vc->tableView()->clearSelection();
    PostCounter posted(kTableViewUpdated);
    EXPECT_TRUE(clickCheckBox(1, EntryColumn::NonEU));
    EXPECT_TRUE(entries[1]->isNonEU());
    EXPECT_TRUE(edit(1, EntryColumn::Name, QStringLiteral("Ohne Auswahl")));
    EXPECT_EQ(entries[1]->name(), "Ohne Auswahl");
    EXPECT_EQ(changes->count(), 0);
    EXPECT_EQ(posted.count(), 0u);

    // Editing another row than the selected one: the detail panel shows the
    // selected row's entry, and the document is marked changed.
    vc->tableView()->selectRow(0);
    detail()->setSelectedEinnahme(nullptr);
    EXPECT_TRUE(edit(2, EntryColumn::Brutto, QStringLiteral("99")));
    EXPECT_EQ(entries[2]->brutto(), 99.0f);
    EXPECT_EQ(detail()->selectedEinnahme(), entries[0]);
    EXPECT_EQ(changes->count(), 1);
}
