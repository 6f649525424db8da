#include "model/Einnahme.h"

#include "model/UnicodeText.h"

#include <cstring>

namespace saldo {

namespace {

std::unique_ptr<EinnahmeList> heldList(EinnahmeList list)
{
    if (list.empty())
        return nullptr;
    return std::make_unique<EinnahmeList>(std::move(list));
}

} // namespace

Einnahme::Einnahme(std::string name, std::string kategorie, float brutto, float steuersatz)
{
    f_.name = EntryText(std::move(name));
    f_.kategorie = EntryText(std::move(kategorie));
    f_.brutto = brutto;
    f_.steuersatz = steuersatz;
    f_.datum = now();
}

Einnahme::Einnahme(Stored stored)
{
    f_.name = EntryText(std::move(stored.name));
    f_.kategorie = EntryText(std::move(stored.kategorie));
    f_.art = EntryText(std::move(stored.art));
    f_.innergemeinschaftlicherErwerb = stored.innergemeinschaftlicherErwerb;
    f_.isNonEU = stored.isNonEU;
    f_.brutto = stored.brutto;
    f_.steuersatz = stored.steuersatz;
    f_.datum = stored.datum;
    f_.rechnungsnummer = EntryText(std::move(stored.rechnungsnummer));
    f_.steuernummer = EntryText(std::move(stored.steuernummer));
    f_.leistungsart = EntryText(std::move(stored.leistungsart));
    f_.childTransactions = heldList(std::move(stored.childTransactions));
}

Einnahme::Einnahme(const Einnahme& other)
{
    *this = other;
}

Einnahme& Einnahme::operator=(const Einnahme& other)
{
    if (this == &other)
        return *this;
    f_.name = other.f_.name;
    f_.kategorie = other.f_.kategorie;
    f_.art = other.f_.art;
    f_.rechnungsnummer = other.f_.rechnungsnummer;
    f_.steuernummer = other.f_.steuernummer;
    f_.leistungsart = other.f_.leistungsart;
    setChildTransactions(other.childTransactions());
    f_.datum = other.f_.datum;
    f_.brutto = other.f_.brutto;
    f_.steuersatz = other.f_.steuersatz;
    f_.innergemeinschaftlicherErwerb = other.f_.innergemeinschaftlicherErwerb;
    f_.isNonEU = other.f_.isNonEU;
    return *this;
}

const EinnahmeList& Einnahme::noChildTransactions()
{
    static const EinnahmeList* const none = new EinnahmeList;
    return *none;
}

void Einnahme::setChildTransactions(EinnahmeList value)
{
    // A list the entry holds is changed in place, so a reference to it stays valid.
    if (f_.childTransactions)
        *f_.childTransactions = std::move(value);
    else
        f_.childTransactions = heldList(std::move(value));
}

void Einnahme::setInnergemeinschaftlicherErwerb(bool value)
{
    if (value)
        f_.isNonEU = false;
    f_.innergemeinschaftlicherErwerb = value;
}

void Einnahme::setIsNonEU(bool value)
{
    if (value)
        f_.innergemeinschaftlicherErwerb = false;
    f_.isNonEU = value;
}

void Einnahme::setBrutto(float value)
{
    if (value < 0.0f)
        return;
    f_.brutto = value;
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
    return UnicodeText::equal(art(), kArtEinnahme);
}

const char* Einnahme::statusImage() const
{
    return isIncome() ? "greenCircle" : "redCircle";
}

std::string Einnahme::description() const
{
    return "Name: " + name();
}

EinnahmePtr Einnahme::copy() const
{
    auto result = make(name() + " Kopie", kategorie(), f_.brutto, f_.steuersatz);
    result->f_.art = f_.art;
    result->setInnergemeinschaftlicherErwerb(f_.innergemeinschaftlicherErwerb);
    result->setIsNonEU(f_.isNonEU);
    result->f_.datum = f_.datum;
    result->f_.rechnungsnummer = f_.rechnungsnummer;
    result->f_.steuernummer = f_.steuernummer;
    result->f_.leistungsart = f_.leistungsart;
    result->setChildTransactions(childTransactions());
    return result;
}

Einnahme::Stored Einnahme::stored() const
{
    Stored s;
    s.name = name();
    s.kategorie = kategorie();
    s.art = art();
    s.innergemeinschaftlicherErwerb = f_.innergemeinschaftlicherErwerb;
    s.isNonEU = f_.isNonEU;
    s.brutto = f_.brutto;
    s.steuersatz = f_.steuersatz;
    s.datum = f_.datum;
    s.rechnungsnummer = rechnungsnummer();
    s.steuernummer = steuernummer();
    s.leistungsart = leistungsart();
    s.childTransactions = childTransactions();
    return s;
}

void Einnahme::setStored(Stored stored)
{
    f_.name.set(std::move(stored.name));
    f_.kategorie.set(std::move(stored.kategorie));
    f_.art.set(std::move(stored.art));
    f_.innergemeinschaftlicherErwerb = stored.innergemeinschaftlicherErwerb;
    f_.isNonEU = stored.isNonEU;
    f_.brutto = stored.brutto;
    f_.steuersatz = stored.steuersatz;
    f_.datum = stored.datum;
    f_.rechnungsnummer.set(std::move(stored.rechnungsnummer));
    f_.steuernummer.set(std::move(stored.steuernummer));
    f_.leistungsart.set(std::move(stored.leistungsart));
    setChildTransactions(std::move(stored.childTransactions));
}

std::optional<Einnahme::KeyValue> Einnahme::valueForKey(std::string_view key) const
{
    if (key == "name") return name();
    if (key == "kategorie") return kategorie();
    if (key == "art") return art();
    if (key == "innergemeinschaftlicherErwerb") return f_.innergemeinschaftlicherErwerb;
    if (key == "isNonEU") return f_.isNonEU;
    if (key == "brutto") return f_.brutto;
    if (key == "steuersatz") return f_.steuersatz;
    if (key == "datum") return f_.datum;
    if (key == "rechnungsnummer") return rechnungsnummer();
    if (key == "steuernummer") return steuernummer();
    if (key == "leistungsart") return leistungsart();
    if (key == "childTransactions") return childTransactions();
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
