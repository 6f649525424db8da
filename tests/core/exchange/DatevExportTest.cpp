#include "exchange/DatevExport.h"
#include "exchange/Cp1252Text.h"
#include "exchange/DatevBooking.h"
#include "exchange/DatevExportSummary.h"
#include "exchange/DatevTaxKey.h"
#include "platform/Calendar.h"
#include "settings/DatevSettings.h"

#include "DatevBatchChecker.h"

#include <gtest/gtest.h>

#include <cmath>

namespace saldo {
namespace {

using testing::checkDatevBatch;

ReferenceSeconds at(int year, int month, int day, int hour = 12)
{
    return Calendar::fromLocalFields({ year, month, day, hour, 0, 0 });
}

EinnahmePtr item(const char* kategorie, float brutto, float rate = 19.0f, const char* art = kArtEinnahme,
    ReferenceSeconds datum = at(2025, 3, 4))
{
    auto entry = Einnahme::make("Posten", kategorie, brutto, rate);
    entry->setArt(art);
    entry->setDatum(datum);
    return entry;
}

DatevExportRequest request(LocalDay from = { 2025, 1, 1 }, LocalDay to = { 2025, 12, 31 }, int fiscalMonth = 1)
{
    return { .beraternummer = 1234567,
        .mandantennummer = 10001,
        .wirtschaftsjahrBeginn = fiscalMonth,
        .from = from,
        .to = to,
        .bezeichnung = "Musterfirma",
        .erzeugtAm = Calendar::fromLocalDateTime({ { 2026, 2, 3, 4, 5, 6 }, 789 }) };
}

TEST(DatevExport, HeaderFieldByField)
{
    DatevExportRequest asked = request({ 2025, 2, 10 }, { 2025, 3, 31 }, 4);
    asked.bezeichnung = "Müller \"Grafik\" und Söhne, Gestaltung & Satz";
    const DatevExportResult result = DatevExport::run({}, asked);
    ASSERT_EQ(result.files.size(), 1u);
    const testing::DatevBatchCheck check = checkDatevBatch(result.files[0].bytes);
    EXPECT_TRUE(check.findings.empty()) << check.findings.front();
    const std::vector<std::string> expected { "EXTF", "700", "21", "Buchungsstapel", "13", "20260203040506789", "",
        "RE", "", "", "1234567", "10001", "20240401", "4", "20250210", "20250331",
        "M\xFCller \"Grafik\" und S\xF6hne, Ges", "", "1", "0", "0", "EUR", "", "", "", "", "03", "", "", "", "" };
    EXPECT_EQ(check.header, expected);
}

TEST(DatevExport, TaxKeyByKindFlagsRateAndAccount)
{
    enum Flag { None, EU, NonEU };
    struct Case {
        const char* art;
        Flag flag;
        float rate;
        std::uint32_t account;
        const char* keyOrFault;
    };
    for (const Case& c : {
             Case { kArtEinnahme, None, 19.0f, 8200, "3" },
             Case { kArtEinnahme, NonEU, 7.0f, 8200, "2" }, // taxable at home all the same
             Case { kArtEinnahme, None, 19.0f, 8400, "" }, // automatic accounts carry their own key
             Case { kArtAusgabe, None, 7.0f, 8300, "" },
             Case { kArtEinnahme, EU, 0.0f, 8125, "" },
             Case { kArtAusgabe, None, 19.0f, 4930, "9" },
             Case { kArtAusgabe, None, 7.0f, 4940, "8" },
             Case { kArtAusgabe, EU, 19.0f, 3425, "19" }, // goods from the EU
             Case { kArtAusgabe, EU, 7.0f, 420, "18" },
             Case { kArtAusgabe, EU, 19.0f, 4930, "94" }, // a service from the EU
             Case { "ausgabe", NonEU, 19.0f, 3425, "94" }, // every kind but income is an expense
             Case { kArtEinnahme, None, 10.7f, 8200, "kein BU-Schluessel fuer 10,7 % (Einnahme)" },
             Case { kArtAusgabe, NonEU, 7.0f, 4930, "kein BU-Schluessel fuer 7 % (Reverse Charge)" },
             Case { kArtEinnahme, EU, 19.0f, 8200, "kein BU-Schluessel fuer 19 % (innergemeinschaftliche Lieferung)" },
             Case { kArtEinnahme, None, std::nanf(""), 8400, "Steuersatz ungueltig" },
             Case { kArtAusgabe, None, 19.005f, 4930, "Steuersatz ungueltig" },
         }) {
        auto entry = item("", 10.0f, c.rate, c.art);
        entry->setInnergemeinschaftlicherErwerb(c.flag == EU);
        entry->setIsNonEU(c.flag == NonEU);
        const DatevTaxKey::Outcome got = DatevTaxKey::of(*entry, c.account);
        EXPECT_EQ(got.fault.empty() ? got.key : got.fault, c.keyOrFault) << c.art << c.flag << ' ' << c.rate;
    }
}

TEST(DatevExport, AmountSideAndAccountOrWhyNot)
{
    struct Case {
        const char* kategorie;
        float brutto;
        const char* art;
        const char* booking; // "Umsatz side Gegenkonto", the fault, or "" for 0 cents
    };
    for (const Case& c :
        {
            Case { "8200 Erlöse Gesch. ", 1234.56f, kArtEinnahme, "1234,56 S 8200" },
            Case { "4930 Bürobedarf Gesch. ", 0.1f, kArtAusgabe, "0,10 H 4930" },
            Case { "8200 Erlöse Gesch. ", -5.0f, kArtEinnahme, "5,00 H 8200" }, // negative: the other side
            Case { "4930 Bürobedarf Gesch. ", -0.006f, kArtAusgabe, "0,01 S 4930" },
            Case { "0410 Geschäftsausstattung Gesch. ", 9999998976.0f, kArtAusgabe, "9999998976,00 H 0410" },
            Case { "8200 Erlöse Gesch. ", 0.004f, kArtEinnahme, "" },
            Case { "8200 Erlöse Gesch. ", std::nanf(""), kArtEinnahme, "Betrag ungueltig" },
            Case { "8200 Erlöse Gesch. ", 1e10f, kArtEinnahme, "Betrag zu gross" },
            Case { "8400Erlöse", 10.0f, kArtEinnahme, "Kategorie ohne Kontonummer" },
            Case { "10000 Debitor allgemein Ford ", 10.0f, kArtEinnahme, "Kategorie ist kein vierstelliges Sachkonto" },
            Case { "1200 Bank Bank ", 10.0f, kArtEinnahme, "Kategorie ist das Geldkonto" },
        }) {
        const DatevBookingOutcome made = DatevBooking::make(*item(c.kategorie, c.brutto, 19.0f, c.art), {}, "", 1200);
        std::string got = made.fault;
        if (made.booking) {
            DatevBooking::appendUmsatz(got, made.booking->umsatzCents);
            got += std::string(" ") + made.booking->side + ' ';
            DatevBooking::appendDigits(got, made.booking->gegenkonto, 4);
        }
        EXPECT_EQ(got, c.booking) << c.kategorie << ' ' << c.brutto;
    }
}

TEST(DatevExport, BelegfeldKeepsTheAllowedCharactersOnly)
{
    for (const auto& [rechnungsnummer, belegfeld] : std::vector<std::pair<const char*, const char*>> {
             { "$&%*+-/AZaz09", "$&%*+-/AZaz09" },
             { "RE 2025.001_a#b", "RE2025001ab" },
             { "Größe-Übel-Äß", "Groesse-Uebel-Aess" },
             { "Mu\xCC\x88ller", "Mueller" }, // u and a combining diaeresis
             { "Nº 12 – €5 日本\xFF", "N125" },
             { "123456789012345678901234567890123456789", "123456789012345678901234567890123456" },
             { "12345678901234567890123456789012345ß", "12345678901234567890123456789012345s" },
         })
        EXPECT_EQ(DatevBooking::belegfeldOf(rechnungsnummer), belegfeld) << rechnungsnummer;
}

TEST(DatevExport, TextsInWindows1252)
{
    struct Case {
        const char* utf8;
        std::size_t max;
        const char* bytes;
        std::size_t replaced;
    };
    for (const Case& c : {
             Case { "äöüß€ÄÖÜ", 60, "\xE4\xF6\xFC\xDF\x80\xC4\xD6\xDC", 0 },
             Case { "A\xCC\x88rger \xE2\x80\x9Ezitiert\xE2\x80\x9C", 60, "\xC4rger \x84zitiert\x93", 0 },
             Case { "日本 Ωmega 🙂", 60, "?? ?mega ?", 4 },
             Case { "kaputt\xFF\xC3 \xC2\x81", 60, "kaputt?? ?", 3 }, // not UTF-8; a code Windows-1252 leaves empty
             Case { "a\r\nb\nc\rd\te\xE2\x80\xA8"
                    "f\xC2\x85g\x01h",
                 60, "a b c d e f g h", 0 },
             Case { "ÄÄÄÄÄ", 3, "\xC4\xC4\xC4", 0 },
             Case { "🙂🙂🙂", 2, "??", 2 },
         }) {
        Cp1252Text text;
        std::string out;
        text.append(out, c.utf8, c.max);
        EXPECT_EQ(out, c.bytes) << c.utf8;
        EXPECT_EQ(text.replaced(), c.replaced) << c.utf8;
    }
    Cp1252Text text;
    std::string quoted;
    text.appendQuoted(quoted, "Er \"ja\" sagte", 11, " 1/2");
    EXPECT_EQ(quoted, "\"Er \"\"ja\"\" 1/2\"");
}

TEST(DatevExport, SplitBookingsAreOneBookingEachWithTheirEntrysReceipt)
{
    auto split = item("", 100.0f, 19.0f, kArtAusgabe);
    auto nested = item("", 30.0f, 19.0f, kArtAusgabe);
    nested->setChildTransactions(
        { item("4930 Bürobedarf Gesch. ", 20.0f, 19.0f, kArtAusgabe), item("Ohne", 10.0f, 19.0f, kArtAusgabe) });
    split->setChildTransactions({ item("4940 Zeitschriften Gesch. ", 70.0f, 7.0f, kArtAusgabe), nested });
    split->setRechnungsnummer("B-9");
    nested->childTransactions()[0]->setRechnungsnummer("B-9 a");
    const DatevExportResult result = DatevExport::run({ item("8200 Erlöse", 5.0f), split }, request());
    const testing::DatevBatchCheck check = checkDatevBatch(result.files.at(0).bytes);
    ASSERT_EQ(check.bookings.size(), 3u);
    EXPECT_EQ(check.bookings[1].cents, 7000);
    EXPECT_EQ(check.bookings[1].belegfeld, "B-9");
    EXPECT_EQ(check.bookings[2].belegfeld, "B-9a");
    EXPECT_EQ(check.habenCents, 9000);
    ASSERT_EQ(result.skipped.size(), 1u);
    EXPECT_EQ(result.skipped[0].row + ' ' + result.skipped[0].reason, "2.2.2 Kategorie ohne Kontonummer");
    ASSERT_EQ(result.belegfeldChanges.size(), 1u);
    EXPECT_EQ(result.belegfeldChanges[0].row, "2.2.1");
}

TEST(DatevExport, OneFilePerCalendarYearAndFiscalYear)
{
    struct Case {
        LocalDay from;
        LocalDay to;
        int fiscalMonth;
        std::vector<std::string> spans; // vom-bis/WJ-Beginn
    };
    for (const Case& c : {
             Case {
                 { 2024, 11, 15 }, { 2025, 2, 28 }, 1, { "20241115-20241231/20240101", "20250101-20250228/20250101" } },
             Case { { 2024, 2, 29 }, { 2024, 2, 29 }, 1, { "20240229-20240229/20240101" } },
             Case { { 2024, 7, 1 }, { 2025, 12, 31 }, 7,
                 { "20240701-20241231/20240701", "20250101-20250630/20240701", "20250701-20251231/20250701" } },
             Case {
                 { 2025, 1, 1 }, { 2025, 12, 31 }, 12, { "20250101-20251130/20241201", "20251201-20251231/20251201" } },
             Case { { 2025, 3, 1 }, { 2025, 2, 28 }, 1, {} },
         }) {
        std::vector<std::string> spans;
        for (const DatevPeriod& p : DatevPeriod::split(c.from, c.to, c.fiscalMonth))
            spans.push_back(p.vom.compact() + '-' + p.bis.compact() + '/' + p.wirtschaftsjahrBeginn.compact());
        EXPECT_EQ(spans, c.spans) << c.from.compact() << ' ' << c.to.compact() << ' ' << c.fiscalMonth;
    }

    // Each booking lands in the batch of its local day; midnight belongs to the new year.
    const EinnahmeList ledger { item("8200 E", 1.0f, 19.0f, kArtEinnahme, at(2024, 12, 31, 23)),
        item("8200 E", 2.0f, 19.0f, kArtEinnahme, at(2025, 1, 1, 0)),
        item("8200 E", 4.0f, 19.0f, kArtEinnahme, at(2024, 5, 31, 23)), // before the days
        item("8200 E", 8.0f, 19.0f, kArtEinnahme, at(2025, 7, 1, 0)), // after them
        item("8200 E", 16.0f, 19.0f, kArtEinnahme, at(2024, 6, 1, 0)) };
    const DatevExportResult result = DatevExport::run(ledger, request({ 2024, 6, 1 }, { 2025, 6, 30 }));
    ASSERT_EQ(result.files.size(), 2u);
    EXPECT_EQ(result.files[0].sollCents, 1700);
    EXPECT_EQ(result.files[1].sollCents, 200);
    EXPECT_EQ(checkDatevBatch(result.files[0].bytes).bookings.at(0).belegdatum, "3112");
    EXPECT_EQ(checkDatevBatch(result.files[1].bytes).header.at(14), "20250101");
    EXPECT_EQ(DatevExport::filePaths("/tmp/a.b/EXTF.csv", result.files),
        (std::vector<std::string> { "/tmp/a.b/EXTF-2024.csv", "/tmp/a.b/EXTF-2025.csv" }));
    EXPECT_EQ(DatevExport::filePaths("/tmp/a.b/EXTF", result.files),
        (std::vector<std::string> { "/tmp/a.b/EXTF-2024", "/tmp/a.b/EXTF-2025" }));
    EXPECT_EQ(
        DatevExport::filePaths("x.csv", DatevExport::run(ledger, request({ 2024, 6, 1 }, { 2025, 6, 30 }, 7)).files),
        (std::vector<std::string> { "x-2024-06.csv", "x-2024-07.csv", "x-2025-01.csv" }));
}

TEST(DatevExport, AYearBeyondTheBatchLimitIsWrittenInParts)
{
    DatevExportRequest asked = request();
    asked.maxBookingsPerFile = 2;
    asked.bezeichnung = "Ein Name von genau dreissig Z.";
    EinnahmeList ledger;
    for (int i = 1; i <= 5; ++i)
        ledger.push_back(item("8200 E", static_cast<float>(i), 19.0f, i == 2 ? kArtAusgabe : kArtEinnahme));
    const DatevExportResult result = DatevExport::run(ledger, asked);
    std::vector<std::string> parts;
    for (const DatevBatchFile& file : result.files) {
        const testing::DatevBatchCheck check = checkDatevBatch(file.bytes);
        EXPECT_TRUE(check.findings.empty()) << check.findings.front();
        parts.push_back(check.header.at(16) + ": " + std::to_string(check.bookings.size()) + ", "
            + std::to_string(file.sollCents - file.habenCents));
    }
    EXPECT_EQ(parts,
        (std::vector<std::string> { "Ein Name von genau dr Teil 1/3: 2, -100", "Ein Name von genau dr Teil 2/3: 2, 700",
            "Ein Name von genau dr Teil 3/3: 1, 500" }));
    EXPECT_EQ(DatevExport::filePaths("out.csv", result.files),
        (std::vector<std::string> { "out-2025-teil1.csv", "out-2025-teil2.csv", "out-2025-teil3.csv" }));
    asked.maxBookingsPerFile = 100000; // more than the adviser's system takes
    EXPECT_THROW(DatevExport::run(ledger, asked), std::invalid_argument);
}

TEST(DatevExport, SummaryNamesEverythingLeftOutOrChanged)
{
    auto renamed = item("8200 E", 1234567.0f);
    renamed->setRechnungsnummer("RE 7.1");
    renamed->setName("Ωmega 🙂");
    const EinnahmeList ledger { item("8200 E", 0.0f), renamed, item("Sonstiges", 1.0f, 19.0f, kArtAusgabe),
        item("8200 E", 1.0f, 19.0f, kArtEinnahme, std::nan("")), item("8200 E", 1.0f, 19.0f, kArtEinnahme, 1e9) };
    EXPECT_EQ(DatevExportSummary::text(DatevExport::run(ledger, request()), { "/tmp/EXTF.csv" }),
        "1 Buchung geschrieben, in 1 Datei:\n"
        "  /tmp/EXTF.csv\n"
        "    01.01.2025 bis 31.12.2025: 1 Buchung, Soll 1.234.567,00 €, Haben 0,00 €\n"
        "1 Posten mit 0,00 € ausgelassen.\n"
        "Nicht geschrieben (2):\n"
        "  Zeile 3: Kategorie ohne Kontonummer\n"
        "  Zeile 4: Datum ungueltig\n"
        "Belegfeld 1 geaendert (1):\n"
        "  Zeile 2: \"RE 7.1\" als \"RE71\"\n"
        "2 Zeichen als \"?\" geschrieben: Windows-1252 kennt sie nicht.\n");
    EXPECT_EQ(DatevExportSummary::euros(-5), "-0,05 €");
}

TEST(DatevSettings, StoredNumbersInTheirRangesOnly)
{
    InMemoryUserDefaults defaults;
    DatevSettings::storeBeraternummer(defaults, 1001);
    DatevSettings::storeMandantennummer(defaults, 100000); // out of range: cleared
    DatevSettings::storeWirtschaftsjahrBeginn(defaults, 7);
    DatevSettings settings = DatevSettings::read(defaults);
    EXPECT_EQ(settings.beraternummer, 1001u);
    EXPECT_EQ(settings.wirtschaftsjahrBeginn, 7);
    EXPECT_EQ(settings.missingText(), "Die Mandantennummer fehlt in den Einstellungen (DATEV).");

    // Values another program left: not one number in its range reads as not set.
    defaults.setStringArray(DatevSettings::kBeraternummerKey, { "1001", "1002" });
    defaults.setStringArray(DatevSettings::kWirtschaftsjahrBeginnKey, { "0" });
    settings = DatevSettings::read(defaults);
    EXPECT_EQ(settings.missingText(), "Die Beraternummer und die Mandantennummer fehlen in den Einstellungen (DATEV).");
    EXPECT_EQ(settings.wirtschaftsjahrBeginn, 1);
}

} // namespace
} // namespace saldo
