#include "exchange/DatevExport.h"
#include "exchange/Cp1252Text.h"
#include "exchange/DatevBatchHeader.h"
#include "exchange/DatevBooking.h"
#include "exchange/DatevExportSummary.h"
#include "exchange/DatevTaxKey.h"
#include "platform/Calendar.h"
#include "settings/DatevSettings.h"

#include "DatevBatchChecker.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace saldo {
namespace {

ReferenceSeconds at(int year, int month, int day, int hour = 12)
{
    return Calendar::fromLocalFields({ year, month, day, hour, 0, 0 });
}

EinnahmePtr item(const char* kategorie, float brutto, float steuersatz, const char* art = kArtEinnahme,
    ReferenceSeconds datum = at(2025, 3, 4))
{
    auto entry = Einnahme::make("Posten", kategorie, brutto, steuersatz);
    entry->setArt(art);
    entry->setDatum(datum);
    return entry;
}

DatevExportRequest request2025()
{
    DatevExportRequest request;
    request.beraternummer = 1234567;
    request.mandantennummer = 10001;
    request.from = { 2025, 1, 1 };
    request.to = { 2025, 12, 31 };
    request.bezeichnung = "Musterfirma";
    request.erzeugtAm = Calendar::fromLocalDateTime({ { 2026, 2, 3, 4, 5, 6 }, 789 });
    return request;
}

std::vector<std::string> fieldsOf(std::string_view line)
{
    std::vector<std::string> fields(1);
    for (char c : line) {
        if (c == ';')
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

std::string lineOf(const std::string& bytes, std::size_t index)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i < index; ++i)
        start = bytes.find("\r\n", start) + 2;
    return bytes.substr(start, bytes.find("\r\n", start) - start);
}

TEST(DatevExport, HeaderFieldByField)
{
    DatevExportRequest request = request2025();
    request.wirtschaftsjahrBeginn = 4;
    request.from = { 2025, 2, 10 };
    request.to = { 2025, 3, 31 };
    request.bezeichnung = "Müller \"Grafik\" und Söhne, Gestaltung & Satz";
    const DatevExportResult result = DatevExport::run({}, request);
    ASSERT_EQ(result.files.size(), 1u);
    const std::vector<std::string> expected { "\"EXTF\"", "700", "21", "\"Buchungsstapel\"", "13", "20260203040506789",
        "", "\"RE\"", "\"\"", "\"\"", "1234567", "10001", "20240401", "4", "20250210", "20250331",
        "\"M\xFCller \"\"Grafik\"\" und S\xF6hne, Ges\"", "\"\"", "1", "0", "0", "\"EUR\"", "", "\"\"", "", "",
        "\"03\"", "", "", "\"\"", "\"\"" };
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 0)), expected);
    const std::vector<std::string> headings = fieldsOf(lineOf(result.files[0].bytes, 1));
    ASSERT_EQ(headings.size(), 125u);
    EXPECT_EQ(headings[7], "Gegenkonto (ohne BU-Schl\xFCssel)");
    EXPECT_EQ(headings[114], "Leistungsdatum");
    EXPECT_EQ(
        result.files[0].bytes, lineOf(result.files[0].bytes, 0) + "\r\n" + lineOf(result.files[0].bytes, 1) + "\r\n")
        << "a batch without bookings is the two lines";
}

