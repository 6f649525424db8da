#include "entrylist/ShownText.h"

namespace saldo {

std::string_view ShownText::of(std::string_view text)
{
    // A character takes at least one byte.
    if (text.size() <= kMostShown)
        return text;
    std::size_t characters = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        // Every byte but a continuation byte (10xxxxxx) starts a character.
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && characters++ == kMostShown)
            return text.substr(0, i);
    }
    return text;
}

} // namespace saldo
