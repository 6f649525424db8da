// Regression: the writer shares equal texts between entries, and the reader
// charged every reference to a shared text as if it were decoded again. A
// ledger of a few thousand entries with one long repeated note was written
// without complaint and then refused as a file that would expand too far.
#include "model/LedgerFile.h"

#include <gtest/gtest.h>

#include <string>

namespace saldo {
namespace {

// The most sharing the writer produces: every text field of every entry and
// split booking holds the same long non-ASCII text (one UTF-16 object in the
// file), and the amounts, rates and flags are the same everywhere; only each
// entry's dictionary, date and child list are its own.
EinnahmeList mostShared(std::size_t count, std::size_t length)
{
    const std::string unit = "Notiz zur Prüfung: ";
    std::string text;
    while (text.size() < length)
        text += unit;
    Einnahme::Stored s;
    s.name = s.kategorie = s.art = s.rechnungsnummer = s.steuernummer = s.leistungsart = text;
    s.brutto = 119.0f;
    s.steuersatz = 19.0f;
    s.datum = 760'000'000.0;
    EinnahmeList entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Einnahme::Stored e = s;
        if (i % 16 == 1)
            e.childTransactions = { Einnahme::restore(s), Einnahme::restore(s) };
        entries.push_back(Einnahme::restore(std::move(e)));
    }
    return entries;
}

TEST(LedgerSharingTest, LedgersWithTheMostSharingTheWriterMakesReadBackBitForBit)
{
    // A few sizes from one entry to 200,000; the text is long enough at each
    // size that reading it once per reference would cost far more than the
    // file's size allows.
    const struct {
        std::size_t count;
        std::size_t length;
    } cases[] = { { 1, 60'000 }, { 2'589, 400 }, { 20'000, 283 }, { 200'000, 100 } };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.count) + " entries");
        const std::string bytes = LedgerFile::encode(mostShared(c.count, c.length));
        EinnahmeList read;
        try {
            read = LedgerFile::decode(bytes);
        } catch (const LedgerFileError& error) {
            ADD_FAILURE() << error.what();
            continue;
        }
        ASSERT_EQ(read.size(), c.count);
        EXPECT_EQ(LedgerFile::encode(read), bytes);
    }
}

} // namespace
} // namespace saldo
