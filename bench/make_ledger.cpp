// Writes a realistic ledger file for the reader comparison, or, without
// --generate, times writing one (Google Benchmark flags apply).
//   make_ledger --generate COUNT FILE [YEAR]      (with YEAR: every date in that year)
#include "RealisticLedger.h"

#include "model/LedgerFile.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <unistd.h>

namespace {

void writeLedgerFile(benchmark::State& state)
{
    const saldo::EinnahmeList entries = saldo::bench::realisticLedger(static_cast<std::size_t>(state.range(0)));
    char path[] = "/tmp/saldo-make-ledger-XXXXXX";
    const int fd = ::mkstemp(path);
    ::close(fd);
    for (auto _ : state)
        saldo::LedgerFile::write(path, entries);
    std::remove(path);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(writeLedgerFile)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    if (argc >= 2 && std::strcmp(argv[1], "--generate") == 0) {
        std::size_t count = 0;
        int year = 0;
        if ((argc != 4 && argc != 5)
            || std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), count).ec != std::errc()
            || (argc == 5 && std::from_chars(argv[4], argv[4] + std::strlen(argv[4]), year).ec != std::errc())) {
            std::fprintf(stderr, "usage: make_ledger --generate COUNT FILE [YEAR]\n");
            return 2;
        }
        try {
            saldo::LedgerFile::write(
                argv[3], saldo::bench::realisticLedger(count, argc == 5 ? std::optional<int>(year) : std::nullopt));
        } catch (const std::runtime_error& e) { // the ledger's or the file's error
            std::fprintf(stderr, "make_ledger: %s\n", e.what());
            return 1;
        }
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
