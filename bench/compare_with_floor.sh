#!/usr/bin/env bash
# Puts reading a ledger beside the floor program (perf-floor/walk in the shared
# folder beside the checkout: the least work any reader must do) in one
# hyperfine run per ledger size: `saldo-cli report` (read, evaluate, print),
# `saldo-cli check` (read and count) and the floor, with their median times,
# their ratios to the floor and their peak memory. Absolute times on a shared
# virtual machine wander from run to run; the ratios within one run do not.
# Run it while nothing else builds (heavy bench/compare_with_floor.sh).
#   bench/compare_with_floor.sh [COUNT...]     (default: 100000 1000000)
#   SALDO_FLOOR_DIR=...   where walk.c and its Makefile are (default ../shared/perf-floor)
#   SALDO_BENCH_RUNS=...  timed runs per command after 3 warm-up runs (default 15)
set -euo pipefail
cd "$(dirname "$0")/.."
counts=("$@")
[[ ${#counts[@]} -gt 0 ]] || counts=(100000 1000000)
runs=${SALDO_BENCH_RUNS:-15}
floor_dir=${SALDO_FLOOR_DIR:-../shared/perf-floor}
[[ -f $floor_dir/walk.c ]] || { echo "compare_with_floor: no floor program in $floor_dir" >&2; exit 2; }
source bench/build_cli.sh

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The floor is built in a copy, never in the shared folder.
cp "$floor_dir/walk.c" "$floor_dir/Makefile" "$work/"
make -s -C "$work" walk >/dev/null
export TZ=Europe/Berlin

for count in "${counts[@]}"; do
  ledger=$work/ledger-$count.saldo
  "$build/bench/make_ledger" --generate "$count" "$ledger"
  echo "== $count entries, $(stat -c %s "$ledger") bytes"
  report="$build/cli/saldo-cli report $ledger"
  check="$build/cli/saldo-cli check $ledger"
  floor="$work/walk $ledger"
  hyperfine -N --style basic --warmup 3 --runs "$runs" --export-json "$work/times.json" \
    -n report "$report" -n check "$check" -n floor "$floor" >/dev/null
  for name in report check floor; do
    case $name in
      report) command=$report ;;
      check) command=$check ;;
      floor) command=$floor ;;
    esac
    kb=$( { /usr/bin/time -f '%M' $command >/dev/null; } 2>&1 | tail -1)
    echo "$name $kb" >>"$work/memory-$count"
  done
  python3 - "$work/times.json" "$work/memory-$count" <<'PY'
import json, statistics, sys
medians = {r["command"]: statistics.median(r["times"]) for r in json.load(open(sys.argv[1]))["results"]}
memory = dict(line.split() for line in open(sys.argv[2]))
floor = medians["floor"]
print(f"  {'':8s} {'median':>10s} {'to floor':>9s} {'peak memory':>12s}")
for name in ("report", "check", "floor"):
    print(f"  {name:8s} {medians[name] * 1e3:8.1f} ms {medians[name] / floor:8.2f}x {int(memory[name]) / 1024:8.1f} MiB")
PY
done
