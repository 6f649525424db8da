#include "model/LedgerFile.h"

#include "model/BinaryPropertyListReader.h"
#include "model/BinaryPropertyListWriter.h"
#include "model/HugePageMemory.h"
#include "model/XmlPropertyListReader.h"
#include "platform/AtomicFileWriter.h"

#include "platform/PathText.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <optional>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace saldo {

namespace {

constexpr std::string_view kBinaryMagic = "bplist00";

// The bytes of a file being read, in memory of their own: a file of a million
// entries is over 100 MB, and faulting that in 4 KiB at a time would cost more
// than decoding it (see HugePageMemory).
class FileBuffer {
public:
    FileBuffer() = default;
    FileBuffer(const FileBuffer&) = delete;
    FileBuffer& operator=(const FileBuffer&) = delete;
    ~FileBuffer() { HugePageMemory::release(data_, capacity_); }

    // Makes room for at least `capacity` bytes, keeping the ones read so far.
    bool reserve(std::size_t capacity)
    {
        if (capacity <= capacity_)
            return true;
        if (!data_) {
            try {
                HugePageMemory memory(capacity, HugePageMemory::Backing::Filled);
                capacity_ = memory.size();
                data_ = static_cast<char*>(memory.detach());
                return true;
            } catch (const std::bad_alloc&) {
                return false;
            }
        }
        // Only a file that grows while it is read, or one that is no regular file.
        void* p = ::mremap(data_, capacity_, capacity, MREMAP_MAYMOVE);
        if (p == MAP_FAILED)
            return false;
        data_ = static_cast<char*>(p);
        capacity_ = capacity;
        return true;
    }
    char* data() { return data_; }
    std::size_t capacity() const { return capacity_; }
    void setSize(std::size_t size) { size_ = size; }
    std::string_view view() const { return { data_, size_ }; }

private:
    char* data_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t size_ = 0;
};

// Refuses bytes that cannot start a property list: `head` is the start of a
// file, `complete` says whether it is all of it. Answers whether they start a
// binary property list; false leaves the decision to the XML reader.
bool startsBinaryPropertyList(std::string_view head, bool complete)
{
    using Kind = LedgerFileError::Kind;
    if (head.empty() && complete)
        throw LedgerFileError("not a property list: the file is empty", Kind::NotALedger);
    if (head.substr(0, kBinaryMagic.size()) == kBinaryMagic)
        return true;
    if (head.substr(0, 6) == "bplist")
        throw LedgerFileError("unsupported binary property list version \""
                + std::string(head.substr(0, std::min<std::size_t>(head.size(), 8))) + "\"",
            Kind::NotALedger);
    // XML: possibly after a byte order mark and blanks. Anything else is not a property list.
    std::size_t i = 0;
    if (head.substr(0, 3) == "\xEF\xBB\xBF")
        i = 3;
    else if (head.size() >= 2 && ((head[0] == '\xFF' && head[1] == '\xFE') || (head[0] == '\xFE' && head[1] == '\xFF')))
        return false;
    while (i < head.size() && (head[i] == ' ' || head[i] == '\t' || head[i] == '\n' || head[i] == '\r'))
        ++i;
    if ((i == head.size() && complete) || (i < head.size() && head[i] != '<'))
        throw LedgerFileError("not a property list", Kind::NotALedger);
    return false;
}

} // namespace

LedgerFileError LedgerFileError::inFile(const std::string& path) const
{
    LedgerFileError named(PathText::oneLine(path) + ": " + what(), kind_, byte_);
    named.reason_ = reason_;
    return named;
}

namespace {

EinnahmeList decodeKeeping(std::string_view bytes, BinaryPropertyListReader::Texts texts)
{
    if (startsBinaryPropertyList(bytes, true))
        return BinaryPropertyListReader(bytes, texts).readEntries();
    return XmlPropertyListReader::readEntries(bytes);
}

} // namespace

EinnahmeList LedgerFile::decode(std::string_view bytes)
{
    return decodeKeeping(bytes, BinaryPropertyListReader::Texts::All);
}

std::string LedgerFile::encode(const EinnahmeList& snapshot, const SnapshotGate& gate)
{
    return BinaryPropertyListWriter::write(snapshot, &gate);
}

std::string LedgerFile::encode(const EinnahmeList& entries)
{
    return BinaryPropertyListWriter::write(entries);
}

