#include "tax/PointerMemo.h"

#include <gtest/gtest.h>

#include <string>

namespace saldo::tax {
namespace {

TEST(PointerMemo, RemembersPerAddressAndStartsAfreshWhenHalfFull)
{
    const std::string texts[] = { "a", "b", "c", "d", "e", "f" };
    PointerMemo<std::string, 8> memo; // holds four addresses before it starts afresh
    int made = 0;
    auto valueOf = [&](const std::string& text) {
        return memo.get(&text, [&] {
            ++made;
            return text + "!";
        });
    };
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(valueOf(texts[i]), texts[i] + "!");
    }
    EXPECT_EQ(made, 3);
    for (int round = 0; round < 3; ++round) {
        for (const std::string& text : texts)
            EXPECT_EQ(valueOf(text), text + "!");
    }
    EXPECT_GT(made, 6);
}

} // namespace
} // namespace saldo::tax
