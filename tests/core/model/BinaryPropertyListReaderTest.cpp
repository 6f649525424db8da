// The binary reader against hostile and unusual files, each built object by
// object. Every refused file must be refused whole, with a reason that says
// what was wrong.
#include "model/BinaryPropertyListReader.h"

#include "BplistBuilder.h"

#include <cmath>

namespace saldo {
namespace {

using test::BplistBuilder;
using test::refusal;
using Values = std::map<std::string, std::optional<std::size_t>>;

std::string oneEntryFile(BplistBuilder& b, const Values& values = {})
{
    return b.build(b.array({ b.entry(values) }));
}

std::size_t offsetTableOf(const std::string& bytes)
{
    std::size_t table = 0;
    for (std::size_t i = bytes.size() - 8; i < bytes.size(); ++i)
        table = (table << 8) | static_cast<unsigned char>(bytes[i]);
    return table;
}

// Overwrites the offset of one object in a built file.
std::string withOffset(std::string bytes, const BplistBuilder& b, std::size_t object, std::uint64_t offset)
{
    bytes.replace(
        offsetTableOf(bytes) + object * b.offsetSize, b.offsetSize, BplistBuilder::bigEndian(offset, b.offsetSize));
    return bytes;
}

TEST(BinaryPropertyListReaderTest, RefusesBadHeadersTrailersAndOffsets)
{
    BplistBuilder b;
    const std::size_t root = b.array({ b.entry() });
    const std::string good = b.build(root);
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
        { b.build(root, { .topObject = UINT64_MAX }), "out of range" },
        { b.build(root, { .offsetTable = 3u }), "offset table out of range" },
        { b.build(root, { .offsetTable = 1u << 20 }), "offset table out of range" },
        { b.build(root, { .offsetTable = UINT64_MAX }), "offset table out of range" },
        // Object counts whose offsets cannot fit, also when count times size overflows.
        { b.build(root, { .objectCount = 1'000'000u }), "do not fit" },
        { b.build(root, { .objectCount = UINT64_MAX / 2 + 2 }), "do not fit" },
        { withOffset(good, b, 0, 0), "object 0: offset 0 lies outside the object area" },
        { withOffset(good, b, 3, 7), "object 3: offset 7 lies outside" },
        { withOffset(good, b, 3, offsetTableOf(good)), "lies outside the object area" },
        { withOffset(good, b, 3, good.size() - 10), "lies outside the object area" },
        { withOffset(good, b, 3, 0xFFFF), "lies outside the object area" },
    };
    for (const auto& [bytes, reason] : cases) {
        SCOPED_TRACE(reason);
        EXPECT_REFUSED(bytes, reason);
    }
    // Cutting the trailer short shifts every field of it.
    EXPECT_NE(refusal(good.substr(0, good.size() - 1)).rfind("accepted", 0), 0u);
    EXPECT_NE(refusal(good.substr(0, good.size() - 20)).rfind("accepted", 0), 0u);
}

TEST(BinaryPropertyListReaderTest, RefusesLengthsAndReferencesBeyondTheData)
{
    {
        // An object whose payload would run into the offset table.
        BplistBuilder b;
        const std::size_t root = b.array({});
        const std::size_t entry = b.entry();
        const std::size_t last = b.raw("\x55"
                                       "AB");
        b.replace(root, BplistBuilder::join({ "\xA2", b.ref(entry), b.ref(last) }));
        EXPECT_REFUSED(b.build(root), "entry 2: object " + std::to_string(last) + " at offset ");
        EXPECT_REFUSED(b.build(root), "length 5 runs past the end of the object area");
    }
    {
        // An array claiming 2^61 references of 8 bytes: the product overflows 64 bits.
        BplistBuilder b;
        const std::size_t huge = b.raw(BplistBuilder::join({ "\xAF\x13", BplistBuilder::bigEndian(1ull << 61, 8) }));
        b.refSize = 8;
        EXPECT_REFUSED(b.build(huge), "runs past the end");
        BplistBuilder c;
        EXPECT_REFUSED(c.build(c.raw("\xA1\x63")), "object reference 99 out of range"); // 99 of 1
    }
    // A text and a dictionary far longer than the file, a length that is a real, an unknown marker.
    for (const auto& [object, reason] : std::initializer_list<std::pair<std::string, const char*>> {
             { BplistBuilder::join({ "\x5F\x13", BplistBuilder::bigEndian(UINT64_MAX, 8) }), "runs past the end" },
             { BplistBuilder::join({ "\xDF\x12", BplistBuilder::bigEndian(0x7FFFFFFF, 4) }), "runs past the end" },
             { "\x5F\x22", "length is not an integer" }, { "\x70", "unknown type marker 0x70" } }) {
        BplistBuilder b;
        const std::size_t raw = b.raw(object);
        EXPECT_REFUSED(b.build(b.array({ b.entry(), raw })), reason);
    }
}

TEST(BinaryPropertyListReaderTest, RefusesWrongShapesCyclesAndExponentialSharing)
{
    {
        BplistBuilder b;
        EXPECT_REFUSED(b.build(b.entry()), "root is a dictionary, not an array");
        EXPECT_REFUSED(b.build(b.ascii("Einnahmen")), "root is a string, not an array");
        EXPECT_REFUSED(oneEntryFile(b, { { "childTransactions", b.array({ b.ascii("x") }) } }),
            "entry 1 (child 1): is a string, not a dictionary");
        EXPECT_REFUSED(b.build(b.array({ b.dict({ b.integer(7, 1) }, { b.ascii("v") }) })),
            "entry 1: a dictionary key is an integer, not a string");
    }
    {
        // A split booking whose child list holds its own parent.
        BplistBuilder b;
        const std::size_t children = b.array({});
        const std::size_t parent = b.entry({ { "childTransactions", children } });
        b.replace(children, BplistBuilder::join({ "\xA1", b.ref(parent) }));
        EXPECT_REFUSED(b.build(b.array({ parent })), "entry 1 (child 1): reference cycle");
        // A root array holding itself is no list of entries either.
        b.replace(children, BplistBuilder::join({ "\xA1", b.ref(children) }));
        EXPECT_REFUSED(b.build(children), "entry 1: is an array, not a dictionary");
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
    // Sharing within reason is read once per reference.
    BplistBuilder b;
    const std::size_t shared = b.entry();
    const EinnahmeList entries = LedgerFile::decode(b.build(b.array({ shared, shared, shared })));
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_NE(entries[0], entries[1]);
    EXPECT_EQ(entries[2]->name(), "Miete");
}

std::string nestedFile(int levels)
{
    BplistBuilder b;
    b.refSize = 2;
    b.offsetSize = 4;
    std::size_t entry = b.entry();
    for (int i = 1; i < levels; ++i)
        entry = b.entry({ { "childTransactions", b.array({ entry }) } });
    return b.build(b.array({ entry }));
}

TEST(BinaryPropertyListReaderTest, NestingIsCappedAt512LevelsOfSplitBookings)
{
    // 300 levels read fine on the default stack.
    EXPECT_EQ(test::depthOf(LedgerFile::decode(nestedFile(300)).at(0).get()), 300);
    EXPECT_EQ(LedgerFile::decode(nestedFile(513)).size(), 1u);
    EXPECT_REFUSED(nestedFile(514), "split bookings nested deeper than 512 levels");
    EXPECT_REFUSED(nestedFile(5000), "nested deeper than 512");
}

TEST(BinaryPropertyListReaderTest, KeysAndTextsMustBeValidAndTheLastDuplicateWins)
{
    {
        BplistBuilder b;
        const std::size_t entry = b.entry({}, { { "name", b.ascii("Zweiter Name") }, { "brutto", b.real4(7.5f) } });
        const EinnahmeList entries = LedgerFile::decode(b.build(b.array({ entry })));
        ASSERT_EQ(entries.size(), 1u);
        EXPECT_EQ(entries[0]->name(), "Zweiter Name");
        EXPECT_EQ(entries[0]->brutto(), 7.5f);
    }
    {
        // A key written in UTF-16 is the same key; one with a lone surrogate is refused.
        BplistBuilder c;
        std::vector<std::size_t> keys, values;
        for (const std::string name : test::kEntryKeys) {
            keys.push_back(name == "name" ? c.utf16({ 'n', 'a', 'm', 'e' }) : c.key(name));
            values.push_back(name == "name" ? c.ascii("Aus UTF-16") : c.defaultValue(name));
        }
        const std::size_t good = c.dict(keys, values);
        keys[0] = c.utf16({ 'n', 0xD800 });
        const std::size_t broken = c.dict(keys, values);
        EXPECT_EQ(LedgerFile::decode(c.build(c.array({ good }))).at(0)->name(), "Aus UTF-16");
        EXPECT_REFUSED(c.build(c.array({ broken })), "a dictionary key holds an unpaired UTF-16 surrogate");
    }
    // A lone high surrogate at the end, a low one first, a high one before a letter.
    for (const auto& [key, units] : { std::pair<std::string, std::vector<std::uint16_t>> { "name", { 0x0041, 0xD800 } },
             { "art", { 0xDC00, 0x0041 } }, { "kategorie", { 0xD83D, 0x0041 } } }) {
        BplistBuilder b;
        EXPECT_REFUSED(oneEntryFile(b, { { key, b.utf16(units) } }),
            "key \"" + key + "\": string holds an unpaired UTF-16 surrogate");
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
        BplistBuilder c;
        const std::size_t wrong = wantsString ? c.boolean(true) : c.ascii(k == "childTransactions" ? "[]" : "1");
        const std::size_t child = c.entry({ { k, wrong } });
        const std::size_t parent = c.entry({ { "childTransactions", c.array({ c.entry(), child }) } });
        EXPECT_REFUSED(c.build(c.array({ parent })), "entry 1 (child 2): key \"" + k + "\" holds a");
    }
    BplistBuilder d;
    EXPECT_REFUSED(
        oneEntryFile(d, { { "datum", d.ascii("2024-01-01") } }), "key \"datum\" holds a string, expected a date");
}

TEST(BinaryPropertyListReaderTest, AcceptsOtherNumberFormsAndDropsExtraKeys)
{
    BplistBuilder b;
    const auto int128 = [&](std::uint64_t high, std::uint64_t low) {
        return b.raw(
            BplistBuilder::join({ "\x14", BplistBuilder::bigEndian(high, 8), BplistBuilder::bigEndian(low, 8) }));
    };
    const std::size_t a
        = b.entry({ { "brutto", b.real8(0.1) }, { "steuersatz", b.integer(19, 1) }, { "datum", b.real8(-1.25) } },
            { { "netto", b.real4(1.0f) }, { "extra", b.raw("\x00") } });
    const std::size_t c
        = b.entry({ { "brutto", b.integer(std::uint64_t(-3), 8) }, { "steuersatz", b.integer(70000, 4) } });
    const std::size_t d = b.entry({ { "brutto", int128(0, UINT64_MAX) }, { "steuersatz", b.real8(1e300) } });
    const std::size_t e = b.entry({ { "brutto", int128(1, 0) } });
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
    const std::string again = LedgerFile::encode(entries);
    EXPECT_EQ(again.find("netto"), std::string::npos);
    EXPECT_EQ(again.find("extra"), std::string::npos);
    EXPECT_REFUSED(b.build(b.array({ e })), "integer out of range");
}

// A list long enough to be read in two halves: every entry its own dictionary
// of shared values, `overrides` replacing values of entries by position from 0.
// The builder's objects are kept, so a test can still change them.
std::size_t longList(BplistBuilder& b, const std::map<std::size_t, Values>& overrides)
{
    b.refSize = 3;
    b.offsetSize = 4;
    Values shared;
    for (const char* key : test::kEntryKeys)
        shared[key] = b.defaultValue(key);
    std::vector<std::size_t> refs;
    for (std::size_t i = 0; i < BinaryPropertyListReader::kSplitFrom + 2; ++i) {
        Values values = shared;
        if (const auto found = overrides.find(i); found != overrides.end())
            for (const auto& [key, value] : found->second)
                values[key] = value;
        refs.push_back(b.entry(values));
    }
    return b.array(refs);
}

TEST(BinaryPropertyListReaderTest, LongListsReadInTwoHalvesFailExactlyAsInOnePass)
{
    const std::size_t count = BinaryPropertyListReader::kSplitFrom + 2;
    {
        BplistBuilder b;
        const std::size_t root = longList(b, { { count - 1, { { "art", std::nullopt } } } });
        EXPECT_EQ(refusal(b.build(root)), "entry " + std::to_string(count) + ": key \"art\" missing");
    }
    {
        // Faults in both halves: the first in list order is the one named.
        BplistBuilder b;
        const std::size_t root
            = longList(b, { { 4, { { "name", std::nullopt } } }, { count - 1, { { "art", std::nullopt } } } });
        EXPECT_EQ(refusal(b.build(root)), "entry 5: key \"name\" missing");
    }
    {
        // A split booking in the second half that holds its own parent.
        BplistBuilder b;
        const std::size_t children = b.array({});
        const std::size_t root = longList(b, { { count - 2, { { "childTransactions", children } } } });
        // Entries are made in list order, each one object, right before the root array.
        b.replace(children, BplistBuilder::join({ "\xA1", b.ref(root - 2) }));
        EXPECT_EQ(refusal(b.build(root)),
            "entry " + std::to_string(count - 1) + " (child 1): reference cycle: object " + std::to_string(root - 2)
                + " contains itself");
    }
    // 120 entries of the second half share one name of 60,000 characters:
    // that half alone reads more than half of what sharing may cost in all
    // (16 times the file size), the whole list less than all of it. The
    // list is read, as in one pass.
    BplistBuilder b;
    const std::size_t longName = b.ascii(std::string(60'000, 'x'));
    std::map<std::size_t, Values> overrides;
    for (std::size_t i = count - 120; i < count; ++i)
        overrides[i] = { { "name", longName } };
    const EinnahmeList entries = LedgerFile::decode(b.build(longList(b, overrides)));
    ASSERT_EQ(entries.size(), count);
    EXPECT_EQ(entries[count - 120]->name().size(), 60'000u);
    EXPECT_EQ(entries[count - 121]->name(), "Miete");
}

} // namespace
} // namespace saldo
