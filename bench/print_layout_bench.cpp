// The printout's layout at ledger sizes a large business reaches. Making the
// layout runs the evaluation once and notes each entry's line place; a page's
// texts are then built on demand, so a page of a long printout costs what a
// page of a short one does. Run with --benchmark_repetitions=9 to read medians.
#include "RealisticLedger.h"

#include "printing/PrintLayout.h"

#include <benchmark/benchmark.h>

#include <map>

namespace {

using namespace saldo;

constexpr double kA4Width = 595.0, kA4Height = 842.0;

const EinnahmeList& ledger(std::size_t count)
{
    static std::map<std::size_t, EinnahmeList> made;
    auto it = made.find(count);
    if (it == made.end())
        it = made.emplace(count, bench::realisticLedger(count)).first;
    return it->second;
}

void makeLayout(benchmark::State& state)
{
    const EinnahmeList& entries = ledger(static_cast<std::size_t>(state.range(0)));
    int pages = 0;
    for (auto _ : state) {
        PrintLayout layout(entries, kA4Width, kA4Height);
        pages = layout.pageCount();
        benchmark::DoNotOptimize(pages);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["pages"] = pages;
}

// The texts of the middle page, as a painter asks for them.
void middlePage(benchmark::State& state)
{
    const PrintLayout layout(ledger(static_cast<std::size_t>(state.range(0))), kA4Width, kA4Height);
    const int page = layout.pageCount() / 2;
    std::size_t texts = 0;
    for (auto _ : state) {
        const std::vector<PrintText> out = layout.textsOfPage(page);
        texts = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["texts"] = static_cast<double>(texts);
}

BENCHMARK(makeLayout)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(middlePage)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
