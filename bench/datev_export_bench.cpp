// The DATEV export of a large ledger: 100,000 entries of one year (with 5 %
// of them split, about 105,000 items, so two batches) must be written into
// their batches in memory in under 0.5 s; the file write itself is the atomic
// writer's. "run" is the whole export: the items, the cents, the tax keys,
// the Windows-1252 texts and the batches' bytes. Run with
// --benchmark_repetitions=9 to read medians.
#include "RealisticLedger.h"

#include "exchange/DatevExport.h"

#include <benchmark/benchmark.h>

namespace {

using namespace saldo;

void run(benchmark::State& state)
{
    const EinnahmeList& entries = bench::cachedRealisticLedger(static_cast<std::size_t>(state.range(0)));
    const DatevExportRequest request { .beraternummer = 1234567,
        .mandantennummer = 10001,
        .from = { 2024, 1, 1 },
        .to = { 2024, 12, 31 },
        .bezeichnung = "Benchmark" };
    std::size_t bytes = 0;
    std::size_t bookings = 0;
    for (auto _ : state) {
        const DatevExportResult result = DatevExport::run(entries, request);
        bytes = 0;
        for (const DatevBatchFile& file : result.files)
            bytes += file.bytes.size();
        bookings = result.bookings;
        benchmark::DoNotOptimize(result.files.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["bookings"] = static_cast<double>(bookings);
    state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}

BENCHMARK(run)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
