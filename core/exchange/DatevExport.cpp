#include "exchange/DatevExport.h"

#include "exchange/Cp1252Text.h"
#include "exchange/DatevBatchHeader.h"
#include "exchange/DatevBooking.h"
#include "model/LedgerFile.h"
#include "settings/DatevSettings.h"
#include "tax/EuerEvaluation.h"
#include "tax/TaxItems.h"

#include <stdexcept>

namespace saldo {

namespace {

constexpr std::size_t kLargestBatch = 99999;

// The bookings of one period as they are written, cut into parts of at most
// the batch limit.
struct PeriodRows {
    struct Part {
        std::size_t begin = 0; // offset in `lines`
        std::size_t bookings = 0;
        std::int64_t sollCents = 0;
        std::int64_t habenCents = 0;
    };
    DatevPeriod period;
    std::string lines;
    std::vector<Part> parts { Part {} };
};

std::string twoDigits(int value)
{
    return { static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10) };
}

} // namespace

std::string DatevExport::requestFault(const DatevExportRequest& request)
{
    if (!DatevSettings::isBeraternummer(request.beraternummer))
        return "Die Beraternummer muss zwischen 1001 und 9999999 liegen.";
    if (!DatevSettings::isMandantennummer(request.mandantennummer))
        return "Die Mandantennummer muss zwischen 1 und 99999 liegen.";
    if (request.wirtschaftsjahrBeginn < 1 || request.wirtschaftsjahrBeginn > 12)
        return "Der Beginn des Wirtschaftsjahres muss ein Monat von 1 bis 12 sein.";
    if (request.konto < 1 || request.konto > 9999)
        return "Das Geldkonto muss eine Kontonummer mit hoechstens vier Ziffern sein.";
    if (!LocalDay::exists(request.from.year, request.from.month, request.from.day)
        || !LocalDay::exists(request.to.year, request.to.month, request.to.day))
        return "Der Zeitraum nennt einen Tag, den es nicht gibt.";
    if (request.to < request.from)
        return "Der Zeitraum endet vor seinem Beginn.";
    if (request.maxBookingsPerFile < 1 || request.maxBookingsPerFile > kLargestBatch)
        return "Ein Buchungsstapel fasst 1 bis 99999 Buchungen.";
    return {};
}

DatevExportResult DatevExport::run(const EinnahmeList& entries, const DatevExportRequest& request)
{
    if (const std::string fault = requestFault(request); !fault.empty())
        throw std::invalid_argument(fault);

    std::vector<PeriodRows> periods;
    for (const DatevPeriod& period : DatevPeriod::split(request.from, request.to, request.wirtschaftsjahrBeginn))
        periods.push_back(PeriodRows { period, {}, { PeriodRows::Part {} } });

    DatevExportResult result;
    Cp1252Text text;
    const Einnahme* lastTop = nullptr;
    PeriodRows* rows = nullptr; // the period of lastTop's day, or none
    bool dated = true;
    LocalDay day;
    tax::forEachItem(entries, [&](const Einnahme& item, const Einnahme& top, tax::ItemRow row) {
        if (&top != lastTop) {
            lastTop = &top;
            rows = nullptr;
            const std::optional<LocalDay> topDay = LocalDay::of(top.datum());
            dated = topDay.has_value();
            if (dated) {
                day = *topDay;
                for (PeriodRows& candidate : periods) {
                    if (day >= candidate.period.vom && day <= candidate.period.bis)
                        rows = &candidate;
                }
            }
        }
        // An entry whose date is no point in time belongs to no period, and
        // is named in every export so that it is not lost.
        if (!dated)
            result.skipped.push_back({ tax::rowText(row), tax::kDatumUngueltig });
        if (!rows)
            return;
        // A split booking without an invoice number of its own is part of its entry's receipt.
        const std::string& rechnungsnummer
            = item.rechnungsnummer().empty() ? top.rechnungsnummer() : item.rechnungsnummer();
        DatevBookingOutcome made = DatevBooking::make(item, day, rechnungsnummer, request.konto);
        if (!made.fault.empty()) {
            result.skipped.push_back({ tax::rowText(row), std::move(made.fault) });
            return;
        }
        if (!made.booking) {
            ++result.zeroItems;
            return;
        }
        const DatevBooking& booking = *made.booking;
        if (booking.belegfeld != rechnungsnummer)
            result.belegfeldChanges.push_back({ tax::rowText(row), rechnungsnummer, booking.belegfeld });
        if (rows->parts.back().bookings == request.maxBookingsPerFile)
            rows->parts.push_back(PeriodRows::Part { rows->lines.size() });
        PeriodRows::Part& part = rows->parts.back();
        booking.appendLine(rows->lines, item.name(), text);
        ++part.bookings;
        (booking.side == 'S' ? part.sollCents : part.habenCents) += booking.umsatzCents;
        ++result.bookings;
    });

    std::string headings;
    DatevBatchHeader::appendHeadings(headings, text);
    for (PeriodRows& rows : periods) {
        for (std::size_t i = 0; i < rows.parts.size(); ++i) {
            const PeriodRows::Part& part = rows.parts[i];
            const std::size_t end = i + 1 < rows.parts.size() ? rows.parts[i + 1].begin : rows.lines.size();
            DatevBatchFile file;
            file.period = rows.period;
            file.part = i + 1;
            file.parts = rows.parts.size();
            file.bookings = part.bookings;
            file.sollCents = part.sollCents;
            file.habenCents = part.habenCents;
            DatevBatchHeader header { request.erzeugtAm, request.beraternummer, request.mandantennummer, rows.period,
                request.bezeichnung, {} };
            if (file.parts > 1)
                header.bezeichnungEnding = " Teil " + std::to_string(file.part) + '/' + std::to_string(file.parts);
            std::string head;
            header.appendLine(head, text);
            head += headings;
            if (file.parts == 1) { // the lines become the file, without a second copy of them
                rows.lines.insert(0, head);
                file.bytes = std::move(rows.lines);
            } else {
                file.bytes.reserve(head.size() + end - part.begin);
                file.bytes = head;
                file.bytes.append(rows.lines, part.begin, end - part.begin);
            }
            result.files.push_back(std::move(file));
        }
    }
    result.replacedCharacters = text.replaced();
    return result;
}

std::vector<std::string> DatevExport::filePaths(const std::string& path, const std::vector<DatevBatchFile>& files)
{
    if (files.size() == 1)
        return { path };
    const std::size_t slash = path.rfind('/');
    const std::size_t nameStart = slash == std::string::npos ? 0 : slash + 1;
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || dot <= nameStart)
        dot = path.size();
    std::vector<std::string> paths;
    for (const DatevBatchFile& file : files) {
        std::string suffix = '-' + std::to_string(file.period.vom.year);
        if (file.period.wirtschaftsjahrBeginn.month != 1)
            suffix += '-' + twoDigits(file.period.vom.month);
        if (file.parts > 1)
            suffix += "-teil" + std::to_string(file.part);
        paths.push_back(path.substr(0, dot) + suffix + path.substr(dot));
    }
    return paths;
}

void DatevExport::write(const std::vector<std::string>& paths, const DatevExportResult& result)
{
    for (std::size_t i = 0; i < result.files.size() && i < paths.size(); ++i)
        LedgerFile::writeBesideLedgers(paths[i], result.files[i].bytes);
}

} // namespace saldo
