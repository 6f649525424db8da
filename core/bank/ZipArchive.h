#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Reads the members of a ZIP file held in memory, as banks send several
// statements in one. The central directory is read first and every name,
// offset and size is checked against the bytes before a member is touched:
// members stored or deflated only, no encryption, no spanning, no ZIP64,
// no name that points outside the folder ("../", "/", "C:"), at most
// kMaxMembers members, and at most kMaxTotalSize bytes unpacked in all. A
// member is inflated into a buffer of the size the directory declares and no
// more; one that unpacks to another size or another CRC is refused, and so is
// one that claims to unpack a thousand times larger than it is packed. Every
// fault throws StatementError with a German reason.
class ZipArchive {
public:
    static constexpr std::size_t kMaxMembers = 1000;
    static constexpr std::size_t kMaxTotalSize = 256u << 20;
    static constexpr std::size_t kMaxRatio = 1000;

    struct Member {
        std::string name;
        std::string bytes;
    };

    // True when the bytes begin as a ZIP file does.
    static bool looksLikeZip(std::string_view bytes);

    // The members whose names `wanted` accepts, unpacked, in the directory's
    // order. Directories are skipped.
    static std::vector<Member> read(std::string_view bytes, bool (*wanted)(std::string_view name));
};

} // namespace saldo
