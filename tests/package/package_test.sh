#!/usr/bin/env bash
# The Debian package as a user gets it: cpack packs this build into a .deb in a
# temporary folder, dpkg-deb unpacks it into a temporary root, and the installed
# files are run and checked with the desktop's own tools.
#   package_test.sh CPACK BUILD_DIR VERSION LEDGER
# Exits 77 (skipped) only where dpkg-deb is missing.
set -euo pipefail
cpack=$1 build=$2 version=$3 ledger=$4

if ! command -v dpkg-deb >/dev/null; then
  echo "SKIPPED: dpkg-deb is missing (Debian's dpkg), so the package cannot be unpacked"
  exit 77
fi

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
failures=0
fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}
expect_equal() { # WHAT ACTUAL EXPECTED
  [[ "$2" == "$3" ]] || fail "$1: got \"$2\", expected \"$3\""
}

if ! "$cpack" --config "$build/CPackConfig.cmake" -B "$tmp/out" >"$tmp/cpack.log" 2>&1; then
  cat "$tmp/cpack.log"
  echo "FAILED: cpack could not build the package"
  exit 1
fi
debs=("$tmp"/out/*.deb)
[[ ${#debs[@]} -eq 1 && -f ${debs[0]} ]] || { echo "FAILED: cpack made ${debs[*]}, not one .deb"; exit 1; }
deb=${debs[0]}

# One version for the programs and the package; Depends found by dpkg-shlibdeps.
expect_equal "package version" "$(dpkg-deb --field "$deb" Version)" "$version"
depends=$(dpkg-deb --field "$deb" Depends)
for library in libc6 libqt6widgets6 libutf8proc2 qt6-qpa-plugins; do
  [[ ",$depends," == *[\ ,]$library[\ ,]* ]] || fail "Depends lacks $library: $depends"
done

root=$tmp/root
dpkg-deb -x "$deb" "$root"
id=de.saldo.Saldo
share=$root/usr/share
for file in bin/saldo bin/saldo-cli share/man/man1/saldo.1.gz share/man/man1/saldo-cli.1.gz \
  share/doc/saldo/copyright share/doc/saldo/changelog.gz share/applications/$id.desktop \
  share/metainfo/$id.metainfo.xml share/mime/packages/$id.xml share/icons/hicolor/scalable/apps/$id.svg \
  share/icons/hicolor/{16x16,22x22,24x24,32x32,48x48,64x64,128x128,256x256}/apps/$id.png; do
  [[ -s $root/usr/$file ]] || fail "the package lacks /usr/$file"
done

# The installed programs answer in a terminal without a display.
no_display=(env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM LC_ALL=C.UTF-8)
expect_equal "saldo-cli --version" "$("${no_display[@]}" "$root/usr/bin/saldo-cli" --version 2>&1)" "saldo-cli $version"
expect_equal "saldo --version" "$("${no_display[@]}" "$root/usr/bin/saldo" --version 2>&1)" "Saldo $version"
help=$("${no_display[@]}" "$root/usr/bin/saldo" --help 2>&1) || fail "saldo --help failed: $help"
[[ $help == *--screenshot* && $help == *--timing* && $help == *--print-pdf* ]] \
  || fail "saldo --help lacks the options: $help"
# Qt's German translations are loaded whatever the locale, where they are installed.
if [[ -f /usr/share/qt6/translations/qtbase_de.qm ]]; then
  [[ $help == *Optionen:* ]] || fail "saldo --help is not German under LC_ALL=C: $help"
fi
# The printout as a PDF, drawn without a display; a ledger that cannot be read
# or a PDF that cannot be written is one line on standard error and status 1;
# a ledger is never written over (checked again by saldo-cli below).
if "${no_display[@]}" "$root/usr/bin/saldo" --print-pdf "$ledger" "$tmp/printout.pdf" 2>"$tmp/pdf.err"; then
  [[ $(head -c 5 "$tmp/printout.pdf") == "%PDF-" ]] || fail "saldo --print-pdf wrote no PDF"
else
  fail "saldo --print-pdf failed: $(cat "$tmp/pdf.err")"
fi
for args in "$tmp/missing.saldo $tmp/missing.pdf" "$ledger $tmp/no-folder/printout.pdf" "$ledger $ledger"; do
  # shellcheck disable=SC2086
  "${no_display[@]}" "$root/usr/bin/saldo" --print-pdf $args 2>"$tmp/pdf.err" && status=0 || status=$?
  expect_equal "status of saldo --print-pdf $args" "$status" 1
  expect_equal "error lines of saldo --print-pdf $args" "$(wc -l <"$tmp/pdf.err")" 1
done
expect_equal "saldo-cli check" "$("$root/usr/bin/saldo-cli" check "$ledger" 2>&1 | sed 's/.*: //')" \
  "$("$build/cli/saldo-cli" check "$ledger" 2>&1 | sed 's/.*: //')"
# The bank profiles are installed beside the programs, and the installed tool
# finds them there: an N26 export reads without --profile (Status after Hinweis).
[[ -s $share/saldo/bankprofile/n26.profil ]] || fail "the package lacks the bank profiles"
printf '"Booking Date","Value Date","Partner Name","Partner Iban",Type,"Payment Reference","Account Name","Amount (EUR)"\n2025-11-03,2025-11-03,A,DE1,T,Miete,K,-12.50\n' >"$tmp/n26.csv"
expect_equal "saldo-cli bank with an installed profile" \
  "$(XDG_CONFIG_HOME="$tmp/config" "$root/usr/bin/saldo-cli" bank "$tmp/n26.csv" 2>&1 | tail -1 | cut -d';' -f2,3,5,16)" \
  "Ausgabe;A: Miete;12,50;neu"

desktop-file-validate "$share/applications/$id.desktop" || fail "desktop-file-validate rejects the desktop entry"
appstreamcli validate --no-net --strict "$share/metainfo/$id.metainfo.xml" >"$tmp/appstream.log" 2>&1 \
  || { cat "$tmp/appstream.log"; fail "appstreamcli rejects the metainfo"; }

# The file type, looked up the way a desktop does (xdg-mime through GIO's gio) in a
# MIME database built from the package alone, beside the system's.
data=$tmp/data
mkdir -p "$data" "$tmp/home" "$tmp/files"
cp -r "$share/mime" "$share/applications" "$data/"
XDG_DATA_DIRS="$data" update-mime-database "$data/mime"
update-desktop-database "$data/applications"
cp "$ledger" "$tmp/files/Buchungen.saldo"
cp "$ledger" "$tmp/files/ohne-endung"
on_desktop() {
  env XDG_CURRENT_DESKTOP=GNOME XDG_DATA_HOME="$tmp/home" XDG_CONFIG_HOME="$tmp/home" "$@"
}
expect_equal "type of a ledger before the package" \
  "$(on_desktop XDG_DATA_DIRS=/usr/share xdg-mime query filetype "$tmp/files/Buchungen.saldo")" \
  "application/octet-stream"
for file in Buchungen.saldo ohne-endung; do
  expect_equal "type of $file" \
    "$(on_desktop XDG_DATA_DIRS="$data:/usr/share" xdg-mime query filetype "$tmp/files/$file")" "application/x-saldo"
done
expect_equal "program for application/x-saldo" \
  "$(on_desktop XDG_DATA_DIRS="$data:/usr/share" xdg-mime query default application/x-saldo)" "$id.desktop"

if [[ $failures -gt 0 ]]; then
  echo "$failures check(s) of $(basename "$deb") failed"
  exit 1
fi
echo "$(basename "$deb"): contents, programs, desktop entry, metainfo and file type are in order"
