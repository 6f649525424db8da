#include "model/LedgerEntryPath.h"

#include "model/Einnahme.h"

namespace saldo {

std::string LedgerEntryPath::describe() const
{
    if (positions_.empty())
        return "file";
    std::string text = "entry " + std::to_string(positions_.front());
    for (std::size_t i = 1; i < positions_.size(); ++i) {
        text += i == 1 ? " (child " : ", child ";
        text += std::to_string(positions_[i]);
    }
    if (positions_.size() > 1)
        text += ')';
    return text;
}

int LedgerEntryPath::keyIndex(std::string_view key)
{
    for (int i = 0; i < 12; ++i) {
        if (kEinnahmeKeys[i] == key)
            return i;
    }
    return -1;
}

std::string_view LedgerEntryPath::firstMissingKey(unsigned seenMask)
{
    for (int i = 0; i < 12; ++i) {
        if ((seenMask & (1u << i)) == 0)
            return kEinnahmeKeys[i];
    }
    return {};
}

} // namespace saldo
