#pragma once

#include "model/Einnahme.h"

#include <string>

namespace saldo {

// One condition of the search field on an entry, and the filter that applies it
// to the complete list. Text conditions are substring tests that respect case
// and diacritics; canonically equivalent spellings count as the same text (both
// sides are compared in their NFC form). Number conditions compare the entry's
// single-precision field (the net amount derived per entry) with the typed
// value; an entry whose amount is not a number meets none of them. Date
// conditions compare `datum` with local midnights.
class SearchCondition {
public:
    enum class Field {
        Everything,
        Name,
        Kategorie,
        Art,
        NonEU,
        Innergemeinschaftlich,
        Brutto,
        Netto,
        Steuersatz,
        Datum
    };
    enum class Relation {
        Any, // every entry
        Contains, // text fields
        IsTrue, // flags
        IsFalse,
        AtLeast, // numbers and dates: >=
        Equal, // numbers: ==
        AtMost, // numbers and dates: <=
        Within, // dates: from <= datum < to
    };

    static SearchCondition everything();
    static SearchCondition contains(Field field, std::string text);
    static SearchCondition flag(Field field, bool value);
    static SearchCondition amount(Field field, Relation relation, float value);
    static SearchCondition dateAtOrAfter(ReferenceSeconds from);
    static SearchCondition dateAtOrBefore(ReferenceSeconds to);
    static SearchCondition dateWithin(ReferenceSeconds from, ReferenceSeconds to);

    Field field() const { return field_; }
    Relation relation() const { return relation_; }
    const std::string& text() const { return text_; }
    float value() const { return value_; }
    ReferenceSeconds from() const { return from_; }
    ReferenceSeconds to() const { return to_; }

    bool matches(const Einnahme& entry) const;

    // The entries of `backupEinnahmen` that meet the condition, in its order,
    // as the same shared objects.
    EinnahmeList filter(const EinnahmeList& backupEinnahmen) const;

private:
    SearchCondition(Field field, Relation relation);

    Field field_;
    Relation relation_;
    std::string text_; // NFC form of the searched text
    float value_ = 0.0f;
    ReferenceSeconds from_ = 0.0;
    ReferenceSeconds to_ = 0.0;
};

}  // namespace saldo
