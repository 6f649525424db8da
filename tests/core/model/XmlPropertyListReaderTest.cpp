// The XML reader against malformed and hostile documents: each must be
// refused whole with its reason, entities must never be expanded.
#include "model/LedgerFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <optional>

namespace saldo {
namespace {

std::string refusal(const std::string& bytes)
{
    try {
        return "accepted " + std::to_string(LedgerFile::decode(bytes).size()) + " entries";
    } catch (const LedgerFileError& e) {
        return e.what();
    }
}

#define EXPECT_REFUSED(bytes, reason) EXPECT_PRED_FORMAT2(::testing::IsSubstring, reason, refusal(bytes))

const char* const kKeys[12] = { "name", "kategorie", "art", "innergemeinschaftlicherErwerb", "isNonEU", "brutto",
    "steuersatz", "datum", "rechnungsnummer", "steuernummer", "leistungsart", "childTransactions" };

// One entry dictionary; `values` replaces a value's markup, nullopt leaves the key out.
std::string entry(const std::map<std::string, std::optional<std::string>>& values = {}, const std::string& extra = "")
{
    const std::map<std::string, std::string> defaults = { { "name", "<string>Miete</string>" },
        { "kategorie", "<string>4210 Miete Miete </string>" }, { "art", "<string>Ausgabe</string>" },
        { "innergemeinschaftlicherErwerb", "<false/>" }, { "isNonEU", "<true/>" }, { "brutto", "<real>1190</real>" },
        { "steuersatz", "<integer>19</integer>" }, { "datum", "<date>2024-03-01T09:30:00Z</date>" },
        { "rechnungsnummer", "<string/>" }, { "steuernummer", "<string></string>" },
        { "leistungsart", "<string>Raum</string>" }, { "childTransactions", "<array/>" } };
    std::string out = "<dict>\n";
    for (const char* key : kKeys) {
        const auto found = values.find(key);
        if (found != values.end() && !found->second)
            continue;
        out += "  <key>" + std::string(key) + "</key>" + (found != values.end() ? *found->second : defaults.at(key))
            + "\n";
    }
    return out + extra + "</dict>\n";
}

std::string document(const std::string& entries, const std::string& prolog = "")
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + prolog + "<plist version=\"1.0\">\n<array>\n" + entries
        + "</array>\n</plist>\n";
}

TEST(XmlPropertyListReaderTest, ReadsTheValuesOfAWellFormedDocument)
{
    const std::string xml = document(
        entry({ { "name",
                    "<string>M&#xFC;ller &amp; S&#246;hne &lt;GmbH&gt; <![CDATA[<roh> & ]]>&quot;x&apos;</string>" },
                  { "leistungsart", "<string>  </string>" }, { "brutto", "<real> -0.5e1 </real>" },
                  { "childTransactions", "<array>" + entry({ { "steuersatz", "<real>nan</real>" } }) + "</array>" } },
            "<key>netto</key><dict><key>a</key><array><data>TWFu\n  "
            "TQ==</data><date>2000-02-29T23:59:59Z</date></array></dict>")
        + "<!-- ein Kommentar -->"
        + entry({ { "datum", "<real>-1.25</real>" }, { "steuersatz", "<integer>-0x10</integer>" } }));
    const EinnahmeList entries = LedgerFile::decode(xml);
    ASSERT_EQ(entries.size(), 2u);
    const Einnahme& a = *entries[0];
    EXPECT_EQ(a.name(), "Müller & Söhne <GmbH> <roh> & \"x'");
    EXPECT_EQ(a.kategorie(), "4210 Miete Miete ");
    EXPECT_EQ(a.art(), "Ausgabe");
    EXPECT_FALSE(a.innergemeinschaftlicherErwerb());
    EXPECT_TRUE(a.isNonEU());
    EXPECT_EQ(a.brutto(), -5.0f);
    EXPECT_EQ(a.steuersatz(), 19.0f);
    // 2024-03-01 is 8460 days after 2001-01-01.
    EXPECT_EQ(a.datum(), 8460.0 * 86400 + 9 * 3600 + 30 * 60);
    EXPECT_EQ(a.rechnungsnummer(), "");
    EXPECT_EQ(a.leistungsart(), "  ");
    ASSERT_EQ(a.childTransactions().size(), 1u);
    EXPECT_TRUE(std::isnan(a.childTransactions()[0]->steuersatz()));
    EXPECT_EQ(entries[1]->datum(), -1.25);
    EXPECT_EQ(entries[1]->steuersatz(), -16.0f);

    // A bare root array without the <plist> element, and an empty one.
    EXPECT_EQ(LedgerFile::decode("<array>" + entry() + "</array>").size(), 1u);
    EXPECT_TRUE(LedgerFile::decode(document("")).empty());
}

TEST(XmlPropertyListReaderTest, NeverExpandsOrFetchesEntities)
{
    const std::string external = "<!DOCTYPE plist [<!ENTITY xxe SYSTEM \"file:///etc/passwd\">]>\n";
    EXPECT_REFUSED(document(entry({ { "name", "<string>&xxe;</string>" } }), external), "declares entities");
    const std::string laughs = "<!DOCTYPE plist [<!ENTITY a \"ha\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>\n";
    EXPECT_REFUSED(document(entry({ { "name", "<string>&b;</string>" } }), laughs), "declares entities");
    // Undeclared references stay refused, also without a document type.
    EXPECT_REFUSED(document(entry({ { "name", "<string>&xxe;</string>" } })), "unknown entity &xxe;");
    EXPECT_REFUSED(document(entry({ { "name", "<string>A & B</string>" } })), "starts no reference");
    EXPECT_REFUSED(document(entry({ { "name", "<string>&#0;</string>" } })), "invalid character reference");
    EXPECT_REFUSED(document(entry({ { "name", "<string>&#xD800;</string>" } })), "invalid character reference");
    // A document type without declarations is harmless.
    EXPECT_EQ(LedgerFile::decode(document(entry(), "<!DOCTYPE plist SYSTEM \"plist.dtd\">\n")).size(), 1u);
}

TEST(XmlPropertyListReaderTest, RefusesMalformedMarkupAndStructure)
{
    EXPECT_REFUSED("<plist><array><dict></array></plist>", "malformed XML");
    EXPECT_REFUSED("<plist><array>", "malformed XML");
    EXPECT_REFUSED(document(entry()).substr(0, 120), "malformed XML");
    EXPECT_REFUSED("<plist><dict/></plist>", "root is <dict>, not an array");
    EXPECT_REFUSED("<plist/>", "the property list is empty");
    EXPECT_REFUSED("<plist><array/><array/></plist>", "more than one root value");
    EXPECT_REFUSED(document("<string>x</string>"), "entry 1: is <string>, not a dictionary");
    EXPECT_REFUSED(document("Text" + entry()), "text inside <array>");
    EXPECT_REFUSED(document(entry({}, "<key>netto</key>")), "key \"netto\" has no value");
    EXPECT_REFUSED(document(entry({}, "<string>ohne Schluessel</string><true/>")), "<string> where a <key> belongs");
    EXPECT_REFUSED(document(entry({ { "name", "<string>a<b/></string>" } })), "<string> holds an element");
    EXPECT_REFUSED(document(entry({ { "isNonEU", "<true>ja</true>" } })), "<true> must be empty");
    EXPECT_REFUSED(document(entry({}, "<key>x</key><set/>")), "unknown element <set>");
    EXPECT_REFUSED(document(entry({ { "name", "<string>\xC3\x28</string>" } })), "not valid UTF-8");
}

TEST(XmlPropertyListReaderTest, RefusesBadDatesNumbersAndData)
{
    for (const char* date : { "2023-02-29T00:00:00Z", "2024-13-01T00:00:00Z", "2024-04-31T12:00:00Z",
             "2024-01-01T24:00:00Z", "2024-01-01 10:00:00Z", "2024-01-01T10:00:00", "gestern", "" }) {
        SCOPED_TRACE(date);
        EXPECT_REFUSED(document(entry({ { "datum", std::string("<date>") + date + "</date>" } })), "key \"datum\" \"");
    }
    EXPECT_REFUSED(document(entry({ { "brutto", "<real>1,5</real>" } })), "\"1,5\" is not a real number");
    EXPECT_REFUSED(document(entry({ { "brutto", "<real>1e999</real>" } })), "out of range");
    EXPECT_REFUSED(document(entry({ { "brutto", "<integer>12.5</integer>" } })), "is not an integer");
    EXPECT_REFUSED(document(entry({ { "brutto", "<integer>99999999999999999999</integer>" } })), "out of range");
    // Values under unknown keys are checked too, then dropped.
    EXPECT_REFUSED(document(entry({}, "<key>anhang</key><data>@@@@</data>")), "<data> is not valid base64");
    EXPECT_REFUSED(document(entry({}, "<key>anhang</key><data>TWF</data>")), "<data> is not valid base64");
    EXPECT_REFUSED(document(entry({}, "<key>anhang</key><data>T=Wu</data>")), "<data> is not valid base64");
    EXPECT_REFUSED(document(entry({}, "<key>x</key><date>1.1.2024</date>")), "not a date");
}

TEST(XmlPropertyListReaderTest, EveryKeyIsRequiredWithItsType)
{
    const std::map<std::string, std::string> wrong = { { "name", "<integer>1</integer>" }, { "kategorie", "<true/>" },
        { "art", "<array/>" }, { "innergemeinschaftlicherErwerb", "<string>true</string>" },
        { "isNonEU", "<integer>1</integer>" }, { "brutto", "<string>119</string>" }, { "steuersatz", "<true/>" },
        { "datum", "<integer>0</integer>" }, { "rechnungsnummer", "<data>AA==</data>" }, { "steuernummer", "<dict/>" },
        { "leistungsart", "<date>2024-01-01T00:00:00Z</date>" }, { "childTransactions", "<dict/>" } };
    for (const char* key : kKeys) {
        SCOPED_TRACE(key);
        EXPECT_REFUSED(
            document(entry() + entry({ { key, std::nullopt } })), "entry 2: key \"" + std::string(key) + "\" missing");
        const std::string child = entry({ { key, wrong.at(key) } });
        EXPECT_REFUSED(document(entry({ { "childTransactions", "<array>" + entry() + child + "</array>" } })),
            "entry 1 (child 2): key \"" + std::string(key) + "\" holds <");
    }
}

std::string nested(int levels)
{
    std::string inner = entry();
    for (int i = 1; i < levels; ++i)
        inner = entry({ { "childTransactions", "<array>" + inner + "</array>" } });
    return document(inner);
}

TEST(XmlPropertyListReaderTest, NestingIsCapped)
{
    const EinnahmeList deep = LedgerFile::decode(nested(300));
    int levels = 0;
    for (const Einnahme* e = deep.at(0).get(); e;
         e = e->childTransactions().empty() ? nullptr : e->childTransactions()[0].get())
        ++levels;
    EXPECT_EQ(levels, 300);
    EXPECT_EQ(LedgerFile::decode(nested(513)).size(), 1u);
    EXPECT_REFUSED(nested(514), "split bookings nested deeper than 512 levels");
    // A hundred thousand nested arrays under an unknown key.
    std::string arrays;
    for (int i = 0; i < 100000; ++i)
        arrays += "<array>";
    for (int i = 0; i < 100000; ++i)
        arrays += "</array>";
    EXPECT_REFUSED(document(entry({}, "<key>tief</key>" + arrays)), "values nested deeper than");
}

} // namespace
} // namespace saldo
