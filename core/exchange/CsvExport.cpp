#include "exchange/CsvExport.h"

#include "evaluation/AmountFormat.h"
#include "model/DecimalCommaText.h"
#include "model/LedgerEntryPath.h"
#include "model/LedgerFile.h"
#include "platform/Calendar.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

namespace saldo {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kHeader = "Teil von;Art;Name;Kategorie;Brutto;Netto;Steuer;Steuersatz;Datum;"
                                     "Rechnungsnummer;Steuernummer;Leistungsart;Innergemeinschaftlich;Non EU;"
                                     "Hinweis";

// A text field: guarded against being read as a formula, quoted when it has to be.
void appendText(std::string& out, std::string_view text)
{
    const bool guard = !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos;
    const bool quote = text.find_first_of(";\"\r\n") != std::string_view::npos;
    if (quote)
        out += '"';
    if (guard)
        out += '\'';
    if (!quote) {
        out += text;
        return;
    }
    // Each double quote is written twice.
    for (std::size_t quoteAt; (quoteAt = text.find('"')) != std::string_view::npos;) {
        out.append(text.substr(0, quoteAt + 1));
        out += '"';
        text.remove_prefix(quoteAt + 1);
    }
    out += text;
    out += '"';
}

void appendNumber(std::string& out, long long value, int digits)
{
    if (value < 0) {
        out += '-';
        value = -value;
    }
    char buffer[24];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    out.append(static_cast<std::size_t>(std::max<long long>(0, digits - (end - buffer))), '0');
    out.append(buffer, end);
}

// dd.MM.yyyy of the local day; false, and nothing written, for a date the
// calendar cannot name in the years 1 to 9999 (or one that is no number).
bool appendDate(std::string& out, ReferenceSeconds datum)
{
    const std::optional<Calendar::LocalDateTime> local = Calendar::localDateTime(datum);
    if (!local || local->fields.year < 1 || local->fields.year > 9999)
        return false;
    const Calendar::Fields& f = local->fields;
    appendNumber(out, f.day, 2);
    out += '.';
    appendNumber(out, f.month, 2);
    out += '.';
    appendNumber(out, f.year, 4);
    return true;
}

class Rows {
public:
    // With a sink, the text goes to it in pieces of about `piece` bytes, whole rows each.
    Rows(std::string& out, const CsvExport::Sink* sink, std::size_t piece, const CsvExport::ExtraColumns* extra = nullptr)
        : out_(out)
        , sink_(sink)
        , piece_(piece)
        , extra_(extra)
    {
    }

    void appendHeader()
    {
        out_ += kHeader;
        if (extra_)
            for (const std::string& title : extra_->titles) {
                out_ += ';';
                appendText(out_, title);
            }
        out_ += "\r\n";
    }

    void append(const EinnahmeList& entries, long long parentRow)
    {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (path_.depth() == 0)
                path_.push(i + 1);
            else
                path_.setLast(i + 1);
            const Einnahme& e = *entries[i];
            const long long row = ++row_;
            appendRow(e, parentRow);
            appendExtra(parentRow > 0 ? std::nullopt : std::optional<std::size_t>(i));
            if (sink_ && out_.size() >= piece_) {
                (*sink_)(out_);
                out_.clear();
            }
            if (e.childTransactions().empty())
                continue;
            // The file's own limit; it also ends an entry that holds itself.
            if (path_.depth() > LedgerEntryPath::kMaxNesting)
                throw LedgerFileError(path_.describe() + ": split bookings nested deeper than "
                    + std::to_string(LedgerEntryPath::kMaxNesting) + " levels");
            path_.push(0);
            append(e.childTransactions(), row);
            path_.pop();
        }
    }

private:
    void appendRow(const Einnahme& e, long long parentRow)
    {
        if (parentRow > 0)
            appendNumber(out_, parentRow, 1);
        out_ += ';';
        appendText(out_, e.art());
        out_ += ';';
        appendText(out_, e.name());
        out_ += ';';
        appendText(out_, e.kategorie());
        out_ += ';';
        const float netto = e.netto();
        const float steuer = e.brutto() - netto;
        // An amount that is no finite number reads as the report writes it
        // ("nan", "inf", "-inf"), and the note says which.
        const std::pair<float, const char*> amounts[]
            = { { e.brutto(), "Brutto" }, { netto, "Netto" }, { steuer, "Steuer" }, { e.steuersatz(), "Steuersatz" } };
        std::string notNumbers;
        for (const auto& [amount, title] : amounts) {
            if (std::isfinite(amount)) {
                out_ += DecimalCommaText::fixed(amount, 2);
            } else {
                AmountFormat::appendNumber(out_, amount);
                notNumbers += notNumbers.empty() ? "keine endliche Zahl: " : ", ";
                notNumbers += title;
            }
            out_ += ';';
        }
        const bool dated = appendDate(out_, e.datum());
        out_ += ';';
        appendText(out_, e.rechnungsnummer());
        out_ += ';';
        appendText(out_, e.steuernummer());
        out_ += ';';
        appendText(out_, e.leistungsart());
        out_ += e.innergemeinschaftlicherErwerb() ? ";ja" : ";nein";
        out_ += e.isNonEU() ? ";ja;" : ";nein;";
        out_ += notNumbers;
        if (!dated)
            out_ += notNumbers.empty() ? "Datum ausserhalb der Jahre 1 bis 9999" : ". Datum ausserhalb der Jahre 1 bis 9999";
    }

    // The further columns of an entry of the list (empty for a split booking), and the row's end.
    void appendExtra(std::optional<std::size_t> index)
    {
        if (extra_) {
            std::vector<std::string> values;
            if (index)
                values = extra_->values(*index);
            for (std::size_t k = 0; k < extra_->titles.size(); ++k) {
                out_ += ';';
                appendText(out_, k < values.size() ? values[k] : std::string());
            }
        }
        out_ += "\r\n";
    }

    std::string& out_;
    const CsvExport::Sink* sink_;
    std::size_t piece_;
    const CsvExport::ExtraColumns* extra_;
    long long row_ = 1; // the header
    LedgerEntryPath path_;
};

} // namespace

std::string CsvExport::encode(const EinnahmeList& entries)
{
    std::string out;
    out.reserve(kByteOrderMark.size() + kHeader.size() + entries.size() * 160);
    out += kByteOrderMark;
    Rows rows(out, nullptr, 0);
    rows.appendHeader();
    rows.append(entries, 0);
    return out;
}

void CsvExport::encode(const EinnahmeList& entries, const Sink& sink)
{
    encode(entries, ExtraColumns {}, sink);
}

void CsvExport::encode(const EinnahmeList& entries, const ExtraColumns& extra, const Sink& sink)
{
    constexpr std::size_t kPiece = 1 << 20;
    std::string out;
    out.reserve(kPiece + 64 * 1024);
    out += kByteOrderMark;
    Rows rows(out, &sink, kPiece, extra.titles.empty() ? nullptr : &extra);
    rows.appendHeader();
    rows.append(entries, 0);
    if (!out.empty())
        sink(out);
}

void CsvExport::write(const std::string& path, const EinnahmeList& entries)
{
    LedgerFile::writeBesideLedgers(path, encode(entries));
}

} // namespace saldo
