#include "model/BinaryPropertyListReader.h"

#include "model/LedgerFile.h"
#include "model/NearestFloat.h"
#include "model/TextPool.h"
#include "model/Utf16.h"

#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <system_error>
#include <thread>

namespace saldo {

namespace {

std::uint64_t bigEndian(const std::uint8_t* p, unsigned bytes)
{
    // The widths of references and offsets met on every object come first.
    switch (bytes) {
    case 1:
        return p[0];
    case 2:
        return (std::uint64_t(p[0]) << 8) | p[1];
    case 3:
        return (std::uint64_t(p[0]) << 16) | (std::uint64_t(p[1]) << 8) | p[2];
    case 4:
        return (std::uint64_t(p[0]) << 24) | (std::uint64_t(p[1]) << 16) | (std::uint64_t(p[2]) << 8) | p[3];
    default: {
        std::uint64_t value = 0;
        for (unsigned i = 0; i < bytes; ++i)
            value = (value << 8) | p[i];
        return value;
    }
    }
}

// An n-byte big-endian number (n from 1 to 8) read with one 8-byte load. Only
// for references and offsets: each lies in the object area or the offset
// table, and the 32-byte trailer after both keeps the load inside the data.
inline std::uint64_t bigEndianInData(const std::uint8_t* p, unsigned bytes)
{
    std::uint64_t word;
    std::memcpy(&word, p, 8);
    return __builtin_bswap64(word) >> (64 - 8 * bytes);
}

const char* typeName(std::uint8_t marker)
{
    switch (marker >> 4) {
    case 0x0:
        return marker == 0x08 || marker == 0x09 ? "a boolean" : marker == 0x00 ? "null" : "a fill byte";
    case 0x1:
        return "an integer";
    case 0x2:
        return "a real";
    case 0x3:
        return "a date";
    case 0x4:
        return "data";
    case 0x5:
    case 0x6:
        return "a string";
    case 0x8:
        return "a UID";
    case 0xA:
        return "an array";
    case 0xC:
        return "a set";
    case 0xD:
        return "a dictionary";
    default:
        return "an unknown object";
    }
}

std::string hexByte(std::uint8_t b)
{
    static const char digits[] = "0123456789ABCDEF";
    return std::string("0x") + digits[b >> 4] + digits[b & 15];
}

} // namespace

BinaryPropertyListReader::BinaryPropertyListReader(std::string_view bytes, Texts texts)
    : data_(reinterpret_cast<const std::uint8_t*>(bytes.data()))
    , size_(bytes.size())
    , keptTexts_(texts)
{
}

EinnahmeList BinaryPropertyListReader::readEntries()
{
    readTrailer();
    const Head root = head(topObject_);
    if ((root.marker >> 4) != 0xA)
        throw LedgerFileError(std::string("root is ") + typeName(root.marker) + ", not an array",
            LedgerFileError::Kind::NotALedger);
    const std::uint64_t budget = size_ < (std::uint64_t(1) << 58)
        ? kBudgetPerFileByte * std::uint64_t(size_) + kBudgetBase
        : UINT64_MAX;
    EinnahmeList list;
    if (root.count >= kSplitFrom && std::thread::hardware_concurrency() >= 2 && readInTwo(root, budget, list))
        return list;
    path_ = LedgerEntryPath();
    arena_.expect(static_cast<std::size_t>(root.count));
    startPass();
    budget_ = budget;
    return readEntryArray(topObject_);
}

// Fresh object states and text numbers (a fresh mapping is zero) and the text
// pool to fill. The offset table proves the object count: both tables together
// take at most five times the file's size.
void BinaryPropertyListReader::startPass()
{
    const auto objects = static_cast<std::size_t>(objectCount_);
    objectStates_ = HugePageMemory();
    objectStates_ = HugePageMemory(objects, HugePageMemory::Backing::Filled);
    state_ = static_cast<std::uint8_t*>(objectStates_.data());
    // Only the numbers of text objects are touched, often far apart.
    textNumbers_ = HugePageMemory();
    textNumbers_ = HugePageMemory(objects * sizeof(std::uint32_t), HugePageMemory::Backing::Huge);
    textOf_ = static_cast<std::uint32_t*>(textNumbers_.data());
    texts_ = &arena_.texts();
}

// Both halves are decoded exactly as one pass decodes them, each charging its
// own half of the budget: when both succeed, one pass succeeds with the same
// entries; otherwise the caller decodes again in one pass for the exact result.
bool BinaryPropertyListReader::readInTwo(const Head& root, std::uint64_t budget, EinnahmeList& list)
{
    const std::uint64_t half = root.count / 2;
    // The list is filled by both threads; its storage, fresh from the system, may take huge pages.
    list.reserve(static_cast<std::size_t>(root.count));
    HugePageMemory::prepareToFill(list.data(), list.capacity() * sizeof(EinnahmePtr));
    list.resize(static_cast<std::size_t>(root.count));
    std::atomic<bool> abandoned { false };
    auto pass = [&](BinaryPropertyListReader& reader, std::uint64_t begin, std::uint64_t end) {
        try {
            reader.abandoned_ = &abandoned;
            reader.arena_.expect(static_cast<std::size_t>(end - begin));
            reader.startPass();
            reader.budget_ = budget / 2;
            reader.enter(topObject_);
            reader.charge(8 * (end - begin) + 16);
            reader.readEntryRange(root, begin, end, list.data());
            return !abandoned.load();
        } catch (...) {
            // Whatever went wrong, the single pass meets it again and reports it.
            abandoned = true;
            return false;
        }
    };
    BinaryPropertyListReader second(std::string_view(reinterpret_cast<const char*>(data_), size_), keptTexts_);
    second.readTrailer();
    bool secondDone = false;
    std::thread worker;
    try {
        worker = std::thread([&] { secondDone = pass(second, half, root.count); });
    } catch (const std::system_error&) {
        list = EinnahmeList();
        return false;
    }
    const bool firstDone = pass(*this, 0, half);
    worker.join();
    abandoned_ = nullptr;
    if (firstDone && secondDone)
        return true;
    list = EinnahmeList();
    return false;
}

namespace {
constexpr std::size_t kTrailer = 32;
}

void BinaryPropertyListReader::checkTrailer(std::string_view trailer, std::uint64_t fileSize)
{
    BinaryPropertyListReader reader { std::string_view() };
    reader.size_ = static_cast<std::size_t>(fileSize);
    reader.parseTrailer(trailer.size() == kTrailer ? reinterpret_cast<const std::uint8_t*>(trailer.data()) : nullptr);
}

void BinaryPropertyListReader::readTrailer()
{
    parseTrailer(size_ >= kTrailer ? data_ + size_ - kTrailer : nullptr);
}

// The trailer's fields, each checked against the size of the file (no trailer
// when the file is shorter than one).
void BinaryPropertyListReader::parseTrailer(const std::uint8_t* t)
{
    if (size_ < 8 + 1 + 1 + kTrailer || !t)
        fail("too short for a binary property list (" + std::to_string(size_) + " bytes)", size_);
    const std::uint64_t at = size_ - kTrailer;
    offsetSize_ = t[6];
    refSize_ = t[7];
    objectCount_ = bigEndian(t + 8, 8);
    topObject_ = bigEndian(t + 16, 8);
    const std::uint64_t table = bigEndian(t + 24, 8);
    const std::size_t trailerStart = size_ - kTrailer;
    if (offsetSize_ < 1 || offsetSize_ > 8)
        fail("offset size " + std::to_string(offsetSize_) + " in the trailer is out of range (1 to 8)", at + 6);
    if (refSize_ < 1 || refSize_ > 8)
        fail("object reference size " + std::to_string(refSize_) + " in the trailer is out of range (1 to 8)", at + 7);
    if (objectCount_ == 0)
        fail("the trailer counts no objects", at + 8);
    if (topObject_ >= objectCount_)
        fail("top object " + std::to_string(topObject_) + " out of range (" + std::to_string(objectCount_)
            + " objects)",
            at + 16);
    if (table < 9 || table >= trailerStart)
        fail("offset table out of range (at " + std::to_string(table) + ", trailer at " + std::to_string(trailerStart)
                + ")",
            at + 24);
    if (objectCount_ > (trailerStart - table) / offsetSize_)
        fail("offset table out of range (" + std::to_string(objectCount_) + " offsets of " + std::to_string(offsetSize_)
                + " bytes do not fit before the trailer)",
            at + 24);
    offsetTable_ = static_cast<std::size_t>(table);
}

namespace {

// Payload bytes of each marker whose payload has a fixed size; kVariable for
// strings, data and containers (length in the marker or after it); kInvalid
// for markers no property list uses.
constexpr std::int8_t kVariable = -1;
constexpr std::int8_t kInvalid = -2;
constexpr auto kFixedSize = [] {
    std::array<std::int8_t, 256> table {};
    for (int m = 0; m < 256; ++m) {
        const int hi = m >> 4, lo = m & 15;
        std::int8_t size = kInvalid;
        if (m == 0x00 || m == 0x08 || m == 0x09 || m == 0x0F)
            size = 0;
        else if (hi == 0x1 && lo <= 4)
            size = static_cast<std::int8_t>(1 << lo);
        else if (m == 0x22 || m == 0x23)
            size = static_cast<std::int8_t>(1 << lo);
        else if (m == 0x33)
            size = 8;
        else if (hi == 0x8)
            size = static_cast<std::int8_t>(lo + 1);
        else if (hi == 0x4 || hi == 0x5 || hi == 0x6 || hi == 0xA || hi == 0xC || hi == 0xD)
            size = kVariable;
        table[static_cast<std::size_t>(m)] = size;
    }
    return table;
}();

} // namespace

inline BinaryPropertyListReader::Head BinaryPropertyListReader::head(std::uint64_t object) const
{
    const std::uint64_t offset
        = bigEndianInData(data_ + offsetTable_ + static_cast<std::size_t>(object) * offsetSize_, offsetSize_);
    if (offset < 8 || offset >= offsetTable_) [[unlikely]]
        failOffset(object, offset);
    return headAt(object, offset);
}

void BinaryPropertyListReader::failOffset(std::uint64_t object, std::uint64_t offset) const
{
    fail("object " + std::to_string(object) + ": offset " + std::to_string(offset)
            + " lies outside the object area (8 to " + std::to_string(offsetTable_) + ")",
        offsetTable_ + object * offsetSize_);
}

inline BinaryPropertyListReader::Head BinaryPropertyListReader::headAt(std::uint64_t object, std::uint64_t offset) const
{
    const std::size_t pos = static_cast<std::size_t>(offset) + 1;
    Head h;
    h.marker = data_[offset];
    const std::int8_t fixed = kFixedSize[h.marker];
    if (fixed >= 0) [[likely]] {
        if (static_cast<std::size_t>(fixed) > offsetTable_ - pos) [[unlikely]]
            failObject(object, offset, "value runs past the end of the object area");
        h.count = static_cast<std::uint64_t>(fixed);
        h.payload = pos;
        return h;
    }
    if (fixed == kVariable && (h.marker & 15) != 15) [[likely]] {
        // A string, data or container with its length in the marker.
        const unsigned hi = h.marker >> 4;
        const std::uint64_t unit = hi <= 0x5 ? 1 : hi == 0x6 ? 2 : hi == 0xD ? 2 * std::uint64_t(refSize_) : refSize_;
        h.count = h.marker & 15;
        if (h.count * unit > offsetTable_ - pos) [[unlikely]]
            failLength(object, offset, h.count);
        h.payload = pos;
        return h;
    }
    return headOfLength(object, offset, h);
}

void BinaryPropertyListReader::failLength(std::uint64_t object, std::uint64_t offset, std::uint64_t count) const
{
    failObject(object, offset, "length " + std::to_string(count) + " runs past the end of the object area");
}

// The head of a string, data or container whose length may follow the marker.
BinaryPropertyListReader::Head BinaryPropertyListReader::headOfLength(
    std::uint64_t object, std::uint64_t offset, Head h) const
{
    // The object area lies in memory, so every count compared with a distance
    // within it is far below 2^60 and times 16 cannot overflow.
    const std::size_t end = offsetTable_;
    std::size_t pos = static_cast<std::size_t>(offset) + 1;
    if (kFixedSize[h.marker] == kInvalid) [[unlikely]]
        failObject(object, offset, "unknown type marker " + hexByte(h.marker));
    const unsigned hi = h.marker >> 4;
    const std::uint64_t unit = hi <= 0x5 ? 1 : hi == 0x6 ? 2 : hi == 0xD ? 2 * std::uint64_t(refSize_) : refSize_;
    h.count = h.marker & 15;
    if (h.count == 15) {
        if (pos >= end)
            failObject(object, offset, "length runs past the end of the object area");
        const std::uint8_t lengthMarker = data_[pos++];
        if ((lengthMarker >> 4) != 0x1 || (lengthMarker & 15) > 3)
            failObject(object, offset, "length is not an integer (marker " + hexByte(lengthMarker) + ")");
        const unsigned bytes = 1u << (lengthMarker & 15);
        if (bytes > end - pos)
            failObject(object, offset, "length runs past the end of the object area");
        h.count = bigEndian(data_ + pos, bytes);
        pos += bytes;
    }
    if (h.count > end - pos || h.count * unit > end - pos) [[unlikely]]
        failObject(object, offset, "length " + std::to_string(h.count) + " runs past the end of the object area");
    h.payload = pos;
    return h;
}

void BinaryPropertyListReader::failObject(std::uint64_t object, std::uint64_t offset, const std::string& what) const
{
    fail("object " + std::to_string(object) + " at offset " + std::to_string(offset) + ": " + what, offset);
}

inline std::uint64_t BinaryPropertyListReader::refAt(std::size_t position) const
{
    const std::uint64_t ref = bigEndianInData(data_ + position, refSize_);
    if (ref >= objectCount_) [[unlikely]]
        failReference(ref);
    return ref;
}

void BinaryPropertyListReader::failReference(std::uint64_t ref) const
{
    fail("object reference " + std::to_string(ref) + " out of range (" + std::to_string(objectCount_) + " objects)");
}

EinnahmeList BinaryPropertyListReader::readEntryArray(std::uint64_t object)
{
    const Head h = head(object);
    enter(object);
    charge(8 * h.count + 16);
    EinnahmeList list;
    list.reserve(static_cast<std::size_t>(h.count));
    HugePageMemory::prepareToFill(list.data(), list.capacity() * sizeof(EinnahmePtr));
    list.resize(static_cast<std::size_t>(h.count));
    readEntryRange(h, 0, h.count, list.data());
    leave(object);
    return list;
}

void BinaryPropertyListReader::readEntryRange(
    const Head& array, std::uint64_t begin, std::uint64_t end, EinnahmePtr* out)
{
    path_.push(0);
    for (std::uint64_t i = begin; i < end; ++i) {
        if (abandoned_ && abandoned_->load(std::memory_order_relaxed)) [[unlikely]]
            break;
        if (i + kFetchOffsetsAhead < end)
            prefetchEntry(array, i + kFetchOffsetsAhead, false);
        if (i + kFetchValuesAhead < end)
            prefetchEntry(array, i + kFetchValuesAhead, true);
        path_.setLast(i + 1);
        out[i] = readEntry(refAt(array.payload + static_cast<std::size_t>(i) * refSize_));
    }
    path_.pop();
}

// Values shared between entries lie anywhere in the file, and reading an entry
// waits mostly for memory: the offset-table slots of its values, their per-object
// table entries and then the values themselves are fetched a few entries ahead.
// Only what lies inside the data is touched; what the data says is checked
// when the entry itself is read.
void BinaryPropertyListReader::prefetchEntry(const Head& array, std::uint64_t index, bool values) const
{
    const std::uint64_t object
        = bigEndianInData(data_ + array.payload + static_cast<std::size_t>(index) * refSize_, refSize_);
    if (object >= objectCount_)
        return;
    const std::uint64_t offset
        = bigEndianInData(data_ + offsetTable_ + static_cast<std::size_t>(object) * offsetSize_, offsetSize_);
    if (offset >= offsetTable_)
        return;
    const std::uint8_t marker = data_[offset];
    const std::size_t count = marker & 15;
    if ((marker >> 4) != 0xD || count == 15 || 2 * count * refSize_ >= offsetTable_ - offset)
        return;
    const std::uint8_t* refs = data_ + offset + 1 + count * refSize_;
    for (std::size_t k = 0; k < count; ++k) {
        const std::uint64_t value = bigEndianInData(refs + k * refSize_, refSize_);
        if (value >= objectCount_)
            continue;
        const std::uint8_t* slot = data_ + offsetTable_ + static_cast<std::size_t>(value) * offsetSize_;
        const std::uint32_t known = textOf_[value];
        if (!values) {
            __builtin_prefetch(slot);
            __builtin_prefetch(&textOf_[value]);
            continue;
        }
        if (known != 0) {
            if (known != kCheckedOnly)
                __builtin_prefetch(&texts_->at(known - 1));
            continue;
        }
        const std::uint64_t at = bigEndianInData(slot, offsetSize_);
        if (at < offsetTable_)
            __builtin_prefetch(data_ + at);
    }
}

EinnahmePtr BinaryPropertyListReader::readEntry(std::uint64_t object)
{
    const Head h = head(object);
    entryAt_ = bigEndianInData(data_ + offsetTable_ + static_cast<std::size_t>(object) * offsetSize_, offsetSize_);
    if ((h.marker >> 4) != 0xD)
        fail(std::string("is ") + typeName(h.marker) + ", not a dictionary");
    enter(object);
    charge(kEntryCost);
    Einnahme::Fields fields;
    unsigned seen = 0;
    const std::size_t values = h.payload + static_cast<std::size_t>(h.count) * refSize_;
    for (std::size_t i = 0; i < h.count; ++i) {
        const int key = keyIndexOf(refAt(h.payload + i * refSize_));
        const std::uint64_t value = refAt(values + i * refSize_);
        if (key < 0)
            continue;
        readValue(key, value, fields);
        seen |= 1u << key;
    }
    if (seen != LedgerEntryPath::kAllKeysMask)
        fail("key \"" + std::string(LedgerEntryPath::firstMissingKey(seen)) + "\" missing");
    leave(object);
    return arena_.make(std::move(fields));
}

inline int BinaryPropertyListReader::keyIndexOf(std::uint64_t object)
{
    const std::uint8_t state = state_[object];
    if (state & kKeyKnown) [[likely]]
        return (state & 0x3F) - 1;
    return newKeyIndexOf(object);
}

int BinaryPropertyListReader::newKeyIndexOf(std::uint64_t object)
{
    const std::uint8_t state = state_[object];
    const Head h = head(object);
    int index;
    if ((h.marker >> 4) == 0x5) {
        index = LedgerEntryPath::keyIndex(
            std::string_view(reinterpret_cast<const char*>(data_ + h.payload), static_cast<std::size_t>(h.count)));
    } else if ((h.marker >> 4) == 0x6) {
        std::string key;
        if (!Utf16::appendUtf8FromBigEndian(data_ + h.payload, static_cast<std::size_t>(h.count), key))
            fail("a dictionary key holds an unpaired UTF-16 surrogate");
        index = LedgerEntryPath::keyIndex(key);
    } else {
        fail(std::string("a dictionary key is ") + typeName(h.marker) + ", not a string");
    }
    state_[object] = static_cast<std::uint8_t>(state | kKeyKnown | (index + 1));
    return index;
}

void BinaryPropertyListReader::readValue(int key, std::uint64_t object, Einnahme::Fields& fields)
{
    switch (key) {
    case 0:
        return readText(key, object, fields.name);
    case 1:
        return readText(key, object, fields.kategorie);
    case 2:
        return readText(key, object, fields.art);
    case 8:
        return readText(key, object, fields.rechnungsnummer);
    case 9:
        return readText(key, object, fields.steuernummer);
    case 10:
        return readText(key, object, fields.leistungsart);
    default:
        break;
    }
    const Head h = head(object);
    switch (key) {
    case 3:
    case 4: {
        if (h.marker != 0x08 && h.marker != 0x09)
            failWrongType(key, h, "a boolean");
        (key == 3 ? fields.innergemeinschaftlicherErwerb : fields.isNonEU) = h.marker == 0x09;
        return;
    }
    case 5:
        fields.brutto = readAmount(key, h);
        return;
    case 6:
        fields.steuersatz = readAmount(key, h);
        return;
    case 7:
        fields.datum = readDatum(key, h);
        return;
    default: {
        if ((h.marker >> 4) != 0xA)
            failWrongType(key, h, "an array");
        if (h.count > 0 && path_.depth() > LedgerEntryPath::kMaxNesting)
            fail("split bookings nested deeper than " + std::to_string(LedgerEntryPath::kMaxNesting) + " levels");
        EinnahmeList children = readEntryArray(object);
        if (!children.empty())
            fields.childTransactions = std::make_unique<EinnahmeList>(std::move(children));
        return;
    }
    }
}

namespace {

// The position of the first byte of `p[0, length)` that is not ASCII, or `length`.
std::size_t firstNonAscii(const std::uint8_t* p, std::size_t length)
{
    std::size_t i = 0;
    for (; i + 8 <= length; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, p + i, 8);
        if (word & 0x8080808080808080ull)
            break;
    }
    for (; i < length; ++i) {
        if (p[i] >= 0x80)
            return i;
    }
    return length;
}

} // namespace

