// The Anlage EÜR's window: it shows the core's figures for the chosen year,
// follows the ledger and the Kleinunternehmer setting, and lists the items
// behind a double-clicked line. What it shares with the VAT return's window
// (a double-clicked item selects its entry, Kopieren) is tested there.
#include "evaluation/EuerViewController.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/WindowActions.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsModel.h"
#include "evaluation/ListedItemsView.h"
#include "gui/support/LedgerFixtures.h"
#include "platform/Calendar.h"
#include "platform/UserDefaults.h"
#include "tax/EuerEvaluation.h"
#include "tax/EuerReport.h"
#include "tax/TaxSettings.h"

#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDate>
#include <QLabel>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace saldo::gui {
namespace {

class EuerViewControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        auto eu = testing::datedEntry("Lizenz Irland", "4930 Bürobedarf Gesch. ", kArtAusgabe, 100.0f, 19.0f);
        eu->setInnergemeinschaftlicherErwerb(true);
        document = std::make_unique<Document>(defaults);
        ASSERT_TRUE(document->readFromData(testing::encoded({
            testing::datedEntry("Verkauf", "8400 Erlöse 19% Gesch. ", kArtEinnahme, 119.0f, 19.0f),
            testing::datedEntry("Papier", "4930 Bürobedarf Gesch. ", kArtAusgabe, 59.5f, 19.0f),
            testing::datedEntry("Essen", "4650 Bewirtungskosten Gesch. ", kArtAusgabe, 100.0f, 19.0f),
            testing::datedEntry("Entnahme", "1800 Privatentnahmen ", kArtAusgabe, 1000.0f, 0.0f),
            testing::datedEntry("Gewerbesteuer", "4320 Gewerbesteuer Gesch. ", kArtAusgabe, 80.0f, 0.0f),
            testing::datedEntry("Laptop", "0480 Geschäftsausstattung ", kArtAusgabe, 952.0f, 19.0f),
            testing::datedEntry("Bank", "1200 Bank ", kArtEinnahme, 10.0f, 0.0f),
            testing::datedEntry("Kaputt", "8400 Erlöse 19% Gesch. ", kArtEinnahme, NAN, 19.0f),
            testing::datedEntry("Ohne Konto", "Sonstiges", kArtAusgabe, 11.9f, 19.0f),
            eu,
            testing::datedEntry("Vorjahr", "8400 Erlöse 19% Gesch. ", kArtEinnahme, 238.0f, 19.0f, 2024),
        })));
        document->makeWindowControllers();
        document->windowController()->show();
        document->windowController()->actions()->euerAction()->trigger();
        euer = document->windowController()->findChild<EuerViewController*>();
        ASSERT_NE(euer, nullptr);
        euer->worker().finish();
    }

    QStringList shownColumn(int column) const { return testing::formColumn(*euer->formModel(), column); }

    // The core's lines over the document's complete list: Zeile, Kz and
    // amount of each line that is not zero and of the sums (in bold); and
    // the lengths of the lists.
    void expectTheCoresFigures(int year, bool kleinunternehmer = false) const
    {
        const tax::EuerForm& form = *tax::EuerForm::forYear(year);
        const tax::EuerResult core = tax::EuerEvaluation::evaluate(document->backupEinnahmen(), form, kleinunternehmer);
        const auto line = [](auto zeile, auto kz, const QString& amount, bool bold) {
            return QStringLiteral("%1/%2 %3%4").arg(zeile).arg(kz).arg(amount, bold ? "*" : "");
        };
        QStringList expected, shown;
        for (std::size_t i = 0; i < form.lines().size(); ++i) {
            const tax::EuerLine& l = form.lines()[i];
            const bool sum = l.kennzahl == 159 || l.kennzahl == 199 || l.kennzahl == 290;
            if (core.cents[i] != 0 || sum)
                expected << line(
                    l.zeile, l.kennzahl, QString::fromStdString(tax::EuerReport::euros(core.cents[i])), sum);
        }
        for (const FormTableModel::Row& row : euer->formModel()->rows())
            shown << line(row.cells[0], row.cells[2], row.cells[3], row.bold);
        EXPECT_EQ(shown, expected);
        std::vector<std::size_t> lengths;
        for (const ListedItemsView* list : { euer->nichtZugeordnetView(), euer->nichtAbziehbarView(),
                 euer->anlagegutView(), euer->nichtTeilView(), euer->hinweiseView() })
            lengths.push_back(static_cast<std::size_t>(list->model()->rowCount()));
        EXPECT_EQ(lengths,
            (std::vector { core.nichtZugeordnet.size(), core.nichtAbziehbar.size(), core.anlagegut.size(),
                core.nichtTeil.size(), core.hinweise.size() }));
    }

    int rowOfZeile(int zeile) const { return static_cast<int>(shownColumn(0).indexOf(QString::number(zeile))); }

    InMemoryUserDefaults defaults;
    std::unique_ptr<Document> document;
    EuerViewController* euer = nullptr;
};

