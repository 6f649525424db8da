#include "bank/ZipArchive.h"

#include "bank/StatementError.h"

#include <zlib.h>

#include <cstdint>
#include <cstring>

namespace saldo {

namespace {

constexpr std::uint32_t kLocalHeader = 0x04034b50;
constexpr std::uint32_t kCentralHeader = 0x02014b50;
constexpr std::uint32_t kEndOfDirectory = 0x06054b50;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kCentralSize = 46;
constexpr std::size_t kLocalSize = 30;

[[noreturn]] void refuse(const std::string& why)
{
    throw StatementError("Die ZIP-Datei kann nicht gelesen werden: " + why + ".");
}

std::uint32_t read16(std::string_view bytes, std::size_t at)
{
    return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at]))
        | static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[at + 1])) << 8;
}

std::uint32_t read32(std::string_view bytes, std::size_t at)
{
    return read16(bytes, at) | read16(bytes, at + 2) << 16;
}

// A name that would lead out of the folder it is unpacked into.
bool leavesFolder(std::string_view name)
{
    if (name.empty() || name.front() == '/' || name.front() == '\\' || (name.size() > 1 && name[1] == ':'))
        return true;
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find_first_of("/\\", start);
        if (end == std::string_view::npos)
            end = name.size();
        if (name.substr(start, end - start) == "..")
            return true;
        start = end + 1;
    }
    return name.find('\0') != std::string_view::npos;
}

std::string inflateMember(std::string_view packed, std::size_t size)
{
    std::string out(size, '\0');
    z_stream stream {};
    if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
        refuse("der Entpacker steht nicht zur Verfuegung");
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    // One byte more than declared, so that a member that unpacks larger is noticed.
    unsigned char spare = 0;
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(size);
    int status = inflate(&stream, Z_FINISH);
    if (status != Z_STREAM_END && stream.avail_out == 0) {
        stream.next_out = &spare;
        stream.avail_out = 1;
        status = inflate(&stream, Z_FINISH);
    }
    const bool exact = status == Z_STREAM_END && stream.total_out == size;
    inflateEnd(&stream);
    if (!exact)
        refuse("ein Eintrag ist beschaedigt oder groesser als angegeben");
    return out;
}

} // namespace

bool ZipArchive::looksLikeZip(std::string_view bytes)
{
    return bytes.size() >= 4 && (read32(bytes, 0) == kLocalHeader || read32(bytes, 0) == kEndOfDirectory);
}

std::vector<ZipArchive::Member> ZipArchive::read(std::string_view bytes, bool (*wanted)(std::string_view name))
{
    if (bytes.size() < kEndSize || bytes.size() > UINT32_MAX)
        refuse("sie ist zu kurz oder zu gross");
    // The end record, searched backwards past a comment of at most 64 KiB.
    std::size_t end = std::string_view::npos;
    const std::size_t lowest = bytes.size() > kEndSize + 0xFFFF ? bytes.size() - kEndSize - 0xFFFF : 0;
    for (std::size_t at = bytes.size() - kEndSize + 1; at-- > lowest;) {
        if (read32(bytes, at) == kEndOfDirectory && at + kEndSize + read16(bytes, at + 20) == bytes.size()) {
            end = at;
            break;
        }
    }
    if (end == std::string_view::npos)
        refuse("das Inhaltsverzeichnis fehlt (abgeschnitten?)");
    const std::size_t count = read16(bytes, end + 10);
    const std::size_t directorySize = read32(bytes, end + 12);
    const std::size_t directoryAt = read32(bytes, end + 16);
    if (read16(bytes, end + 4) != 0 || read16(bytes, end + 6) != 0 || read16(bytes, end + 8) != count)
        refuse("sie ist auf mehrere Dateien verteilt");
    if (count == 0xFFFF || directoryAt == 0xFFFFFFFF)
        refuse("ZIP64 wird nicht unterstuetzt");
    if (count > kMaxMembers)
        refuse("sie enthaelt mehr als " + std::to_string(kMaxMembers) + " Eintraege");
    if (directoryAt > end || directorySize > end - directoryAt)
        refuse("das Inhaltsverzeichnis liegt ausserhalb der Datei");

    std::vector<Member> members;
    std::size_t total = 0;
    std::size_t at = directoryAt;
    for (std::size_t i = 0; i < count; ++i) {
        if (at + kCentralSize > directoryAt + directorySize || read32(bytes, at) != kCentralHeader)
            refuse("das Inhaltsverzeichnis ist beschaedigt");
        const std::uint32_t flags = read16(bytes, at + 8);
        const std::uint32_t method = read16(bytes, at + 10);
        const std::uint32_t crc = read32(bytes, at + 16);
        const std::size_t packedSize = read32(bytes, at + 20);
        const std::size_t size = read32(bytes, at + 24);
        const std::size_t nameLength = read16(bytes, at + 28);
        const std::size_t extraLength = read16(bytes, at + 30);
        const std::size_t commentLength = read16(bytes, at + 32);
        const std::size_t localAt = read32(bytes, at + 42);
        const std::size_t next = at + kCentralSize + nameLength + extraLength + commentLength;
        if (next > directoryAt + directorySize)
            refuse("das Inhaltsverzeichnis ist beschaedigt");
        const std::string_view name = bytes.substr(at + kCentralSize, nameLength);
        at = next;
        if (leavesFolder(name))
            refuse("der Eintrag \"" + std::string(name.substr(0, 80)) + "\" zeigt aus dem Ordner heraus");
        if (flags & 0x41)
            refuse("sie ist verschluesselt");
        if (name.back() == '/' || !wanted(name))
            continue;
        if (method != 0 && method != 8)
            refuse("ein Eintrag ist mit einem unbekannten Verfahren gepackt");
        if (packedSize == 0xFFFFFFFF || size == 0xFFFFFFFF)
            refuse("ZIP64 wird nicht unterstuetzt");
        if (size > kMaxTotalSize - total)
            refuse("sie entpackt sich zu mehr als " + std::to_string(kMaxTotalSize >> 20) + " MiB");
        if (method == 0 ? packedSize != size : size > 1024 && size / kMaxRatio > packedSize)
            refuse("ein Eintrag entpackt sich unglaubhaft gross (ZIP-Bombe?)");
        if (localAt > directoryAt || directoryAt - localAt < kLocalSize || read32(bytes, localAt) != kLocalHeader)
            refuse("ein Eintrag liegt ausserhalb der Datei");
        const std::size_t dataAt = localAt + kLocalSize + read16(bytes, localAt + 26) + read16(bytes, localAt + 28);
        if (dataAt > directoryAt || packedSize > directoryAt - dataAt)
            refuse("ein Eintrag liegt ausserhalb der Datei");
        total += size;
        const std::string_view packed = bytes.substr(dataAt, packedSize);
        Member member { std::string(name), method == 0 ? std::string(packed) : inflateMember(packed, size) };
        const uLong check = crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(member.bytes.data()),
            static_cast<uInt>(member.bytes.size()));
        if (check != crc)
            refuse("ein Eintrag ist beschaedigt (Pruefsumme)");
        members.push_back(std::move(member));
    }
    return members;
}

} // namespace saldo
