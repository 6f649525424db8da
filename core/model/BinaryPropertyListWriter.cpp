#include "model/BinaryPropertyListWriter.h"

#include "model/LedgerFile.h"
#include "model/Utf16.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace saldo {

namespace {

// Object numbers: the twelve keys, then false and true, then the entries; the
// root array is written last.
constexpr std::uint64_t kFalseObject = 12;
constexpr std::uint64_t kTrueObject = 13;
constexpr std::uint64_t kFirstEntryObject = 14;
// Objects of one entry at most: its dictionary, nine values and its child array.
constexpr std::uint64_t kObjectsPerEntry = 11;

unsigned bytesFor(std::uint64_t value)
{
    unsigned bytes = 1;
    while (bytes < 8 && (value >> (8 * bytes)) != 0)
        ++bytes;
    return bytes;
}

std::uint64_t mix(std::uint64_t x)
{
    x ^= x >> 32;
    x *= 0xD6E8FEB86659FD93ull;
    x ^= x >> 32;
    x *= 0xD6E8FEB86659FD93ull;
    return x ^ (x >> 32);
}

// The hash of a shared value, taken from the value itself rather than from
// its coded bytes (equal texts code to equal bytes and unequal ones to
// unequal bytes, so either identifies the object), which lets the writer
// find a value's slot before it codes the value. Texts are hashed eight
// bytes at a time; they are short.
std::uint64_t textHash(std::string_view text)
{
    std::uint64_t h = 0x9E3779B97F4A7C15ull * (text.size() + 1);
    const char* p = text.data();
    std::size_t n = text.size();
    for (; n >= 8; p += 8, n -= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        h = mix(h ^ word);
    }
    if (n > 0) {
        std::uint64_t word = 0;
        std::memcpy(&word, p, n);
        h = mix(h ^ word);
    }
    return h;
}

std::uint64_t realHash(float value)
{
    return mix(std::bit_cast<std::uint32_t>(value) | 0x2200000000ull);
}

} // namespace

BinaryPropertyListWriter::ValueHashes BinaryPropertyListWriter::hashesOf(const Einnahme& entry)
{
    return { { textHash(entry.name()), textHash(entry.kategorie()), textHash(entry.art()), realHash(entry.brutto()),
        realHash(entry.steuersatz()), textHash(entry.rechnungsnummer()), textHash(entry.steuernummer()),
        textHash(entry.leistungsart()) } };
}

namespace {

void putBigEndian(char* p, std::uint64_t value, unsigned bytes)
{
    for (unsigned i = 0; i < bytes; ++i)
        p[i] = static_cast<char>(value >> (8 * (bytes - 1 - i)));
}

bool isAscii(std::string_view text)
{
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    }
    return true;
}

} // namespace

BinaryPropertyListWriter::BinaryPropertyListWriter(std::uint64_t objectCount, const SnapshotGate* gate)
    : gate_(gate)
    , objectCount_(objectCount)
    , refSize_(bytesFor(objectCount - 1))
{
}

