#include "editors/RecurringSeries.h"

#include "editors/UtcDateText.h"
#include "evaluation/AmountFormat.h"
#include "platform/Calendar.h"

#include <charconv>
#include <cmath>

namespace saldo {
namespace {

// Beyond this many seconds from 2001 (about 8,000 years) no year of 1 to 9999
// is reached; the bound also keeps the calendar from naming a stand-in year
// for instants it cannot represent.
constexpr double kFarthestSeriesInstant = 2.6e11;

// " %.1f": a blank, then the widened value in fixed notation with one decimal;
// a value that is not a number reads "nan" without a sign.
void appendRate(std::string& out, float rate)
{
    out += ' ';
    const double value = static_cast<double>(rate);
    if (std::isnan(value)) {
        out += "nan";
        return;
    }
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 1);
    out.append(buffer, result.ptr);
}

} // namespace

int RecurringSeries::dayOfMonth(int dayItemIndex)
{
    return dayItemIndex == 1 ? 15 : 1;
}

std::optional<int> RecurringSeries::stepInMonths(std::optional<std::string_view> intervalTitle)
{
    if (!intervalTitle)
        return std::nullopt;
    for (int i = 0; i < 3; ++i)
        if (*intervalTitle == kIntervalTitles[i])
            return i + 1;
    return std::nullopt;
}

EinnahmeList RecurringSeries::compute(
    const Einnahme& templateEntry, int dayItemIndex, std::optional<std::string_view> intervalTitle)
{
    const auto step = stepInMonths(intervalTitle);
    if (!step)
        return {};
    const ReferenceSeconds templateDatum = templateEntry.datum();
    if (!(std::fabs(templateDatum) < kFarthestSeriesInstant))
        return {};
    const int year = Calendar::localFields(templateDatum).year;
    const int day = dayOfMonth(dayItemIndex);

    EinnahmeList series;
    for (int month = 1; month < 13; month += *step) {
        // Midnight of each month on its own, so that a daylight-saving change
        // between two months never shifts the hour.
        const auto midnight = Calendar::localMidnight(year, month, day);
        if (!midnight)
            return {};
        auto copy = templateEntry.copy();
        copy->setDatum(*midnight);
        copy->setName(templateEntry.name() + " Serie");
        series.push_back(std::move(copy));
    }
    return series;
}

std::string RecurringSeries::descriptionText(const Einnahme& e)
{
    const float brutto = e.brutto();
    const float netto = Einnahme::nettoOf(brutto, e.steuersatz());
    const float steuer = brutto - netto;

    std::string text;
    text += "Name: \t\t" + e.name() + "\n";
    text += "Art: \t\t\t" + e.art() + "\n";
    text += "Kategorie: \t" + e.kategorie() + "\n";
    text += "Brutto: \t\t";
    AmountFormat::append(text, brutto);
    text += "\nNetto: \t\t";
    AmountFormat::append(text, netto);
    text += "\nSteuer: \t\t";
    AmountFormat::append(text, steuer);
    text += "\nSteuersatz: \t";
    appendRate(text, e.steuersatz());
    text += "\nDatum: \t\t" + UtcDateText::format(e.datum()) + "\n";
    if (e.innergemeinschaftlicherErwerb())
        text += "Innergemenschaftlicher Erwerb";
    else if (e.isNonEU())
        text += "Non EU";
    return text;
}

} // namespace saldo
