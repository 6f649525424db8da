// The binary reader against hostile and unusual files, each built object by
// object. Every refused file must be refused whole, with a reason that says
// what was wrong.
#include "model/LedgerFile.h"

#include "model/BinaryPropertyListReader.h"

#include "BplistBuilder.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace saldo {
namespace {

using test::BplistBuilder;

std::string refusal(const std::string& bytes)
{
    try {
        const EinnahmeList entries = LedgerFile::decode(bytes);
        return "accepted " + std::to_string(entries.size()) + " entries";
    } catch (const LedgerFileError& e) {
        return e.what();
    }
}

#define EXPECT_REFUSED(bytes, reason) EXPECT_PRED_FORMAT2(::testing::IsSubstring, reason, refusal(bytes))

std::string oneEntryFile(BplistBuilder& b, std::map<std::string, std::optional<std::size_t>> values = {})
{
    const std::size_t entry = b.entry(values);
    return b.build(b.array({ entry }));
}

std::uint64_t offsetTableOf(const std::string& bytes)
{
    std::uint64_t table = 0;
    for (std::size_t i = bytes.size() - 8; i < bytes.size(); ++i)
        table = (table << 8) | static_cast<unsigned char>(bytes[i]);
    return table;
}

// Overwrites the offset of one object in a built file.
std::string withOffset(std::string bytes, const BplistBuilder& b, std::size_t object, std::uint64_t offset)
{
    const auto table = static_cast<std::size_t>(offsetTableOf(bytes));
    bytes.replace(table + object * b.offsetSize, b.offsetSize, BplistBuilder::bigEndian(offset, b.offsetSize));
    return bytes;
}

TEST(BinaryPropertyListReaderTest, RefusesBytesThatAreNoPropertyList)
{
    EXPECT_REFUSED("", "empty");
    EXPECT_REFUSED("Name;Betrag\nMiete;119\n", "not a property list");
    EXPECT_REFUSED(std::string("bplist01") + std::string(40, '\0'), "unsupported binary property list version");
    BplistBuilder b;
    const std::string good = oneEntryFile(b);
    ASSERT_EQ(LedgerFile::decode(good).size(), 1u);
    EXPECT_REFUSED(good.substr(0, 39), "too short");
    // Cutting the trailer short shifts every field of it.
    EXPECT_NE(refusal(good.substr(0, good.size() - 1)).rfind("accepted", 0), 0u);
    EXPECT_NE(refusal(good.substr(0, good.size() - 20)).rfind("accepted", 0), 0u);
}

TEST(BinaryPropertyListReaderTest, RefusesTrailerFieldsOutOfRange)
{
    BplistBuilder b;
    const std::size_t root = b.array({ b.entry() });
    EXPECT_REFUSED(b.build(root, { .offsetSize = 0u }), "offset size 0");
    EXPECT_REFUSED(b.build(root, { .offsetSize = 9u }), "offset size 9");
    EXPECT_REFUSED(b.build(root, { .refSize = 0u }), "object reference size 0");
    EXPECT_REFUSED(b.build(root, { .refSize = 9u }), "object reference size 9");
    EXPECT_REFUSED(b.build(root, { .objectCount = 0u }), "no objects");
    EXPECT_REFUSED(b.build(root, { .topObject = 10'000u }), "top object 10000 out of range");
    EXPECT_REFUSED(b.build(root, { .topObject = UINT64_MAX }), "out of range");
    EXPECT_REFUSED(b.build(root, { .offsetTable = 3u }), "offset table out of range");
    EXPECT_REFUSED(b.build(root, { .offsetTable = 1u << 20 }), "offset table out of range");
    EXPECT_REFUSED(b.build(root, { .offsetTable = UINT64_MAX }), "offset table out of range");
    // Object counts whose offsets cannot fit, also when count times size overflows.
    EXPECT_REFUSED(b.build(root, { .objectCount = 1'000'000u }), "do not fit");
    EXPECT_REFUSED(b.build(root, { .objectCount = UINT64_MAX / 2 + 2 }), "do not fit");
}

TEST(BinaryPropertyListReaderTest, RefusesOffsetsOutsideTheObjectArea)
{
    BplistBuilder b;
    const std::string good = oneEntryFile(b);
    const std::uint64_t table = offsetTableOf(good);
    EXPECT_REFUSED(withOffset(good, b, 0, 0), "object 0: offset 0 lies outside the object area");
    EXPECT_REFUSED(withOffset(good, b, 3, 7), "object 3: offset 7 lies outside");
    EXPECT_REFUSED(withOffset(good, b, 3, table), "lies outside the object area");
    EXPECT_REFUSED(withOffset(good, b, 3, good.size() - 10), "lies outside the object area");
    EXPECT_REFUSED(withOffset(good, b, 3, 0xFFFF), "lies outside the object area");
    // An object whose payload would run into the offset table.
    BplistBuilder c;
    const std::size_t root = c.array({});
    const std::size_t entry = c.entry();
    const std::size_t last = c.raw("\x55"
                                   "AB");
    c.replace(root, BplistBuilder::join({ "\xA2", c.ref(entry), c.ref(last) }));
    EXPECT_REFUSED(c.build(root), "entry 2: object " + std::to_string(last) + " at offset ");
    EXPECT_REFUSED(c.build(root), "length 5 runs past the end of the object area");
}

TEST(BinaryPropertyListReaderTest, RefusesLengthsAndReferencesBeyondTheData)
{
    {
        // An array claiming 2^61 references of 8 bytes: the product overflows 64 bits.
        BplistBuilder b;
        const std::size_t huge
            = b.raw(BplistBuilder::join({ "\xAF\x13", BplistBuilder::bigEndian(std::uint64_t(1) << 61, 8) }));
        b.refSize = 8;
        EXPECT_REFUSED(b.build(huge), "runs past the end");
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
    {
        BplistBuilder b;
        const std::size_t root = b.raw("\xA1\x63"); // refers to object 99 of 1
        EXPECT_REFUSED(b.build(root), "object reference 99 out of range");
    }
}

TEST(BinaryPropertyListReaderTest, RefusesReferenceCyclesAndExponentialSharing)
{
    {
        // A split booking whose child list holds its own parent.
        BplistBuilder b;
        const std::size_t children = b.array({});
        const std::size_t parent = b.entry({ { "childTransactions", children } });
        b.replace(children, BplistBuilder::join({ "\xA1", b.ref(parent) }));
        EXPECT_REFUSED(b.build(b.array({ parent })), "entry 1 (child 1): reference cycle");
    }
    {
        // A root array holding itself is no list of entries either.
        BplistBuilder b;
        const std::size_t root = b.array({});
        b.replace(root, BplistBuilder::join({ "\xA1", b.ref(root) }));
        EXPECT_REFUSED(b.build(root), "entry 1: is an array, not a dictionary");
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
    {
        // Sharing within reason is read once per reference.
        BplistBuilder b;
        const std::size_t shared = b.entry();
        const EinnahmeList entries = LedgerFile::decode(b.build(b.array({ shared, shared, shared })));
        ASSERT_EQ(entries.size(), 3u);
        EXPECT_NE(entries[0], entries[1]);
        EXPECT_EQ(entries[2]->name(), "Miete");
    }
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
    const EinnahmeList deep = LedgerFile::decode(nestedFile(300));
    int levels = 0;
    for (const Einnahme* e = deep.at(0).get(); e;
         e = e->childTransactions().empty() ? nullptr : e->childTransactions()[0].get())
        ++levels;
    EXPECT_EQ(levels, 300);
    EXPECT_EQ(LedgerFile::decode(nestedFile(513)).size(), 1u);
    EXPECT_REFUSED(nestedFile(514), "split bookings nested deeper than 512 levels");
    EXPECT_REFUSED(nestedFile(5000), "nested deeper than 512");
}

TEST(BinaryPropertyListReaderTest, KeysMustBeStringsAndTheLastDuplicateWins)
{
    {
        BplistBuilder b;
        const std::size_t entry = b.dict({ b.integer(7, 1) }, { b.ascii("v") });
        EXPECT_REFUSED(b.build(b.array({ entry })), "entry 1: a dictionary key is an integer, not a string");
    }
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
        const std::size_t k = c.utf16({ 'n', 'a', 'm', 'e' });
        const std::size_t bad = c.utf16({ 'n', 0xD800 });
        std::vector<std::size_t> keys, values;
        for (const char* name : { "kategorie", "art", "innergemeinschaftlicherErwerb", "isNonEU", "brutto",
                 "steuersatz", "datum", "rechnungsnummer", "steuernummer", "leistungsart", "childTransactions" }) {
            keys.push_back(c.key(name));
            values.push_back(c.defaultValue(name));
        }
        keys.push_back(k);
        values.push_back(c.ascii("Aus UTF-16"));
        const std::size_t good = c.dict(keys, values);
        keys.back() = bad;
        const std::size_t broken = c.dict(keys, values);
        EXPECT_EQ(LedgerFile::decode(c.build(c.array({ good }))).at(0)->name(), "Aus UTF-16");
        EXPECT_REFUSED(c.build(c.array({ broken })), "a dictionary key holds an unpaired UTF-16 surrogate");
    }
}

TEST(BinaryPropertyListReaderTest, RefusesStringsThatAreNotText)
{
    // A lone high surrogate at the end, a low one first, a high one before a letter.
    for (const auto& [key, units] : { std::pair<std::string, std::vector<std::uint16_t>> { "name", { 0x0041, 0xD800 } },
             { "art", { 0xDC00, 0x0041 } }, { "kategorie", { 0xD83D, 0x0041 } } }) {
        BplistBuilder b;
        EXPECT_REFUSED(oneEntryFile(b, { { key, b.utf16(units) } }),
            "key \"" + key + "\": string holds an unpaired UTF-16 surrogate");
    }
    {
        BplistBuilder b;
        EXPECT_REFUSED(
            oneEntryFile(b, { { "leistungsart", b.raw("\x52\x41\xE4") } }), "ASCII string holds the byte 0xE4");
    }
    {
        // A proper pair is one code point: U+1F600 in UTF-8.
        BplistBuilder b;
        const EinnahmeList entries
            = LedgerFile::decode(oneEntryFile(b, { { "name", b.utf16({ 0x00C4, 0xD83D, 0xDE00 }) } }));
        EXPECT_EQ(entries.at(0)->name(), "\xC3\x84\xF0\x9F\x98\x80");
    }
}

TEST(BinaryPropertyListReaderTest, EveryKeyIsRequiredWithItsType)
{
    const char* const keys[12] = { "name", "kategorie", "art", "innergemeinschaftlicherErwerb", "isNonEU", "brutto",
        "steuersatz", "datum", "rechnungsnummer", "steuernummer", "leistungsart", "childTransactions" };
    for (const char* key : keys) {
        SCOPED_TRACE(key);
        const std::string k(key);
        BplistBuilder b;
        // The first entry is complete; the second lacks the key: the whole file is refused.
        const std::size_t complete = b.entry();
        const std::size_t lacking = b.entry({ { k, std::nullopt } });
        EXPECT_REFUSED(b.build(b.array({ complete, lacking })), "entry 2: key \"" + k + "\" missing");

        BplistBuilder c;
        const bool wantsString = k == "name" || k == "kategorie" || k == "art" || k == "rechnungsnummer"
            || k == "steuernummer" || k == "leistungsart";
        const std::size_t wrong = wantsString ? c.boolean(true)
            : k == "childTransactions"        ? c.ascii("[]")
                                              : c.ascii("1");
        const std::size_t child = c.entry({ { k, wrong } });
        const std::size_t parent = c.entry({ { "childTransactions", c.array({ c.entry(), child }) } });
        EXPECT_REFUSED(c.build(c.array({ parent })), "entry 1 (child 2): key \"" + k + "\" holds a");
    }
    BplistBuilder d;
    const std::size_t dateAsString = d.ascii("2024-01-01");
    EXPECT_REFUSED(oneEntryFile(d, { { "datum", dateAsString } }), "key \"datum\" holds a string, expected a date");
    BplistBuilder e;
    EXPECT_REFUSED(oneEntryFile(e, { { "childTransactions", e.array({ e.ascii("x") }) } }),
        "entry 1 (child 1): is a string, not a dictionary");
}

TEST(BinaryPropertyListReaderTest, RootMustBeAnArray)
{
    BplistBuilder b;
    const std::size_t entry = b.entry();
    EXPECT_REFUSED(b.build(entry), "root is a dictionary, not an array");
    BplistBuilder c;
    EXPECT_REFUSED(c.build(c.ascii("Einnahmen")), "root is a string, not an array");
}

TEST(BinaryPropertyListReaderTest, AcceptsOtherNumberFormsAndDropsExtraKeys)
{
    BplistBuilder b;
    const std::size_t a
        = b.entry({ { "brutto", b.real8(0.1) }, { "steuersatz", b.integer(19, 1) }, { "datum", b.real8(-1.25) } },
            { { "netto", b.real4(1.0f) }, { "extra", b.raw("\x00") } });
    const std::size_t c
        = b.entry({ { "brutto", b.integer(std::uint64_t(-3), 8) }, { "steuersatz", b.integer(70000, 4) } });
    const std::size_t d = b.entry({ { "brutto",
                                        b.raw(BplistBuilder::join({ "\x14", BplistBuilder::bigEndian(0, 8),
                                            BplistBuilder::bigEndian(UINT64_MAX, 8) })) },
        { "steuersatz", b.real8(1e300) } });
    const std::size_t e = b.entry({ { "brutto",
        b.raw(BplistBuilder::join({ "\x14", BplistBuilder::bigEndian(1, 8), BplistBuilder::bigEndian(0, 8) })) } });
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
using EntryValues = std::map<std::string, std::optional<std::size_t>>;
std::size_t longList(BplistBuilder& b, const std::map<std::size_t, EntryValues>& overrides)
{
    b.refSize = 3;
    b.offsetSize = 4;
    EntryValues shared;
    for (const char* key : { "name", "kategorie", "art", "innergemeinschaftlicherErwerb", "isNonEU", "brutto",
             "steuersatz", "datum", "rechnungsnummer", "steuernummer", "leistungsart", "childTransactions" })
        shared[key] = b.defaultValue(key);
    std::vector<std::size_t> refs;
    for (std::size_t i = 0; i < BinaryPropertyListReader::kSplitFrom + 2; ++i) {
        EntryValues values = shared;
        if (const auto found = overrides.find(i); found != overrides.end()) {
            for (const auto& [key, value] : found->second)
                values[key] = value;
        }
        refs.push_back(b.entry(values));
    }
    return b.array(refs);
}

TEST(BinaryPropertyListReaderTest, LongListsReadInTwoHalvesFailExactlyAsInOnePass)
{
    const std::size_t count = BinaryPropertyListReader::kSplitFrom + 2;
    const std::string last = "entry " + std::to_string(count);
    {
        BplistBuilder b;
        const std::size_t root = longList(b, { { count - 1, { { "art", std::nullopt } } } });
        EXPECT_EQ(refusal(b.build(root)), last + ": key \"art\" missing");
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
        EXPECT_EQ(refusal(b.build(root)), "entry " + std::to_string(count - 1) + " (child 1): reference cycle: object "
                + std::to_string(root - 2) + " contains itself");
    }
    {
        // 120 entries of the second half share one name of 60,000 characters:
        // that half alone reads more than half of what sharing may cost in all
        // (16 times the file size), the whole list less than all of it. The
        // list is read, as in one pass.
        BplistBuilder b;
        const std::size_t longName = b.ascii(std::string(60'000, 'x'));
        std::map<std::size_t, EntryValues> overrides;
        for (std::size_t i = count - 120; i < count; ++i)
            overrides[i] = { { "name", longName } };
        const std::string bytes = b.build(longList(b, overrides));
        const EinnahmeList entries = LedgerFile::decode(bytes);
        ASSERT_EQ(entries.size(), count);
        EXPECT_EQ(entries[count - 120]->name().size(), 60'000u);
        EXPECT_EQ(entries[count - 121]->name(), "Miete");
    }
}

} // namespace
} // namespace saldo
