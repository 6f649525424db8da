// The Anlage EÜR of a year at ledger sizes a large business reaches: the
// whole evaluation (every item placed, the lists filled), and the items
// behind one line, which the window lists on a double-click; and what the
// window's worker does after every change of the ledger. saldo-cli euer
// costs reading the file plus `evaluate`; reading a million entries takes
// about 0.3 s, so the evaluation should stay well under a tenth of that per
// 100,000 entries. Run with --benchmark_repetitions=9 to read medians.
#include "RealisticLedger.h"

#include "tax/EuerEvaluation.h"
#include "tax/LedgerYears.h"

#include <benchmark/benchmark.h>

namespace {

using namespace saldo;

void evaluate(benchmark::State& state)
{
    const EinnahmeList& entries = bench::cachedRealisticLedger(static_cast<std::size_t>(state.range(0)), true);
    const tax::EuerForm& form = *tax::EuerForm::forYear(2024);
    std::size_t listed = 0;
    for (auto _ : state) {
        const tax::EuerResult result = tax::EuerEvaluation::evaluate(entries, form, false);
        listed = result.nichtTeil.size() + result.hinweise.size() + result.anlagegut.size();
        benchmark::DoNotOptimize(result.cents.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["listed"] = static_cast<double>(listed);
}

// The items behind Zeile 51 (Arbeitsmittel), some 2 % of a ledger.
void itemsBehindOneLine(benchmark::State& state)
{
    const EinnahmeList& entries = bench::cachedRealisticLedger(static_cast<std::size_t>(state.range(0)), true);
    const tax::EuerForm& form = *tax::EuerForm::forYear(2024);
    const std::size_t line = *form.indexOf(tax::EuerField::Arbeitsmittel);
    std::size_t count = 0;
    for (auto _ : state) {
        const auto items = tax::EuerEvaluation::itemsBehind(entries, form, false, line);
        count = items.size();
        benchmark::DoNotOptimize(items.data());
    }
    state.counters["items"] = static_cast<double>(count);
}

// The window's worker after a change of the ledger: the ledger's years, the
// evaluation through a gate and its lists copied out for the main thread;
// with an argument of 1 also the items behind Zeile 23, the Summe
// Betriebseinnahmen (every income of the year).
void windowEvaluation(benchmark::State& state)
{
    const EinnahmeList& entries = bench::cachedRealisticLedger(1'000'000, true);
    const tax::EuerForm& form = *tax::EuerForm::forYear(2024);
    const std::size_t line = *form.indexOf(tax::EuerField::SummeEinnahmen);
    std::size_t listed = 0;
    for (auto _ : state) {
        SnapshotGate gate;
        gate.open();
        const std::vector<int> years = tax::LedgerYears::of(entries, &gate);
        const tax::EuerResult result = tax::EuerEvaluation::evaluate(entries, form, false, &gate);
        listed = 0;
        for (const auto* list :
            { &result.nichtZugeordnet, &result.nichtAbziehbar, &result.anlagegut, &result.nichtTeil, &result.hinweise })
            listed += tax::EuerEvaluation::listedItems(*list, entries, &gate).size();
        if (state.range(0) == 1)
            listed += tax::EuerEvaluation::listedItems(
                tax::EuerEvaluation::itemsBehind(entries, form, false, line, &gate), entries, &gate)
                          .size();
        gate.close();
        benchmark::DoNotOptimize(years.data());
    }
    state.counters["listed"] = static_cast<double>(listed);
}

void ledgerYears(benchmark::State& state)
{
    const EinnahmeList& entries = bench::cachedRealisticLedger(1'000'000, true);
    for (auto _ : state)
        benchmark::DoNotOptimize(tax::LedgerYears::of(entries).data());
}

BENCHMARK(evaluate)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(itemsBehindOneLine)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(windowEvaluation)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ledgerYears)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
