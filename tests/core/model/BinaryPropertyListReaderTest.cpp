// The binary reader against hostile and unusual files, each built object by
// object. Every refused file must be refused whole, with a reason that says
// what was wrong.
#include "model/BinaryPropertyListReader.h"

#include "BplistBuilder.h"

#include <cmath>
#include <functional>

namespace saldo {
namespace {

using test::bigEndian;
using test::BplistBuilder;
using test::refusal;
using Values = BplistBuilder::Values;

std::string oneEntryFile(BplistBuilder& b, const Values& values = {})
{
    return b.build(b.array({ b.entry(values) }));
}

// Overwrites the two-byte offset of one object in a built file.
std::string withOffset(std::string bytes, std::size_t object, std::uint64_t offset)
{
    std::size_t table = 0;
    for (std::size_t i = bytes.size() - 8; i < bytes.size(); ++i)
        table = (table << 8) | static_cast<unsigned char>(bytes[i]);
    return bytes.replace(table + object * 2, 2, bigEndian(offset, 2));
}

TEST(BinaryPropertyListReaderTest, RefusesBadHeadersTrailersAndOffsets)
{
    BplistBuilder b;
    const std::size_t root = b.array({ b.entry() });
    const std::string good = b.build(root);
    const std::size_t table = good.size() - 32 - 2 * (root + 1);
    ASSERT_EQ(LedgerFile::decode(good).size(), 1u);
    const std::pair<std::string, std::string> cases[] = {
        { "", "empty" },
        { "Name;Betrag\nMiete;119\n", "not a property list" },
        { std::string("bplist01") + std::string(40, '\0'), "unsupported binary property list version" },
        { good.substr(0, 39), "too short" },
        { b.build(root, { .offsetSize = 0u }), "offset size 0" },
        { b.build(root, { .offsetSize = 9u }), "offset size 9" },
        { b.build(root, { .refSize = 0u }), "object reference size 0" },
        { b.build(root, { .refSize = 9u }), "object reference size 9" },
        { b.build(root, { .objectCount = 0u }), "no objects" },
        { b.build(root, { .topObject = 10'000u }), "top object 10000 out of range" },
        { b.build(root, { .offsetTable = 3u }), "offset table out of range" },
        { b.build(root, { .offsetTable = UINT64_MAX }), "offset table out of range" },
        // Object counts whose offsets cannot fit, also when count times size overflows.
        { b.build(root, { .objectCount = 1'000'000u }), "do not fit" },
        { b.build(root, { .objectCount = UINT64_MAX / 2 + 2 }), "do not fit" },
        { withOffset(good, 0, 0), "object 0: offset 0 lies outside the object area" },
        { withOffset(good, 3, table), "object 3: offset " + std::to_string(table) + " lies outside the object area" },
    };
    for (const auto& [bytes, reason] : cases) {
        SCOPED_TRACE(reason);
        EXPECT_REFUSED(bytes, reason);
    }
}

TEST(BinaryPropertyListReaderTest, RefusesLengthsAndReferencesBeyondTheData)
{
    // Each object is the last before the offset table, the second of the root
    // array; references are eight bytes wide, so that lengths times reference
    // size overflow 64 bits.
    for (const auto& [object, reason] : std::initializer_list<std::pair<std::string, const char*>> {
             { "\x55"
               "AB",
                 "entry 2: object 26 at offset 409: length 5 runs past the end of the object area" },
             { "\x5F\x13" + bigEndian(UINT64_MAX, 8), "runs past the end" },
             { "\xAF\x13" + bigEndian(1ull << 61, 8), "runs past the end" },
             { "\xD1" + bigEndian(99, 8) + bigEndian(0, 8), "object reference 99 out of range" },
             { "\x5F\x22", "length is not an integer" }, { "\x70", "unknown type marker 0x70" } }) {
        SCOPED_TRACE(reason);
        BplistBuilder b;
        b.refSize = 8;
        const std::size_t root = b.array({});
        const std::size_t entry = b.entry();
        b.replace(root, "\xA2" + b.ref(entry) + b.ref(b.raw(object)));
        EXPECT_REFUSED(b.build(root), reason);
    }
}

TEST(BinaryPropertyListReaderTest, RefusesWrongShapesCyclesAndExponentialSharing)
{
    {
        BplistBuilder b;
        EXPECT_REFUSED(b.build(b.entry()), "root is a dictionary, not an array");
        EXPECT_REFUSED(oneEntryFile(b, { { "childTransactions", b.array({ b.ascii("x") }) } }),
            "entry 1 (child 1): is a string, not a dictionary");
        EXPECT_REFUSED(b.build(b.array({ b.dict({ b.integer(7, 1) }, { b.ascii("v") }) })),
            "entry 1: a dictionary key is an integer, not a string");
        // A split booking whose child list holds its own parent.
        const std::size_t children = b.array({});
        const std::size_t parent = b.entry({ { "childTransactions", children } });
        b.replace(children, "\xA1" + b.ref(parent));
        EXPECT_REFUSED(b.build(b.array({ parent })), "entry 1 (child 1): reference cycle");
    }
    {
        // Forty levels, each holding the next level twice: 2^40 entries from a few kilobytes.
        BplistBuilder b;
        b.refSize = 2;
        std::size_t level = b.entry();
        for (int i = 0; i < 40; ++i)
            level = b.entry({ { "childTransactions", b.array({ level, level }) } });
        EXPECT_REFUSED(b.build(b.array({ level })), "shared so often");
    }
    // Sharing within reason is read once per reference, into entries of their own.
    BplistBuilder b;
    const std::size_t shared = b.entry();
    const EinnahmeList entries = LedgerFile::decode(b.build(b.array({ shared, shared })));
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_NE(entries[0], entries[1]);
}

TEST(BinaryPropertyListReaderTest, NestingIsCappedAt512LevelsOfSplitBookings)
{
    const auto nested = [](int levels) {
        BplistBuilder b;
        b.refSize = 2;
        std::size_t entry = b.entry();
        for (int i = 1; i < levels; ++i)
            entry = b.entry({ { "childTransactions", b.array({ entry }) } });
        return b.build(b.array({ entry }));
    };
    EXPECT_EQ(test::depthOf(LedgerFile::decode(nested(513)).at(0).get()), 513);
    EXPECT_REFUSED(nested(514), "split bookings nested deeper than 512 levels");
}

TEST(BinaryPropertyListReaderTest, KeysAndTextsMustBeValidAndTheLastDuplicateWins)
{
    {
        BplistBuilder b;
        const std::size_t entry = b.entry({}, { { "name", b.ascii("Zweiter Name") } });
        EXPECT_EQ(LedgerFile::decode(b.build(b.array({ entry }))).at(0)->name(), "Zweiter Name");
    }
    {
        // A key written in UTF-16 is the same key; one with a lone surrogate is refused.
        BplistBuilder c;
        const auto withNameKey = [&](std::vector<std::uint16_t> units) {
            std::vector<std::size_t> keys, values;
            for (const std::string name : test::kEntryKeys) {
                keys.push_back(name == "name" ? c.utf16(units) : c.key(name));
                values.push_back(name == "name" ? c.ascii("Aus UTF-16") : c.defaultValue(name));
            }
            return c.build(c.array({ c.dict(keys, values) }));
        };
        EXPECT_EQ(LedgerFile::decode(withNameKey({ 'n', 'a', 'm', 'e' })).at(0)->name(), "Aus UTF-16");
        EXPECT_REFUSED(withNameKey({ 'n', 0xD800 }), "a dictionary key holds an unpaired UTF-16 surrogate");
    }
    // A lone high surrogate at the end, a low one first, a high one before a letter.
    for (const auto& units :
        std::vector<std::vector<std::uint16_t>> { { 0x41, 0xD800 }, { 0xDC00, 0x41 }, { 0xD83D, 0x41 } }) {
        BplistBuilder b;
        EXPECT_REFUSED(
            oneEntryFile(b, { { "art", b.utf16(units) } }), "key \"art\": string holds an unpaired UTF-16 surrogate");
    }
    BplistBuilder b;
    EXPECT_REFUSED(oneEntryFile(b, { { "leistungsart", b.raw("\x52\x41\xE4") } }), "ASCII string holds the byte 0xE4");
    // A proper pair is one code point: U+1F600 in UTF-8.
    EXPECT_EQ(LedgerFile::decode(oneEntryFile(b, { { "name", b.utf16({ 0x00C4, 0xD83D, 0xDE00 }) } })).at(0)->name(),
        "\xC3\x84\xF0\x9F\x98\x80");
}

TEST(BinaryPropertyListReaderTest, EveryKeyIsRequiredWithItsType)
{
    for (const std::string k : test::kEntryKeys) {
        SCOPED_TRACE(k);
        // The first entry is complete; the second lacks the key: the whole file is refused.
        BplistBuilder b;
        const std::size_t complete = b.entry();
        EXPECT_REFUSED(
            b.build(b.array({ complete, b.entry({ { k, std::nullopt } }) })), "entry 2: key \"" + k + "\" missing");

        const bool wantsString = k == "name" || k == "kategorie" || k == "art" || k == "rechnungsnummer"
            || k == "steuernummer" || k == "leistungsart";
        const std::size_t wrong = wantsString ? b.raw("\x09") : b.ascii(k == "childTransactions" ? "[]" : "1");
        const std::size_t child = b.entry({ { k, wrong } });
        const std::size_t parent = b.entry({ { "childTransactions", b.array({ b.entry(), child }) } });
        EXPECT_REFUSED(b.build(b.array({ parent })), "entry 1 (child 2): key \"" + k + "\" holds a");
    }
}

TEST(BinaryPropertyListReaderTest, AcceptsOtherNumberFormsAndDropsExtraKeys)
{
    BplistBuilder b;
    const auto int128
        = [&](std::uint64_t high, std::uint64_t low) { return b.raw('\x14' + bigEndian(high, 8) + bigEndian(low, 8)); };
    const std::size_t a
        = b.entry({ { "brutto", b.real8(0.1) }, { "steuersatz", b.integer(19, 1) }, { "datum", b.real8(-1.25) } },
            { { "netto", b.real4(1.0f) }, { "extra", b.raw(std::string(1, '\0')) } });
    const std::size_t c
        = b.entry({ { "brutto", b.integer(std::uint64_t(-3), 8) }, { "steuersatz", b.integer(70000, 4) } });
    const std::size_t d = b.entry({ { "brutto", int128(0, UINT64_MAX) }, { "steuersatz", b.real8(1e300) } });
    const EinnahmeList entries = LedgerFile::decode(b.build(b.array({ a, c, d })));
    ASSERT_EQ(entries.size(), 3u);
    // The nearest single-precision value of the double 0.1 is the float 0.1f.
    EXPECT_EQ(entries[0]->brutto(), 0.1f);
    EXPECT_EQ(entries[0]->steuersatz(), 19.0f);
    EXPECT_EQ(entries[0]->datum(), -1.25);
    EXPECT_EQ(entries[1]->brutto(), -3.0f);
    EXPECT_EQ(entries[1]->steuersatz(), 70000.0f);
    EXPECT_EQ(entries[2]->brutto(), 18446744073709551616.0f);
    EXPECT_TRUE(std::isinf(entries[2]->steuersatz()));
    // The extra keys are not written back.
    EXPECT_EQ(LedgerFile::encode(entries).find("netto"), std::string::npos);
    EXPECT_REFUSED(b.build(b.array({ b.entry({ { "brutto", int128(1, 0) } }) })), "integer out of range");
}

// A list long enough to be read in two halves: every entry its own dictionary
// of shared values, `overrides` replacing values of entries by position from 0
// with the object `shared` makes (or leaving the key out).
std::string longList(const std::map<std::size_t, Values>& overrides,
    const std::function<std::size_t(BplistBuilder&)>& shared = [](BplistBuilder& b) { return b.ascii(""); })
{
    BplistBuilder b;
    b.refSize = 3;
    b.offsetSize = 4;
    Values defaults;
    for (const char* key : test::kEntryKeys)
        defaults[key] = b.defaultValue(key);
    const std::size_t object = shared(b);
    std::vector<std::size_t> refs;
    for (std::size_t i = 0; i < BinaryPropertyListReader::kSplitFrom + 2; ++i) {
        Values values = defaults;
        if (const auto found = overrides.find(i); found != overrides.end())
            for (const auto& [key, value] : found->second)
                values[key] = value ? std::optional(object) : std::nullopt;
        refs.push_back(b.entry(values));
    }
    return b.build(b.array(refs));
}

TEST(BinaryPropertyListReaderTest, AnEvaluationKeepsKindAndCategoryAndChecksTheOtherTextsAsStrictly)
{
    const auto evaluated = [](const std::string& bytes) {
        return BinaryPropertyListReader(bytes, BinaryPropertyListReader::Texts::Evaluated).readEntries();
    };
    BplistBuilder b;
    // One string object is the name (checked only) and the category (kept).
    const std::size_t shared = b.utf16({ 'B', 0x00FC, 'r', 'o' });
    const EinnahmeList read = evaluated(oneEntryFile(b,
        { { "name", shared }, { "kategorie", shared }, { "art", b.ascii("Ausgabe") },
            { "rechnungsnummer", b.ascii("RE-1") } }));
    EXPECT_EQ(read.at(0)->kategorie() + read[0]->art() + "|" + read[0]->name() + read[0]->rechnungsnummer(),
        "B\u00fcroAusgabe|");
    // A text not kept is refused for what a kept one is refused for.
    for (const std::string key : { "name", "steuernummer" }) {
        BplistBuilder c;
        for (const std::size_t text : { c.utf16({ 0x41, 0xD800 }), c.utf16({ 0xDC00, 0x41 }), c.raw("\x52\x41\xE4") }) {
            const std::string file = oneEntryFile(c, { { key, text } });
            std::string reason = "accepted";
            try {
                evaluated(file);
            } catch (const LedgerFileError& e) {
                reason = e.what();
            }
            EXPECT_EQ(reason, refusal(file)) << key;
        }
    }
}

TEST(BinaryPropertyListReaderTest, LongListsReadInTwoHalvesFailExactlyAsInOnePass)
{
    const std::size_t count = BinaryPropertyListReader::kSplitFrom + 2;
    EXPECT_EQ(refusal(longList({ { count - 1, { { "art", std::nullopt } } } })),
        "entry " + std::to_string(count) + ": key \"art\" missing");
    // Faults in both halves: the first in list order is the one named.
    EXPECT_EQ(refusal(longList({ { 4, { { "name", std::nullopt } } }, { count - 1, { { "art", std::nullopt } } } })),
        "entry 5: key \"name\" missing");
    // 120 entries of the second half share one list of 200 split bookings:
    // that half alone builds more than half of the budget (some 7 of 11 MB),
    // the whole list less than all of it. The list is read, as in one pass.
    std::map<std::size_t, Values> overrides;
    for (std::size_t i = count - 120; i < count; ++i)
        overrides[i] = { { "childTransactions", 0 } };
    const EinnahmeList entries = LedgerFile::decode(longList(overrides, [](BplistBuilder& b) {
        return b.array(std::vector<std::size_t>(200, b.entry()));
    }));
    ASSERT_EQ(entries.size(), count);
    EXPECT_EQ(entries[count - 120]->childTransactions().size(), 200u);
    EXPECT_TRUE(entries[count - 121]->childTransactions().empty());
}

} // namespace
} // namespace saldo
