#include "editors/SplitBookingWriteBack.h"

#include "editors/SplitBookings.h"

namespace saldo {

std::optional<SplitBookingWriteBack> SplitBookingWriteBack::plan(
    const EinnahmeList& einnahmen, const std::vector<std::size_t>& selectedRows, const EinnahmePtr& workingCopy)
{
    if (!workingCopy || selectedRows.size() != 1 || selectedRows.front() >= einnahmen.size())
        return std::nullopt;
    const std::size_t row = selectedRows.front();
    SplitBookings::deriveKindAndGross(*workingCopy);
    return SplitBookingWriteBack { row, einnahmen[row], workingCopy };
}

} // namespace saldo
