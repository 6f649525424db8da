// Interop with Python's plistlib: it must read what we write with equal
// values, and we must read what it writes, binary (8-byte reals, shared
// objects, integers) and XML. Both sides print every entry as one line of
// hex-encoded texts, float bit patterns and dates in whole microseconds.
#include "model/LedgerFile.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace saldo {
namespace {

namespace fs = std::filesystem;

const char* const kCommon = R"PY(
import datetime, plistlib, struct, sys
EPOCH = datetime.datetime(2001, 1, 1)
def hx(s): return s.encode('utf-8').hex()
def f32(v): return struct.pack('>f', float(v)).hex()
def micros(d): return (d - EPOCH) // datetime.timedelta(microseconds=1)
def walk(entries, depth, out):
    for e in entries:
        out.append('|'.join([str(depth), ','.join(sorted(k for k in e if k != 'netto')), hx(e['name']),
            hx(e['kategorie']), hx(e['art']), str(int(e['innergemeinschaftlicherErwerb'])), str(int(e['isNonEU'])),
            f32(e['brutto']), f32(e['steuersatz']), str(micros(e['datum'])), hx(e['rechnungsnummer']),
            hx(e['steuernummer']), hx(e['leistungsart']), str(len(e['childTransactions']))]))
        walk(e['childTransactions'], depth + 1, out)
)PY";

const char* const kReadOurs = R"PY(
data = open(sys.argv[1], 'rb').read()
out = []
walk(plistlib.loads(data, fmt=plistlib.FMT_BINARY), 0, out)
# The trailer: offsets and references take the fewest bytes that hold them.
offset_size, ref_size = data[-26], data[-25]
count, top, table = struct.unpack('>QQQ', data[-24:])
need = lambda n: max(1, (n.bit_length() + 7) // 8)
offsets = [int.from_bytes(data[table + i * offset_size:table + (i + 1) * offset_size], 'big') for i in range(count)]
print('minimal sizes', offset_size == need(max(offsets)), ref_size == need(count - 1))
print('\n'.join(out))
)PY";

const char* const kWriteTheirs = R"PY(
D = datetime.datetime
def entry(name, brutto, steuersatz, datum, children=(), **more):
    e = {'name': name, 'kategorie': '8400 Erlöse 19 % USt Erlöse ', 'art': 'Einnahme',
         'innergemeinschaftlicherErwerb': False, 'isNonEU': False, 'brutto': brutto, 'steuersatz': steuersatz,
         'datum': datum, 'rechnungsnummer': 'RE-7', 'steuernummer': '', 'leistungsart': 'Beratung',
         'childTransactions': list(children)}
    e.update(more)
    return e
grandchild = entry('Enkel', 0.1, 19.0, D(1999, 12, 31, 23, 59, 59))
entries = [
    entry('Müller & Söhne <GmbH> 😀', 119.0, 19, D(2024, 2, 29, 13, 45, 7),
          [entry('Kind', 59.5, 7, D(2024, 3, 1), [grandchild], netto=1.5)], art='Ausgabe'),
    entry('Zahlen', -3, 16.0, D(2001, 1, 1), innergemeinschaftlicherErwerb=True, isNonEU=True),
    entry('', 1e30, 0.30000000000000004, D(2038, 1, 19, 3, 14, 8), netto='extra'),
]
open(sys.argv[1], 'wb').write(plistlib.dumps(entries, fmt=plistlib.FMT_BINARY))
open(sys.argv[2], 'wb').write(plistlib.dumps(entries, fmt=plistlib.FMT_XML))
out = []
walk(entries, 0, out)
print('\n'.join(out))
)PY";

std::string hex(std::string_view bytes)
{
    static const char digits[] = "0123456789abcdef";
    std::string out;
    for (const char c : bytes) {
        out += digits[static_cast<unsigned char>(c) >> 4];
        out += digits[static_cast<unsigned char>(c) & 15];
    }
    return out;
}

