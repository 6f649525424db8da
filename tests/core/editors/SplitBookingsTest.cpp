#include "editors/SplitBookings.h"
#include "editors/SplitBookingWriteBack.h"

#include <gtest/gtest.h>

#include <tuple>

namespace saldo {
namespace {

using namespace std::string_literals;

EinnahmePtr entryWith(const std::vector<std::pair<const char*, float>>& children)
{
    auto entry = Einnahme::make("Einkauf", "", 12.5f, 7.0f);
    entry->setArt(kArtAusgabe);
    EinnahmeList list;
    for (const auto& [art, brutto] : children) {
        list.push_back(Einnahme::make("Teil", "", brutto, 19.0f));
        list.back()->setArt(art);
    }
    entry->setChildTransactions(std::move(list));
    return entry;
}

// The signed sum in list order and single precision, and what confirming makes
// of it: kind and gross from its sign, the rate untouched.
TEST(SplitBookingsTest, SumDecidesKindAndGrossOnConfirmation)
{
    struct Case {
        std::vector<std::pair<const char*, float>> children;
        std::optional<float> sum;
        std::string art;
        float brutto;
    };
    const float big = 16777216.0f; // 2^24: adding 1 to it in single precision is lost
    for (const Case& c : std::vector<Case> {
             { {}, std::nullopt, "Ausgabe", 12.5f },
             { { { "Einnahme", 100.0f }, { "Ausgabe", 30.0f } }, 70.0f, "Einnahme", 70.0f },
             { { { "Einnahme", 20.0f }, { "Ausgabe", 50.0f } }, -30.0f, "Ausgabe", 30.0f },
             { { { "Ausgabe", 50.0f }, { "Einnahme", 50.0f } }, 0.0f, "Einnahme", 0.0f },
             { { { "einnahme", 10.0f } }, -10.0f, "Ausgabe", 10.0f },
             { { { "Einnahme", big }, { "Einnahme", 1.0f }, { "Einnahme", 1.0f } }, big, "Einnahme", big },
             { { { "Einnahme", 1.0f }, { "Einnahme", 1.0f }, { "Einnahme", big } }, big + 2, "Einnahme", big + 2 },
         }) {
        auto entry = entryWith(c.children);
        EXPECT_EQ(SplitBookings::childTransactionsSum(*entry), c.sum) << c.children.size() << " split bookings";
        SplitBookings::deriveKindAndGross(*entry);
        EXPECT_EQ(std::tuple(entry->art(), entry->brutto(), entry->steuersatz()), std::tuple(c.art, c.brutto, 7.0f));
    }
}

TEST(SplitBookingsTest, WorkingCopySharesTheExistingSplitBookingsButNotItsList)
{
    auto source = entryWith({ { "Einnahme", 100.0f }, { "Ausgabe", 30.0f } });
    auto copy = SplitBookings::workingCopy(*source);
    EXPECT_EQ(std::tuple(copy->name(), copy->art(), copy->childTransactions()),
        std::tuple("Einkauf"s, "Ausgabe"s, source->childTransactions()));
    EXPECT_EQ(SplitBookings::addChildEntry(*copy), 2u);
    const auto& added = *copy->childTransactions()[2];
    EXPECT_EQ(std::tuple(added.name(), added.kategorie(), added.art(), added.brutto(), added.steuersatz()),
        std::tuple("Neu"s, ""s, "Einnahme"s, 0.0f, 0.0f));
    EXPECT_TRUE(SplitBookings::removeChildEntry(*copy, 0u));
    EXPECT_FALSE(SplitBookings::removeChildEntry(*copy, 2u));
    EXPECT_FALSE(SplitBookings::removeChildEntry(*copy, std::nullopt));
    EXPECT_EQ(copy->childTransactions()[0], source->childTransactions()[1]);
    EXPECT_EQ(source->childTransactions().size(), 2u);
}

TEST(SplitBookingsTest, WriteBackNeedsExactlyOneSelectedRowAndAWorkingCopy)
{
    const EinnahmeList einnahmen { entryWith({}), entryWith({}), entryWith({}) };
    using Rows = std::vector<std::size_t>;
    for (const auto& [rows, withCopy] :
        std::vector<std::pair<Rows, bool>> { { {}, true }, { { 0, 2 }, true }, { { 3 }, true }, { { 1 }, false } }) {
        auto copy = withCopy ? entryWith({ { "Einnahme", 4.0f } }) : nullptr;
        EXPECT_FALSE(SplitBookingWriteBack::plan(einnahmen, rows, copy)) << rows.size() << " rows";
        EXPECT_TRUE(!copy || copy->art() == "Ausgabe"); // a refused confirmation derives nothing
    }
    auto copy = entryWith({ { "Einnahme", 4.0f } });
    const auto plan = SplitBookingWriteBack::plan(einnahmen, { 2 }, copy);
    ASSERT_TRUE(plan);
    EXPECT_EQ(std::tuple(plan->row, plan->source, plan->replacement), std::tuple(2u, einnahmen[2], copy));
    EXPECT_EQ(std::tuple(copy->art(), copy->brutto()), std::tuple("Einnahme"s, 4.0f));
}

} // namespace
} // namespace saldo
