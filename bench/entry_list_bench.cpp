// Filtering and sorting the entry list at table sizes a large ledger reaches.
// A keystroke in the search field runs one filter and a header click one sort;
// both must leave most of a 100 ms budget to the table's repaint at 100,000
// entries. Run with --benchmark_repetitions to read medians; SALDO_BENCH_LEDGER=FILE
// measures that ledger instead of the made one.
#include "entrylist/EntryLists.h"
#include "entrylist/SearchOutcome.h"
#include "entrylist/SortOrdering.h"

#include <benchmark/benchmark.h>

#include "RealisticLedger.h"

#include <random>
#include <string>

namespace {

using namespace saldo;

// A ledger of the given size with names, categories and amounts like a small
// business's: a fifth of the texts carry umlauts, amounts have cents, dates
// spread over ten years, a third of the entries are expenses.
EinnahmeList makeLedger(std::size_t count)
{
    static const char* names[] = { "Miete B\u00fcro", "Strom", "Telefon", "Porto", "Beratung Kunde", "Honorar",
        "B\u00fcromaterial", "Fahrtkosten", "Software Lizenz", "Gr\u00fcnpflege", "Versicherung", "Bewirtung",
        "Werbung", "Miete Lager", "Wartung", "\u00dcbersetzung" };
    static const char* kategorien[] = { "8400 Erl\u00f6se 19% USt", "4210 Miete", "4240 Gas, Strom, Wasser",
        "4920 Telefon", "4910 Porto", "4930 B\u00fcrobedarf", "4650 Bewirtungskosten", "4600 Werbekosten",
        "8300 Erl\u00f6se 7% USt", "4360 Versicherungen" };
    static const float rates[] = { 19.0f, 19.0f, 19.0f, 7.0f, 0.0f };
    std::mt19937 rng(12345);
    EinnahmeList list;
    list.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const float brutto = static_cast<float>(rng() % 500000) / 100.0f;
        auto e = Einnahme::make(std::string(names[rng() % 16]) + " " + std::to_string(rng() % 1000),
            kategorien[rng() % 10], brutto, rates[rng() % 5]);
        e->setArt(rng() % 3 == 0 ? kArtAusgabe : kArtEinnahme);
        // 2015-01-01 to 2025-01-01, any time of day.
        e->setDatum(441763200.0 + static_cast<double>(rng() % 315576000u));
        e->setRechnungsnummer("RE-" + std::to_string(2015 + rng() % 10) + "-" + std::to_string(rng() % 100000));
        list.push_back(std::move(e));
    }
    return list;
}

const EinnahmeList& ledger(std::size_t count)
{
    if (const EinnahmeList* file = bench::ledgerFromFile())
        return *file;
    static const EinnahmeList small = makeLedger(100'000);
    static const EinnahmeList large = makeLedger(1'000'000);
    return count == 100'000 ? small : large;
}

void filter(benchmark::State& state, const char* mode, const char* text)
{
    const EinnahmeList& backup = ledger(static_cast<std::size_t>(state.range(0)));
    std::size_t shown = 0;
    for (auto _ : state) {
        const SearchOutcome outcome = SearchOutcome::decide(mode, text);
        EinnahmeList result = outcome.condition()->filter(backup);
        shown = result.size();
        benchmark::DoNotOptimize(result.data());
    }
    state.counters["shown"] = static_cast<double>(shown);
}

void sort(benchmark::State& state, const char* key)
{
    const EinnahmeList& backup = ledger(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        EinnahmeList list = backup;
        state.ResumeTiming();
        SortOrdering::sortEinnahmen(list, std::string_view(key), true);
        benchmark::DoNotOptimize(list.data());
        state.PauseTiming();
        list.clear();
        state.ResumeTiming();
    }
}

void deleteSelection(benchmark::State& state)
{
    const EinnahmeList& backup = ledger(100'000);
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < backup.size(); row += backup.size() / 1000)
        rows.push_back(row);
    for (auto _ : state) {
        state.PauseTiming();
        EntryLists lists;
        lists.setEntries(backup);
        state.ResumeTiming();
        const DeletionRecord record = lists.deleteRows(rows);
        benchmark::DoNotOptimize(record.size());
        state.PauseTiming();
        lists.setEntries({});
        state.ResumeTiming();
    }
}

void configure(benchmark::internal::Benchmark* b)
{
    b->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK_CAPTURE(filter, name_contains, "Name", "Miete")->Apply(configure);
BENCHMARK_CAPTURE(filter, brutto_at_least, "Brutto >=", "100")->Apply(configure);
BENCHMARK_CAPTURE(filter, datum_at_least, "Datum >=", "01-07-2020")->Apply(configure);
BENCHMARK_CAPTURE(sort, name, "name")->Apply(configure);
BENCHMARK_CAPTURE(sort, brutto, "brutto")->Apply(configure);
BENCHMARK_CAPTURE(sort, netto, "netto")->Apply(configure);
BENCHMARK_CAPTURE(sort, datum, "datum")->Apply(configure);
BENCHMARK(deleteSelection)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
