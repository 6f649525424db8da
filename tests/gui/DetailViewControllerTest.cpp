#include "editors/DetailBox.h"
#include "editors/DetailViewController.h"
#include "model/Kategorien.h"
#include "platform/NotificationCenter.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QDir>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cstdlib>

using namespace saldo;
using saldo::gui::DetailViewController;

namespace {

const std::vector<std::string> kList = {"1000 Kasse Kasse ", "1200 Bank Bank ", "8400 Erlöse 19% USt Gesch. "};

std::uint64_t detailPosts()
{
    return NotificationCenter::defaultCenter().postCount(saldo::kDetailViewUpdated);
}

class DetailViewControllerTest : public ::testing::Test {
protected:
    DetailViewControllerTest()
    {
        defaults.setStringArray(saldo::Kategorien::kKey, kList);
        panel = std::make_unique<DetailViewController>(defaults);
        changes = std::make_unique<QSignalSpy>(panel.get(), &DetailViewController::changeDone);
    }

    // Selects the entry as the entry list does and lets both fades run to their end.
    void show(const EinnahmePtr& entry)
    {
        panel->setSelectedEinnahme(entry);
        panel->updateDetailView();
        panel->finishAnimationsForTesting();
    }

    static EinnahmePtr entry(const std::string& art, float brutto = 119.0f, float steuersatz = 19.0f)
    {
        auto e = Einnahme::make("Miete", "1200 Bank Bank ", brutto, steuersatz);
        e->setArt(art);
        return e;
    }

    static void expectColor(const QColor& actual, double r, double g, double b)
    {
        EXPECT_NEAR(actual.redF(), r, 1.0 / 255) << actual.name().toStdString();
        EXPECT_NEAR(actual.greenF(), g, 1.0 / 255) << actual.name().toStdString();
        EXPECT_NEAR(actual.blueF(), b, 1.0 / 255) << actual.name().toStdString();
    }

