// The XML reader against malformed and hostile documents: each must be
// refused whole with its reason, entities must never be expanded.
#include "BplistBuilder.h"

#include <cmath>

namespace saldo {
namespace {

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
    for (const char* key : test::kEntryKeys) {
        const auto found = values.find(key);
        if (found == values.end() || found->second)
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

// A document of one entry whose `key` holds `markup`, or with markup after its twelve keys.
std::string withValue(const std::string& key, const std::string& markup)
{
    return document(entry({ { key, markup } }));
}
std::string withExtra(const std::string& extra)
{
    return document(entry({}, extra));
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
    EXPECT_TRUE(a.isNonEU());
    EXPECT_EQ(a.brutto(), -5.0f);
    EXPECT_EQ(a.steuersatz(), 19.0f);
    // 2024-03-01 is 8460 days after 2001-01-01.
    EXPECT_EQ(a.datum(), 8460.0 * 86400 + 9 * 3600 + 30 * 60);
    EXPECT_EQ(a.leistungsart(), "  ");
    ASSERT_EQ(a.childTransactions().size(), 1u);
    EXPECT_TRUE(std::isnan(a.childTransactions()[0]->steuersatz()));
    EXPECT_EQ(entries[1]->datum(), -1.25);
    EXPECT_EQ(entries[1]->steuersatz(), -16.0f);

    // A bare root array without the <plist> element, a document type without declarations.
    EXPECT_EQ(LedgerFile::decode("<array>" + entry() + "</array>").size(), 1u);
    EXPECT_EQ(LedgerFile::decode(document(entry(), "<!DOCTYPE plist SYSTEM \"plist.dtd\">\n")).size(), 1u);
}

TEST(XmlPropertyListReaderTest, RefusesHostileAndMalformedDocuments)
{
    const std::string external = "<!DOCTYPE plist [<!ENTITY xxe SYSTEM \"file:///etc/passwd\">]>\n";
    const std::pair<std::string, std::string> cases[] = {
        // Entities are never expanded or fetched; undeclared references stay refused.
        { document(entry({ { "name", "<string>&xxe;</string>" } }), external), "declares entities" },
        { withValue("name", "<string>&xxe;</string>"), "unknown entity &xxe;" },
        { withValue("name", "<string>A & B</string>"), "starts no reference" },
        { withValue("name", "<string>&#0;</string>"), "invalid character reference" },
        { "<plist><array><dict></array></plist>", "malformed XML" },
        { document(entry()).substr(0, 120), "malformed XML" },
        { "<plist><dict/></plist>", "root is <dict>, not an array" },
        { "<plist/>", "the property list is empty" },
        { "<plist><array/><array/></plist>", "more than one root value" },
        { "<plist><array/></plist><plist/>", "more than one document element" },
        { document("<string>x</string>"), "entry 1: is <string>, not a dictionary" },
        { document("Text" + entry()), "text inside <array>" },
        { withExtra("<key>netto</key>"), "key \"netto\" has no value" },
        { withExtra("<string>ohne Schluessel</string><true/>"), "<string> where a <key> belongs" },
        { withValue("name", "<string>a<b/></string>"), "<string> holds an element" },
        { withValue("isNonEU", "<true>ja</true>"), "<true> must be empty" },
        { withExtra("<key>x</key><set/>"), "unknown element <set>" },
        { withValue("name", "<string>\xC3\x28</string>"), "not valid UTF-8" },
        { withValue("brutto", "<real>1,5</real>"), "\"1,5\" is not a real number" },
        { withValue("brutto", "<real>1e999</real>"), "out of range" },
        { withValue("brutto", "<integer>12.5</integer>"), "is not an integer" },
        // Values under unknown keys are checked too, then dropped.
        { withExtra("<key>anhang</key><data>@@@@</data>"), "<data> is not valid base64" },
        { withExtra("<key>anhang</key><data>T=Wu</data>"), "<data> is not valid base64" },
        { withExtra("<key>x</key><date>1.1.2024</date>"), "not a date" },
    };
    for (const auto& [xml, reason] : cases) {
        SCOPED_TRACE(reason);
        EXPECT_REFUSED(xml, reason);
    }
    for (const char* date : { "2023-02-29T00:00:00Z", "2024-04-31T12:00:00Z", "2024-01-01T24:00:00Z", "" }) {
        SCOPED_TRACE(date);
        EXPECT_REFUSED(withValue("datum", std::string("<date>") + date + "</date>"), "key \"datum\" \"");
    }
}

TEST(XmlPropertyListReaderTest, EveryKeyIsRequiredWithItsType)
{
    const std::map<std::string, std::string> wrong = { { "name", "<integer>1</integer>" }, { "kategorie", "<true/>" },
        { "art", "<array/>" }, { "innergemeinschaftlicherErwerb", "<string>true</string>" },
        { "isNonEU", "<integer>1</integer>" }, { "brutto", "<string>119</string>" }, { "steuersatz", "<true/>" },
        { "datum", "<integer>0</integer>" }, { "rechnungsnummer", "<data>AA==</data>" }, { "steuernummer", "<dict/>" },
        { "leistungsart", "<date>2024-01-01T00:00:00Z</date>" }, { "childTransactions", "<dict/>" } };
    for (const std::string key : test::kEntryKeys) {
        SCOPED_TRACE(key);
        EXPECT_REFUSED(document(entry() + entry({ { key, std::nullopt } })), "entry 2: key \"" + key + "\" missing");
        const std::string child = entry({ { key, wrong.at(key) } });
        EXPECT_REFUSED(withValue("childTransactions", "<array>" + entry() + child + "</array>"),
            "entry 1 (child 2): key \"" + key + "\" holds <");
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
    EXPECT_EQ(test::depthOf(LedgerFile::decode(nested(513)).at(0).get()), 513);
    EXPECT_REFUSED(nested(514), "split bookings nested deeper than 512 levels");
    // A hundred thousand nested arrays under an unknown key.
    std::string open, close;
    for (int i = 0; i < 100000; ++i)
        open += "<array>", close += "</array>";
    EXPECT_REFUSED(withExtra("<key>tief</key>" + open + close), "values nested deeper than");
}

} // namespace
} // namespace saldo
