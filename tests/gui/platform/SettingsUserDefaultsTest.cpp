// The preferences file: lists of any length and yes-or-no values survive a new
// start of the program, and a value of another shape reads as nothing and stays.
#include "platform/SettingsUserDefaults.h"
#include "app/AutosaveStore.h"
#include "app/DocumentController.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "model/Kategorien.h"

#include <QCoreApplication>

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace saldo::gui {
namespace {

TEST(SettingsUserDefaultsTest, ListsOfEveryLengthAndFlagsSurviveTheFileAndOtherShapesReadAsNothing)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("Saldo.conf"));
    const std::vector<std::string> chart = Kategorien::defaultKategorien();
    const std::vector<std::string> one { "1000 Kasse Kasse " };
    const std::vector<std::string> tricky { " führendes Blank", "Komma, und \"Anführung\"", "", "a\\b=c;d" };
    {
        SettingsUserDefaults defaults(file);
        defaults.setStringArray(Kategorien::kKey, chart);
        defaults.setStringArray("leer", {});
        defaults.setStringArray("knifflig", tricky);
        defaults.setStringArray("kuerzer", chart);
        defaults.setStringArray("kuerzer", one); // a shorter list leaves no old rows behind
        defaults.setBool("Steuer/ja", true);
        defaults.setBool("Steuer/nein", false);
    }
    // QSettings caches a file per process; a copy under a new name is read
    // afresh, as the next start of the program would read it.
    const QString copy = dir.filePath(QStringLiteral("Kopie.conf"));
    ASSERT_TRUE(QFile::copy(file, copy));
    SettingsUserDefaults again(copy);
    EXPECT_EQ(again.stringArray(Kategorien::kKey), chart);
    EXPECT_EQ(again.stringArray("leer"), std::vector<std::string> {});
    EXPECT_EQ(again.stringArray("knifflig"), tricky);
    EXPECT_EQ(again.stringArray("kuerzer"), one);
    EXPECT_EQ(again.boolValue("Steuer/ja"), true);
    EXPECT_EQ(again.boolValue("Steuer/nein"), false);
    EXPECT_EQ(again.boolValue(Kategorien::kKey), std::nullopt);
    EXPECT_EQ(again.boolValue("fehlt"), std::nullopt);

    // A value of another shape reads as nothing and is kept.
    const QString odd = dir.filePath(QStringLiteral("Anders.conf"));
    const QByteArray text = "[General]\n"
                            "Kategorien=42\n"
                            "[Zaehlung]\nsize=3\n1=a\n2=b\n"
                            "[Unsinn]\nsize=viele\n1=a\n";
    ASSERT_TRUE(testing::writeBytes(odd, text));
    SettingsUserDefaults defaults(odd);
    EXPECT_TRUE(defaults.hasValue(Kategorien::kKey));
    EXPECT_EQ(defaults.stringArray(Kategorien::kKey), std::nullopt);
    EXPECT_EQ(defaults.stringArray("Zaehlung"), std::nullopt); // a row missing
    EXPECT_EQ(defaults.stringArray("Unsinn"), std::nullopt);

    // Readers fall back to the default chart without writing it over the value.
    EXPECT_EQ(Kategorien::listOrDefault(defaults), Kategorien::defaultKategorien());
    Kategorien::storeDefaultKategorienIfMissing(defaults);
    defaults.settings()->sync();
    EXPECT_TRUE(testing::readBytes(odd).contains("Kategorien=42"));
}

