#include "model/BinaryPropertyListWriter.h"

#include "model/LedgerFile.h"
#include "model/Utf16.h"

#include <bit>

namespace saldo {

namespace {

// Object numbers: the twelve keys, then false and true, then the entries; the
// root array is written last.
constexpr std::uint64_t kFalseObject = 12;
constexpr std::uint64_t kTrueObject = 13;
constexpr std::uint64_t kFirstEntryObject = 14;
// Objects of one entry: its dictionary, nine scalar values and its child array.
constexpr std::uint64_t kObjectsPerEntry = 11;

unsigned bytesFor(std::uint64_t value)
{
    unsigned bytes = 1;
    while (bytes < 8 && (value >> (8 * bytes)) != 0)
        ++bytes;
    return bytes;
}

bool isAscii(std::string_view text)
{
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    }
    return true;
}

}  // namespace

BinaryPropertyListWriter::BinaryPropertyListWriter(std::uint64_t objectCount)
    : objectCount_(objectCount)
    , refSize_(bytesFor(objectCount - 1))
{
}

std::string BinaryPropertyListWriter::write(const EinnahmeList& entries)
{
    BinaryPropertyListWriter counter(1);
    const std::uint64_t count = kFirstEntryObject + counter.countObjects(entries, 0) + 1;
    BinaryPropertyListWriter writer(count);
    writer.offsets_.reserve(static_cast<std::size_t>(count));
    writer.out_.reserve(static_cast<std::size_t>(count) * 20 + 64);
    writer.out_ = "bplist00";
    for (const std::string_view key : kEinnahmeKeys) {
        writer.beginObject();
        writer.writeAsciiString(key);
    }
    writer.beginObject();
    writer.out_.push_back('\x08');
    writer.beginObject();
    writer.out_.push_back('\x09');

    std::vector<std::uint64_t> top;
    top.reserve(entries.size());
    writer.path_.push(0);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        writer.path_.setLast(i + 1);
        top.push_back(writer.writeEntry(*entries[i]));
    }
    writer.path_.pop();
    const std::uint64_t root = writer.writeArray(top);
    writer.finish(root);
    return std::move(writer.out_);
}

std::uint64_t BinaryPropertyListWriter::countObjects(const EinnahmeList& entries, std::size_t depth)
{
    std::uint64_t count = 0;
    path_.push(0);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        path_.setLast(i + 1);
        if (!entries[i])
            throw LedgerFileError(path_.describe() + ": no entry");
        const EinnahmeList& children = entries[i]->childTransactions();
        if (!children.empty() && depth >= LedgerEntryPath::kMaxNesting)
            throw LedgerFileError(path_.describe() + ": split bookings nested deeper than "
                + std::to_string(LedgerEntryPath::kMaxNesting) + " levels");
        count += kObjectsPerEntry + countObjects(children, depth + 1);
    }
    path_.pop();
    return count;
}

std::uint64_t BinaryPropertyListWriter::writeEntry(const Einnahme& entry)
{
    const Einnahme::Stored& s = entry.stored();
    const std::uint64_t first = offsets_.size();

    beginObject();
    writeString(s.name, "name");
    beginObject();
    writeString(s.kategorie, "kategorie");
    beginObject();
    writeString(s.art, "art");
    beginObject();
    out_.push_back('\x22');
    writeBigEndian(std::bit_cast<std::uint32_t>(s.brutto), 4);
    beginObject();
    out_.push_back('\x22');
    writeBigEndian(std::bit_cast<std::uint32_t>(s.steuersatz), 4);
    beginObject();
    out_.push_back('\x33');
    writeBigEndian(std::bit_cast<std::uint64_t>(s.datum), 8);
    beginObject();
    writeString(s.rechnungsnummer, "rechnungsnummer");
    beginObject();
    writeString(s.steuernummer, "steuernummer");
    beginObject();
    writeString(s.leistungsart, "leistungsart");

    std::uint64_t children;
    if (s.childTransactions.empty()) {
        children = beginObject();
        out_.push_back('\xA0');
    } else {
        const std::size_t level = path_.depth();
        if (childRefs_.size() <= level)
            childRefs_.resize(level + 1);
        childRefs_[level].clear();
        path_.push(0);
        for (std::size_t i = 0; i < s.childTransactions.size(); ++i) {
            path_.setLast(i + 1);
            // Recursion may reallocate childRefs_, so index it afresh each time.
            const std::uint64_t child = writeEntry(*s.childTransactions[i]);
            childRefs_[level].push_back(child);
        }
        path_.pop();
        children = writeArray(childRefs_[level]);
    }

    const std::uint64_t values[12] = {first, first + 1, first + 2,
        s.innergemeinschaftlicherErwerb ? kTrueObject : kFalseObject, s.isNonEU ? kTrueObject : kFalseObject,
        first + 3, first + 4, first + 5, first + 6, first + 7, first + 8, children};
    const std::uint64_t dict = beginObject();
    out_.push_back('\xDC');
    for (std::uint64_t key = 0; key < 12; ++key)
        writeRef(key);
    for (const std::uint64_t value : values)
        writeRef(value);
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
    for (unsigned i = 0; i < bytes; ++i)
        buffer[i] = static_cast<char>(value >> (8 * (bytes - 1 - i)));
    out_.append(buffer, bytes);
}

std::uint64_t BinaryPropertyListWriter::beginObject()
{
    offsets_.push_back(out_.size());
    return offsets_.size() - 1;
}

void BinaryPropertyListWriter::finish(std::uint64_t topObject)
{
    if (offsets_.size() != objectCount_)
        throw LedgerFileError("the entries changed while they were written");
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

}  // namespace saldo
