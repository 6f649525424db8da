#include "evaluation/LimitWarning.h"

#include "evaluation/AmountFormat.h"

namespace saldo {

std::string LimitWarning::text() const
{
    std::string line = "Einnahmegrenze ueberschritten: ";
    AmountFormat::append(line, bruttoEinnahme);
    line += " von ";
    AmountFormat::append(line, limit);
    return line;
}

} // namespace saldo
