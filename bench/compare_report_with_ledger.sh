#!/usr/bin/env bash
# Times the evaluation report end to end (`saldo-cli report FILE`: read the
# ledger file, calculate, write the text) against Debian's `ledger` producing a
# monthly register (`ledger -f JOURNAL reg -M`) of an equivalent journal: one
# transaction per entry, its gross amount posted to its category's account.
# Prints hyperfine's figures and the medians. Targets: at least 15 times
# faster than ledger; 1,000,000 entries under 1 s.
#   bench/compare_report_with_ledger.sh [COUNT ...]    (default 100000 1000000)
# SALDO_BUILD_DIR picks the build directory (default build).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup --bench
build=${SALDO_BUILD_DIR:-build}
counts=("$@")
[[ ${#counts[@]} -gt 0 ]] || counts=(100000 1000000)

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target saldo-cli make_ledger >/dev/null
cli="$build/cli/saldo-cli"

work=$(mktemp -d /tmp/saldo-report-vs-ledger-XXXXXX)
trap 'rm -rf "$work"' EXIT

for n in "${counts[@]}"; do
    file="$work/ledger-$n.saldo"
    journal="$work/ledger-$n.journal"
    "$build/bench/make_ledger" --generate "$n" "$file"
    # The journal is made from the tool's own dump of the file, so both sides
    # see the same entries (top-level entries only: split bookings are not
    # part of the report either).
    "$cli" dump "$file" >"$work/dump-$n.txt"
    /usr/bin/python3 - "$work/dump-$n.txt" "$journal" <<'PY'
import re
import sys

entry = re.compile(r'^name="((?:[^"\\]|\\.)*)" kategorie="((?:[^"\\]|\\.)*)" art="((?:[^"\\]|\\.)*)" '
                   r'.*? brutto=(\S+) .*? datum=(\d{4})-(\d\d)-(\d\d)T')
bad = re.compile(r'[:;()\[\]@*!&=#|%]')
with open(sys.argv[1], encoding="utf-8") as dump, open(sys.argv[2], "w", encoding="utf-8") as out:
    count = 0
    for line in dump:
        m = entry.match(line)
        if not m:
            continue  # split bookings are indented
        name, kategorie, art, brutto, year, month, day = m.groups()
        account = " ".join(bad.sub(" ", kategorie).split()) or "Ohne Kategorie"
        side = "Erloese" if art == "Einnahme" else "Aufwand"
        amount = ("-" + brutto if art == "Einnahme" else brutto).replace("--", "")
        out.write(f"{year}/{month}/{day} {' '.join(name.split()) or 'Eintrag'}\n"
                  f"    {side}:{account}    {amount} EUR\n    Kasse\n\n")
        count += 1
print(f"journal: {count} transactions", file=sys.stderr)
PY
    ledger -f "$journal" bal >/dev/null  # the journal must parse

    # ledger takes some 20 s at a million entries: fewer runs of it there.
    ledger_runs=10
    [[ $n -ge 1000000 ]] && ledger_runs=3
    echo "== $n entries"
    hyperfine --style basic --warmup 1 --runs 15 --export-json "$work/saldo-$n.json" \
        -n "saldo-cli report" "$cli report $file >/dev/null"
    hyperfine --style basic --warmup 1 --runs "$ledger_runs" --export-json "$work/ledger-$n.json" \
        -n "ledger reg -M" "ledger -f $journal reg -M >/dev/null"
    /usr/bin/python3 - "$work/saldo-$n.json" "$work/ledger-$n.json" "$n" <<'PY'
import json
import sys

saldo, ledger = (json.load(open(path))["results"][0]["median"] for path in sys.argv[1:3])
print(f"medians at {sys.argv[3]} entries: saldo-cli report {saldo * 1000:.1f} ms, "
      f"ledger reg -M {ledger * 1000:.1f} ms, ratio {ledger / saldo:.1f}x")
PY
done
