#include "tax/ListedItem.h"

#include "model/DecimalCommaText.h"
#include "platform/Calendar.h"
#include "tax/CentText.h"

namespace saldo::tax {

std::string ListedItem::dayText() const
{
    const auto local = Calendar::localDateTime(datum);
    if (!local)
        return {};
    const auto two = [](int value) {
        return std::string { static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10) };
    };
    return two(local->fields.day) + '.' + two(local->fields.month) + '.' + std::to_string(local->fields.year);
}

std::string ListedItem::amountText() const
{
    if (cents)
        return CentText::euros(*cents);
    const GrossCents gross = grossCents(brutto);
    return gross.fault ? DecimalCommaText::fixed(brutto, 2) : CentText::euros(gross.cents);
}

} // namespace saldo::tax
