#include "model/Einnahme.h"

#include "model/UnicodeText.h"

#include <cstring>

namespace saldo {

Einnahme::Einnahme(std::string name, std::string kategorie, float brutto, float steuersatz)
{
    s_.name = std::move(name);
    s_.kategorie = std::move(kategorie);
    s_.brutto = brutto;
    s_.steuersatz = steuersatz;
    s_.datum = now();
}

Einnahme::Einnahme(Stored stored)
    : s_(std::move(stored))
{
}

void Einnahme::setInnergemeinschaftlicherErwerb(bool value)
{
    if (value)
        s_.isNonEU = false;
    s_.innergemeinschaftlicherErwerb = value;
}

void Einnahme::setIsNonEU(bool value)
{
    if (value)
        s_.innergemeinschaftlicherErwerb = false;
    s_.isNonEU = value;
}

void Einnahme::setBrutto(float value)
{
    if (value < 0.0f)
        return;
    s_.brutto = value;
}

bool Einnahme::sameValues(const Stored& a, const Stored& b)
{
    const auto sameBits = [](float x, float y) { return std::memcmp(&x, &y, sizeof x) == 0; };
    return a.name == b.name && a.kategorie == b.kategorie && a.art == b.art
        && a.innergemeinschaftlicherErwerb == b.innergemeinschaftlicherErwerb && a.isNonEU == b.isNonEU
        && sameBits(a.brutto, b.brutto) && sameBits(a.steuersatz, b.steuersatz)
        && std::memcmp(&a.datum, &b.datum, sizeof a.datum) == 0 && a.rechnungsnummer == b.rechnungsnummer
        && a.steuernummer == b.steuernummer && a.leistungsart == b.leistungsart
        && a.childTransactions == b.childTransactions;
}

bool Einnahme::isIncome() const
{
    return UnicodeText::equal(s_.art, kArtEinnahme);
}

const char* Einnahme::statusImage() const
{
    return isIncome() ? "greenCircle" : "redCircle";
}

std::string Einnahme::description() const
{
    return "Name: " + s_.name;
}

EinnahmePtr Einnahme::copy() const
{
    auto result = make(s_.name + " Kopie", s_.kategorie, s_.brutto, s_.steuersatz);
    result->s_.art = s_.art;
    result->setInnergemeinschaftlicherErwerb(s_.innergemeinschaftlicherErwerb);
    result->setIsNonEU(s_.isNonEU);
    result->s_.datum = s_.datum;
    result->s_.rechnungsnummer = s_.rechnungsnummer;
    result->s_.steuernummer = s_.steuernummer;
    result->s_.leistungsart = s_.leistungsart;
    result->s_.childTransactions = s_.childTransactions;
    return result;
}

std::optional<Einnahme::KeyValue> Einnahme::valueForKey(std::string_view key) const
{
    if (key == "name") return s_.name;
    if (key == "kategorie") return s_.kategorie;
    if (key == "art") return s_.art;
    if (key == "innergemeinschaftlicherErwerb") return s_.innergemeinschaftlicherErwerb;
    if (key == "isNonEU") return s_.isNonEU;
    if (key == "brutto") return s_.brutto;
    if (key == "steuersatz") return s_.steuersatz;
    if (key == "datum") return s_.datum;
    if (key == "rechnungsnummer") return s_.rechnungsnummer;
    if (key == "steuernummer") return s_.steuernummer;
    if (key == "leistungsart") return s_.leistungsart;
    if (key == "childTransactions") return s_.childTransactions;
    if (key == "netto") return netto();
    return std::nullopt;
}

bool operator<(const Einnahme& a, const Einnahme& b)
{
    const int byArt = UnicodeText::compare(a.art(), b.art());
    if (byArt != 0)
        return byArt > 0;
    return a.brutto() < b.brutto();
}

}  // namespace saldo
