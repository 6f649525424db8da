#pragma once

#include "model/EntryText.h"
#include "platform/Clock.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace saldo {

class Einnahme;
using EinnahmePtr = std::shared_ptr<Einnahme>;
using EinnahmeList = std::vector<EinnahmePtr>;

inline constexpr const char* kArtEinnahme = "Einnahme";
inline constexpr const char* kArtAusgabe = "Ausgabe";

// One line of the ledger: an income or an expense with its gross amount, VAT
// rate, category, date, numbers, two tax flags and its split bookings. Entries
// are shared by identity between the document, both entry lists, the editors
// and the evaluation; two entries are the same entry only when they are the
// same object. The setters keep the gross amount from going negative and the
// two flags from both being true; decoding a file stores values as read.
//
// An entry is small: each text is one word (see EntryText; an entry read from
// a file shares repeated texts with the other entries read with it) and split
// bookings are held apart, only by entries that have some.
class Einnahme {
public:
    Einnahme(std::string name, std::string kategorie, float brutto, float steuersatz);

    static EinnahmePtr make(std::string name, std::string kategorie, float brutto, float steuersatz)
    {
        return std::make_shared<Einnahme>(std::move(name), std::move(kategorie), brutto, steuersatz);
    }

    // All stored fields as plain values, as read from a file, without the setter rules.
    struct Stored {
        std::string name;
        std::string kategorie;
        std::string art = kArtEinnahme;
        bool innergemeinschaftlicherErwerb = false;
        bool isNonEU = false;
        float brutto = 0.0f;
        float steuersatz = 0.0f;
        ReferenceSeconds datum = 0.0;
        std::string rechnungsnummer;
        std::string steuernummer;
        std::string leistungsart;
        EinnahmeList childTransactions;
    };
    explicit Einnahme(Stored stored);
    static EinnahmePtr restore(Stored stored) { return std::make_shared<Einnahme>(std::move(stored)); }

    // The stored fields as an entry holds them (what a ledger reader fills in).
    struct Fields {
        EntryText name;
        EntryText kategorie;
        EntryText art { std::string(kArtEinnahme) };
        EntryText rechnungsnummer;
        EntryText steuernummer;
        EntryText leistungsart;
        std::unique_ptr<EinnahmeList> childTransactions; // null: none
        ReferenceSeconds datum = 0.0;
        float brutto = 0.0f;
        float steuersatz = 0.0f;
        bool innergemeinschaftlicherErwerb = false;
        bool isNonEU = false;
    };
    explicit Einnahme(Fields&& fields)
        : f_(std::move(fields))
    {
    }

    // A copy owns every text; an entry is not moved (it is shared by pointer).
    Einnahme(const Einnahme& other);
    Einnahme& operator=(const Einnahme& other);

    const std::string& name() const { return f_.name.get(); }
    const std::string& kategorie() const { return f_.kategorie.get(); }
    const std::string& art() const { return f_.art.get(); }
    bool innergemeinschaftlicherErwerb() const { return f_.innergemeinschaftlicherErwerb; }
    bool isNonEU() const { return f_.isNonEU; }
    float brutto() const { return f_.brutto; }
    float steuersatz() const { return f_.steuersatz; }
    ReferenceSeconds datum() const { return f_.datum; }
    const std::string& rechnungsnummer() const { return f_.rechnungsnummer.get(); }
    const std::string& steuernummer() const { return f_.steuernummer.get(); }
    const std::string& leistungsart() const { return f_.leistungsart.get(); }
    const EinnahmeList& childTransactions() const
    {
        return f_.childTransactions ? *f_.childTransactions : noChildTransactions();
    }

    void setName(std::string value) { f_.name.set(std::move(value)); }
    void setKategorie(std::string value) { f_.kategorie.set(std::move(value)); }
    void setArt(std::string value) { f_.art.set(std::move(value)); }
    // Setting one flag to true clears the other first.
    void setInnergemeinschaftlicherErwerb(bool value);
    void setIsNonEU(bool value);
    // A value below 0 is refused and the previous amount stays; 0 is accepted.
    void setBrutto(float value);
    void setSteuersatz(float value) { f_.steuersatz = value; }
    void setDatum(ReferenceSeconds value) { f_.datum = value; }
    void setRechnungsnummer(std::string value) { f_.rechnungsnummer.set(std::move(value)); }
    void setSteuernummer(std::string value) { f_.steuernummer.set(std::move(value)); }
    void setLeistungsart(std::string value) { f_.leistungsart.set(std::move(value)); }
    void setChildTransactions(EinnahmeList value);

    // The net amount of a gross amount at a rate, in single precision in this
    // order: rate / 100, + 1, gross / that. Not rounded to cents.
    static float nettoOf(float brutto, float steuersatz)
    {
        const float divisor = steuersatz / 100.0f + 1.0f;
        return brutto / divisor;
    }
    float netto() const { return nettoOf(f_.brutto, f_.steuersatz); }

    // True when `art` is exactly the income kind (canonically equivalent text).
    bool isIncome() const;

    // Resource name of the status circle: "greenCircle" for income, else "redCircle".
    const char* statusImage() const;

    // "Name: " followed by the name.
    std::string description() const;

    // A new, independent entry: the name followed by " Kopie", the other fields
    // copied (the flags through the setters), the split bookings a new list
    // holding the same child entries.
    EinnahmePtr copy() const;

    // Read access by key name: the twelve stored keys and "netto".
    using KeyValue = std::variant<std::string, bool, float, double, EinnahmeList>;
    std::optional<KeyValue> valueForKey(std::string_view key) const;

    // A copy of all stored fields as plain values.
    Stored stored() const;
    // Puts back every stored field as given, without the setter rules (the
    // undo and redo of an edit).
    void setStored(Stored stored);
    // True when two sets of fields hold the same values: amounts bit for bit,
    // split bookings as the same entries in the same order.
    static bool sameValues(const Stored& a, const Stored& b);

private:
    static const EinnahmeList& noChildTransactions();

    Fields f_;
};

// The ordering of entries: kinds in descending text order (so every income
// before every expense), then ascending gross amount.
bool operator<(const Einnahme& a, const Einnahme& b);
inline bool operator>(const Einnahme& a, const Einnahme& b) { return b < a; }
inline bool operator<=(const Einnahme& a, const Einnahme& b) { return !(b < a); }
inline bool operator>=(const Einnahme& a, const Einnahme& b) { return !(a < b); }

// The twelve stored keys in the order they are coded.
inline constexpr std::string_view kEinnahmeKeys[12] = {
    "name", "kategorie", "art", "innergemeinschaftlicherErwerb", "isNonEU", "brutto",
    "steuersatz", "datum", "rechnungsnummer", "steuernummer", "leistungsart", "childTransactions"};

}  // namespace saldo
