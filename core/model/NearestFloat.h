#pragma once

#include <cmath>

namespace saldo {

// The single-precision value nearest to `value`, ties to even, infinite beyond
// the range. Done by hand because casting an out-of-range double is undefined.
inline float nearestFloat(double value)
{
    if (std::isfinite(value) && std::fabs(value) >= 0x1.ffffffp+127)
        return value > 0 ? HUGE_VALF : -HUGE_VALF;
    return static_cast<float>(value);
}

} // namespace saldo
