#include "bank/CsvStatementReader.h"

#include "bank/BankText.h"
#include "bank/BankValueText.h"
#include "bank/CsvRows.h"
#include "bank/StatementError.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace saldo {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);
constexpr std::size_t kMaxText = 4000;

std::string trimmed(std::string_view text)
{
    return std::string(BankText::trimmed(text));
}

// The number of cells of a row without the empty ones at its end.
std::size_t filledWidth(const std::vector<std::string>& cells)
{
    std::size_t width = cells.size();
    while (width > 0 && trimmed(cells[width - 1]).empty())
        --width;
    return width;
}

// Where each cell of the profile's header stands in the file's header row.
struct Header {
    std::vector<std::size_t> at; // by the index of the profile's header cell
    std::size_t of(const CsvProfile& profile, const std::string& column) const
    {
        if (column.empty())
            return kNone;
        const auto found = std::find(profile.header.begin(), profile.header.end(), column);
        return at[static_cast<std::size_t>(found - profile.header.begin())];
    }
};

std::optional<Header> matchHeader(const std::vector<std::string>& cells, const CsvProfile& profile, bool byPosition)
{
    Header header;
    for (const std::string& name : profile.header) {
        std::size_t found = kNone;
        for (std::size_t i = 0; i < cells.size() && found == kNone; ++i)
            if (!name.empty() && trimmed(cells[i]) == name)
                found = i;
        if (found == kNone && !name.empty())
            break;
        header.at.push_back(found);
    }
    if (header.at.size() == profile.header.size())
        return header;
    if (!byPosition || filledWidth(cells) != profile.header.size())
        return std::nullopt;
    header.at.clear();
    for (std::size_t i = 0; i < profile.header.size(); ++i)
        header.at.push_back(i);
    return header;
}

// Positions the rows just past the header; nothing when there is none.
std::optional<Header> findHeader(CsvRows& rows, const CsvProfile& profile, bool byPosition)
{
    std::vector<std::string> cells;
    for (std::size_t line = 0; line <= CsvStatementReader::kMaxLinesBeforeHeader && rows.next(cells); ++line) {
        if (profile.linesBeforeHeader && line != *profile.linesBeforeHeader)
            continue;
        if (std::optional<Header> header = matchHeader(cells, profile, byPosition))
            return header;
    }
    return std::nullopt;
}

// Fields written inside the text after markers: each value runs to the next marker.
void splitMarkers(BankBooking& booking, const CsvProfile& profile)
{
    const std::string source = booking.text;
    std::string* target = nullptr;
    std::string before;
    bool found = false;
    std::string partner, iban, text, dropped;
    std::size_t from = 0;
    auto flush = [&](std::size_t end) {
        const std::string value = BankText::tidy(source.substr(from, end - from));
        std::string& into = target ? *target : before;
        if (!value.empty())
            into += (into.empty() ? "" : " ") + value;
    };
    for (std::size_t i = 0; i < source.size();) {
        std::string* kind = nullptr;
        std::size_t length = 0;
        const auto consider = [&](const std::vector<std::string>& markers, std::string* into) {
            for (const std::string& marker : markers) {
                if (marker.size() > length && source.compare(i, marker.size(), marker) == 0) {
                    length = marker.size();
                    kind = into;
                }
            }
        };
        consider(profile.otherMarkers, nullptr);
        consider(profile.partnerMarkers, &partner);
        consider(profile.ibanMarkers, &iban);
        consider(profile.textMarkers, &text);
        if (length == 0) {
            ++i;
            continue;
        }
        flush(i);
        found = true;
        target = kind;
        i += length;
        from = i;
        // A marker of no field: its value is dropped.
        if (!kind)
            target = &dropped;
    }
    flush(source.size());
    if (!found)
        return;
    if (!partner.empty())
        booking.partner = partner;
    if (!iban.empty())
        booking.iban = iban;
    booking.text = !text.empty() ? text : before;
}

} // namespace

bool CsvStatementReader::hasHeader(std::string_view text, const CsvProfile& profile)
{
    CsvRows rows(text, profile.separator);
    try {
        return findHeader(rows, profile, false).has_value();
    } catch (const StatementError&) {
        return false;
    }
}

