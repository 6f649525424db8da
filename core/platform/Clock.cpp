#include "platform/Clock.h"

#include <chrono>
#include <optional>

namespace saldo {
namespace {
std::optional<ReferenceSeconds> pinnedNow;
}

ReferenceSeconds now()
{
    if (pinnedNow)
        return *pinnedNow;
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const double unixSeconds = std::chrono::duration<double>(sinceEpoch).count();
    return unixSeconds - kReferenceDateUnixSeconds;
}

void setNowOverrideForTesting(const ReferenceSeconds* fixed)
{
    pinnedNow = fixed ? std::optional<ReferenceSeconds>(*fixed) : std::nullopt;
}

}  // namespace saldo