// A settings file that QSettings cannot read completely would be written back
// with only what it understood: garbage dropped, an undecodable value turned
// into "@Invalid()". Such a file is left exactly as it is; the program starts
// with the default chart and keeps its own changes in memory.
TEST(SettingsUserDefaultsTest, AFileThatCannotBeReadCompletelyIsNeverWritten)
{
    static const char kPngStart[] = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x10\xff\xfe";
    QTemporaryDir dir;
    AutosaveStore::setFolder(dir.filePath(QStringLiteral("Autosave"))); // no recovery copies to offer
    const QByteArray damaged[] = {
        QByteArray::fromRawData(kPngStart, sizeof kPngStart - 1),
        "[General]\nKategorien=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x5)\n",
        "[ZuletztGeoeffnet]\nsize=1\n1=/tmp/a.saldo\n[General]\nKategorien=@Variant(kaputt)\n",
        // Values of another program that QSettings reads but would write back
        // in another form ("@ByteArray()", a shorter list).
        "[General]\nKategorien=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\nQByteArray\\0)\n",
        "[General]\nKategorien=@Variant(\\0\\0\\0\\t\\0\\0\\0\\x1\\0\\0\\0\\n\\0\\0\\0\\0\\x2\\0x)\n",
    };
    int n = 0;
    for (const QByteArray& bytes : damaged) {
        const QString file = dir.filePath(QStringLiteral("Saldo%1.conf").arg(++n));
        ASSERT_TRUE(testing::writeBytes(file, bytes));
        {
            testing::ScriptedDialogs dialogs;
            SettingsUserDefaults defaults(file);
            EXPECT_TRUE(defaults.isReadOnly()) << n;
            EXPECT_EQ(Kategorien::listOrDefault(defaults), Kategorien::defaultKategorien()) << n;

            // The program starts on it: the window opens, a ledger opens and
            // becomes a recent file, categories can be edited, all in memory.
            DocumentController controller(defaults);
            controller.startUp({});
            const QString ledger = dir.filePath(QStringLiteral("Kasse%1.saldo").arg(n));
            ASSERT_TRUE(testing::writeBytes(ledger, testing::encoded(testing::sampleEntries(2))));
            ASSERT_NE(controller.openDocument(ledger), nullptr);
            EXPECT_EQ(controller.recentDocumentPaths().value(0), QFileInfo(ledger).canonicalFilePath());
            defaults.setStringArray(Kategorien::kKey, { "1000 Kasse Kasse " });
            EXPECT_EQ(Kategorien::listOrDefault(defaults), std::vector<std::string> { "1000 Kasse Kasse " });
            EXPECT_TRUE(dialogs.errors.isEmpty() && dialogs.informations.isEmpty());
            defaults.settings()->sync();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(testing::readBytes(file), bytes) << n;
    }

    AutosaveStore::setFolder(QString());
}

// A settings name that was a pipe hung the start, and a link to /dev/zero
// made the program read 3.9 GB. Neither, nor a file far larger than any
// settings, is read; the start goes on with the default chart.
TEST(SettingsUserDefaultsTest, ANameThatIsNoRegularFileOfSaneSizeIsNotRead)
{
    QTemporaryDir dir;
    const QString pipe = dir.filePath(QStringLiteral("Leitung.conf"));
    const QString device = dir.filePath(QStringLiteral("Null.conf"));
    const QString large = dir.filePath(QStringLiteral("Gross.conf"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), device));
    ASSERT_TRUE(testing::writeBytes(large, "[General]\n"));
    ASSERT_TRUE(QFile::resize(large, SettingsUserDefaults::kLargestFile + 1));
    for (const QString& file : { pipe, device, large }) {
        SettingsUserDefaults defaults(file);
        EXPECT_TRUE(defaults.isReadOnly());
        EXPECT_EQ(Kategorien::listOrDefault(defaults), Kategorien::defaultKategorien());
        defaults.setStringArray(Kategorien::kKey, { "1000 Kasse Kasse " });
        EXPECT_EQ(Kategorien::listOrDefault(defaults), std::vector<std::string> { "1000 Kasse Kasse " });
    }
    EXPECT_EQ(QFileInfo(large).size(), SettingsUserDefaults::kLargestFile + 1);
    EXPECT_TRUE(QFileInfo(device).isSymLink());
}

} // namespace
} // namespace saldo::gui
