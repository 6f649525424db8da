#include "platform/Contrast.h"

#include <algorithm>
#include <cmath>

namespace saldo {

namespace {
double linear(std::uint8_t channel)
{
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}
} // namespace

double Contrast::luminance(Rgb colour)
{
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
}

double Contrast::ratio(Rgb a, Rgb b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

Contrast::Rgb Contrast::legibleText(Rgb text, Rgb background)
{
    if (ratio(text, background) >= kLegible)
        return text;
    const Rgb black { 0, 0, 0 };
    const Rgb white { 255, 255, 255 };
    return ratio(black, background) >= ratio(white, background) ? black : white;
}

} // namespace saldo
