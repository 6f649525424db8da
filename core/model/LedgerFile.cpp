#include "model/LedgerFile.h"

#include "model/BinaryPropertyListReader.h"
#include "model/BinaryPropertyListWriter.h"
#include "model/HugePageMemory.h"
#include "model/XmlPropertyListReader.h"
#include "platform/AtomicFileWriter.h"

#include <algorithm>
#include <new>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace saldo {

namespace {

constexpr std::string_view kBinaryMagic = "bplist00";

std::string systemError(const std::string& what, int error)
{
    return what + ": " + std::strerror(error);
}

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

} // namespace

EinnahmeList LedgerFile::decode(std::string_view bytes)
{
    if (bytes.empty())
        throw LedgerFileError("not a property list: the file is empty");
    if (bytes.substr(0, kBinaryMagic.size()) == kBinaryMagic)
        return BinaryPropertyListReader(bytes).readEntries();
    if (bytes.substr(0, 6) == "bplist")
        throw LedgerFileError("unsupported binary property list version \""
            + std::string(bytes.substr(0, std::min<std::size_t>(bytes.size(), 8))) + "\"");
    // XML: possibly after a byte order mark and blanks. Anything else is not a property list.
    std::size_t i = 0;
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF")
        i = 3;
    else if (bytes.size() >= 2
        && ((bytes[0] == '\xFF' && bytes[1] == '\xFE') || (bytes[0] == '\xFE' && bytes[1] == '\xFF')))
        return XmlPropertyListReader::readEntries(bytes);
    while (i < bytes.size() && (bytes[i] == ' ' || bytes[i] == '\t' || bytes[i] == '\n' || bytes[i] == '\r'))
        ++i;
    if (i == bytes.size() || bytes[i] != '<')
        throw LedgerFileError("not a property list");
    return XmlPropertyListReader::readEntries(bytes);
}

std::string LedgerFile::encode(const EinnahmeList& snapshot, const SnapshotGate& gate)
{
    return BinaryPropertyListWriter::write(snapshot, &gate);
}

std::string LedgerFile::encode(const EinnahmeList& entries)
{
    return BinaryPropertyListWriter::write(entries);
}

EinnahmeList LedgerFile::read(const std::string& path)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw LedgerFileError(systemError(path, errno));
    FileBuffer bytes;
    struct stat info { };
    int error = 0;
    if (::fstat(fd, &info) != 0) {
        error = errno;
    } else if (S_ISDIR(info.st_mode)) {
        error = EISDIR;
    } else {
        // Read straight into the buffer; a file that grows meanwhile is read to its end.
        std::size_t size = 0;
        if (!bytes.reserve(S_ISREG(info.st_mode) ? static_cast<std::size_t>(info.st_size) + 1 : 1 << 16))
            error = ENOMEM;
        while (error == 0) {
            if (size == bytes.capacity() && !bytes.reserve(2 * size)) {
                error = ENOMEM;
                break;
            }
            const ssize_t got = ::read(fd, bytes.data() + size, bytes.capacity() - size);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                error = errno;
            if (got <= 0)
                break;
            size += static_cast<std::size_t>(got);
        }
        bytes.setSize(size);
    }
    ::close(fd);
    if (error != 0)
        throw LedgerFileError(systemError(path, error));
    try {
        return decode(bytes.view());
    } catch (const LedgerFileError& e) {
        throw LedgerFileError(path + ": " + e.what());
    }
}

void LedgerFile::write(const std::string& path, const EinnahmeList& entries)
{
    AtomicFileWriter::write(path, encode(entries));
}

} // namespace saldo
