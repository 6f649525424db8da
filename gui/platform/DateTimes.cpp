#include "platform/DateTimes.h"

#include "platform/Calendar.h"

namespace saldo::gui {

QDateTime DateTimes::toQDateTime(ReferenceSeconds datum)
{
    const auto local = Calendar::localDateTime(datum);
    if (!local)
        return QDateTime();
    const Calendar::Fields& f = local->fields;
    return QDateTime(QDate(f.year, f.month, f.day), QTime(f.hour, f.minute, f.second, local->millisecond));
}

ReferenceSeconds DateTimes::toReferenceSeconds(const QDateTime& dateTime)
{
    const QDate date = dateTime.date();
    const QTime time = dateTime.time();
    return Calendar::fromLocalDateTime(
        {{date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()}, time.msec()});
}

}  // namespace saldo::gui