TEST(DatevExport, TaxKeyByKindFlagsRateAndAccount)
{
    enum Flag { None, EU, NonEU };
    struct Case {
        const char* art;
        Flag flag;
        float rate;
        std::uint32_t account;
        const char* key;
        const char* fault;
    };
    const float nan = std::nanf("");
    for (const Case& c : {
             Case { kArtEinnahme, None, 19.0f, 8200, "3", "" },
             Case { kArtEinnahme, None, 7.0f, 8200, "2", "" },
             Case { kArtEinnahme, NonEU, 19.0f, 8200, "3", "" }, // taxable at home all the same
             Case { kArtEinnahme, None, 19.0f, 8400, "", "" }, // automatic accounts carry their own key
             Case { kArtEinnahme, None, 7.0f, 8300, "", "" },
             Case { kArtAusgabe, None, 19.0f, 8449, "", "" },
             Case { kArtEinnahme, None, 0.0f, 8100, "", "" },
             Case { kArtEinnahme, EU, 0.0f, 8125, "", "" },
             Case { kArtAusgabe, None, 19.0f, 4930, "9", "" },
             Case { kArtAusgabe, None, 7.0f, 4940, "8", "" },
             Case { kArtAusgabe, None, 0.0f, 4360, "", "" },
             Case { kArtAusgabe, EU, 19.0f, 3425, "19", "" }, // goods from the EU
             Case { kArtAusgabe, EU, 7.0f, 420, "18", "" },
             Case { kArtAusgabe, EU, 19.0f, 4930, "94", "" }, // a service from the EU
             Case { kArtAusgabe, NonEU, 19.0f, 4930, "94", "" },
             Case { "ausgabe", NonEU, 19.0f, 3425, "94", "" }, // every kind but income is an expense
             Case { kArtEinnahme, None, 16.0f, 8200, "", "kein BU-Schluessel fuer 16 % (Einnahme)" },
             Case { kArtAusgabe, None, 10.7f, 4930, "", "kein BU-Schluessel fuer 10,7 % (Ausgabe)" },
             Case { kArtAusgabe, NonEU, 7.0f, 4930, "", "kein BU-Schluessel fuer 7 % (Reverse Charge)" },
             Case { kArtAusgabe, EU, 5.5f, 3425, "", "kein BU-Schluessel fuer 5,5 % (innergemeinschaftlicher Erwerb)" },
             Case {
                 kArtEinnahme, EU, 19.0f, 8200, "", "kein BU-Schluessel fuer 19 % (innergemeinschaftliche Lieferung)" },
             Case { kArtEinnahme, None, nan, 8400, "", "Steuersatz ungueltig" },
             Case { kArtAusgabe, None, -19.0f, 4930, "", "Steuersatz ungueltig" },
             Case { kArtAusgabe, None, 19.005f, 4930, "", "Steuersatz ungueltig" },
         }) {
        auto entry = item("", 10.0f, c.rate, c.art);
        entry->setInnergemeinschaftlicherErwerb(c.flag == EU);
        entry->setIsNonEU(c.flag == NonEU);
        const DatevTaxKey::Outcome got = DatevTaxKey::of(*entry, c.account);
        EXPECT_STREQ(got.key, c.key) << c.art << ' ' << c.flag << ' ' << c.rate << ' ' << c.account;
        EXPECT_EQ(got.fault, c.fault) << c.art << ' ' << c.flag << ' ' << c.rate << ' ' << c.account;
    }
}