namespace {

using Kind = LedgerFileError::Kind;

// How much of a file is looked at before the rest is read.
constexpr std::size_t kHead = 4096;

std::string sizeText(std::uint64_t bytes)
{
    return std::to_string(bytes) + " bytes";
}

std::string durationText(int milliseconds)
{
    if (milliseconds % 1000 == 0)
        return std::to_string(milliseconds / 1000) + " seconds";
    return std::to_string(milliseconds) + " milliseconds";
}

// Reads `count` bytes at `offset` of a regular file; fails on a short read.
void readAt(int fd, char* into, std::size_t count, std::uint64_t offset)
{
    while (count > 0) {
        const ssize_t got = ::pread(fd, into, count, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw LedgerFileError(got < 0 ? std::strerror(errno) : "the file shrank while it was read", Kind::CannotRead);
        into += got;
        count -= static_cast<std::size_t>(got);
        offset += static_cast<std::uint64_t>(got);
    }
}

// Reads what is there into the buffer after its first `got` bytes, making
// room first. Answers how many bytes came (0 at the end), or nothing when a
// stream had none ready after all.
std::optional<std::size_t> readMore(int fd, FileBuffer& bytes, std::size_t got)
{
    if (got == bytes.capacity() && !bytes.reserve(2 * got))
        throw LedgerFileError(std::strerror(ENOMEM), Kind::CannotRead);
    for (;;) {
        const ssize_t n = ::read(fd, bytes.data() + got, bytes.capacity() - got);
        if (n >= 0)
            return static_cast<std::size_t>(n);
        if (errno == EAGAIN)
            return std::nullopt;
        if (errno != EINTR)
            throw LedgerFileError(std::strerror(errno), Kind::CannotRead);
    }
}

// A regular file: its size, its start and (for a binary property list) its
// trailer are checked before the rest is read.
void readRegularFile(int fd, std::uint64_t size, const LedgerFile::ReadLimits& limits, FileBuffer& bytes)
{
    if (size > limits.largestFile)
        throw LedgerFileError("the file is larger than the " + std::to_string(limits.largestFile >> 30)
                + " GiB a ledger may have (" + sizeText(size) + ")",
            Kind::TooLarge);
    char head[kHead];
    const auto headSize = static_cast<std::size_t>(std::min<std::uint64_t>(size, kHead));
    readAt(fd, head, headSize, 0);
    if (startsBinaryPropertyList(std::string_view(head, headSize), size <= kHead) && size >= 32) {
        char trailer[32];
        readAt(fd, trailer, sizeof trailer, size - sizeof trailer);
        BinaryPropertyListReader::checkTrailer(std::string_view(trailer, sizeof trailer), size);
    }
    // Read straight into the buffer; a file that grows meanwhile is read to its end.
    if (!bytes.reserve(static_cast<std::size_t>(size) + 1))
        throw LedgerFileError(std::strerror(ENOMEM), Kind::CannotRead);
    std::size_t got = 0;
    for (;;) {
        if (got == bytes.capacity() && got > limits.largestFile)
            throw LedgerFileError("the file grew larger than the " + std::to_string(limits.largestFile >> 30)
                    + " GiB a ledger may have while it was read",
                Kind::TooLarge);
        const std::size_t n = readMore(fd, bytes, got).value_or(0);
        if (n == 0)
            break;
        got += n;
    }
    bytes.setSize(got);
}

// A pipe or a device (opened without waiting for a writer): read as long as
// bytes keep arriving, up to the largest file; its start is checked as soon as
// it has arrived.
void readStream(int fd, const LedgerFile::ReadLimits& limits, FileBuffer& bytes)
{
    if (!bytes.reserve(1 << 16))
        throw LedgerFileError(std::strerror(ENOMEM), Kind::CannotRead);
    std::size_t got = 0;
    bool startChecked = false;
    for (;;) {
        pollfd wait { fd, POLLIN, 0 };
        const int ready = ::poll(&wait, 1, limits.quietMilliseconds);
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready < 0)
            throw LedgerFileError(std::strerror(errno), Kind::CannotRead);
        if (ready == 0)
            throw LedgerFileError("nothing arrived for " + durationText(limits.quietMilliseconds), Kind::CannotRead);
        const std::optional<std::size_t> n = readMore(fd, bytes, got);
        if (!n)
            continue;
        if (*n == 0)
            break;
        got += *n;
        if (got > limits.largestFile)
            throw LedgerFileError("more than the " + std::to_string(limits.largestFile >> 30)
                    + " GiB a ledger may have arrived",
                Kind::TooLarge);
        if (!startChecked && got >= kHead) {
            startsBinaryPropertyList(std::string_view(bytes.data(), kHead), false);
            startChecked = true;
        }
    }
    bytes.setSize(got);
}

void readFile(const std::string& path, const LedgerFile::ReadLimits& limits, FileBuffer& bytes)
{
    // Opening a pipe without O_NONBLOCK waits for a writer, possibly forever.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0)
        throw LedgerFileError(std::strerror(errno), Kind::CannotRead);
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer { fd };
    struct stat info { };
    if (::fstat(fd, &info) != 0)
        throw LedgerFileError(std::strerror(errno), Kind::CannotRead);
    if (S_ISREG(info.st_mode))
        return readRegularFile(fd, static_cast<std::uint64_t>(info.st_size), limits, bytes);
    if (S_ISFIFO(info.st_mode) || S_ISCHR(info.st_mode))
        return readStream(fd, limits, bytes);
    throw LedgerFileError(std::string("not a regular file: ") + (S_ISDIR(info.st_mode) ? "a directory" : "a block device"),
        Kind::NotRegularFile);
}

} // namespace

EinnahmeList LedgerFile::read(const std::string& path, const ReadLimits& limits, const BytesRead& bytesRead)
{
    try {
        FileBuffer bytes;
        readFile(path, limits, bytes);
        if (bytesRead)
            bytesRead(bytes.view());
        return decode(bytes.view());
    } catch (const LedgerFileError& e) {
        throw e.inFile(path);
    }
}

EinnahmeList LedgerFile::readForEvaluation(const std::string& path)
{
    try {
        FileBuffer bytes;
        readFile(path, {}, bytes);
        return decodeKeeping(bytes.view(), BinaryPropertyListReader::Texts::Evaluated);
    } catch (const LedgerFileError& e) {
        throw e.inFile(path);
    }
}

bool LedgerFile::holdsLedger(const std::string& path)
{
    struct stat info { };
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    try {
        read(path);
        return true;
    } catch (const LedgerFileError&) {
        return false;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void LedgerFile::writeBesideLedgers(const std::string& path, std::string_view bytes)
{
    AtomicFileWriter::Options options;
    options.holdsLedger = &LedgerFile::holdsLedger;
    AtomicFileWriter::write(path, bytes, options);
}

void LedgerFile::write(const std::string& path, const EinnahmeList& entries)
{
    AtomicFileWriter::write(path, encode(entries));
}

} // namespace saldo