    InMemoryUserDefaults defaults;
    std::unique_ptr<DetailViewController> panel;
    std::unique_ptr<QSignalSpy> changes;
};

TEST_F(DetailViewControllerTest, BoxColoursFollowTheKindAndTheBoxShowsOnlyWithAnEntry)
{
    EXPECT_EQ(panel->boxOpacity(), 0.0);  // hidden before the first refresh

    show(entry("Ausgabe"));
    EXPECT_EQ(panel->boxOpacity(), 1.0);
    expectColor(panel->box()->fillColor(), 1.0, 0.5, 0.0);
    expectColor(panel->box()->borderColor(), 1.0, 0.0, 0.0);

    for (const char* art : {"Einnahme", "einnahme", ""}) {
        SCOPED_TRACE(art);
        show(entry(art));
        expectColor(panel->box()->fillColor(), 0.0, 1.0, 0.0);
        expectColor(panel->box()->borderColor(), 0.0, 0.0, 0.0);
    }

    // No entry: hidden at once, without waiting for a fade, and no fade brings it back.
    panel->setSelectedEinnahme(nullptr);
    panel->updateDetailView();
    EXPECT_EQ(panel->boxOpacity(), 0.0);
    EXPECT_FALSE(panel->box()->isEnabled());
    panel->finishAnimationsForTesting();
    EXPECT_EQ(panel->boxOpacity(), 0.0);
}

TEST_F(DetailViewControllerTest, RefreshFadesOutThenFillsFromTheEntrySelectedAtThatMoment)
{
    auto expense = entry("Ausgabe");
    auto income = Einnahme::make("Honorar", "1000 Kasse Kasse ", 50.0f, 0.0f);
    show(income);
    panel->show();

    panel->setSelectedEinnahme(expense);
    panel->updateDetailView();
    // The fade-out is under way: the form still shows the earlier entry.
    EXPECT_EQ(panel->nameField()->text(), "Honorar");
    expectColor(panel->box()->fillColor(), 0.0, 1.0, 0.0);

    // The selection moves on before the fade-out completes: the colours are
    // those of the refresh's start, the values those of the entry selected now.
    panel->setSelectedEinnahme(income);
    panel->finishAnimationsForTesting();
    EXPECT_EQ(panel->nameField()->text(), "Honorar");
    EXPECT_EQ(panel->artPopUp()->currentIndex(), 0);
    expectColor(panel->box()->fillColor(), 1.0, 0.5, 0.0);
    EXPECT_EQ(changes->count(), 0);
}

TEST_F(DetailViewControllerTest, FillShowsEveryFieldAndWritesNothingBack)
{
    auto e = Einnahme::make("Büromaterial", "8400 Erlöse 19% USt Gesch. ", 12.345f, 7.0f);
    e->setArt("Ausgabe");
    e->setRechnungsnummer("RE-17");
    e->setSteuernummer("DE123");
    e->setLeistungsart("Lieferung");
    e->setIsNonEU(true);
    const double datum = 785000000.123456789;  // 2025-11-16, with a fraction of a millisecond
    e->setDatum(datum);
    const auto before = detailPosts();

    show(e);
    for (auto [field, text] : {std::pair{panel->nameField(), "Büromaterial"}, {panel->rechnungsnummerField(), "RE-17"},
             {panel->steuernummerField(), "DE123"}, {panel->leistungsartField(), "Lieferung"},
             {panel->bruttoField(), "12,345"}, {panel->steuersatzField(), "7,00"}})
        EXPECT_EQ(field->text(), QString::fromUtf8(text));
    EXPECT_EQ(panel->kategoriePopUp()->currentText(), "8400 Erlöse 19% USt Gesch. ");
    EXPECT_EQ(panel->artPopUp()->currentIndex(), 1);
    EXPECT_EQ(panel->artPopUp()->currentData().toString(), "Ausgabe");
    EXPECT_FALSE(panel->innergemCheckBox()->isChecked());
    EXPECT_TRUE(panel->nonEUCheckBox()->isChecked());
    // 785000000 s after 2001-01-01 UTC is 2025-11-16 15:33:20 UTC, 16:33:20 in Berlin.
    EXPECT_EQ(panel->datumPicker()->dateTime().toString("yyyy-MM-dd HH:mm:ss"), "2025-11-16 16:33:20");

    // Filling the controls is no edit (the values are checked after the next one).
    EXPECT_EQ(changes->count(), 0);
    EXPECT_EQ(detailPosts(), before);
    EXPECT_EQ(e->art(), "Ausgabe");

    // A text edit takes the form over but leaves the untouched date to the bit,
    // and shows-then-reads an amount without changing it.
    panel->textFieldEdited();
    EXPECT_EQ(e->datum(), datum);
    EXPECT_EQ(e->brutto(), 12.345f);
    EXPECT_EQ(e->steuersatz(), 7.0f);
    EXPECT_EQ(e->kategorie(), "8400 Erlöse 19% USt Gesch. ");
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(detailPosts(), before + 1);
}

// The net amount itself is the entry's (tested with the model): shown to the cent.
TEST_F(DetailViewControllerTest, NetAmountIsShownToTheCent)
{
    show(entry("Einnahme", 119.0f, 19.0f));
    EXPECT_EQ(panel->nettoField()->text(), "100,00");  // 119 / 1.19
    EXPECT_TRUE(panel->nettoField()->isReadOnly());
}

TEST_F(DetailViewControllerTest, NameOfFewerThanThreeCharactersVoidsTheWholeTextEdit)
{
    auto e = entry("Einnahme", 10.0f, 19.0f);
    show(e);
    const auto before = detailPosts();

    panel->rechnungsnummerField()->setText("R-1");
    panel->steuernummerField()->setText("ST-2");
    panel->leistungsartField()->setText("Beratung");
    panel->kategoriePopUp()->setCurrentIndex(0);
    panel->bruttoField()->setText("12,50");
    panel->steuersatzField()->setText("7");

    // Two user-perceived characters: "Ab", and "A" + "o" + combining diaeresis.
    for (const QString& shortName : {QString("Ab"), QString::fromUtf8("Ao\u0308")}) {
        panel->nameField()->setText(shortName);
        panel->textFieldEdited();
        EXPECT_EQ(e->name(), "Miete");
        EXPECT_EQ(e->rechnungsnummer(), "");
        EXPECT_EQ(e->brutto(), 10.0f);
        EXPECT_EQ(changes->count(), 0);
        EXPECT_EQ(detailPosts(), before);
    }

    panel->nameField()->setText("Abc");
    panel->textFieldEdited();
    EXPECT_EQ(e->name(), "Abc");
    EXPECT_EQ(e->rechnungsnummer(), "R-1");
    EXPECT_EQ(e->steuernummer(), "ST-2");
    EXPECT_EQ(e->leistungsart(), "Beratung");
    EXPECT_EQ(e->kategorie(), "1000 Kasse Kasse ");
    EXPECT_EQ(e->brutto(), 12.5f);
    EXPECT_EQ(e->steuersatz(), 7.0f);
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(detailPosts(), before + 1);

    // Three characters of which one is composed: accepted.
    panel->nameField()->setText(QString::fromUtf8("Ao\u0308x"));
    panel->textFieldEdited();
    EXPECT_EQ(e->name(), "Ao\u0308x");
}

TEST_F(DetailViewControllerTest, AmountsAreReadWithCommaOrPointAndBadOnesKeepTheOldValue)
{
    auto e = entry("Einnahme", 12.5f, 19.0f);
    show(e);
    const auto before = detailPosts();

    panel->leistungsartField()->setText("Wartung");
    panel->bruttoField()->setText("-5");
    panel->textFieldEdited();
    EXPECT_EQ(e->brutto(), 12.5f);  // refused
    EXPECT_EQ(e->leistungsart(), "Wartung");  // the rest is taken over
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(detailPosts(), before + 1);

    panel->bruttoField()->setText("1.234,50");
    panel->steuersatzField()->setText("5.5");
    panel->textFieldEdited();
    EXPECT_EQ(e->brutto(), 1234.5f);
    EXPECT_EQ(e->steuersatz(), 5.5f);

    panel->bruttoField()->setText("zwölf");
    panel->steuersatzField()->setText("-3,5");  // a rate is stored unchecked
    panel->textFieldEdited();
    EXPECT_EQ(e->brutto(), 1234.5f);
    EXPECT_EQ(e->steuersatz(), -3.5f);

    panel->bruttoField()->setText("0");
    panel->textFieldEdited();
    EXPECT_EQ(e->brutto(), 0.0f);
}

TEST_F(DetailViewControllerTest, ReturnCommitsOnceAndLeavingAnUnchangedFieldCommitsNothing)
{
    auto e = entry("Einnahme");
    show(e);
    auto leave = [](QLineEdit* field) {
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(field, &out);
    };

    QTest::keyClicks(panel->nameField(), "X");
    QTest::keyClick(panel->nameField(), Qt::Key_Return);
    EXPECT_EQ(e->name(), "MieteX");
    EXPECT_EQ(changes->count(), 1);
    leave(panel->nameField());  // the Return already took the form over
    EXPECT_EQ(changes->count(), 1);

    // Tabbing through untouched fields is no edit.
    leave(panel->rechnungsnummerField());
    leave(panel->steuernummerField());
    EXPECT_EQ(changes->count(), 1);

    // Leaving a field the user typed in takes the form over.
    QTest::keyClicks(panel->steuernummerField(), "77");
    leave(panel->steuernummerField());
    EXPECT_EQ(e->steuernummer(), "77");
    EXPECT_EQ(changes->count(), 2);
}

TEST_F(DetailViewControllerTest, CategoryOutsideTheListIsKeptAndTheListIsReadAtEachRefresh)
{
    auto e = Einnahme::make("Altlast", "0815 Gibt es nicht Gesch. ", 10.0f, 19.0f);
    show(e);
    EXPECT_EQ(panel->kategoriePopUp()->count(), 3);
    EXPECT_EQ(panel->kategoriePopUp()->currentIndex(), -1);
    EXPECT_EQ(panel->kategoriePopUp()->currentText(), "");
    panel->textFieldEdited();
    EXPECT_EQ(e->kategorie(), "0815 Gibt es nicht Gesch. ");

    // The pop-up without a chosen item does nothing at all.
    const auto before = detailPosts();
    panel->popUpButtonChangedSelection(panel->kategoriePopUp());
    EXPECT_EQ(e->kategorie(), "0815 Gibt es nicht Gesch. ");
    EXPECT_EQ(changes->count(), 1);
    EXPECT_EQ(detailPosts(), before);

    // A changed list shows at the next refresh, and then holds the category.
    defaults.setStringArray(saldo::Kategorien::kKey, {"0815 Gibt es nicht Gesch. ", "9000 Neu Gesch. "});
    EXPECT_EQ(panel->kategoriePopUp()->count(), 3);
    show(e);
    ASSERT_EQ(panel->kategoriePopUp()->count(), 2);
    EXPECT_EQ(panel->kategoriePopUp()->itemText(1), "9000 Neu Gesch. ");
    EXPECT_EQ(panel->kategoriePopUp()->currentIndex(), 0);

    // No list stored, or something else than a list of strings: the default chart.
    const auto chart = saldo::Kategorien::defaultKategorien();
    defaults.setRawValue(saldo::Kategorien::kKey, {.isArray = false, .elements = {}});
    show(e);
    EXPECT_EQ(panel->kategoriePopUp()->count(), static_cast<int>(chart.size()));
    defaults.remove(saldo::Kategorien::kKey);
    show(e);
    ASSERT_EQ(panel->kategoriePopUp()->count(), static_cast<int>(chart.size()));
    EXPECT_EQ(panel->kategoriePopUp()->itemText(6).toStdString(), chart[6]);
    EXPECT_EQ(e->kategorie(), "0815 Gibt es nicht Gesch. ");
}

TEST_F(DetailViewControllerTest, PopUpsStoreTheChosenItem)
{
    auto e = entry("Einnahme");
    show(e);
    const auto before = detailPosts();

    panel->artPopUp()->setCurrentIndex(1);
    panel->popUpButtonChangedSelection(panel->artPopUp());
    EXPECT_EQ(e->art(), "Ausgabe");
    panel->artPopUp()->setCurrentIndex(0);
    panel->popUpButtonChangedSelection(panel->artPopUp());
    EXPECT_EQ(e->art(), "Einnahme");

    panel->kategoriePopUp()->setCurrentIndex(2);
    panel->popUpButtonChangedSelection(panel->kategoriePopUp());
    EXPECT_EQ(e->kategorie(), "8400 Erlöse 19% USt Gesch. ");
    EXPECT_EQ(changes->count(), 3);
    EXPECT_EQ(detailPosts(), before + 3);

    // The user's choice through the widget's own signal reaches the entry too.
    emit panel->artPopUp()->activated(1);
    EXPECT_EQ(e->art(), "Einnahme");  // index 0 is still current: activated reports, the index decides
    panel->artPopUp()->setCurrentIndex(1);
    EXPECT_EQ(e->art(), "Einnahme");  // a programmatic index change is no edit
    emit panel->artPopUp()->activated(1);
    EXPECT_EQ(e->art(), "Ausgabe");
}

// The flags' exclusivity is the entry's rule (tested with the model); here the
// boxes reach the entry, and the other box shows the cleared flag when refreshed.
TEST_F(DetailViewControllerTest, CheckBoxesKeepTheFlagsExclusive)
{
    auto e = entry("Ausgabe");
    e->setIsNonEU(true);
    show(e);
    const auto before = detailPosts();

    panel->innergemCheckBox()->click();  // a user's click: on
    EXPECT_TRUE(e->innergemeinschaftlicherErwerb());
    EXPECT_FALSE(e->isNonEU());
    // The other box shows the cleared flag only at the next refresh.
    EXPECT_TRUE(panel->nonEUCheckBox()->isChecked());
    show(e);
    EXPECT_FALSE(panel->nonEUCheckBox()->isChecked());

    panel->nonEUCheckBox()->click();  // on
    EXPECT_TRUE(e->isNonEU());
    EXPECT_FALSE(e->innergemeinschaftlicherErwerb());
    panel->nonEUCheckBox()->click();  // off
    EXPECT_FALSE(e->isNonEU());
    EXPECT_FALSE(e->innergemeinschaftlicherErwerb());
    EXPECT_EQ(changes->count(), 3);
    EXPECT_EQ(detailPosts(), before + 3);
}

TEST_F(DetailViewControllerTest, EditsWithoutAnEntryStoreNothingButStillAnnounce)
{
    auto e = entry("Einnahme");
    e->setDatum(700000000.25);
    show(e);

    const QDateTime chosen = QDateTime(QDate(2024, 3, 1), QTime(9, 30, 15), Qt::LocalTime);
    panel->datumPicker()->setDateTime(chosen);  // as the picker reports a user's date
    // 2024-03-01 09:30:15 in Berlin is 08:30:15 UTC: 730974615 s after 2001-01-01.
    EXPECT_EQ(e->datum(), 730974615.0);
    EXPECT_EQ(changes->count(), 1);

    // No entry selected: nothing is stored, but the document is marked and the
    // tables are told.
    panel->setSelectedEinnahme(nullptr);
    panel->updateDetailView();
    const auto before = detailPosts();
    panel->datumPicker()->setDateTime(chosen.addDays(3));
    EXPECT_EQ(e->datum(), 730974615.0);
    EXPECT_EQ(changes->count(), 2);
    EXPECT_EQ(detailPosts(), before + 1);

    panel->nameField()->setText("Irgendwas");
    panel->textFieldEdited();
    EXPECT_EQ(e->name(), "Miete");
    EXPECT_EQ(changes->count(), 3);
    EXPECT_EQ(detailPosts(), before + 2);
}

// Writes the panel for an income and an expense entry as PNGs when
// SALDO_SCREENSHOT_DIR names a directory (the screenshots script sets it).
TEST_F(DetailViewControllerTest, ScreenshotsWhenAsked)
{
    const char* dir = std::getenv("SALDO_SCREENSHOT_DIR");
    if (!dir || !*dir)
        GTEST_SKIP() << "SALDO_SCREENSHOT_DIR not set";
    QDir().mkpath(QString::fromLocal8Bit(dir));
    defaults.setStringArray(saldo::Kategorien::kKey, saldo::Kategorien::defaultKategorien());

    auto income = Einnahme::make("Webdesign Praxis Dr. Keller", "8400 Erlöse 19% Gesch. ", 1190.0f, 19.0f);
    income->setRechnungsnummer("2025-041");
    income->setLeistungsart("Dienstleistung");
    income->setDatum(785000000.0);
    auto expense = Einnahme::make("Druckerpatronen", "4930 Bürobedarf Gesch. ", 59.5f, 19.0f);
    expense->setArt("Ausgabe");
    expense->setRechnungsnummer("A-99812");
    expense->setSteuernummer("DE811907980");
    expense->setInnergemeinschaftlicherErwerb(true);
    expense->setDatum(784000000.0);

    panel->resize(620, 330);
    panel->show();
    for (auto [e, file] : {std::pair{income, "detail-income.png"}, std::pair{expense, "detail-expense.png"}}) {
        show(e);
        const QString path = QDir(QString::fromLocal8Bit(dir)).filePath(QLatin1String(file));
        EXPECT_TRUE(panel->grab().save(path)) << path.toStdString();
    }
}

}  // namespace
