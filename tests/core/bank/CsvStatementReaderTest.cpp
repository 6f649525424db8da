// One export per shipped bank profile, written from the bank's documented
// layout in its own encoding: each must be recognised by its header alone
// and give the same two bookings (2.500,00 in from Jörg Weiß on 3 November,
// 1.190,00 out to Büro Schäfer GmbH on 4 November), with its pending rows
// and footers set apart.
#include "StatementFixtures.h"

#include "bank/CsvProfiles.h"
#include "bank/CsvStatementReader.h"
#include "bank/StatementError.h"
#include "bank/StatementReader.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace saldo::testing {
namespace {

struct BankFile {
    const char* profile;
    std::string bytes;
    std::size_t pending = 0;
    std::size_t skipped = 0;
};

std::vector<BankFile> bankFiles()
{
    const std::string sparkasseHeader
        = "\"Auftragskonto\";\"Buchungstag\";\"Valutadatum\";\"Buchungstext\";\"Verwendungszweck\";\"Glaeubiger "
          "ID\";\"Mandatsreferenz\";\"Kundenreferenz (End-to-End)\";\"Sammlerreferenz\";\"Lastschrift "
          "Ursprungsbetrag\";\"Auslagenersatz "
          "Ruecklastschrift\";\"Beguenstigter/Zahlungspflichtiger\";\"Kontonummer/IBAN\";\"BIC "
          "(SWIFT-Code)\";\"Betrag\";\"Waehrung\";\"Info\"\r\n";
    const auto sparkasseRow = [](const std::string& day, const std::string& text, const std::string& partner,
                                  const std::string& amount, const std::string& info) {
        return "\"DE02120300000000202051\";\"" + day + "\";\"" + day + "\";\"UEBERWEISUNG\";\"" + text
            + "\";\"\";\"\";\"E2E-1\";\"\";\"\";\"\";\"" + partner + "\";\"DE89370400440532013000\";\"COBADEFFXXX\";\""
            + amount + "\";\"EUR\";\"" + info + "\"\r\n";
    };
    const auto sparkasse = [&](const std::string& year) {
        return sparkasseHeader + sparkasseRow("03.11." + year, "Honorar", "Jörg Weiß", "2.500,00", "Umsatz gebucht")
            + sparkasseRow("04.11." + year, "Miete", "Büro Schäfer GmbH", "-1.190,00", "Umsatz gebucht")
            + sparkasseRow("05.11." + year, "Karte", "Tankstelle", "-45,10", "Umsatz vorgemerkt");
    };
    return {
        { "Sparkasse (CSV-CAMT V2)", singleByte(sparkasse("25")), 1 },
        { "Sparkasse (camt.052 v8 CSV)", sparkasse("2025"), 1 },
        { "DKB (ab 2023)",
            "\xEF\xBB\xBF\"Girokonto\";\"DE12 1203 0000 1234 5678 90\"\n\"Zeitraum:\";\"01.11.2025 - 30.11.2025\"\n"
            "\"Kontostand vom 30.11.2025:\";\"4.321,00 €\"\n\"\"\n"
            "\"Buchungsdatum\";\"Wertstellung\";\"Status\";\"Zahlungspflichtige*r\";\"Zahlungsempfänger*in\";"
            "\"Verwendungszweck\";\"Umsatztyp\";\"IBAN\";\"Betrag (€)\";\"Gläubiger-ID\";\"Mandatsreferenz\";\"Kundenreferenz\"\n"
            "\"03.11.25\";\"03.11.25\";\"Gebucht\";\"Jörg Weiß\";\"Meine Firma\";\"Honorar\";\"Eingang\";\"DE89\";\"2.500,00\";\"\";\"\";\"\"\n"
            "\"04.11.25\";\"04.11.25\";\"Gebucht\";\"Meine Firma\";\"Büro Schäfer GmbH\";\"Miete\";\"Ausgang\";\"DE11\";\"-1.190,00\";\"\";\"\";\"\"\n"
            "\"05.11.25\";\"05.11.25\";\"Vorgemerkt\";\"Meine Firma\";\"Tankstelle\";\"Karte\";\"Ausgang\";\"\";\"-45,10\";\"\";\"\";\"\"\n",
            1 },
        { "ING",
            singleByte("Umsatzanzeige;Datei erstellt am: 30.11.2025 10:00\n;Letztes Update: aktuell\n\n"
                       "IBAN;DE12 5001 0517 1234 5678 90\nKontoname;Girokonto\nBank;ING\nKunde;Max Mustermann\n"
                       "Zeitraum;01.11.2025 - 30.11.2025\nSaldo;4.321,00;EUR\n\nSortierung;Datum absteigend\n\n"
                       "Buchung;Wertstellungsdatum;Auftraggeber/Empfänger;Buchungstext;Kategorie;Verwendungszweck;Saldo;"
                       "Währung;Betrag;Währung\n"
                       "03.11.2025;03.11.2025;Jörg Weiß;Gutschrift;Einnahmen;Honorar;4.321,00;EUR;2.500,00;EUR\n"
                       "04.11.2025;04.11.2025;Büro Schäfer GmbH;Lastschrift;Wohnen;Miete;1.821,00;EUR;-1.190,00;EUR\n") },
        { "comdirect",
            singleByte(";\n\"Umsätze Girokonto\";\"Zeitraum: 30 Tage\";\n\"Neuer Kontostand\";\"4.321,00 EUR\";\n\n"
                       "\"Buchungstag\";\"Wertstellung (Valuta)\";\"Vorgang\";\"Buchungstext\";\"Umsatz in EUR\";\n"
                       "\"offen\";\"--\";\"Lastschrift / Belastung\";\"Empfänger: Tankstelle Buchungstext: Karte\";\"-45,10\";\n"
                       "\"03.11.2025\";\"03.11.2025\";\"Übertrag / Überweisung\";\"Auftraggeber: Jörg Weiß Buchungstext: "
                       "Honorar Oktober\";\"2.500,00\";\n"
                       "\"04.11.2025\";\"04.11.2025\";\"Lastschrift / Belastung\";\"Empfänger: Büro Schäfer GmbH Kto/IBAN: "
                       "DE11 BLZ/BIC: GENODEF1 Buchungstext: Miete € 1.190\";\"-1.190,00\";\n\n"
                       "\"Alter Kontostand\";\"1.821,00 EUR\";\n",
                true),
            1, 1 },
        { "Volksbank / Raiffeisenbank",
            "Bezeichnung Auftragskonto;IBAN Auftragskonto;BIC Auftragskonto;Bankname Auftragskonto;Buchungstag;"
            "Valutadatum;Name Zahlungsbeteiligter;IBAN Zahlungsbeteiligter;BIC (SWIFT-Code) Zahlungsbeteiligter;"
            "Buchungstext;Verwendungszweck;Betrag;Waehrung;Saldo nach Buchung;Bemerkung;Kategorie;Steuerrelevant;"
            "Glaeubiger ID;Mandatsreferenz\n"
            "Girokonto;DE12;GENODEF1;Volksbank;03.11.2025;03.11.2025;Jörg Weiß;DE89;BIC;Gutschrift;Honorar;2.500,00;"
            "EUR;4.321,00;;;;;\n"
            "Girokonto;DE12;GENODEF1;Volksbank;04.11.2025;04.11.2025;Büro Schäfer GmbH;DE11;BIC;Lastschrift;Miete;"
            "-1.190,00;EUR;1.821,00;;;;;\n" },
        { "Postbank / Deutsche Bank (ab 2025)",
            "\xEF\xBB\xBFUmsätze\nKonto;Girokonto;DE12\n\nZeitraum;01.11.2025 - 30.11.2025\n"
            "Letzter Kontostand;;;;4.321,00;EUR\nVorgemerkte Umsätze sind nicht Bestandteil dieser Übersicht.\n"
            "Buchungstag;Wert;Umsatzart;Begünstigter / Auftraggeber;Verwendungszweck;IBAN / Kontonummer;BIC;"
            "Kundenreferenz;Mandatsreferenz;Gläubiger ID;Fremde Gebühren;Betrag;Abweichender Empfänger;Anzahl der "
            "Aufträge;Anzahl der Schecks;Soll;Haben;Währung\n"
            "3.11.2025;3.11.2025;Gutschrift;Jörg Weiß;Honorar;DE89;;;;;;2.500,00;;;;;;EUR\n"
            "04.11.2025;04.11.2025;Lastschrift;Büro Schäfer GmbH;Miete;DE11;;;;;;;;;;-1.190,00;;EUR\n"
            "Kontostand;4.321,00;EUR\n",
            0, 1 },
        { "Deutsche Bank (bis 2024)",
            singleByte("Umsätze Girokonto;Kundennummer: 123\n01.11.2025 - 30.11.2025\nKontostand;4.321,00 EUR\n"
                       "Letzter Kontostand\n"
                       "Buchungstag;Wert;Umsatzart;Begünstigter / Auftraggeber;Verwendungszweck;IBAN;BIC;Kundenreferenz;"
                       "Mandatsreferenz ;Gläubiger ID;Fremde Gebühren;Betrag;Abweichender Empfänger;Anzahl der Aufträge;"
                       "Anzahl der Schecks;Soll;Haben;Währung\n"
                       "03.11.2025;03.11.2025;Gutschrift;Jörg Weiß;Honorar;DE89;;;;;;;;;;;2.500,00;EUR\n"
                       "04.11.2025;04.11.2025;Lastschrift;Büro Schäfer GmbH;Miete;DE11;;;;;;;;;;-1.190,00;;EUR\n"
                       "Kontostand;30.11.2025;;;4.321,00;EUR\n",
                true),
            0, 1 },
        { "Deutsche Bank (alte Exporte)",
            singleByte("Buchungstag;Wert;Verwendungszweck;Soll;Haben;Währung\n"
                       "03.11.2025;03.11.2025;Honorar Jörg Weiß;;2.500,00;EUR\n"
                       "04.11.2025;04.11.2025;Miete Büro Schäfer GmbH;1.190,00;;EUR\n"
                       "Kontostand;;;;4.321,00;EUR\n",
                true),
            0, 1 },
        { "Commerzbank",
            "Buchungstag;Wertstellung;Umsatzart;Buchungstext;Betrag;Währung;Auftraggeberkonto;Bankleitzahl "
            "Auftraggeberkonto;IBAN Auftraggeberkonto;Kategorie\n"
            "03.11.2025;03.11.2025;Gutschrift;Jörg Weiß Honorar;2.500,00;EUR;123;20040000;DE12;Einnahmen\n"
            "04.11.2025;04.11.2025;Lastschrift;Büro Schäfer GmbH Miete;-1.190,00;EUR;123;20040000;DE12;Wohnen\n" },
        { "N26",
            "\"Booking Date\",\"Value Date\",\"Partner Name\",\"Partner Iban\",Type,\"Payment Reference\",\"Account "
            "Name\",\"Amount (EUR)\",\"Original Amount\",\"Original Currency\",\"Exchange Rate\"\n"
            "2025-11-03,2025-11-03,\"Jörg Weiß\",DE89,Credit Transfer,\"Honorar, Oktober\",Hauptkonto,2500.00,,,\n"
            "2025-11-04,2025-11-04,\"Büro Schäfer GmbH\",DE11,Direct Debit,Miete,Hauptkonto,-1190.00,,,\n" },
        { "N26 (alte Exporte)",
            "\"Datum\",\"Empfänger\",\"Kontonummer\",\"Transaktionstyp\",\"Verwendungszweck\",\"Betrag (EUR)\","
            "\"Betrag (Fremdwährung)\",\"Fremdwährung\",\"Wechselkurs\"\n"
            "\"2025-11-03\",\"Jörg Weiß\",\"DE89\",\"Gutschrift\",\"Honorar\",\"2500.0\",\"\",\"\",\"\"\n"
            "\"2025-11-04\",\"Büro Schäfer GmbH\",\"DE11\",\"Lastschrift\",\"Miete\",\"-1190\",\"\",\"\",\"\"\n" },
    };
}

TEST(CsvStatementReaderTest, EachBanksExportIsKnownByItsHeaderAndReadsTheSame)
{
    const CsvProfiles profiles = CsvProfiles::load();
    ASSERT_EQ(profiles.problems(), std::vector<std::string> {});
    std::vector<std::string> covered;
    for (const BankFile& file : bankFiles()) {
        SCOPED_TRACE(file.profile);
        const std::vector<const CsvProfile*> fitting = StatementReader::fittingProfiles(file.bytes, profiles);
        ASSERT_EQ(fitting.size(), 1u);
        EXPECT_EQ(fitting[0]->name, file.profile);
        covered.push_back(fitting[0]->name);
        const std::optional<Statement> s = StatementReader::read(file.bytes, profiles, nullptr);
        ASSERT_TRUE(s);
        EXPECT_EQ(s->format, file.profile);
        EXPECT_EQ(s->skippedLines, file.skipped);
        std::vector<BankBooking> booked;
        std::size_t pending = 0;
        for (const BankBooking& b : s->bookings)
            b.status == BankBooking::Status::Booked ? booked.push_back(b) : void(++pending);
        EXPECT_EQ(pending, file.pending);
        ASSERT_EQ(booked.size(), 2u);
        EXPECT_EQ(booked[0].cents, 250000);
        EXPECT_EQ(booked[0].bookingDate, (BankDate { 2025, 11, 3 }));
        EXPECT_NE((booked[0].partner + "|" + booked[0].text).find("Jörg Weiß"), std::string::npos)
            << booked[0].partner << "|" << booked[0].text;
        EXPECT_EQ(booked[1].cents, -119000);
        EXPECT_EQ(booked[1].bookingDate, (BankDate { 2025, 11, 4 }));
        EXPECT_NE((booked[1].partner + "|" + booked[1].text).find("Büro Schäfer GmbH"), std::string::npos)
            << booked[1].partner << "|" << booked[1].text;
    }
    // Every shipped profile has its export here.
    std::vector<std::string> shipped;
    for (const CsvProfile& profile : profiles.all())
        shipped.push_back(profile.name);
    std::sort(shipped.begin(), shipped.end());
    std::sort(covered.begin(), covered.end());
    EXPECT_EQ(covered, shipped);
}

TEST(CsvStatementReaderTest, FieldsInsideTheTextAndTheDirectionsPartner)
{
    const CsvProfiles profiles = CsvProfiles::load();
    const std::vector<BankFile> files = bankFiles();
    const auto bookingsOf = [&](const char* name) {
        const auto file = std::find_if(files.begin(), files.end(), [name](const BankFile& f) { return std::string(f.profile) == name; });
        return StatementReader::read(file->bytes, profiles, nullptr)->bookings;
    };
    const std::vector<BankBooking> comdirect = bookingsOf("comdirect");
    EXPECT_EQ(comdirect[0].partner, "Tankstelle");
    EXPECT_EQ(comdirect[1].partner, "Jörg Weiß");
    EXPECT_EQ(comdirect[1].text, "Honorar Oktober");
    EXPECT_EQ(comdirect[2].iban, "DE11");
    EXPECT_EQ(comdirect[2].text, "Miete € 1.190");
    EXPECT_EQ(comdirect[2].bookingText, "Lastschrift / Belastung");
    const std::vector<BankBooking> dkb = bookingsOf("DKB (ab 2023)");
    EXPECT_EQ(dkb[0].partner, "Jörg Weiß");
    EXPECT_EQ(dkb[1].partner, "Büro Schäfer GmbH");
}

TEST(CsvStatementReaderTest, AmbiguousOrUnknownFilesAskAndBadOnesAreRefused)
{
    CsvProfiles profiles = CsvProfiles::load();
    // A header no profile knows: the person is asked among all profiles,
    // and the one chosen reads its columns by their place.
    const std::string renamed = "Datum,Name,Konto,Typ,Zweck,Summe\n2025-11-03,Jörg Weiß,DE89,G,Honorar,2500.00\n";
    std::vector<std::string> offered;
    bool noneFits = false;
    const auto choose = [&](const std::vector<const CsvProfile*>& candidates, bool none) -> const CsvProfile* {
        offered.clear();
        for (const CsvProfile* c : candidates)
            offered.push_back(c->name);
        noneFits = none;
        return none ? profiles.named("N26 (alte Exporte)") : candidates.front();
    };
    const std::optional<Statement> s = StatementReader::read(renamed, profiles, choose);
    EXPECT_TRUE(noneFits);
    EXPECT_EQ(offered.size(), profiles.all().size());
    ASSERT_TRUE(s);
    EXPECT_EQ(s->bookings.at(0).partner, "Jörg Weiß");
    // Stopping at the question reads nothing.
    EXPECT_FALSE(StatementReader::read(renamed, profiles, [](auto&&, bool) { return nullptr; }));

    // Two profiles of equal header and equal reading: asked among those two.
    CsvProfile twin = *profiles.named("N26");
    twin.name = "N26 Kopie";
    profiles.add(twin);
    const std::string n26 = "\"Booking Date\",\"Value Date\",\"Partner Name\",\"Partner Iban\",Type,\"Payment "
                            "Reference\",\"Account Name\",\"Amount (EUR)\"\n2025-11-03,2025-11-03,A,DE1,T,R,K,1.00\n";
    StatementReader::read(n26, profiles, choose);
    EXPECT_FALSE(noneFits);
    EXPECT_EQ(offered, (std::vector<std::string> { "N26", "N26 Kopie" }));

    const CsvProfile& vb = *profiles.named("Volksbank / Raiffeisenbank");
    const std::string header = "Bezeichnung Auftragskonto;IBAN Auftragskonto;BIC Auftragskonto;Bankname Auftragskonto;"
                               "Buchungstag;Valutadatum;Name Zahlungsbeteiligter;IBAN Zahlungsbeteiligter;BIC (SWIFT-Code) "
                               "Zahlungsbeteiligter;Buchungstext;Verwendungszweck;Betrag;Waehrung;Saldo nach Buchung;"
                               "Bemerkung;Kategorie;Steuerrelevant;Glaeubiger ID;Mandatsreferenz\n";
    const std::pair<std::string, std::string> refused[] = {
        { header + "K;I;B;N;03.11.2025;;P;;;T;\"offenes Feld;12,00;EUR\n", "mitten in einem Feld" },
        { header + "K;I;B;N;03.11.2025;;P;;;T;V;12,00;USD\n", "in USD" },
        { header + "K;I;B;N;03.11.2025;;P;;;T;V;12.00;EUR\nK;I;B;N;31.11.2025;;P;;;T;V;1,00;EUR\n",
            "Keine Zeile der Datei liest sich als Buchung" },
    };
    for (const auto& [text, reason] : refused) {
        SCOPED_TRACE(reason);
        try {
            CsvStatementReader::read(text, vb);
            ADD_FAILURE() << "read";
        } catch (const StatementError& e) {
            EXPECT_NE(std::string(e.what()).find(reason), std::string::npos) << e.what();
        }
    }
}

TEST(CsvStatementReaderTest, AProfileWithAMistakeIsRefusedNamingTheLine)
{
    const std::string base = "Name = X\nKopfzeile = A;B\nDatum = A\nBetrag = B\nDatumsformat = dd.MM.yyyy\n";
    const std::pair<std::string, std::string> cases[] = {
        { base + "Farbe = rot\n", "Zeile 6: unbekannter Schluessel \"Farbe\"" },
        { base + "Datum = B\n", "Zeile 6: \"Datum\" steht zweimal da" },
        { base + "Text = C\n", "die Spalte \"C\" steht nicht in der Kopfzeile" },
        { base + "Kodierung = EBCDIC\n", "unbekannte Kodierung" },
        { base + "Soll = A\n", "\"Soll\" und \"Haben\"" },
        { base + "Trennzeichen = ;;\n", "kein einzelnes Zeichen" },
        { base + "Vorgemerkt = offen\n", "\"Spalte = Wert\"" },
        { base + "kein Gleichheitszeichen\n", "Zeile 6: kein \"=\"" },
        { "Name = X\nKopfzeile = A;B\nDatum = A\nBetrag = B\nDatumsformat = MM.yyyy\n", "kein Datumsformat" },
        { "Name = X\nDatum = A\nBetrag = B\nDatumsformat = dd.MM.yyyy\n", "\"Kopfzeile\" fehlt" },
        { std::string("Name = \xFF\n"), "kein UTF-8" },
    };
    EXPECT_EQ(CsvProfile::parse(base + "# Kommentar\n\nTausenderzeichen = keins\n", "x.profil").thousandsMark, 0);
    for (const auto& [text, reason] : cases) {
        SCOPED_TRACE(reason);
        try {
            CsvProfile::parse(text, "x.profil");
            ADD_FAILURE() << "parsed";
        } catch (const StatementError& e) {
            EXPECT_NE(std::string(e.what()).find("Bankprofil x.profil"), std::string::npos);
            EXPECT_NE(std::string(e.what()).find(reason), std::string::npos) << e.what();
        }
    }
}

} // namespace
} // namespace saldo::testing
