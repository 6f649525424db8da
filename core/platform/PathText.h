#pragma once

#include <string>
#include <string_view>

namespace saldo {

// A file name as it stands in a one-line message: control characters (a line
// feed, a tab, an escape) and the backslash written as escapes ("\n", "\t",
// "\x1B", "\\"), so that a name holding them can neither break the line nor
// pass for another name. Everything else, UTF-8 included, stays as it is.
class PathText {
public:
    static std::string oneLine(std::string_view path);
};

} // namespace saldo