TEST_F(EuerViewControllerTest, ShowsTheCoresFiguresAndFollowsTheLedgerTheYearAndTheSetting)
{
    QAbstractItemModelTester formTester(euer->formModel());
    QAbstractItemModelTester listTester(euer->anlagegutView()->model());
    // Opened once per window: asking again brings the same one forward.
    document->windowController()->actions()->euerAction()->trigger();
    EXPECT_EQ(document->windowController()->findChildren<EuerViewController*>().size(), 1);

    // The ledger's years and this one; of them the latest with a form, 2025.
    EXPECT_EQ(euer->yearChooser()->count(), QDate::currentDate().year() > 2025 ? 3 : 2);
    EXPECT_EQ(euer->yearChooser()->currentText(), QStringLiteral("2025"));
    EXPECT_EQ(euer->year(), 2025);

    expectTheCoresFigures(2025);
    EXPECT_EQ(shownColumn(3).at(rowOfZeile(92)), QStringLiteral("-279,19"));
    EXPECT_EQ(shownColumn(1).at(rowOfZeile(63)), QStringLiteral("Bewirtungsaufwendungen (nicht abziehbar)"));
    EXPECT_EQ(euer->lists()->tabText(3), QStringLiteral("nicht Teil der EÜR (1)"));
    EXPECT_TRUE(euer->lists()->isTabVisible(4));
    // The asset at its amount without input tax; the broken amount as stored.
    EXPECT_EQ(euer->anlagegutView()->model()->index(0, ListedItemsModel::Betrag).data().toString(), "800,00");
    EXPECT_EQ(euer->nichtZugeordnetView()->model()->index(0, ListedItemsModel::Betrag).data().toString(), "nan");
    const tax::EuerForm& form2025 = *tax::EuerForm::forYear(2025);
    EXPECT_EQ(euer->notesLabel()->text().toStdString(),
        tax::EuerReport::reverseChargeNote(form2025) + "\n" + tax::EuerReport::correctionsNote(form2025) + "\n"
            + tax::EuerReport::geringwertigNote(form2025));

    // An edit and a deletion in the ledger.
    document->editEntry(document->backupEinnahmen()[1], [](Einnahme& e) { e.setBrutto(119.0f); });
    euer->worker().finish();
    expectTheCoresFigures(2025);
    const auto& shown = document->einnahmen();
    const auto reverseCharge = std::find_if(
        shown.begin(), shown.end(), [](const EinnahmePtr& e) { return e->innergemeinschaftlicherErwerb(); });
    document->deleteRows({ static_cast<std::size_t>(reverseCharge - shown.begin()) });
    euer->worker().finish();
    expectTheCoresFigures(2025);
    EXPECT_FALSE(euer->notesLabel()->text().contains(QStringLiteral("innergemeinschaftlichem")));

    // Another year, and one without a form.
    euer->yearChooser()->setCurrentIndex(euer->yearChooser()->findText(QStringLiteral("2024")));
    euer->worker().finish();
    EXPECT_EQ(euer->year(), 2024);
    expectTheCoresFigures(2024);
    EXPECT_EQ(shownColumn(3).at(0), QStringLiteral("200,00"));
    euer->setYear(2023);
    euer->worker().finish();
    EXPECT_EQ(euer->formModel()->rowCount(), 0);
    EXPECT_EQ(euer->taxationLabel()->text(), QString::fromStdString(tax::EuerForm::missingYearMessage(2023)));
    EXPECT_FALSE(euer->findChild<QWidget*>(QStringLiteral("kopieren"))->isEnabled());
    EXPECT_EQ(euer->yearChooser()->currentText(), QStringLiteral("2023"));

    // The Kleinunternehmer setting: income gross on Zeile 12.
    euer->setYear(2025);
    tax::TaxSettings::setKleinunternehmer(defaults, true);
    euer->worker().finish();
    expectTheCoresFigures(2025, true);
    EXPECT_EQ(shownColumn(0).at(0), QStringLiteral("12"));
}

TEST_F(EuerViewControllerTest, ADoubleClickListsTheLinesItemsWhichFollowTheLedger)
{
    // Zeile 57: the input tax of the paper, the meal and the asset.
    QTableView* form = euer->formView();
    euer->show();
    const int row = rowOfZeile(57);
    ASSERT_GE(row, 0);
    const QRect line = form->visualRect(euer->formModel()->index(row, 1));
    QTest::mouseClick(form->viewport(), Qt::LeftButton, {}, line.center());
    QTest::mouseDClick(form->viewport(), Qt::LeftButton, {}, line.center());
    euer->worker().finish();
    ListedItemsView* items = euer->lineItemsView();
    QAbstractItemModelTester itemsTester(items->model());
    ASSERT_EQ(euer->lists()->currentWidget(), items);
    EXPECT_EQ(euer->lists()->tabText(euer->lists()->currentIndex()), QStringLiteral("Zeile 57, Kz 185 (4)"));
    const auto core = tax::EuerEvaluation::itemsBehind(
        document->backupEinnahmen(), *tax::EuerForm::forYear(2025), false, *euer->lineOfRow(row));
    ASSERT_EQ(items->model()->rowCount(), static_cast<int>(core.size()));
    QStringList shares;
    for (int i = 0; i < items->model()->rowCount(); ++i)
        shares << items->model()->index(i, ListedItemsModel::Name).data().toString() + QLatin1Char('=')
                + items->model()->index(i, ListedItemsModel::Betrag).data().toString();
    EXPECT_EQ(shares, (QStringList { "Papier=9,50", "Essen=15,97", "Laptop=152,00", "Ohne Konto=1,90" }));

    // The list follows the ledger.
    document->editEntry(document->backupEinnahmen()[1], [](Einnahme& e) { e.setBrutto(119.0f); });
    euer->worker().finish();
    EXPECT_EQ(items->model()->index(0, ListedItemsModel::Betrag).data().toString(), QStringLiteral("19,00"));
}

} // namespace
} // namespace saldo::gui
