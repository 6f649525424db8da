#pragma once

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
class Einnahme {
public:
    Einnahme(std::string name, std::string kategorie, float brutto, float steuersatz);

    static EinnahmePtr make(std::string name, std::string kategorie, float brutto, float steuersatz)
    {
        return std::make_shared<Einnahme>(std::move(name), std::move(kategorie), brutto, steuersatz);
    }

    // All stored fields as read from a file, without the setter rules.
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

    const std::string& name() const { return s_.name; }
    const std::string& kategorie() const { return s_.kategorie; }
    const std::string& art() const { return s_.art; }
    bool innergemeinschaftlicherErwerb() const { return s_.innergemeinschaftlicherErwerb; }
    bool isNonEU() const { return s_.isNonEU; }
    float brutto() const { return s_.brutto; }
    float steuersatz() const { return s_.steuersatz; }
    ReferenceSeconds datum() const { return s_.datum; }
    const std::string& rechnungsnummer() const { return s_.rechnungsnummer; }
    const std::string& steuernummer() const { return s_.steuernummer; }
    const std::string& leistungsart() const { return s_.leistungsart; }
    const EinnahmeList& childTransactions() const { return s_.childTransactions; }

    void setName(std::string value) { s_.name = std::move(value); }
    void setKategorie(std::string value) { s_.kategorie = std::move(value); }
    void setArt(std::string value) { s_.art = std::move(value); }
    // Setting one flag to true clears the other first.
    void setInnergemeinschaftlicherErwerb(bool value);
    void setIsNonEU(bool value);
    // A value below 0 is refused and the previous amount stays; 0 is accepted.
    void setBrutto(float value);
    void setSteuersatz(float value) { s_.steuersatz = value; }
    void setDatum(ReferenceSeconds value) { s_.datum = value; }
    void setRechnungsnummer(std::string value) { s_.rechnungsnummer = std::move(value); }
    void setSteuernummer(std::string value) { s_.steuernummer = std::move(value); }
    void setLeistungsart(std::string value) { s_.leistungsart = std::move(value); }
    void setChildTransactions(EinnahmeList value) { s_.childTransactions = std::move(value); }

    // The net amount of a gross amount at a rate, in single precision in this
    // order: rate / 100, + 1, gross / that. Not rounded to cents.
    static float nettoOf(float brutto, float steuersatz)
    {
        const float divisor = steuersatz / 100.0f + 1.0f;
        return brutto / divisor;
    }
    float netto() const { return nettoOf(s_.brutto, s_.steuersatz); }

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

    const Stored& stored() const { return s_; }
    // Puts back every stored field as given, without the setter rules (the
    // undo and redo of an edit).
    void setStored(Stored stored) { s_ = std::move(stored); }
    // True when two sets of fields hold the same values: amounts bit for bit,
    // split bookings as the same entries in the same order.
    static bool sameValues(const Stored& a, const Stored& b);

private:
    Stored s_;
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
