// The core tests name local days and months in Europe/Berlin. ctest sets TZ for
// them; this makes the test binary give the same results when started by hand.
#include <cstdlib>
#include <ctime>

namespace {
const bool pinned = [] {
    ::setenv("TZ", "Europe/Berlin", /*overwrite=*/0);
    ::tzset();
    return true;
}();
}  // namespace