TEST(DatevExport, BookingSideAmountAccountsAndFaults)
{
    struct Case {
        const char* kategorie;
        float brutto;
        const char* art;
        const char* line; // the booking's first fourteen fields, or the fault
    };
    const float inf = std::numeric_limits<float>::infinity();
    for (const Case& c :
        {
            Case { "8200 Erlöse Gesch. ", 1234.56f, kArtEinnahme,
                "1234,56;\"S\";\"EUR\";;;;1200;8200;\"3\";0403;\"RE-1\";;;\"Posten\"" },
            Case { "4930 Bürobedarf Gesch. ", 0.1f, kArtAusgabe,
                "0,10;\"H\";\"EUR\";;;;1200;4930;\"9\";0403;\"RE-1\";;;\"Posten\"" },
            // a negative amount is written positive on the other side
            Case { "8200 Erlöse Gesch. ", -5.0f, kArtEinnahme,
                "5,00;\"H\";\"EUR\";;;;1200;8200;\"3\";0403;\"RE-1\";;;\"Posten\"" },
            Case { "4930 Bürobedarf Gesch. ", -0.006f, kArtAusgabe,
                "0,01;\"S\";\"EUR\";;;;1200;4930;\"9\";0403;\"RE-1\";;;\"Posten\"" },
            Case { "0410 Geschäftsausstattung Gesch. ", 9999998976.0f, kArtAusgabe,
                "9999998976,00;\"H\";\"EUR\";;;;1200;0410;\"9\";0403;\"RE-1\";;;\"Posten\"" },
            Case { "8200 Erlöse Gesch. ", 0.004f, kArtEinnahme, "" }, // 0 cents: left out, counted
            Case { "8200 Erlöse Gesch. ", std::nanf(""), kArtEinnahme, "Betrag ungueltig" },
            Case { "8200 Erlöse Gesch. ", -inf, kArtEinnahme, "Betrag ungueltig" },
            Case { "8200 Erlöse Gesch. ", 1e10f, kArtEinnahme, "Betrag zu gross" },
            Case { "Sonstiges", 10.0f, kArtEinnahme, "Kategorie ohne Kontonummer" },
            Case { "8400Erlöse", 10.0f, kArtEinnahme, "Kategorie ohne Kontonummer" },
            Case { "10000 Debitor allgemein Ford ", 10.0f, kArtEinnahme, "Kategorie ist kein vierstelliges Sachkonto" },
            Case { "420 Büroeinrichtung", 10.0f, kArtAusgabe, "Kategorie ist kein vierstelliges Sachkonto" },
            Case { "1200 Bank Bank ", 10.0f, kArtEinnahme, "Kategorie ist das Geldkonto" },
        }) {
        auto entry = item(c.kategorie, c.brutto, 19.0f, c.art, at(2025, 3, 4));
        const DatevBookingOutcome made = DatevBooking::make(*entry, { 2025, 3, 4 }, "RE-1", 1200);
        std::string got = made.fault;
        if (made.booking) {
            Cp1252Text text;
            made.booking->appendLine(got, entry->name(), text);
            EXPECT_EQ(got.substr(got.size() - 113), std::string(111, ';') + "\r\n");
            got.resize(got.size() - 113);
        }
        EXPECT_EQ(got, c.line) << c.kategorie << ' ' << c.brutto;
    }
}

