#!/usr/bin/env bash
# Puts the VAT return of a quarter beside reading the ledger, in one hyperfine
# run: `saldo-cli ustva LEDGER 2025-Q2` (read, place every item of the quarter,
# print the form and its lists) against `saldo-cli check LEDGER` (read and
# count), over a realistic ledger whose dates all lie in 2025. Prints both
# medians and their ratio; the target is at most 1.2.
# Run it while nothing else builds (heavy bench/compare_ustva_with_check.sh).
#   bench/compare_ustva_with_check.sh [COUNT]     (default: 1000000)
#   SALDO_BENCH_RUNS=...  timed runs per command after 3 warm-up runs (default 15)
set -euo pipefail
cd "$(dirname "$0")/.."
count=${1:-1000000}
runs=${SALDO_BENCH_RUNS:-15}
source bench/build_cli.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TZ=Europe/Berlin
ledger=$work/ledger-$count.saldo
"$build/bench/make_ledger" --generate "$count" "$ledger" 2025
echo "== $count entries, $(stat -c %s "$ledger") bytes"
ustva="$build/cli/saldo-cli ustva $ledger 2025-Q2"
check="$build/cli/saldo-cli check $ledger"
echo "hyperfine -N --warmup 3 --runs $runs -n ustva '$ustva' -n check '$check'"
hyperfine -N --style basic --warmup 3 --runs "$runs" --export-json "$work/times.json" \
  -n ustva "$ustva" -n check "$check" >/dev/null
python3 - "$work/times.json" <<'PY'
import json, statistics, sys
medians = {r["command"]: statistics.median(r["times"]) for r in json.load(open(sys.argv[1]))["results"]}
for name in ("ustva", "check"):
    print(f"  {name:6s} {medians[name] * 1e3:8.1f} ms")
ratio = medians["ustva"] / medians["check"]
print(f"  ustva / check = {ratio:.3f} (target at most 1.2)")
PY
