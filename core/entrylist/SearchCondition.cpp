#include "entrylist/SearchCondition.h"

#include "entrylist/NfcText.h"
#include "model/UnicodeText.h"

#include <cmath>

namespace saldo {
namespace {

const std::string& textOf(const Einnahme& entry, SearchCondition::Field field)
{
    switch (field) {
    case SearchCondition::Field::Kategorie:
        return entry.kategorie();
    case SearchCondition::Field::Art:
        return entry.art();
    default:
        return entry.name();
    }
}

float amountOf(const Einnahme& entry, SearchCondition::Field field)
{
    switch (field) {
    case SearchCondition::Field::Netto:
        return Einnahme::nettoOf(entry.brutto(), entry.steuersatz());
    case SearchCondition::Field::Steuersatz:
        return entry.steuersatz();
    default:
        return entry.brutto();
    }
}

}  // namespace

SearchCondition::SearchCondition(Field field, Relation relation)
    : field_(field)
    , relation_(relation)
{
}

SearchCondition SearchCondition::everything()
{
    return SearchCondition(Field::Everything, Relation::Any);
}

SearchCondition SearchCondition::contains(Field field, std::string text)
{
    SearchCondition c(field, Relation::Contains);
    c.text_ = NfcText::form(text);
    return c;
}

SearchCondition SearchCondition::flag(Field field, bool value)
{
    return SearchCondition(field, value ? Relation::IsTrue : Relation::IsFalse);
}

SearchCondition SearchCondition::amount(Field field, Relation relation, float value)
{
    SearchCondition c(field, relation);
    c.value_ = value;
    return c;
}

SearchCondition SearchCondition::dateAtOrAfter(ReferenceSeconds from)
{
    SearchCondition c(Field::Datum, Relation::AtLeast);
    c.from_ = from;
    return c;
}

SearchCondition SearchCondition::dateAtOrBefore(ReferenceSeconds to)
{
    SearchCondition c(Field::Datum, Relation::AtMost);
    c.to_ = to;
    return c;
}

SearchCondition SearchCondition::dateWithin(ReferenceSeconds from, ReferenceSeconds to)
{
    SearchCondition c(Field::Datum, Relation::Within);
    c.from_ = from;
    c.to_ = to;
    return c;
}

bool SearchCondition::matches(const Einnahme& entry) const
{
    switch (relation_) {
    case Relation::Any:
        return true;
    case Relation::Contains: {
        const std::string& haystack = textOf(entry, field_);
        // ASCII and Latin-1 texts are their own NFC form; others are
        // normalised so that a decomposed and a precomposed spelling find
        // each other.
        if (NfcText::isCertainlyNfc(haystack))
            return haystack.find(text_) != std::string::npos;
        return UnicodeText::nfc(haystack).find(text_) != std::string::npos;
    }
    case Relation::IsTrue:
    case Relation::IsFalse: {
        const bool value = field_ == Field::NonEU ? entry.isNonEU() : entry.innergemeinschaftlicherErwerb();
        return value == (relation_ == Relation::IsTrue);
    }
    case Relation::AtLeast:
        return field_ == Field::Datum ? entry.datum() >= from_ : amountOf(entry, field_) >= value_;
    case Relation::Equal:
        return amountOf(entry, field_) == value_;
    case Relation::AtMost:
        return field_ == Field::Datum ? entry.datum() <= to_ : amountOf(entry, field_) <= value_;
    case Relation::Within:
        return entry.datum() >= from_ && entry.datum() < to_;
    }
    return false;
}

EinnahmeList SearchCondition::filter(const EinnahmeList& backupEinnahmen) const
{
    EinnahmeList result;
    for (const auto& entry : backupEinnahmen)
        if (matches(*entry))
            result.push_back(entry);
    return result;
}

}  // namespace saldo