TEST(DatevExport, BelegfeldKeepsTheAllowedCharactersOnly)
{
    struct Case {
        const char* rechnungsnummer;
        const char* belegfeld;
    };
    for (const Case& c : {
             Case { "2025-102", "2025-102" },
             Case { "M-01/2025", "M-01/2025" },
             Case { "$&%*+-/AZaz09", "$&%*+-/AZaz09" },
             Case { "RE 2025.001_a#b", "RE2025001ab" },
             Case { "Größe-Übel-Äß", "Groesse-Uebel-Aess" },
             Case { "Mu\xCC\x88ller", "Mueller" }, // u and a combining diaeresis
             Case { "Nº 12 – €5", "N125" },
             Case { "日本\xFF", "" },
             Case { "123456789012345678901234567890123456789", "123456789012345678901234567890123456" },
             Case { "12345678901234567890123456789012345ß", "12345678901234567890123456789012345s" },
         })
        EXPECT_EQ(DatevBooking::belegfeldOf(c.rechnungsnummer), c.belegfeld) << c.rechnungsnummer;
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
             Case { "A\xCC\x88rger", 60, "\xC4rger", 0 }, // composed first
             Case { "Caf\xC3\xA9 \xE2\x80\x9Ezitiert\xE2\x80\x9C", 60, "Caf\xE9 \x84zitiert\x93", 0 },
             Case { "日本 Ωmega 🙂", 60, "?? ?mega ?", 4 },
             Case { "kaputt\xFF\xC3", 60, "kaputt??", 2 },
             Case { "a\r\nb\nc\rd\te\xE2\x80\xA8"
                    "f\xC2\x85g\x01h",
                 60, "a b c d e f g h", 0 },
             Case { "Zeichen\xC2\x81", 60, "Zeichen?", 1 }, // a byte Windows-1252 leaves empty
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

TEST(DatevExport, SplitBookingsAreOneBookingEach)
{
    auto split = item("", 100.0f, 19.0f, kArtAusgabe);
    auto nested = item("4930 Bürobedarf Gesch. ", 30.0f, 19.0f, kArtAusgabe);
    nested->setChildTransactions(
        { item("4930 Bürobedarf Gesch. ", 20.0f, 19.0f, kArtAusgabe), item("Ohne", 10.0f, 19.0f, kArtAusgabe) });
    split->setChildTransactions({ item("4940 Zeitschriften Gesch. ", 70.0f, 7.0f, kArtAusgabe), nested });
    split->setRechnungsnummer("B-9");
    nested->childTransactions()[0]->setRechnungsnummer("B-9 a");
    const EinnahmeList ledger { item("8200 Erlöse", 5.0f, 19.0f), split };
    const DatevExportResult result = DatevExport::run(ledger, request2025());
    ASSERT_EQ(result.files.size(), 1u);
    EXPECT_EQ(result.bookings, 3u);
    EXPECT_EQ(result.files[0].habenCents, 9000);
    EXPECT_EQ(result.files[0].sollCents, 500);
    ASSERT_EQ(result.skipped.size(), 1u);
    EXPECT_EQ(result.skipped[0].row, "2.2.2");
    EXPECT_EQ(result.skipped[0].reason, "Kategorie ohne Kontonummer");
    // A split booking without an invoice number of its own takes its entry's.
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 3))[0], "70,00");
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 3))[10], "\"B-9\"");
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 4))[0], "20,00");
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 4))[10], "\"B-9a\"");
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
             Case { { 2025, 1, 1 }, { 2025, 12, 31 }, 1, { "20250101-20251231/20250101" } },
             Case {
                 { 2024, 11, 15 }, { 2025, 2, 28 }, 1, { "20241115-20241231/20240101", "20250101-20250228/20250101" } },
             Case { { 2024, 2, 29 }, { 2024, 2, 29 }, 1, { "20240229-20240229/20240101" } },
             Case { { 2024, 7, 1 }, { 2025, 12, 31 }, 7,
                 { "20240701-20241231/20240701", "20250101-20250630/20240701", "20250701-20251231/20250701" } },
             Case {
                 { 2025, 1, 1 }, { 2025, 12, 31 }, 12, { "20250101-20251130/20241201", "20251201-20251231/20251201" } },
             Case { { 2023, 12, 31 }, { 2026, 1, 1 }, 1,
                 { "20231231-20231231/20230101", "20240101-20241231/20240101", "20250101-20251231/20250101",
                     "20260101-20260101/20260101" } },
             Case { { 2025, 3, 1 }, { 2025, 2, 28 }, 1, {} },
         }) {
        std::vector<std::string> spans;
        for (const DatevPeriod& p : DatevPeriod::split(c.from, c.to, c.fiscalMonth))
            spans.push_back(p.vom.compact() + '-' + p.bis.compact() + '/' + p.wirtschaftsjahrBeginn.compact());
        EXPECT_EQ(spans, c.spans) << c.from.compact() << ' ' << c.to.compact() << ' ' << c.fiscalMonth;
    }

    // Each booking lands in the batch of its local day; midnight belongs to the new year.
    DatevExportRequest request = request2025();
    request.from = { 2024, 6, 1 };
    request.to = { 2025, 6, 30 };
    const EinnahmeList ledger { item("8200 E", 1.0f, 19.0f, kArtEinnahme, at(2024, 12, 31, 23)),
        item("8200 E", 2.0f, 19.0f, kArtEinnahme, at(2025, 1, 1, 0)),
        item("8200 E", 4.0f, 19.0f, kArtEinnahme, at(2024, 5, 31, 23)), // before the days: not part of it
        item("8200 E", 8.0f, 19.0f, kArtEinnahme, at(2025, 7, 1, 0)),
        item("8200 E", 16.0f, 19.0f, kArtEinnahme, at(2024, 6, 1, 0)) };
    const DatevExportResult result = DatevExport::run(ledger, request);
    ASSERT_EQ(result.files.size(), 2u);
    EXPECT_EQ(result.files[0].sollCents, 1700);
    EXPECT_EQ(result.files[1].sollCents, 200);
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 0))[14], "20240601");
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 0))[15], "20241231");
    EXPECT_EQ(fieldsOf(lineOf(result.files[1].bytes, 0))[14], "20250101");
    EXPECT_EQ(fieldsOf(lineOf(result.files[1].bytes, 0))[15], "20250630");
    EXPECT_EQ(fieldsOf(lineOf(result.files[0].bytes, 2))[9], "3112");
    EXPECT_EQ(fieldsOf(lineOf(result.files[1].bytes, 2))[9], "0101");
    EXPECT_EQ(DatevExport::filePaths("/tmp/a.b/EXTF.csv", result.files),
        (std::vector<std::string> { "/tmp/a.b/EXTF-2024.csv", "/tmp/a.b/EXTF-2025.csv" }));
    EXPECT_EQ(DatevExport::filePaths("/tmp/a.b/EXTF", result.files),
        (std::vector<std::string> { "/tmp/a.b/EXTF-2024", "/tmp/a.b/EXTF-2025" }));
    request.wirtschaftsjahrBeginn = 7;
    EXPECT_EQ(DatevExport::filePaths("x.csv", DatevExport::run(ledger, request).files),
        (std::vector<std::string> { "x-2024-06.csv", "x-2024-07.csv", "x-2025-01.csv" }));
}

