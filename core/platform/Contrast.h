#pragma once

#include <cstdint>

namespace saldo {

// How well text stands out from its background, measured as the contrast
// ratio of the two colours' relative luminances (sRGB, from 1 : 1 for equal
// colours to 21 : 1 for black on white); 4.5 : 1 is the least that ordinary
// text needs to be read comfortably. A colour whose text does not reach it gets
// black or white text, whichever stands out more: one of the two always does.
class Contrast {
public:
    struct Rgb {
        std::uint8_t red = 0;
        std::uint8_t green = 0;
        std::uint8_t blue = 0;
        bool operator==(const Rgb&) const = default;
    };

    static constexpr double kLegible = 4.5;

    // The relative luminance, 0 for black to 1 for white.
    static double luminance(Rgb colour);
    // The contrast ratio of the two colours, in either order.
    static double ratio(Rgb a, Rgb b);
    // `text` when it reaches kLegible on `background`, else black or white.
    static Rgb legibleText(Rgb text, Rgb background);
};

} // namespace saldo