std::string BinaryPropertyListWriter::write(const EinnahmeList& entries, const SnapshotGate* gate)
{
    std::unique_lock<std::mutex> batch;
    if (gate)
        batch = gate->lockBatch();
    BinaryPropertyListWriter counter(1, gate);
    const std::uint64_t count = kFirstEntryObject + counter.countObjects(entries, 0, &batch) + 1;
    // The table of shared values numbers objects in 32 bits: some 390 million
    // entries, far more than fit in memory.
    if (count >= UINT32_MAX)
        throw LedgerFileError("too many entries for one file");
    BinaryPropertyListWriter writer(count, gate);
    writer.offsets_.reserve(static_cast<std::size_t>(count));
    writer.out_.reserve(static_cast<std::size_t>(count) * 20 + 64);
    writer.out_ = "bplist00";
    for (const std::string_view key : kEinnahmeKeys) {
        const std::size_t start = writer.out_.size();
        writer.writeAsciiString(key);
        writer.shareValue(start, textHash(key));
    }
    writer.beginObject();
    writer.out_.push_back('\x08');
    writer.beginObject();
    writer.out_.push_back('\x09');

    std::vector<std::uint64_t> top;
    top.reserve(entries.size());
    writer.path_.push(0);
    // Most values of a large ledger are looked up in a table far larger than
    // the cache. A few entries ahead, ask for the slots of their values; a
    // little later, for the bytes of the values those slots point to.
    constexpr std::size_t kAhead = 8, kNear = 3, kRing = 16;
    std::array<ValueHashes, kRing> ring;
    const std::size_t n = entries.size();
    for (std::size_t i = 0; i < std::min(n, kAhead); ++i)
        ring[i] = hashesOf(writer.at(*entries[i]));
    for (std::size_t i = 0; i < n; ++i) {
        // An entry changed between batches was kept as it was when its
        // hashes were taken: it is written with the values they came from.
        writer.nextBatch(batch, i);
        if (i + kAhead < n) {
            ValueHashes& ahead = ring[(i + kAhead) % kRing];
            ahead = hashesOf(writer.at(*entries[i + kAhead]));
            writer.prefetchSlots(ahead);
        }
        if (i + kNear < n)
            writer.prefetchValues(ring[(i + kNear) % kRing]);
        writer.path_.setLast(i + 1);
        top.push_back(writer.writeEntry(writer.at(*entries[i]), ring[i % kRing]));
    }
    writer.path_.pop();
    const std::uint64_t root = writer.writeArray(top);
    writer.finish(root);
    return std::move(writer.out_);
}

std::uint64_t BinaryPropertyListWriter::countObjects(
    const EinnahmeList& entries, std::size_t depth, std::unique_lock<std::mutex>* batch)
{
    std::uint64_t count = 0;
    path_.push(0);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (batch)
            nextBatch(*batch, i);
        path_.setLast(i + 1);
        if (!entries[i])
            throw LedgerFileError(path_.describe() + ": no entry");
        const EinnahmeList& children = at(*entries[i]).childTransactions();
        if (!children.empty() && depth >= LedgerEntryPath::kMaxNesting)
            throw LedgerFileError(path_.describe() + ": split bookings nested deeper than "
                + std::to_string(LedgerEntryPath::kMaxNesting) + " levels");
        count += kObjectsPerEntry + countObjects(children, depth + 1, nullptr);
    }
    path_.pop();
    return count;
}

std::uint64_t BinaryPropertyListWriter::writeEntry(const Einnahme& entry, const ValueHashes& hashes)
{
    auto string = [this](const std::string& text, std::uint64_t hash, const char* key) {
        const std::size_t start = out_.size();
        writeString(text, key);
        return shareValue(start, hash);
    };
    auto real = [this](float value, std::uint64_t hash) {
        const std::size_t start = out_.size();
        out_.push_back('\x22');
        writeBigEndian(std::bit_cast<std::uint32_t>(value), 4);
        return shareValue(start, hash);
    };
    const std::uint64_t* h = hashes.values;
    std::uint64_t values[12];
    values[0] = string(entry.name(), h[0], "name");
    values[1] = string(entry.kategorie(), h[1], "kategorie");
    values[2] = string(entry.art(), h[2], "art");
    values[3] = entry.innergemeinschaftlicherErwerb() ? kTrueObject : kFalseObject;
    values[4] = entry.isNonEU() ? kTrueObject : kFalseObject;
    values[5] = real(entry.brutto(), h[3]);
    values[6] = real(entry.steuersatz(), h[4]);
    values[7] = beginObject();
    out_.push_back('\x33');
    writeBigEndian(std::bit_cast<std::uint64_t>(entry.datum()), 8);
    values[8] = string(entry.rechnungsnummer(), h[5], "rechnungsnummer");
    values[9] = string(entry.steuernummer(), h[6], "steuernummer");
    values[10] = string(entry.leistungsart(), h[7], "leistungsart");

    if (entry.childTransactions().empty()) {
        values[11] = beginObject();
        out_.push_back('\xA0');
    } else {
        const std::size_t level = path_.depth();
        if (childRefs_.size() <= level)
            childRefs_.resize(level + 1);
        childRefs_[level].clear();
        path_.push(0);
        for (std::size_t i = 0; i < entry.childTransactions().size(); ++i) {
            path_.setLast(i + 1);
            // Recursion may reallocate childRefs_, so index it afresh each time.
            const Einnahme& child = at(*entry.childTransactions()[i]);
            const std::uint64_t object = writeEntry(child, hashesOf(child));
            childRefs_[level].push_back(object);
        }
        path_.pop();
        values[11] = writeArray(childRefs_[level]);
    }

    // The dictionary in one piece: its marker, the twelve key objects (the
    // first twelve) and the values.
    const std::uint64_t dict = beginObject();
    const std::size_t at = out_.size();
    out_.resize(at + 1 + 24 * refSize_);
    char* p = out_.data() + at;
    *p++ = '\xDC';
    for (std::uint64_t k = 0; k < 24; ++k, p += refSize_)
        putBigEndian(p, k < 12 ? k : values[k - 12], refSize_);
    return dict;
}

