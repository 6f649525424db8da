#include "platform/SmallFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace saldo {
namespace {

SmallFile::Outcome failed(SmallFile::Fault fault, int error = 0)
{
    SmallFile::Outcome outcome;
    outcome.fault = fault;
    outcome.error = error;
    return outcome;
}

} // namespace

SmallFile::Outcome SmallFile::read(const std::string& path, std::uint64_t largest)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0)
        return failed(Fault::CannotOpen, errno);
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer { fd };
    struct stat info { };
    if (::fstat(fd, &info) != 0)
        return failed(Fault::CannotRead, errno);
    if (!S_ISREG(info.st_mode))
        return failed(Fault::NotRegular);
    if (static_cast<std::uint64_t>(info.st_size) > largest)
        return failed(Fault::TooLarge);
    Outcome outcome;
    // One byte more than the file holds: a file that grew meanwhile is read on to its end.
    outcome.bytes.resize(static_cast<std::size_t>(info.st_size) + 1);
    std::size_t got = 0;
    for (;;) {
        if (got == outcome.bytes.size()) {
            if (got > largest)
                return failed(Fault::TooLarge);
            outcome.bytes.resize(2 * got);
        }
        const ssize_t n = ::read(fd, outcome.bytes.data() + got, outcome.bytes.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return failed(Fault::CannotRead, errno);
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    if (got > largest)
        return failed(Fault::TooLarge);
    outcome.bytes.resize(got);
    return outcome;
}

} // namespace saldo
