// The VAT return's window: it shows the core's figures for the chosen period,
// follows the ledger and the Kleinunternehmer setting, and a double-click on
// a listed item selects its entry in the ledger's table.
#include "evaluation/UstvaViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "core/support/TestSupport.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/ViewController.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsModel.h"
#include "evaluation/ListedItemsView.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/Calendar.h"
#include "platform/UserDefaults.h"
#include "settings/PreferencesViewController.h"
#include "tax/CentText.h"
#include "tax/TaxSettings.h"
#include "tax/UstvaText.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

class UstvaViewControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        document = std::make_unique<Document>(defaults);
        ASSERT_TRUE(document->readFromData(testing::encoded({
            testing::datedEntry("Verkauf", "8400 Erlöse 19% Gesch. ", kArtEinnahme, 119.0f, 19.0f, 2025, 3),
            testing::datedEntry("Buch", "8300 Erlöse 7% Gesch. ", kArtEinnahme, 10.0f, 7.0f, 2025, 3),
            testing::datedEntry("Papier", "4930 Bürobedarf Gesch. ", kArtAusgabe, 59.5f, 19.0f, 2025, 3),
            testing::datedEntry("Logo Kopenhagen", "8315 Erlöse EG 19% Gesch. ", kArtEinnahme, 1800.0f, 0.0f, 2025, 3),
            testing::datedEntry("Entnahme", "1800 Privatentnahmen ", kArtAusgabe, 300.0f, 0.0f, 2025, 3),
            testing::datedEntry("April", "8400 Erlöse 19% Gesch. ", kArtEinnahme, 1190.0f, 19.0f, 2025, 4),
        })));
        document->makeWindowControllers();
        document->windowController()->show();
        document->windowController()->actions()->ustvaAction()->trigger();
        ustva = document->windowController()->findChild<UstvaViewController*>();
        ASSERT_NE(ustva, nullptr);
        ustva->setPeriod(*tax::TaxPeriod::parse("2025-03"));
        ustva->worker().finish();
    }

    // The core's figures over the document's complete list.
    tax::UstvaResult coreFigures() const
    {
        const tax::TaxPeriod period = ustva->period();
        return tax::UstvaCalculation::calculate(
            document->backupEinnahmen(), period, *tax::UstvaForm::forYear(period.year()));
    }

    QStringList shownColumn(int column) const { return testing::formColumn(*ustva->formModel(), column); }

    InMemoryUserDefaults defaults;
    std::unique_ptr<Document> document;
    UstvaViewController* ustva = nullptr;
};

TEST_F(UstvaViewControllerTest, ShowsTheCoresFiguresAndFollowsTheLedger)
{
    QAbstractItemModelTester formTester(ustva->formModel());
    QAbstractItemModelTester listTester(ustva->nichtZugeordnetView()->model());
    // Opened once per window: asking again brings the same one forward.
    document->windowController()->actions()->ustvaAction()->trigger();
    EXPECT_EQ(document->windowController()->findChildren<UstvaViewController*>().size(), 1);

    const auto expect = [&] {
        const tax::UstvaResult core = coreFigures();
        QStringList kennzahlen, taxes;
        for (const tax::UstvaText::Row& row : tax::UstvaText::rows(core)) {
            kennzahlen << QString::fromStdString(row.kennzahl);
            taxes << QString::fromStdString(row.tax);
        }
        kennzahlen << QString() << QString();
        taxes << QString::fromStdString(tax::CentText::euros(core.bookedTax))
              << QString::fromStdString(tax::CentText::euros(core.differenceCents()));
        EXPECT_EQ(shownColumn(1), kennzahlen);
        EXPECT_EQ(shownColumn(4), taxes);
        EXPECT_EQ(ustva->nichtZugeordnetView()->model()->rowCount(), static_cast<int>(core.nichtZugeordnet.size()));
        EXPECT_EQ(ustva->nichtTeilView()->model()->rowCount(), static_cast<int>(core.nichtTeil.size()));
    };
    expect();
    EXPECT_EQ(shownColumn(1), (QStringList { "81", "86", "66", "83", "", "" }));
    EXPECT_EQ(shownColumn(4).at(3), QStringLiteral("10,13"));
    EXPECT_TRUE(ustva->formModel()->rows().at(3).bold);
    EXPECT_EQ(ustva->lists()->tabText(0), QStringLiteral("nicht zugeordnet (1)"));
    EXPECT_EQ(ustva->lists()->tabText(1), QStringLiteral("nicht Teil der Voranmeldung (1)"));
    EXPECT_TRUE(ustva->notesLabel()->text().contains(QStringLiteral("ganze Euro")));

    // An edit and a deletion in the ledger, and another period.
    const EinnahmePtr buch = document->backupEinnahmen()[1];
    document->editEntry(buch, [](Einnahme& e) { e.setSteuersatz(19.0f); });
    ustva->worker().finish();
    expect();
    document->deleteRows({ 2 });
    ustva->worker().finish();
    expect();
    EXPECT_EQ(shownColumn(1), (QStringList { "81", "83", "", "" }));
    ustva->periodChooser()->setCurrentIndex(ustva->periodChooser()->findText(QStringLiteral("2. Quartal")));
    ustva->worker().finish();
    EXPECT_EQ(ustva->period().text(), "2025-Q2");
    expect();
    EXPECT_EQ(shownColumn(3).at(0), QStringLiteral("1.000"));
}