std::string floatHex(float value)
{
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%08x", std::bit_cast<std::uint32_t>(value));
    return buffer;
}

void lines(const EinnahmeList& entries, int depth, std::string& out)
{
    for (const auto& e : entries) {
        std::ostringstream line;
        line << depth << '|'
             << "art,brutto,childTransactions,datum,innergemeinschaftlicherErwerb,isNonEU,kategorie,leistungsart,name,"
                "rechnungsnummer,steuernummer,steuersatz"
             << '|' << hex(e->name()) << '|' << hex(e->kategorie()) << '|' << hex(e->art()) << '|'
             << int(e->innergemeinschaftlicherErwerb()) << '|' << int(e->isNonEU()) << '|' << floatHex(e->brutto())
             << '|' << floatHex(e->steuersatz()) << '|' << std::llround(e->datum() * 1e6) << '|'
             << hex(e->rechnungsnummer()) << '|' << hex(e->steuernummer()) << '|' << hex(e->leistungsart()) << '|'
             << e->childTransactions().size() << '\n';
        out += line.str();
        lines(e->childTransactions(), depth + 1, out);
    }
}

class LedgerFilePythonInteropTest : public testing::TempDirTest {
protected:
    void SetUp() override
    {
        if (std::system("python3 -c 'import plistlib' >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "python3 with plistlib is not installed";
        TempDirTest::SetUp();
    }

    std::string python(const char* script, const std::string& arguments)
    {
        const fs::path file = dir / "script.py";
        std::ofstream(file) << kCommon << script;
        const auto [status, output] = testing::runCommand("python3 " + file.string() + " " + arguments);
        EXPECT_EQ(status, 0) << output;
        return output;
    }
};

TEST_F(LedgerFilePythonInteropTest, PlistlibReadsWhatWeWriteWithEqualValues)
{
    Einnahme::Stored s;
    s.name = "Gebühr für Überweisung 😀 & <mehr>";
    s.kategorie = "4970 Nebenkosten des Geldverkehrs Nebenk. ";
    s.art = kArtAusgabe;
    s.isNonEU = true;
    s.brutto = 0.1f;
    s.steuersatz = 19.0f;
    s.datum = 730'000'000.123456;
    s.rechnungsnummer = std::string(40, '7');
    auto child = Einnahme::restore(s);
    s.name = "Kind ohne Umlaut";
    s.datum = -86'400.5;
    s.brutto = -0.0f;
    s.innergemeinschaftlicherErwerb = true;
    auto grandchild = Einnahme::restore(s);
    child->setChildTransactions({ grandchild });
    s.name = "Oben";
    s.brutto = 3.4028235e38f;
    s.steuersatz = 1e-45f;
    s.datum = 0.0;
    s.childTransactions = { child, Einnahme::restore(s) };
    EinnahmeList entries = { Einnahme::restore(s) };
    // Enough entries for two-byte references.
    for (int i = 0; i < 40; ++i)
        entries.push_back(Einnahme::restore(child->stored()));

    const fs::path file = dir / "ours.saldo";
    LedgerFile::write(file.string(), entries);
    std::string expected = "minimal sizes True True\n";
    lines(entries, 0, expected);
    EXPECT_EQ(python(kReadOurs, file.string()), expected);
}

TEST_F(LedgerFilePythonInteropTest, WeReadWhatPlistlibWritesBinaryAndXml)
{
    const fs::path binary = dir / "theirs.plist";
    const fs::path xml = dir / "theirs.xml";
    const std::string expected = python(kWriteTheirs, binary.string() + " " + xml.string());
    ASSERT_FALSE(expected.empty());
    std::string fromBinary, fromXml;
    lines(LedgerFile::read(binary.string()), 0, fromBinary);
    lines(LedgerFile::read(xml.string()), 0, fromXml);
    EXPECT_EQ(fromBinary, expected);
    EXPECT_EQ(fromXml, expected);
}

} // namespace
} // namespace saldo
