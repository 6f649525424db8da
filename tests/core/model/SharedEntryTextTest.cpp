// Entries read from one file share the texts they have in common (one decoded
// text per string object). A change through one entry must never reach the
// others, the texts must live as long as any entry that uses them, and an
// object must always come back with its own text however the reader's cache
// of recent texts is filled.
#include "model/LedgerFile.h"

#include <gtest/gtest.h>

#include <string>

namespace saldo {
namespace {

EinnahmePtr entry(std::string name, std::string kategorie)
{
    Einnahme::Stored s;
    s.name = std::move(name);
    s.kategorie = std::move(kategorie);
    s.art = kArtAusgabe;
    s.rechnungsnummer = "RE-2024-000001 und noch mehr Text";
    s.steuernummer = "12/345/67890";
    s.leistungsart = "Beratung ueber viele Seiten";
    return Einnahme::restore(std::move(s));
}

TEST(SharedEntryTextTest, ChangingOneEntryLeavesTheEntriesItSharesTextsWith)
{
    // Every text field keeps its text in the same shared form; the name stands
    // for all of them, the kind for the shared constants.
    const EinnahmeList written = { entry("Miete Buero Hauptstrasse", "4210 Miete Miete "),
        entry("Miete Buero Hauptstrasse", "4210 Miete Miete ") };
    EinnahmeList read = LedgerFile::decode(LedgerFile::encode(written));
    ASSERT_EQ(read.size(), 2u);
    read[0]->setName("Porto");
    read[0]->setArt(kArtEinnahme);
    EXPECT_EQ(read[1]->name(), "Miete Buero Hauptstrasse");
    EXPECT_EQ(read[1]->art(), kArtAusgabe);
    // A second change of the same field, now the entry's own text.
    const EinnahmePtr copy = read[0]->copy();
    copy->setName("Porto 2");
    EXPECT_EQ(read[0]->name(), "Porto");
    EXPECT_EQ(Einnahme::make("Neu", "", 0.0f, 19.0f)->art(), kArtEinnahme);
}

TEST(SharedEntryTextTest, TextsLiveAsLongAsAnyEntryOrCopyThatUsesThem)
{
    EinnahmeList written;
    for (int i = 0; i < 20000; ++i)
        written.push_back(entry("Eintrag mit langem Namen " + std::to_string(i % 7), "4210 Miete Miete "));
    EinnahmePtr kept;
    Einnahme copied("", "", 0.0f, 0.0f);
    {
        EinnahmeList read = LedgerFile::decode(LedgerFile::encode(written));
        kept = read[12345];
        copied = *read[6];
    }
    // Read after every other entry of the file and the reader are gone.
    EXPECT_EQ(kept->name(), "Eintrag mit langem Namen 4");
    EXPECT_EQ(kept->leistungsart(), "Beratung ueber viele Seiten");
    kept.reset();
    EXPECT_EQ(copied.name(), "Eintrag mit langem Namen 6");
    EXPECT_EQ(copied.rechnungsnummer(), "RE-2024-000001 und noch mehr Text");
}

TEST(SharedEntryTextTest, EveryObjectComesBackWithItsOwnText)
{
    // Many distinct texts, each used by entries near each other and far
    // apart, and a few used by every entry.
    const int distinct = 70000;
    EinnahmeList written;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < distinct; ++i) {
            const int k = round == 0 ? i : (i * 7919) % distinct;
            written.push_back(entry("Text " + std::to_string(k), "Kategorie " + std::to_string(k % 3)));
        }
    }
    const EinnahmeList read = LedgerFile::decode(LedgerFile::encode(written));
    ASSERT_EQ(read.size(), written.size());
    int wrong = 0;
    for (std::size_t i = 0; i < read.size(); ++i) {
        if (read[i]->name() != written[i]->name() || read[i]->kategorie() != written[i]->kategorie())
            ++wrong;
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace saldo
