// The search field: its menu of modes, the placeholder as the mode, and what
// typing does to the table (the conditions themselves are the core's).
#include "entrylist/SearchFieldController.h"
#include "app/Document.h"
#include "entrylist/EntryTableModel.h"
#include "entrylist/ViewController.h"
#include "gui/support/Recorders.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;
using Names = std::vector<std::string>;

// The menu's item titles, each submenu's in brackets after its item.
std::string describe(const QMenu* menu)
{
    std::string text;
    for (const QAction* action : menu->actions()) {
        text += (text.empty() ? "" : ", ") + action->text().toStdString();
        if (action->menu())
            text += " [" + describe(action->menu()) + "]";
    }
    return text;
}

QAction* itemTitled(const QMenu* menu, const QString& title)
{
    for (QAction* action : menu->actions()) {
        if (action->text() == title)
            return action;
        if (action->menu())
            if (QAction* inner = itemTitled(action->menu(), title))
                return inner;
    }
    return nullptr;
}

TEST(SearchFieldControllerTest, TheMenuChoosesTheModeWhichTakesEffectWithTheNextText)
{
    InMemoryUserDefaults defaults;
    Document document(defaults);
    document.replaceAllEntries(namedEntries({ "Miete", "Strom", "Miete Mai" }));
    ViewController list(document, defaults);
    SearchFieldController* search = list.searchFieldController();
    QLineEdit* field = search->searchField();
    EXPECT_EQ(describe(search->searchMenu()),
        "Name, Kategorie, Art, Non EU, Innergemeinschaftlich, Brutto [Brutto >=, Brutto =, Brutto <=], "
        "Netto [Netto >=, Netto <=], Steuersatz [Steuersatz >=, Steuersatz =, Steuersatz <=], "
        "Datum [Datum >=, Datum =, Datum <=]");
    EXPECT_EQ(field->placeholderText(), "Name");
    QTest::keyClicks(field, "Miete");
    EXPECT_EQ(namesOf(document.einnahmen()), (Names { "Miete", "Miete Mai" }));

    PostCounter posted(kTableViewUpdated);
    QSignalSpy resets(document.model(), &QAbstractItemModel::modelReset);
    itemTitled(search->searchMenu(), QStringLiteral("Brutto >="))->trigger();
    itemTitled(search->searchMenu(), QStringLiteral("Datum"))->trigger(); // holds a submenu: chooses nothing
    EXPECT_EQ(field->placeholderText(), "Brutto >=");
    EXPECT_EQ(document.einnahmen().size(), 2u);
    // A number that cannot be read changes nothing, not even the table.
    field->setText(QStringLiteral("20,5"));
    EXPECT_EQ(posted.count(), 0u);
    EXPECT_EQ(resets.count(), 0);
    field->setText(QStringLiteral("20"));
    EXPECT_EQ(namesOf(document.einnahmen()), (Names { "Strom", "Miete Mai" }));

    // Escape empties the field and shows everything again.
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_TRUE(field->text().isEmpty());
    EXPECT_EQ(document.einnahmen(), document.backupEinnahmen());
}

} // namespace
} // namespace saldo::gui
