#include "printing/PrintColumns.h"

#include "evaluation/AmountFormat.h"
#include "platform/Calendar.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace saldo {
namespace {

void appendInt(std::string& out, int value)
{
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

} // namespace

std::array<std::string, PrintColumns::kCount> PrintColumns::values(const Einnahme& entry, bool splitBooking)
{
    const float brutto = entry.brutto();
    const float netto = Einnahme::nettoOf(brutto, entry.steuersatz());
    const float steuer = brutto - netto;
    return {
        splitBooking ? "> " + entry.art() : entry.art(),
        entry.name(),
        std::string(flag(entry.innergemeinschaftlicherErwerb())),
        std::string(flag(entry.isNonEU())),
        amount(brutto),
        amount(netto),
        rate(entry.steuersatz()),
        amount(steuer),
        date(entry.datum()),
        entry.rechnungsnummer(),
    };
}

double PrintColumns::width(std::size_t column, double paperWidth)
{
    if (column + 1 < kCount)
        return kColumns[column + 1].x - kColumns[column].x - kColumnGap;
    return std::max(0.0, paperWidth - kColumns[column].x);
}

std::string PrintColumns::amount(float value)
{
    std::string text;
    AmountFormat::appendNumber(text, value);
    return text;
}

std::string PrintColumns::rate(float value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value < 0 ? "-inf" : "inf";
    const float magnitude = std::fabs(value);
    const bool plain = magnitude == 0.0f || (magnitude >= 0.0001f && magnitude < 16777216.0f);
    char buffer[64];
    const auto result = std::to_chars(
        buffer, buffer + sizeof buffer, value, plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer, result.ptr);
    if (plain) {
        if (text.find('.') == std::string::npos)
            text += ".0";
    } else {
        const std::size_t e = text.find('e');
        if (text.find('.') == std::string::npos)
            text.insert(e, ".0");
    }
    return text;
}

std::string PrintColumns::date(ReferenceSeconds datum)
{
    const Calendar::Fields fields = Calendar::localFields(datum);
    std::string text;
    appendInt(text, fields.day);
    text += '.';
    appendInt(text, fields.month);
    text += '.';
    appendInt(text, fields.year);
    return text;
}

} // namespace saldo
