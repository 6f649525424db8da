// Where an exported entry list goes and how its diagnostic line names it (what
// it holds and the lines themselves are checked through the window's menu).
#include "exchange/EntryListExport.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

TEST(EntryListExportTest, AppendsPlistAlwaysAndNamesTheFileByItsUrl)
{
    struct Case {
        const char* chosen;
        const char* url;
    };
    const Case cases[] = {
        { "/home/anna/Januar", "file:///home/anna/Januar.plist" },
        { "/home/anna/Januar.plist", "file:///home/anna/Januar.plist.plist" },
        { "/tmp/Mein Januar (2025)", "file:///tmp/Mein%20Januar%20(2025).plist" },
        { "/tmp/Bücher#1%", "file:///tmp/B%C3%BCcher%231%25.plist" },
    };
    for (const Case& c : cases)
        EXPECT_EQ(EntryListExport::fileUrl(EntryListExport::filePath(c.chosen)), c.url) << c.chosen;
}

} // namespace
} // namespace saldo
