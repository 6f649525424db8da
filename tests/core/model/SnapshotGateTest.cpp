// Workers that read a snapshot of a list through its gate (the save's coder,
// the summary's engine, the VAT return and the Anlage EÜR with the names and
// amounts it copies out) see the entries exactly as they were when the gate
// opened, whatever the main thread changes meanwhile.
#include "evaluation/CalcEngine.h"
#include "model/LedgerFile.h"
#include "model/SnapshotGate.h"
#include "tax/EuerEvaluation.h"
#include "tax/EuerReport.h"
#include "tax/UstvaCalculation.h"
#include "tax/UstvaText.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace saldo {
namespace {

// More entries than one reading batch, every tenth with two split bookings.
EinnahmeList makeLedger(int count)
{
    static const char* const kKategorien[] = { "8400 Erl\xC3\xB6se 19% Gesch. ", "4930 B\xC3\xBC" "robedarf Gesch. ",
        "4830 Abschreibungen Gesch. " };
    EinnahmeList entries;
    for (int i = 0; i < count; ++i) {
        Einnahme::Stored s;
        s.name = "Posten " + std::to_string(i);
        s.kategorie = kKategorien[i % 3];
        s.art = i % 4 ? "Einnahme" : "Ausgabe";
        s.brutto = static_cast<float>(i % 997) * 1.19f + 0.25f;
        s.steuersatz = i % 5 ? 19.0f : 7.0f;
        s.datum = 757'382'400.0 + i * 3000.0;
        auto entry = Einnahme::restore(std::move(s));
        if (i % 10 == 0)
            entry->setChildTransactions({ Einnahme::make("Teil a", kKategorien[1], 10.0f, 19.0f),
                Einnahme::make("Teil b", kKategorien[2], 5.5f, 7.0f) });
        entries.push_back(entry);
    }
    return entries;
}

// The values of the list, in new objects: what a reader of the snapshot must see.
EinnahmeList valuesOf(const EinnahmeList& entries)
{
    EinnahmeList copies;
    for (const auto& entry : entries) {
        auto copy = Einnahme::restore(entry->stored());
        copy->setChildTransactions(valuesOf(entry->childTransactions()));
        copies.push_back(copy);
    }
    return copies;
}

// A change of every kind a window makes: texts, amounts, kind, date, flags
// and a split booking's own values.
void changeSome(SnapshotGate& gate, const EinnahmeList& entries, int round)
{
    for (std::size_t i = static_cast<std::size_t>(round) % 7; i < entries.size(); i += 501) {
        Einnahme& entry = *entries[i];
        gate.change(entry, [&](Einnahme& e) {
            e.setName("Geaendert " + std::to_string(round));
            e.setKategorie("4930 B\xC3\xBC" "robedarf Gesch. ");
            e.setBrutto(e.brutto() + 100.0f);
            e.setArt(e.art() == "Einnahme" ? "Ausgabe" : "Einnahme");
            e.setDatum(e.datum() + 86400.0);
            e.setIsNonEU(!e.isNonEU());
        });
        if (!entry.childTransactions().empty())
            gate.change(*entry.childTransactions()[0], [&](Einnahme& child) { child.setBrutto(child.brutto() * 2.0f); });
    }
}

std::string reportOf(const EinnahmeList& entries)
{
    CalcEngine engine;
    engine.calculate(entries);
    return engine.ergebnisString();
}

// The VAT return and the Anlage EÜR of the year the ledger spans, with the
// items behind the input tax's line as the EÜR window copies them out.
std::string taxFormsOf(const EinnahmeList& entries, const SnapshotGate* gate = nullptr)
{
    using namespace tax;
    std::string text = UstvaText::tsv(
        UstvaCalculation::calculate(entries, *TaxPeriod::parse("2025"), *UstvaForm::forYear(2025), gate));
    const EuerForm& form = *EuerForm::forYear(2025);
    text += EuerReport::tsv(EuerEvaluation::evaluate(entries, form, false, gate));
    const auto behind = EuerEvaluation::itemsBehind(entries, form, false, *form.indexOf(EuerField::Vorsteuer), gate);
    for (const ListedItem& item : EuerEvaluation::listedItems(behind, entries, gate))
        text += item.row + " " + item.name + " " + item.dayText() + " " + item.amountText() + "\n";
    return text;
}

TEST(SnapshotGateTest, ReadersSeeTheEntriesAsTheyWereWhenTheGateOpened)
{
    const EinnahmeList live = makeLedger(9000);
    const EinnahmeList snapshot = live;
    const std::string bytes = LedgerFile::encode(valuesOf(live));
    const std::string report = reportOf(valuesOf(live));
    const std::string taxForms = taxFormsOf(live);

    SnapshotGate gate;
    gate.open();
    changeSome(gate, live, 1);
    changeSome(gate, live, 2); // a second change keeps the values of the first
    ASSERT_FALSE(LedgerFile::encode(live) == bytes);
    ASSERT_NE(taxFormsOf(live), taxForms);
    EXPECT_TRUE(LedgerFile::encode(snapshot, gate) == bytes); // not printed: megabytes
    CalcEngine engine;
    engine.calculateSnapshot(snapshot, gate, std::nullopt);
    EXPECT_EQ(engine.ergebnisString(), report);
    EXPECT_EQ(taxFormsOf(snapshot, &gate), taxForms);

    // Closed, the gate forgets the old values: the next snapshot is the list as it is.
    gate.close();
    EXPECT_TRUE(LedgerFile::encode(snapshot, gate) == LedgerFile::encode(live));
    changeSome(gate, live, 3);
    EXPECT_TRUE(LedgerFile::encode(snapshot, gate) == LedgerFile::encode(valuesOf(live)));
}

// Also the test that runs under ThreadSanitizer (scripts/sanitize thread).
TEST(SnapshotGateTest, ChangesRacingTheWorkersNeverReachTheirFileOrReport)
{
    const EinnahmeList live = makeLedger(12000);
    SnapshotGate saveGate;
    SnapshotGate summaryGate;
    for (int round = 0; round < 6; ++round) {
        const EinnahmeList values = valuesOf(live);
        const std::string bytes = LedgerFile::encode(values);
        const std::string report = reportOf(values);
        const std::string taxForms = taxFormsOf(values);

        saveGate.open();
        summaryGate.open();
        std::string written, taxRead;
        CalcEngine engine;
        std::atomic<int> running { 3 };
        std::thread coder([&, snapshot = live] {
            written = LedgerFile::encode(snapshot, saveGate);
            --running;
        });
        std::thread evaluator([&, snapshot = live] {
            engine.calculateSnapshot(snapshot, summaryGate, 1000.0f);
            --running;
        });
        std::thread taxReader([&, snapshot = live] {
            taxRead = taxFormsOf(snapshot, &summaryGate);
            --running;
        });
        // The main thread changes entries through both gates as the document does.
        for (int change = 0; running > 0 && change < 200; ++change)
            for (std::size_t i = static_cast<std::size_t>(change * 37 + round) % 1000; i < live.size(); i += 997)
                saveGate.change(*live[i], [&](Einnahme& e) {
                    summaryGate.change(e, [&](Einnahme& inner) { inner.setBrutto(inner.brutto() + 1.0f); });
                });
        coder.join();
        evaluator.join();
        taxReader.join();
        saveGate.close();
        summaryGate.close();

        EXPECT_TRUE(written == bytes) << "round " << round;
        EXPECT_EQ(engine.ergebnisString(), report) << "round " << round;
        EXPECT_EQ(taxRead, taxForms) << "round " << round;
        EXPECT_TRUE(engine.limitWarning().has_value());
    }
}

} // namespace
} // namespace saldo
