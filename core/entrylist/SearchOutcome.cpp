#include "entrylist/SearchOutcome.h"

#include "entrylist/SearchText.h"

namespace saldo {
namespace {

using Field = SearchCondition::Field;
using Relation = SearchCondition::Relation;

struct AmountMode {
    std::string_view mode;
    Field field;
    Relation relation;
};

constexpr AmountMode kAmountModes[] = {
    { "Brutto >=", Field::Brutto, Relation::AtLeast },
    { "Brutto =", Field::Brutto, Relation::Equal },
    { "Brutto <=", Field::Brutto, Relation::AtMost },
    { "Netto >=", Field::Netto, Relation::AtLeast },
    { "Netto <=", Field::Netto, Relation::AtMost },
    { "Steuersatz >=", Field::Steuersatz, Relation::AtLeast },
    { "Steuersatz =", Field::Steuersatz, Relation::Equal },
    { "Steuersatz <=", Field::Steuersatz, Relation::AtMost },
};

}  // namespace

SearchOutcome SearchOutcome::filter(SearchCondition condition)
{
    SearchOutcome outcome(Kind::Filter);
    outcome.condition_ = std::move(condition);
    return outcome;
}

SearchOutcome SearchOutcome::decide(std::string_view mode, std::string_view text)
{
    if (text.empty())
        return showAll();

    if (mode == "Name")
        return filter(SearchCondition::contains(Field::Name, std::string(text)));
    if (mode == "Kategorie")
        return filter(SearchCondition::contains(Field::Kategorie, std::string(text)));
    if (mode == "Art")
        return filter(SearchCondition::contains(Field::Art, std::string(text)));

    if (mode == "Non EU" || mode == "Innergemeinschaftlich") {
        const Field field = mode == "Non EU" ? Field::NonEU : Field::Innergemeinschaftlich;
        if (text == "1")
            return filter(SearchCondition::flag(field, true));
        if (text == "0")
            return filter(SearchCondition::flag(field, false));
        return filter(SearchCondition::everything());
    }

    for (const AmountMode& m : kAmountModes) {
        if (mode != m.mode)
            continue;
        const auto value = SearchText::number(text);
        if (!value)
            return noChange();
        return filter(SearchCondition::amount(m.field, m.relation, *value));
    }

    if (mode == "Datum >=" || mode == "Datum <=" || mode == "Datum =") {
        const auto day = SearchText::localDay(text);
        if (!day)
            return noChange();
        if (mode == "Datum >=")
            return filter(SearchCondition::dateAtOrAfter(day->start));
        if (mode == "Datum <=")
            return filter(SearchCondition::dateAtOrBefore(day->start));
        return filter(SearchCondition::dateWithin(day->start, day->end));
    }

    return keepShown();
}

}  // namespace saldo