void BinaryPropertyListReader::readText(int key, std::uint64_t object, EntryText& out)
{
    std::uint32_t& known = textOf_[object];
    const bool keep = keptTexts_ == Texts::All || key == 1 || key == 2;
    if (known != 0 && known != kCheckedOnly) {
        // Decoded before: shared, nothing new is built.
        out = EntryText::borrowed(texts_->at(known - 1));
        return;
    }
    if (known == kCheckedOnly && !keep)
        return;
    // A text checked before for a text not kept is charged already.
    const bool charged = known == kCheckedOnly;
    const Head h = head(object);
    const std::uint8_t* p = data_ + h.payload;
    const auto length = static_cast<std::size_t>(h.count);
    std::string* text = nullptr;
    if ((h.marker >> 4) == 0x5) {
        if (!charged)
            charge(kTextCost + length);
        const std::size_t bad = firstNonAscii(p, length);
        if (bad < length)
            failAtKey(key, "ASCII string holds the byte " + hexByte(p[bad]));
        if (keep) {
            text = &texts_->add();
            text->assign(reinterpret_cast<const char*>(p), length);
        }
    } else if ((h.marker >> 4) == 0x6) {
        if (!charged)
            charge(kTextCost + 3 * std::uint64_t(length));
        if (keep) {
            text = &texts_->add();
            if (!Utf16::appendUtf8FromBigEndian(p, length, *text))
                failAtKey(key, "string holds an unpaired UTF-16 surrogate");
        } else if (!Utf16::isWellFormedBigEndian(p, length)) {
            failAtKey(key, "string holds an unpaired UTF-16 surrogate");
        }
    } else {
        failWrongType(key, h, "a string");
    }
    if (!text) {
        known = kCheckedOnly;
        return;
    }
    out = EntryText::borrowed(*text);
    // Each text is charged kTextCost bytes at least, so only a file of many
    // gigabytes could hold more texts than 32 bits number; past that, a text
    // is decoded (and charged) again at each reference.
    if (texts_->size() < kCheckedOnly)
        known = static_cast<std::uint32_t>(texts_->size());
}

