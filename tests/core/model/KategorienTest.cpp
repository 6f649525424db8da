#include "model/Kategorien.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace saldo {
namespace {

// FNV-1a over all rows, each followed by a line feed: catches any changed
// character, blank or umlaut in the chart.
std::uint64_t fingerprint(const std::vector<std::string>& rows)
{
    std::uint64_t h = 1469598103934665603ull;
    for (const auto& row : rows) {
        for (unsigned char c : row + "\n") {
            h ^= c;
            h *= 1099511628211ull;
        }
    }
    return h;
}

TEST(KategorienTest, DefaultChartHasItsRowsInOrderWithTheirFinalBlanks)
{
    const auto rows = Kategorien::defaultKategorien();
    ASSERT_EQ(rows.size(), 174u);
    EXPECT_EQ(rows.front(), "0027 EDV-Software Gesch. ");
    EXPECT_EQ(rows[6],
        "0410 Gesch\xC3\xA4"
        "ftsausstattung Gesch. ");
    EXPECT_EQ(rows[46], "2340 Einstellungen in Sonderposten mit ");
    EXPECT_EQ(rows[47],
        "R\xC3\xBC"
        "cklagenanteil (steuerfre Gesch. ");
    EXPECT_EQ(rows[117], "4822 Abschreibungen auf Immatrielle ");
    EXPECT_EQ(rows[148], "8500 Provisionserl\xC3\xB6se Gesch. ");
    EXPECT_EQ(rows[149], "8510 Provisionserl\xC3\xB6se Gesch. ");
    EXPECT_EQ(rows.back(), "9000 Saldenvortr\xC3\xA4ge, Sachkonten Gesch. ");
    for (const auto& row : rows)
        EXPECT_EQ(row.back(), ' ') << row;
    EXPECT_EQ(fingerprint(rows), 0xc053c9f95109c200ull) << std::hex << fingerprint(rows);
}

TEST(KategorienTest, DefaultChartIsStoredOnlyWhenNothingIsStored)
{
    InMemoryUserDefaults defaults;
    EXPECT_FALSE(Kategorien::isKeyPresentInUserDefaults(defaults, "Kategorien"));
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    EXPECT_EQ(defaults.stringArray("Kategorien"), Kategorien::defaultKategorien());
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    EXPECT_EQ(defaults.writeCount(), 1);

    InMemoryUserDefaults empty;
    empty.setStringArray("Kategorien", {});
    Kategorien::storeDefaultKategorienIfMissing(empty);
    EXPECT_EQ(empty.stringArray("Kategorien"), std::vector<std::string> {});

    InMemoryUserDefaults scalar;
    scalar.setRawValue("Kategorien", { false, {} });
    Kategorien::storeDefaultKategorienIfMissing(scalar);
    EXPECT_TRUE(scalar.hasValue("Kategorien"));
    EXPECT_FALSE(scalar.stringArray("Kategorien").has_value());
}

TEST(KategorienTest, ReadersFallBackAsEachNeeds)
{
    InMemoryUserDefaults defaults;
    // Absent: the table cells get nothing, the detail panel gets the chart.
    EXPECT_FALSE(Kategorien::storedList(defaults).has_value());
    EXPECT_EQ(Kategorien::listOrDefault(defaults).size(), 174u);
    EXPECT_EQ(defaults.writeCount(), 0);

    // An array holding a number: not a string list, for every reader.
    defaults.setRawValue("Kategorien", { true, { std::string("1000 Kasse Kasse "), std::nullopt } });
    EXPECT_FALSE(Kategorien::storedList(defaults).has_value());
    EXPECT_EQ(Kategorien::listOrDefault(defaults).size(), 174u);
    EXPECT_TRUE(defaults.hasValue("Kategorien")); // left as it was

    defaults.setStringArray("Kategorien", { "Eigene " });
    EXPECT_EQ(Kategorien::storedList(defaults), std::vector<std::string> { "Eigene " });
    EXPECT_EQ(Kategorien::listOrDefault(defaults), std::vector<std::string> { "Eigene " });
}

} // namespace
} // namespace saldo