TEST_F(UstvaViewControllerTest, ADoubleClickSelectsTheEntryInTheLedgersTable)
{
    ViewController* list = document->windowController()->splitViewController()->viewController();
    // A search that hides the entry: it is shown again to be selected.
    list->searchFieldController()->searchField()->setText(QStringLiteral("Verkauf"));
    ASSERT_EQ(document->einnahmen().size(), 1u);
    QTableView* table = ustva->nichtZugeordnetView()->tableView();
    ustva->show();
    const QRect cell = table->visualRect(table->model()->index(0, ListedItemsModel::Name));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell.center());
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell.center());
    ASSERT_NE(list->selectedEinnahme(), nullptr);
    EXPECT_EQ(list->selectedEinnahme()->name(), "Logo Kopenhagen");
    EXPECT_EQ(document->einnahmen().size(), 6u);
    EXPECT_TRUE(list->searchFieldController()->searchField()->text().isEmpty());
}

TEST_F(UstvaViewControllerTest, KleinunternehmerCopyAndPdf)
{
    // The setting on its page of the preferences: the window shows no form.
    PreferencesViewController preferences(defaults);
    auto* kleinunternehmer = preferences.pages()->findChild<QCheckBox*>(QStringLiteral("kleinunternehmer"));
    ASSERT_NE(kleinunternehmer, nullptr);
    kleinunternehmer->setChecked(true);
    EXPECT_EQ(defaults.boolValue(tax::TaxSettings::kKleinunternehmerKey), true);
    ustva->worker().finish();
    ASSERT_TRUE(ustva->kleinunternehmer());
    EXPECT_FALSE(ustva->ustva());
    EXPECT_EQ(shownColumn(0), (QStringList { "2024 (Vorjahr)", "2025" }));
    EXPECT_EQ(shownColumn(1), (QStringList { "0,00", "3.119,00" }));
    EXPECT_FALSE(ustva->periodChooser()->isEnabled());
    EXPECT_FALSE(ustva->lists()->isTabVisible(1));

    ustva->kopieren();
    EXPECT_EQ(QApplication::clipboard()->text(), ustva->formModel()->tabSeparated());
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith(QStringLiteral("Jahr\tEinnahmen brutto (€)\t")));

    kleinunternehmer->setChecked(false);
    ustva->worker().finish();
    ASSERT_TRUE(ustva->ustva());
    QTemporaryDir dir;
    testing::ScriptedDialogs dialogs;
    dialogs.saveFileNames.push_back(dir.filePath(QStringLiteral("Maerz")));
    ASSERT_TRUE(ustva->alsPdfSichern());
    const QString pdf = dir.filePath(QStringLiteral("Maerz.pdf"));
    EXPECT_TRUE(testing::readBytes(pdf).startsWith("%PDF"));
    const auto text = ::saldo::testing::runCommand(("pdftotext -layout '" + pdf + "' -").toStdString());
    EXPECT_NE(text.out.find("10,13"), std::string::npos) << text.out;
    EXPECT_NE(text.out.find("Logo Kopenhagen"), std::string::npos) << text.out;
}

} // namespace
} // namespace saldo::gui
