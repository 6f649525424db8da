// The DATEV export dialog driven as a person does, without exec(): it refuses
// while the preferences lack the numbers and notices when they arrive, the
// period and money account fields, the file name that follows the period,
// an existing file replaced only when confirmed, a failed write, and one file
// per year. The preferences page stores what it is given. What a batch holds
// is tested in tests/core.
#include "app/DatevExportDialog.h"
#include "app/DocumentWindow.h"
#include "app/WindowActions.h"
#include "exchange/DatevPeriod.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "settings/DatevPreferencesPage.h"
#include "settings/DatevSettings.h"
#include "settings/PreferencesViewController.h"

#include <QAction>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace saldo::gui {
namespace {

using namespace testing;

TEST(DatevExportDialogTest, RefusesWithoutTheNumbersThenWritesThePeriodAndShowsWhatItDid)
{
    InMemoryUserDefaults defaults;
    QTemporaryDir dir;
    ScriptedDialogs dialogs;
    auto document = openedDocument(defaults, dir.filePath(QStringLiteral("Firma.saldo")), 0);
    EinnahmeList entries = sampleEntries(4); // 1 January, 1 February, 4 March, 4 April 2026
    auto bad = Einnahme::make("Ohne Konto", "Sonstiges", 5.0f, 19.0f);
    bad->setDatum(entries[1]->datum());
    entries.push_back(bad);
    document->replaceAllEntries(entries);
    DocumentWindow* window = document->windowController();
    window->show();

    window->actions()->datevExportAction()->trigger();
    auto* dialog = window->findChild<DatevExportDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->missingSettings()->text(),
        QStringLiteral("Die Beraternummer und die Mandantennummer fehlen in den Einstellungen (DATEV)."));
    EXPECT_FALSE(dialog->exportButton()->isEnabled());
    EXPECT_FALSE(dialog->exportBatches());

    // The numbers arrive while the dialog is open; it looks again when it is activated.
    DatevSettings::storeBeraternummer(defaults, 29098);
    DatevSettings::storeMandantennummer(defaults, 55);
    QEvent activate(QEvent::WindowActivate);
    QApplication::sendEvent(dialog, &activate);
    EXPECT_EQ(dialog->missingSettings()->text(), QString());
    EXPECT_TRUE(dialog->exportButton()->isEnabled());

    // The year of the latest entry; the file follows the period.
    EXPECT_EQ(dialog->year()->value(), 2026);
    dialog->periodKind()->setCurrentIndex(DatevExportDialog::Quartal);
    EXPECT_EQ(dialog->file()->text(), dir.filePath(QStringLiteral("EXTF_Buchungsstapel_2026-Q1.csv")));
    const auto [from, to] = dialog->chosenDays();
    EXPECT_EQ(from.compact() + to.compact(), "2026010120260331");

    dialog->konto()->setEditText(QStringLiteral("12000 Zu lang"));
    EXPECT_FALSE(dialog->exportBatches());
    EXPECT_EQ(dialogs.errors.size(), 1);
    dialog->konto()->setEditText(QStringLiteral("1000 Kasse"));
    QTest::mouseClick(dialog->exportButton(), Qt::LeftButton);
    const QByteArray written = readBytes(dialog->file()->text());
    EXPECT_TRUE(written.contains(";29098;55;20260101;4;20260101;20260331;\"Firma\";"));
    EXPECT_TRUE(written.contains("\r\n119,00;\"S\";\"EUR\";;;;1000;8400;\"\";0101;"));
    EXPECT_EQ(written.count("\r\n"), 5);
    const QString summary = dialog->summary()->toPlainText();
    EXPECT_TRUE(summary.startsWith(QStringLiteral("3 Buchungen geschrieben, in 1 Datei:\n  ") + dialog->file()->text()))
        << summary.toStdString();
    EXPECT_TRUE(summary.contains(QStringLiteral("Soll 476,00 €, Haben 238,00 €"))) << summary.toStdString();
    EXPECT_TRUE(summary.contains(QStringLiteral("Nicht geschrieben (1):\n  Zeile 5: Kategorie ohne Kontonummer")));