TEST(DatevExport, AYearBeyondTheBatchLimitIsWrittenInParts)
{
    DatevExportRequest request = request2025();
    request.maxBookingsPerFile = 2;
    request.bezeichnung = "Ein Name von genau dreissig Z.";
    EinnahmeList ledger;
    for (int i = 1; i <= 5; ++i)
        ledger.push_back(item("8200 E", static_cast<float>(i), 19.0f, i == 2 ? kArtAusgabe : kArtEinnahme));
    const DatevExportResult result = DatevExport::run(ledger, request);
    ASSERT_EQ(result.files.size(), 3u);
    std::vector<std::size_t> bookings;
    std::vector<std::int64_t> sums;
    for (const DatevBatchFile& file : result.files) {
        const testing::DatevBatchCheck check = testing::checkDatevBatch(file.bytes);
        EXPECT_TRUE(check.findings.empty()) << check.findings.front();
        bookings.push_back(check.bookings.size());
        sums.push_back(file.sollCents - file.habenCents);
        EXPECT_EQ(file.bookings, check.bookings.size());
    }
    EXPECT_EQ(bookings, (std::vector<std::size_t> { 2, 2, 1 }));
    EXPECT_EQ(sums, (std::vector<std::int64_t> { -100, 700, 500 }));
    EXPECT_EQ(fieldsOf(lineOf(result.files[1].bytes, 0))[16], "\"Ein Name von genau dr Teil 2/3\"");
    EXPECT_EQ(DatevExport::filePaths("out.csv", result.files),
        (std::vector<std::string> { "out-2025-teil1.csv", "out-2025-teil2.csv", "out-2025-teil3.csv" }));
}

TEST(DatevExport, RequestsOutsideTheRangesAreRefused)
{
    EXPECT_EQ(DatevExport::requestFault(request2025()), "");
    const std::vector<void (*)(DatevExportRequest&)> faults {
        [](DatevExportRequest& r) { r.beraternummer = 1000; },
        [](DatevExportRequest& r) { r.beraternummer = 10000000; },
        [](DatevExportRequest& r) { r.mandantennummer = 0; },
        [](DatevExportRequest& r) { r.mandantennummer = 100000; },
        [](DatevExportRequest& r) { r.konto = 10000; },
        [](DatevExportRequest& r) { r.wirtschaftsjahrBeginn = 13; },
        [](DatevExportRequest& r) {
            r.from = { 2025, 2, 29 };
        },
        [](DatevExportRequest& r) {
            r.to = { 2024, 12, 31 };
        },
        [](DatevExportRequest& r) { r.maxBookingsPerFile = 100000; },
    };
    for (std::size_t i = 0; i < faults.size(); ++i) {
        DatevExportRequest request = request2025();
        faults[i](request);
        EXPECT_NE(DatevExport::requestFault(request), "") << i;
        EXPECT_THROW(DatevExport::run({}, request), std::invalid_argument) << i;
    }
}

