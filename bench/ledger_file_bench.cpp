// Decoding and encoding ledger files of realistic entries.
//   build/bench/ledger_file_bench [--benchmark_filter=...]
#include "RealisticLedger.h"

#include "model/LedgerFile.h"

#include <benchmark/benchmark.h>

namespace {

void decodeLedger(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    const std::string bytes = saldo::LedgerFile::encode(saldo::bench::realisticLedger(count));
    for (auto _ : state) {
        saldo::EinnahmeList entries = saldo::LedgerFile::decode(bytes);
        benchmark::DoNotOptimize(entries.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
    state.counters["file_MiB"] = static_cast<double>(bytes.size()) / (1 << 20);
}

void encodeLedger(benchmark::State& state)
{
    const saldo::EinnahmeList entries = saldo::bench::realisticLedger(static_cast<std::size_t>(state.range(0)));
    std::size_t size = 0;
    for (auto _ : state) {
        std::string bytes = saldo::LedgerFile::encode(entries);
        size = bytes.size();
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

} // namespace

BENCHMARK(decodeLedger)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(encodeLedger)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