float BinaryPropertyListReader::readAmount(int key, const Head& h) const
{
    const std::uint8_t* p = data_ + h.payload;
    switch (h.marker) {
    case 0x22:
        return std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(p, 4)));
    case 0x23:
        return nearestFloat(std::bit_cast<double>(bigEndian(p, 8)));
    case 0x10:
    case 0x11:
    case 0x12:
        return static_cast<float>(bigEndian(p, static_cast<unsigned>(h.count)));
    case 0x13:
        return static_cast<float>(static_cast<std::int64_t>(bigEndian(p, 8)));
    case 0x14: {
        // Sixteen bytes hold unsigned 64-bit values and their negative counterparts.
        const std::uint64_t high = bigEndian(p, 8);
        const std::uint64_t low = bigEndian(p + 8, 8);
        if (high == 0)
            return static_cast<float>(low);
        if (high == UINT64_MAX && (low >> 63) != 0)
            return static_cast<float>(static_cast<std::int64_t>(low));
        failAtKey(key, "integer out of range");
    }
    default:
        failWrongType(key, h, "a real");
    }
}

double BinaryPropertyListReader::readDatum(int key, const Head& h) const
{
    // A date, or a real holding the same seconds since the reference date.
    const std::uint8_t* p = data_ + h.payload;
    switch (h.marker) {
    case 0x33:
    case 0x23:
        return std::bit_cast<double>(bigEndian(p, 8));
    case 0x22:
        return std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(p, 4)));
    default:
        failWrongType(key, h, "a date");
    }
}

void BinaryPropertyListReader::failCycle(std::uint64_t object) const
{
    fail("reference cycle: object " + std::to_string(object) + " contains itself");
}

void BinaryPropertyListReader::failBudget() const
{
    fail("objects are shared so often that the file would expand beyond " + std::to_string(kBudgetPerFileByte)
        + " times its size");
}

void BinaryPropertyListReader::fail(const std::string& what, std::optional<std::uint64_t> byte) const
{
    if (path_.depth() == 0)
        throw LedgerFileError(what, LedgerFileError::Kind::Damaged, byte);
    throw LedgerFileError(path_.describe() + ": " + what, LedgerFileError::Kind::Damaged, byte ? byte : entryAt_);
}

void BinaryPropertyListReader::failAtKey(int key, const std::string& what) const
{
    fail("key \"" + std::string(kEinnahmeKeys[key]) + "\": " + what);
}

void BinaryPropertyListReader::failWrongType(int key, const Head& h, const char* expected) const
{
    fail("key \"" + std::string(kEinnahmeKeys[key]) + "\" holds " + typeName(h.marker) + ", expected " + expected);
}

} // namespace saldo
