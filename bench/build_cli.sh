# Sourced by the comparison scripts: installs the benchmark tools, builds
# saldo-cli and make_ledger optimised in $build (build-bench unless
# SALDO_BENCH_BUILD_DIR says otherwise), from the checkout's top folder.
scripts/setup --bench
build=${SALDO_BENCH_BUILD_DIR:-build-bench}
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSALDO_BUILD_GUI=OFF -DSALDO_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j"$(nproc)" --target saldo-cli make_ledger >/dev/null
