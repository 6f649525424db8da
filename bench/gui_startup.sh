#!/usr/bin/env bash
# Time from starting the program until its first window is painted, with a
# ledger of 100,000 and of 1,000,000 entries (offscreen, median of 5 runs).
#   bench/gui_startup.sh [BUILD_DIR]
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-${SALDO_BUILD_DIR:-$root/build}}
cmake --build "$build" --target saldo gui_bench >/dev/null
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
for count in 100000 1000000; do
  ledger="$scratch/ledger-$count.saldo"
  "$build/bench/gui_bench" --write-ledger "$count" "$ledger"
  times=()
  for run in 1 2 3 4 5; do
    line=$(XDG_CONFIG_HOME="$scratch/config" XDG_RUNTIME_DIR="$scratch" QT_QPA_PLATFORM=offscreen \
      "$build/gui/saldo" --timing --screenshot "$scratch/shot.png" "$ledger" 2>&1 >/dev/null | grep 'painted after')
    times+=("$(sed 's/.*after \([0-9]*\) ms.*/\1/' <<<"$line")")
  done
  median=$(printf '%s\n' "${times[@]}" | sort -n | sed -n 3p)
  echo "$count entries ($(du -h "$ledger" | cut -f1)): painted after ${median} ms (runs: ${times[*]})"
done
