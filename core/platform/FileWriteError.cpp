#include "platform/FileWriteError.h"

namespace saldo {

FileWriteError::FileWriteError(
    Kind kind, const std::string& path, const std::string& what, int systemError, const std::string& detail)
    : std::runtime_error(path + ": " + what + (detail.empty() ? "" : ": " + detail))
    , kind_(kind)
    , path_(path)
    , systemError_(systemError)
    , detail_(detail)
{
}

} // namespace saldo