Statement CsvStatementReader::read(std::string_view text, const CsvProfile& profile, bool byPosition)
{
    CsvRows rows(text, profile.separator);
    const std::optional<Header> header = findHeader(rows, profile, byPosition);
    if (!header)
        throw StatementError("Die Kopfzeile des Formats \"" + profile.name + "\" steht nicht in der Datei.");
    const auto column = [&](const std::string& name) { return header->of(profile, name); };
    const std::size_t datum = column(profile.datum), valuta = column(profile.valuta), betrag = column(profile.betrag),
                      soll = column(profile.soll), haben = column(profile.haben), partner = column(profile.partner),
                      partnerIn = column(profile.partnerIn), partnerOut = column(profile.partnerOut),
                      iban = column(profile.iban), textColumn = column(profile.text),
                      referenz = column(profile.referenz), buchungsart = column(profile.buchungsart),
                      waehrung = column(profile.waehrung);
    std::vector<std::pair<std::size_t, std::string>> pending;
    for (const auto& [name, value] : profile.pending)
        pending.emplace_back(column(name), value);

    Statement statement;
    statement.format = profile.name;
    std::vector<std::string> cells;
    const auto cell = [&cells](std::size_t at) { return at < cells.size() ? trimmed(cells[at]) : std::string(); };
    bool ended = false;
    while (rows.next(cells)) {
        if (filledWidth(cells) == 0)
            continue;
        if (ended) {
            ++statement.skippedLines;
            continue;
        }
        const std::string first = trimmed(cells[0]);
        if (std::any_of(profile.footers.begin(), profile.footers.end(),
                [&first](const std::string& footer) { return first.starts_with(footer); })) {
            ended = true;
            ++statement.skippedLines;
            continue;
        }
        BankBooking booking;
        for (const auto& [at, value] : pending)
            if (cell(at) == value)
                booking.status = BankBooking::Status::Pending;
        const std::optional<BankDate> date = BankValueText::date(cell(datum), profile.dateFormat);
        std::optional<std::int64_t> cents;
        if (betrag != kNone && (soll == kNone || !cell(betrag).empty())) {
            cents = BankValueText::cents(cell(betrag), profile.decimalMark, profile.thousandsMark);
        } else {
            // Separate columns: what stands under Soll goes out, under Haben comes in.
            const std::string out = cell(soll), in = cell(haben);
            const auto outCents = BankValueText::cents(out, profile.decimalMark, profile.thousandsMark);
            const auto inCents = BankValueText::cents(in, profile.decimalMark, profile.thousandsMark);
            if (outCents && in.empty())
                cents = -std::abs(*outCents);
            else if (inCents && out.empty())
                cents = std::abs(*inCents);
        }
        if (!date && booking.status == BankBooking::Status::Pending)
            if (const auto valued = BankValueText::date(cell(valuta), profile.dateFormat))
                booking.bookingDate = *valued;
        // A pending row may have no day yet ("offen"); it is shown all the same.
        if ((!date && booking.status != BankBooking::Status::Pending) || !cents) {
            ++statement.skippedLines;
            continue;
        }
        if (const std::string currency = cell(waehrung); !currency.empty() && currency != "EUR")
            throw StatementError("Die Datei enthaelt Buchungen in " + currency.substr(0, 3)
                + "; Saldo liest nur Kontoauszuege in Euro.");
        if (date)
            booking.bookingDate = *date;
        if (const auto valued = BankValueText::date(cell(valuta), profile.dateFormat))
            booking.valueDate = *valued;
        booking.cents = *cents;
        booking.partner = BankText::tidy(cell(partner));
        if (booking.partner.empty())
            booking.partner = BankText::tidy(cell(*cents >= 0 ? partnerIn : partnerOut));
        booking.iban = BankText::tidy(cell(iban));
        // No bank writes more than a few lines of text; a longer cell is cut.
        booking.text = BankText::cut(BankText::tidy(cell(textColumn)), kMaxText);
        booking.reference = BankText::tidy(cell(referenz));
        if (booking.reference == "NOTPROVIDED")
            booking.reference.clear();
        booking.bookingText = BankText::tidy(cell(buchungsart));
        if (profile.hasMarkers())
            splitMarkers(booking, profile);
        if (statement.bookings.size() == Statement::kMaxBookings)
            throw StatementError("Die Datei hat mehr als " + std::to_string(Statement::kMaxBookings) + " Buchungen.");
        statement.bookings.push_back(std::move(booking));
    }
    if (statement.bookings.empty() && statement.skippedLines > 0)
        throw StatementError("Keine Zeile der Datei liest sich als Buchung im Format \"" + profile.name + "\".");
    return statement;
}

} // namespace saldo