TEST(DatevExport, SummaryNamesEverythingLeftOutOrChanged)
{
    auto zero = item("8200 E", 0.0f, 19.0f);
    auto renamed = item("8200 E", 1234567.0f, 19.0f);
    renamed->setRechnungsnummer("RE 7.1");
    renamed->setName("Ωmega 🙂");
    const EinnahmeList ledger { zero, renamed, item("Sonstiges", 1.0f, 19.0f, kArtAusgabe) };
    const DatevExportResult result = DatevExport::run(ledger, request2025());
    EXPECT_EQ(DatevExportSummary::text(result, { "/tmp/EXTF.csv" }),
        "1 Buchung geschrieben, in 1 Datei:\n"
        "  /tmp/EXTF.csv\n"
        "    01.01.2025 bis 31.12.2025: 1 Buchung, Soll 1.234.567,00 €, Haben 0,00 €\n"
        "1 Posten mit 0,00 € ausgelassen.\n"
        "Nicht geschrieben (1):\n"
        "  Zeile 3: Kategorie ohne Kontonummer\n"
        "Belegfeld 1 geaendert (1):\n"
        "  Zeile 2: \"RE 7.1\" als \"RE71\"\n"
        "2 Zeichen als \"?\" geschrieben: Windows-1252 kennt sie nicht.\n");
    EXPECT_EQ(DatevExportSummary::euros(-5), "-0,05 €");
    EXPECT_EQ(DatevExportSummary::euros(99999), "999,99 €");
    EXPECT_EQ(DatevExportSummary::euros(100000), "1.000,00 €");
}

TEST(DatevSettings, StoredNumbersInTheirRangesOnly)
{
    InMemoryUserDefaults defaults;
    EXPECT_EQ(DatevSettings::read(defaults).missingText(),
        "Die Beraternummer und die Mandantennummer fehlen in den Einstellungen (DATEV).");
    DatevSettings::storeBeraternummer(defaults, 1001);
    DatevSettings::storeWirtschaftsjahrBeginn(defaults, 7);
    EXPECT_EQ(DatevSettings::read(defaults).missingText(), "Die Mandantennummer fehlt in den Einstellungen (DATEV).");
    DatevSettings::storeMandantennummer(defaults, 99999);
    DatevSettings settings = DatevSettings::read(defaults);
    EXPECT_EQ(settings.missingText(), "");
    EXPECT_EQ(settings.beraternummer, 1001u);
    EXPECT_EQ(settings.mandantennummer, 99999u);
    EXPECT_EQ(settings.wirtschaftsjahrBeginn, 7);

    DatevSettings::storeBeraternummer(defaults, std::nullopt);
    DatevSettings::storeMandantennummer(defaults, 100000);
    DatevSettings::storeWirtschaftsjahrBeginn(defaults, 13); // ignored
    defaults.setStringArray(DatevSettings::kWirtschaftsjahrBeginnKey, { "0" }); // as another program might
    settings = DatevSettings::read(defaults);
    EXPECT_FALSE(settings.beraternummer);
    EXPECT_FALSE(settings.mandantennummer);
    EXPECT_EQ(settings.wirtschaftsjahrBeginn, 1);
    defaults.setStringArray(DatevSettings::kBeraternummerKey, { "1001", "1002" });
    EXPECT_FALSE(DatevSettings::read(defaults).beraternummer);
}

} // namespace
} // namespace saldo
