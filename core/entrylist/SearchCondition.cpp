#include "entrylist/SearchCondition.h"

#include "entrylist/InHalves.h"
#include "entrylist/NfcText.h"
#include "model/UnicodeText.h"

#include <cmath>
#include <iterator>

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
    const bool readsText = relation_ == Relation::Contains;
    // Each half of a long list is filtered on its own thread, into its own
    // list, and the second half's matches are moved behind the first's (a move
    // leaves the entries' reference counts alone).
    EinnahmeList halves[2];
    inHalves(backupEinnahmen.size(), [&](std::size_t first, std::size_t last) {
        EinnahmeList& result = halves[first == 0 ? 0 : 1];
        for (std::size_t i = first; i < last; ++i) {
            // The entry, its text and the text's bytes are read one after the
            // other and lie anywhere in memory: each is asked for early.
            if (i + 16 < last)
                __builtin_prefetch(backupEinnahmen[i + 16].get());
            if (readsText && i + 8 < last)
                __builtin_prefetch(textOf(*backupEinnahmen[i + 8], field_).data());
            if (matches(*backupEinnahmen[i]))
                result.push_back(backupEinnahmen[i]);
        }
    });
    if (halves[0].empty())
        return std::move(halves[1]);
    halves[0].insert(halves[0].end(), std::make_move_iterator(halves[1].begin()),
        std::make_move_iterator(halves[1].end()));
    return std::move(halves[0]);
}

}  // namespace saldo