    // The same file again: replaced only when the user agrees.
    dialog->month()->setCurrentIndex(2); // not shown for a quarter: changes nothing
    EXPECT_FALSE(dialog->exportBatches());
    EXPECT_TRUE(dialogs.asked.back().contains(QStringLiteral("EXTF_Buchungsstapel_2026-Q1.csv")));
    dialogs.confirmAnswers.push_back(true);
    EXPECT_TRUE(dialog->exportBatches());

    // A span over two years: a file per year beside the name, which stops
    // following the period once the user names a file.
    dialog->periodKind()->setCurrentIndex(DatevExportDialog::Zeitraum);
    dialog->from()->setDate(QDate(2025, 12, 1));
    dialog->to()->setDate(QDate(2026, 1, 31));
    EXPECT_TRUE(dialog->fileNote()->text().contains(QStringLiteral("2 Dateien: EXTF_Buchungsstapel-2025.csv, "
                                                                   "EXTF_Buchungsstapel-2026.csv")));
    dialogs.saveFileNames.push_back(dir.filePath(QStringLiteral("Stapel")));
    dialog->chooseFile();
    EXPECT_EQ(dialog->file()->text(), dir.filePath(QStringLiteral("Stapel.csv")));
    dialog->to()->setDate(QDate(2026, 2, 28));
    EXPECT_EQ(dialog->file()->text(), dir.filePath(QStringLiteral("Stapel.csv")));
    EXPECT_TRUE(dialog->exportBatches());
    EXPECT_TRUE(readBytes(dir.filePath(QStringLiteral("Stapel-2025.csv"))).contains(";20251201;20251231;"));
    EXPECT_EQ(readBytes(dir.filePath(QStringLiteral("Stapel-2026.csv"))).count("\r\n"), 4);

    // A file that cannot be written: an alert, and the summary of the last export stays.
    dialog->file()->setText(dir.filePath(QStringLiteral("fehlt/x.csv")));
    EXPECT_FALSE(dialog->exportBatches());
    EXPECT_EQ(dialogs.errors.size(), 2);
    EXPECT_TRUE(dialogs.errors.back().startsWith(QStringLiteral("Der DATEV-Export nach „x-2025.csv“")));
    EXPECT_TRUE(dialog->summary()->toPlainText().contains(QStringLiteral("Stapel-2026.csv")));
}

TEST(DatevExportDialogTest, ThePreferencesPageStoresNumbersInTheirRanges)
{
    InMemoryUserDefaults defaults;
    DatevSettings::storeMandantennummer(defaults, 12);
    PreferencesViewController preferences(defaults);
    auto* page = preferences.pages()->findChild<DatevPreferencesPage*>();
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(preferences.pages()->tabText(preferences.pages()->indexOf(page)), QStringLiteral("DATEV"));
    EXPECT_EQ(page->mandantennummer()->text(), QStringLiteral("12"));
    EXPECT_EQ(page->wirtschaftsjahrBeginn()->currentText(), QStringLiteral("Januar"));
    const int writes = defaults.writeCount();
    page->storeNumbers();
    EXPECT_EQ(defaults.writeCount(), writes) << "nothing the user did not change is written";

    QTest::keyClicks(page->beraternummer(), QStringLiteral("999"));
    emit page->beraternummer()->editingFinished();
    EXPECT_FALSE(DatevSettings::read(defaults).beraternummer);
    EXPECT_EQ(page->problem()->text(), QStringLiteral("Die Beraternummer liegt zwischen 1001 und 9999999."));
    page->beraternummer()->selectAll();
    QTest::keyClicks(page->beraternummer(), QStringLiteral("1234567"));
    page->mandantennummer()->clear();
    QTest::keyClicks(page->mandantennummer(), QStringLiteral("x")); // the field takes digits only
    page->mandantennummer()->setModified(true);
    page->wirtschaftsjahrBeginn()->setCurrentIndex(6);
    preferences.pages()->setCurrentWidget(page);
    preferences.show();
    preferences.close(); // hiding the page stores what was typed
    const DatevSettings settings = DatevSettings::read(defaults);
    EXPECT_EQ(settings.beraternummer, 1234567u);
    EXPECT_FALSE(settings.mandantennummer) << "an emptied field clears the number";
    EXPECT_EQ(settings.wirtschaftsjahrBeginn, 7);
    EXPECT_EQ(page->problem()->text(), QString());
}

} // namespace
} // namespace saldo::gui
