#!/usr/bin/env bash
# Times reading one large realistic ledger three ways and reports medians and
# peak memory: our reader (saldo-cli check: read and count, nothing printed),
# Python's plistlib.load, and libplist's plistutil (reads, writes to /dev/null).
#   bench/compare_readers.sh [COUNT] [RUNS]      (defaults: 1000000 entries, 3 runs of the
#   other two readers; ours always runs 15 times after a warm-up run)
set -euo pipefail
cd "$(dirname "$0")/.."
count=${1:-1000000}
runs=${2:-3}
source bench/build_cli.sh

file=$(mktemp --suffix=.saldo)
results=$(mktemp --suffix=.json)
trap 'rm -f "$file" "$results" "$results.ours"' EXIT
"$build/bench/make_ledger" --generate "$count" "$file"
echo "ledger: $count entries, $(stat -c %s "$file") bytes"

ours="$build/cli/saldo-cli check $file"
plistlib="python3 -c 'import plistlib, sys; plistlib.load(open(sys.argv[1], \"rb\"))' $file"
libplist="plistutil -i $file -o /dev/null"

# Ours takes well under a second: more runs of it, after a warm-up run.
hyperfine --style basic --warmup 1 --runs 15 --export-json "$results.ours" -n saldo-cli "$ours"
hyperfine --style basic --runs "$runs" --export-json "$results" -n plistlib "$plistlib" -n libplist "$libplist"

echo
echo "peak memory (maximum resident set size):"
for name in saldo-cli plistlib libplist; do
  case $name in
    saldo-cli) command=$ours ;;
    plistlib) command=$plistlib ;;
    libplist) command=$libplist ;;
  esac
  kb=$( { /usr/bin/time -f '%M' sh -c "$command" >/dev/null; } 2>&1 | tail -1)
  awk -v n="$name" -v kb="$kb" 'BEGIN { printf "  %-10s %8.1f MiB\n", n, kb / 1024 }'
done

python3 - "$results.ours" "$results" <<'PY'
import json, statistics, sys
medians = {r["command"]: statistics.median(r["times"])
           for path in sys.argv[1:] for r in json.load(open(path))["results"]}
print("\nmedian wall time:")
for name, seconds in medians.items():
    print(f"  {name:10s} {seconds:8.3f} s")
ours = medians["saldo-cli"]
print(f"\nsaldo-cli is {medians['plistlib'] / ours:.1f}x faster than plistlib (target 20x)"
      f" and {medians['libplist'] / ours:.1f}x faster than libplist (target 10x)")
PY
