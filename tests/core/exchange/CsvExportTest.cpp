// The spreadsheet export: its exact bytes, and what Python's csv module (as a
// stand-in for a spreadsheet program) reads back from them.
#include "exchange/CsvExport.h"

#include "model/LedgerFile.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <filesystem>
#include <fstream>

namespace saldo {
namespace {

namespace fs = std::filesystem;

Einnahme::Stored stored(const char* art, std::string name, float brutto, float steuersatz, double datum)
{
    Einnahme::Stored s;
    s.art = art;
    s.name = std::move(name);
    s.kategorie = "8400 Erlöse 19 % USt Erlöse ";
    s.brutto = brutto;
    s.steuersatz = steuersatz;
    s.datum = datum;
    return s;
}

TEST(CsvExportTest, WritesTheTableWithSplitBookingsBeneathTheirEntry)
{
    // 2023-12-31 23:30 UTC is New Year's Day in Berlin; 2024-06-30 22:00 UTC
    // is 1 July in summer time; dates before 2001 are negative.
    Einnahme::Stored porto = stored(kArtEinnahme, "Porto", 1.5f, 0.0f, -57'672'000.0);
    porto.kategorie = "4910 Porto Porto ";
    porto.isNonEU = true;
    Einnahme::Stored papier = stored(kArtAusgabe, "Papier", 10.0f, 7.0f, 741'477'600.0);
    papier.innergemeinschaftlicherErwerb = true;
    papier.childTransactions = { Einnahme::restore(porto) };
    Einnahme::Stored buero = stored(kArtAusgabe, "Bürobedarf", 119.0f, 19.0f, 725'758'200.0);
    buero.kategorie = "4930 Bürobedarf Gesch. ";
    buero.rechnungsnummer = "RE-1";
    buero.steuernummer = "12/345/67890";
    buero.leistungsart = "Ware";
    buero.childTransactions
        = { Einnahme::restore(papier), Einnahme::restore(stored(kArtAusgabe, "Toner", 2.0f, 19.0f, 741'477'599.0)) };
    // A negative amount (as a file may hold) is a number, not a text to guard.
    Einnahme::Stored formel = stored(kArtEinnahme, "=1+2; Summe", -5.0f, 19.0f, 0.0);
    formel.kategorie = "";
    const EinnahmeList entries = { Einnahme::restore(buero), Einnahme::restore(formel) };
    EXPECT_EQ(CsvExport::encode(entries),
        "\xEF\xBB\xBF"
        "Teil von;Art;Name;Kategorie;Brutto;Netto;Steuer;Steuersatz;Datum;Rechnungsnummer;Steuernummer;"
        "Leistungsart;Innergemeinschaftlich;Non EU;Hinweis\r\n"
        ";Ausgabe;Bürobedarf;4930 Bürobedarf Gesch. ;119,00;100,00;19,00;19,00;01.01.2024;RE-1;12/345/67890;Ware;"
        "nein;nein;\r\n"
        "2;Ausgabe;Papier;8400 Erlöse 19 % USt Erlöse ;10,00;9,35;0,65;7,00;01.07.2024;;;;ja;nein;\r\n"
        "3;Einnahme;Porto;4910 Porto Porto ;1,50;1,50;0,00;0,00;05.03.1999;;;;nein;ja;\r\n"
        "2;Ausgabe;Toner;8400 Erlöse 19 % USt Erlöse ;2,00;1,68;0,32;19,00;30.06.2024;;;;nein;nein;\r\n"
        ";Einnahme;\"'=1+2; Summe\";;-5,00;-4,20;-0,80;19,00;01.01.2001;;;;nein;nein;\r\n");

    // An entry that holds itself ends at the file's nesting limit, not in a crash.
    const auto loop = Einnahme::restore(stored(kArtEinnahme, "Schleife", 1.0f, 19.0f, 0.0));
    loop->setChildTransactions({ loop });
    EXPECT_THROW(CsvExport::encode({ loop }), LedgerFileError);
    loop->setChildTransactions({});
}

// NaN and infinite amounts were written "-nan" and "-inf", a date beyond the
// calendar "01.01.1900".
TEST(CsvExportTest, AmountsThatAreNoNumbersAndDatesBeyondTheCalendarAreNoted)
{
    const float nan = -std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const struct {
        float brutto, steuersatz;
        double datum;
        const char* row;
    } cases[] = {
        { nan, 19.0f, 0.0, "nan;nan;nan;19,00;01.01.2001;;;;nein;nein;keine endliche Zahl: Brutto, Netto, Steuer" },
        { 119.0f, -100.0f, 0.0, "119,00;inf;-inf;-100,00;01.01.2001;;;;nein;nein;keine endliche Zahl: Netto, Steuer" },
        { 1.0f, inf, 1e300, "1,00;0,00;1,00;inf;;;;;nein;nein;keine endliche Zahl: Steuersatz. Datum ausserhalb der "
                            "Jahre 1 bis 9999" },
        { 1.0f, 0.0f, -70'000'000'000.0, "1,00;1,00;0,00;0,00;;;;;nein;nein;Datum ausserhalb der Jahre 1 bis 9999" },
        { 1.0f, 0.0f, std::numeric_limits<double>::quiet_NaN(),
            "1,00;1,00;0,00;0,00;;;;;nein;nein;Datum ausserhalb der Jahre 1 bis 9999" },
    };
    for (const auto& c : cases) {
        const std::string table = CsvExport::encode({ Einnahme::restore(stored(kArtEinnahme, "X", c.brutto, c.steuersatz, c.datum)) });
        const std::string prefix = ";Einnahme;X;8400 Erlöse 19 % USt Erlöse ;";
        EXPECT_EQ(table.substr(table.find("\r\n") + 2), prefix + c.row + "\r\n");
    }
}

TEST(CsvExportTest, PiecesOfALargeTableMakeUpTheWholeText)
{
    EinnahmeList entries;
    for (int i = 0; i < 20'000; ++i) {
        auto e = Einnahme::restore(stored(kArtAusgabe, "Beleg " + std::to_string(i), 1.0f + i, 19.0f, i * 3600.0));
        e->setChildTransactions({ Einnahme::restore(stored(kArtAusgabe, "Teil", 1.0f, 19.0f, 0.0)) });
        entries.push_back(e);
    }
    std::string joined;
    int pieces = 0;
    CsvExport::encode(entries, [&](std::string_view piece) {
        joined += piece;
        ++pieces;
    });
    EXPECT_GT(pieces, 2);
    EXPECT_EQ(joined, CsvExport::encode(entries));
}

using CsvExportPythonTest = testing::TempDirTest;

TEST_F(CsvExportPythonTest, PythonsCsvModuleReadsBackEveryFieldAndTheFormulaGuardOnly)
{
    if (std::system("python3 -c 'import csv' >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "python3 is not installed";

    // Name as stored, and as the spreadsheet shows it. Python writes the
    // fields it reads apart by 0x1F, the rows by 0x1E.
    const std::pair<std::string, std::string> names[] = {
        { "Miete; \"Büro\" am Markt\r\nzweite Zeile\ndritte", "Miete; \"Büro\" am Markt\r\nzweite Zeile\ndritte" },
        { "=HYPERLINK(\"http://x\";\"klick\")", "'=HYPERLINK(\"http://x\";\"klick\")" },
        { "+49 30 123", "'+49 30 123" },
        { "-Rabatt", "'-Rabatt" },
        { "@SUMME(A1)", "'@SUMME(A1)" },
        { "\tEingerückt", "'\tEingerückt" },
        { "Gebühr 😀 = 5 € - 1", "Gebühr 😀 = 5 € - 1" },
    };
    EinnahmeList entries;
    std::vector<std::vector<std::string>> expected
        = { { "Teil von", "Art", "Name", "Kategorie", "Brutto", "Netto", "Steuer", "Steuersatz", "Datum",
            "Rechnungsnummer", "Steuernummer", "Leistungsart", "Innergemeinschaftlich", "Non EU", "Hinweis" } };
    for (const auto& [name, shown] : names) {
        Einnahme::Stored s = stored(kArtEinnahme, name, 119.0f, 19.0f, 725'758'200.0);
        s.rechnungsnummer = "R;1";
        s.steuernummer = "\"";
        s.leistungsart = "=";
        entries.push_back(Einnahme::restore(s));
        expected.push_back({ "", "Einnahme", shown, "8400 Erlöse 19 % USt Erlöse ", "119,00", "100,00", "19,00",
            "19,00", "01.01.2024", "R;1", "\"", "'=", "nein", "nein", "" });
    }
    entries.front()->setChildTransactions({ Einnahme::restore(stored(kArtEinnahme, "Anteil", 1.0f, 0.0f, 0.0)) });
    expected.insert(expected.begin() + 2,
        { "2", "Einnahme", "Anteil", "8400 Erlöse 19 % USt Erlöse ", "1,00", "1,00", "0,00", "0,00", "01.01.2001", "",
            "", "", "nein", "nein", "" });

    const fs::path table = dir / "Tabelle.csv";
    CsvExport::write(table.string(), entries);
    const fs::path script = dir / "read.py";
    std::ofstream(script) << "import csv, sys\n"
                             "with open(sys.argv[1], encoding='utf-8-sig', newline='') as f:\n"
                             "    for row in csv.reader(f, delimiter=';', strict=True):\n"
                             "        sys.stdout.buffer.write(('\\x1f'.join(row) + '\\x1e').encode())\n";
    const auto [status, output] = testing::runCommand("python3 " + script.string() + " " + table.string());
    ASSERT_EQ(status, 0);
    std::string rows;
    for (const auto& row : expected) {
        for (std::size_t i = 0; i < row.size(); ++i)
            rows += (i ? "\x1f" : "") + row[i];
        rows += '\x1e';
    }
    EXPECT_EQ(output, rows);
}

} // namespace
} // namespace saldo
