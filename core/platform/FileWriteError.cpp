#include "platform/FileWriteError.h"

#include "platform/PathText.h"

#include <cstring>

namespace saldo {

namespace {

// strerror_r comes in two forms; both are safe to call from any thread.
[[maybe_unused]] const char* messageOf(int, const char* buffer)
{
    return buffer;
}
[[maybe_unused]] const char* messageOf(const char* message, const char*)
{
    return message;
}

} // namespace

FileWriteError::FileWriteError(
    Kind kind, const std::string& path, const std::string& what, int systemError, const std::string& detail)
    : std::runtime_error(PathText::oneLine(path) + ": " + what + (detail.empty() ? "" : ": " + detail))
    , kind_(kind)
    , path_(path)
    , systemError_(systemError)
    , detail_(detail)
{
}

FileWriteError FileWriteError::fromSystem(Kind kind, const std::string& path, const std::string& what, int systemError)
{
    char buffer[256] = {};
    return FileWriteError(kind, path, what, systemError, messageOf(::strerror_r(systemError, buffer, sizeof buffer), buffer));
}

} // namespace saldo
