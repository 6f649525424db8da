// An exported entry list: where it goes, what it holds, and the two lines it
// writes on standard output.
#include "exchange/EntryListExport.h"

#include "model/LedgerFile.h"
#include "platform/Diagnostics.h"
#include "platform/FileWriteError.h"

#include "core/support/TestSupport.h"

#include <gtest/gtest.h>

namespace saldo {
namespace {

using testing::TempDirTest;

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

class EntryListExportWriteTest : public TempDirTest {
protected:
    void SetUp() override
    {
        TempDirTest::SetUp();
        previous = setDiagnosticSink([this](const std::string& line) { lines.push_back(line); });
    }
    void TearDown() override
    {
        setDiagnosticSink(previous);
        TempDirTest::TearDown();
    }
    std::vector<std::string> lines;
    DiagnosticSink previous;
};

TEST_F(EntryListExportWriteTest, WritesTheLedgerWritersBytesAndTellsSo)
{
    auto miete = Einnahme::make("Miete", "4210 Miete Miete ", 1190.0f, 19.0f);
    miete->setDatum(788918400.123456789);
    auto porto = Einnahme::make("Porto", "4910 Porto Porto ", 0.85f, 0.0f);
    const EinnahmeList entries = { porto, miete };

    const std::string path = EntryListExport::write((dir / "Januar").string(), entries);
    EXPECT_EQ(path, (dir / "Januar.plist").string());
    const std::string bytes = testing::readFile(path);
    EXPECT_EQ(bytes, LedgerFile::encode(entries));
    EXPECT_EQ(lines,
        (std::vector<std::string> { "Einnahmen erfolgreich verschluesselt: " + std::to_string(bytes.size()) + " bytes",
            "Einnahmen erfolgreich auf Disk geschrieben: file://" + path }));

    // A folder that does not exist: the bytes were encoded, nothing was written.
    lines.clear();
    EXPECT_THROW(EntryListExport::write((dir / "fehlt" / "Januar").string(), entries), FileWriteError);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].rfind("Einnahmen erfolgreich verschluesselt: ", 0), 0u);
}

} // namespace
} // namespace saldo