std::uint64_t BinaryPropertyListWriter::writeArray(const std::vector<std::uint64_t>& refs)
{
    const std::uint64_t object = beginObject();
    writeLengthMarker(0xA0, refs.size());
    for (const std::uint64_t ref : refs)
        writeRef(ref);
    return object;
}

void BinaryPropertyListWriter::writeString(std::string_view text, const char* key)
{
    if (isAscii(text))
        return writeAsciiString(text);
    utf16_.clear();
    std::size_t units = 0;
    if (!Utf16::appendBigEndianFromUtf8(text, utf16_, units))
        throw LedgerFileError(path_.describe() + ": " + key + " is not valid UTF-8 text");
    writeLengthMarker(0x60, units);
    out_ += utf16_;
}

void BinaryPropertyListWriter::writeAsciiString(std::string_view text)
{
    writeLengthMarker(0x50, text.size());
    out_.append(text);
}

void BinaryPropertyListWriter::writeLengthMarker(std::uint8_t type, std::uint64_t length)
{
    if (length < 15) {
        out_.push_back(static_cast<char>(type | length));
        return;
    }
    out_.push_back(static_cast<char>(type | 0x0F));
    const unsigned bytes = std::bit_ceil(bytesFor(length));
    out_.push_back(static_cast<char>(0x10 | std::countr_zero(bytes)));
    writeBigEndian(length, bytes);
}

void BinaryPropertyListWriter::writeRef(std::uint64_t ref)
{
    writeBigEndian(ref, refSize_);
}

void BinaryPropertyListWriter::writeBigEndian(std::uint64_t value, unsigned bytes)
{
    char buffer[8];
    putBigEndian(buffer, value, bytes);
    out_.append(buffer, bytes);
}

std::uint64_t BinaryPropertyListWriter::beginObject()
{
    offsets_.push_back(out_.size());
    return offsets_.size() - 1;
}

void BinaryPropertyListWriter::prefetchSlots(const ValueHashes& hashes) const
{
    if (shared_.empty())
        return;
    const std::size_t mask = shared_.size() - 1;
    for (const std::uint64_t hash : hashes.values)
        __builtin_prefetch(&shared_[static_cast<std::size_t>(hash) & mask]);
}

void BinaryPropertyListWriter::prefetchValues(const ValueHashes& hashes) const
{
    if (shared_.empty())
        return;
    const std::size_t mask = shared_.size() - 1;
    for (const std::uint64_t hash : hashes.values) {
        const SharedSlot& slot = shared_[static_cast<std::size_t>(hash) & mask];
        if (slot.object != 0 && slot.hash == static_cast<std::uint32_t>(hash))
            __builtin_prefetch(out_.data() + slot.offset);
    }
}

