#include "entrylist/FormEdit.h"

#include "model/DecimalCommaText.h"
#include "model/UnicodeText.h"

namespace saldo {

bool FormEdit::nameLongEnough(std::string_view name)
{
    return UnicodeText::graphemeCount(name) >= kMinimumNameLength;
}

FormEdit::Result FormEdit::apply(Einnahme& entry, const Texts& texts)
{
    Result result;
    if (!nameLongEnough(texts.name))
        return result;
    result.taken = true;
    entry.setName(texts.name);
    entry.setRechnungsnummer(texts.rechnungsnummer);
    entry.setSteuernummer(texts.steuernummer);
    entry.setLeistungsart(texts.leistungsart);
    if (texts.kategorie)
        entry.setKategorie(*texts.kategorie);
    if (!entry.childTransactions().empty()) {
        result.bruttoKept = true;
    } else if (const auto brutto = DecimalCommaText::parse(texts.brutto); brutto && *brutto >= 0.0f) {
        entry.setBrutto(*brutto);
    } else {
        result.bruttoKept = true;
    }
    if (const auto steuersatz = DecimalCommaText::parse(texts.steuersatz))
        entry.setSteuersatz(*steuersatz);
    else
        result.steuersatzKept = true;
    return result;
}

}  // namespace saldo