std::uint64_t BinaryPropertyListWriter::shareValue(std::size_t start, std::uint64_t fullHash)
{
    // The low 32 bits of the hash pick the slot and tell most other values apart.
    const auto hash = static_cast<std::uint32_t>(fullHash);
    const std::string_view value = std::string_view(out_).substr(start);
    if (shared_.empty())
        shared_.resize(1024);
    std::size_t mask = shared_.size() - 1;
    std::size_t slot = hash & mask;
    for (; shared_[slot].object != 0; slot = (slot + 1) & mask) {
        const SharedSlot& candidate = shared_[slot];
        // Coded values carry their own length, so equal leading bytes of the
        // new value's length mean equal values.
        if (candidate.hash == hash && value.size() <= start - candidate.offset
            && std::memcmp(out_.data() + candidate.offset, value.data(), value.size()) == 0) {
            out_.resize(start);
            return candidate.object - 1;
        }
    }
    const std::uint64_t object = beginObject();
    offsets_.back() = start;
    shared_[slot] = SharedSlot { hash, static_cast<std::uint32_t>(object + 1), start };
    if (++sharedCount_ * 2 > shared_.size()) {
        std::vector<SharedSlot> old(shared_.size() * 2);
        old.swap(shared_);
        mask = shared_.size() - 1;
        for (const SharedSlot& entry : old) {
            if (entry.object == 0)
                continue;
            std::size_t s = entry.hash & mask;
            while (shared_[s].object != 0)
                s = (s + 1) & mask;
            shared_[s] = entry;
        }
    }
    return object;
}

void BinaryPropertyListWriter::finish(std::uint64_t topObject)
{
    if (offsets_.size() > objectCount_)
        throw LedgerFileError("the entries changed while they were written");
    objectCount_ = offsets_.size();
    // The count before sharing decided the reference size; use the fewest bytes.
    const unsigned needed = bytesFor(objectCount_ - 1);
    if (needed < refSize_)
        narrowReferences(needed);
    const std::uint64_t tableOffset = out_.size();
    const unsigned offsetSize = bytesFor(offsets_.back());
    out_.reserve(out_.size() + offsets_.size() * offsetSize + 32);
    for (const std::uint64_t offset : offsets_)
        writeBigEndian(offset, offsetSize);
    out_.append(6, '\0');
    out_.push_back(static_cast<char>(offsetSize));
    out_.push_back(static_cast<char>(refSize_));
    writeBigEndian(objectCount_, 8);
    writeBigEndian(topObject, 8);
    writeBigEndian(tableOffset, 8);
}

void BinaryPropertyListWriter::narrowReferences(unsigned refSize)
{
    const auto* data = reinterpret_cast<const unsigned char*>(out_.data());
    auto read = [data](std::size_t at, unsigned bytes) {
        std::uint64_t value = 0;
        for (unsigned i = 0; i < bytes; ++i)
            value = (value << 8) | data[at + i];
        return value;
    };
    std::string compact;
    compact.reserve(out_.size());
    compact.append(out_, 0, 8);
    for (std::size_t object = 0; object < offsets_.size(); ++object) {
        const std::size_t begin = offsets_[object];
        const std::size_t end = object + 1 < offsets_.size() ? offsets_[object + 1] : out_.size();
        offsets_[object] = compact.size();
        const unsigned type = data[begin] >> 4;
        if (type != 0xA && type != 0xD) {
            compact.append(out_, begin, end - begin);
            continue;
        }
        std::size_t at = begin + 1;
        std::uint64_t count = data[begin] & 15;
        if (count == 15) {
            const unsigned bytes = 1u << (data[at] & 15);
            count = read(at + 1, bytes);
            at += 1 + bytes;
        }
        compact.append(out_, begin, at - begin);
        const std::uint64_t refs = type == 0xD ? 2 * count : count;
        for (std::uint64_t i = 0; i < refs; ++i) {
            const std::uint64_t ref = read(at + i * refSize_, refSize_);
            for (unsigned k = 0; k < refSize; ++k)
                compact.push_back(static_cast<char>(ref >> (8 * (refSize - 1 - k))));
        }
    }
    out_ = std::move(compact);
    refSize_ = refSize;
}

} // namespace saldo
