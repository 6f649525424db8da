#pragma once

#include "exchange/DatevPeriod.h"
#include "model/Einnahme.h"
#include "platform/Clock.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace saldo {

// What an export is asked for: the adviser's and the client's numbers, the
// fiscal year's first month, the money account, the days (from and to
// included), the batch's name and the moment it is made.
struct DatevExportRequest {
    std::uint32_t beraternummer = 0;
    std::uint32_t mandantennummer = 0;
    int wirtschaftsjahrBeginn = 1;
    std::uint32_t konto = 1200;
    LocalDay from;
    LocalDay to;
    std::string bezeichnung;
    ReferenceSeconds erzeugtAm = 0;
    // The adviser's system takes at most this many bookings per batch.
    std::size_t maxBookingsPerFile = 99999;
};

// One file of an export: a whole booking batch in Windows-1252.
struct DatevBatchFile {
    DatevPeriod period;
    // Part `part` of `parts` when the period's bookings need several batches.
    std::size_t part = 1;
    std::size_t parts = 1;
    std::string bytes;
    std::size_t bookings = 0;
    // The amounts on the debit (S) and the credit (H) side, in cents.
    std::int64_t sollCents = 0;
    std::int64_t habenCents = 0;
};

// An item of the period that is not written, with its row ("12", "12.2.1") and why.
struct DatevSkippedItem {
    std::string row;
    std::string reason;
};

// An item whose invoice number went into Belegfeld 1 changed (a split booking
// without a number of its own takes its entry's).
struct DatevBelegfeldChange {
    std::string row;
    std::string rechnungsnummer;
    std::string belegfeld;
};

struct DatevExportResult {
    std::vector<DatevBatchFile> files;
    std::vector<DatevSkippedItem> skipped;
    std::vector<DatevBelegfeldChange> belegfeldChanges;
    std::size_t bookings = 0;
    // Items of the period whose amount is 0 cents: not written, only counted.
    std::size_t zeroItems = 0;
    // Characters Windows-1252 cannot hold, written as "?".
    std::size_t replacedCharacters = 0;
};

// The ledger as booking batches for the tax adviser. Every item (an entry
// without split bookings, or a leaf split booking) whose top-level entry's
// local day lies in the chosen days becomes one booking (DatevBooking), in the
// ledger's order, in the batch of its calendar year and fiscal year
// (DatevPeriod). A split booking without an invoice number of its own is
// written with its entry's, as part of the same receipt. A batch whose bookings exceed the adviser's limit of 99,999
// is written as several parts over the same days, in the ledger's order. An
// item that cannot be written is listed with its row and reason and the rest
// is still written; an amount of 0 cents is left out and counted. An entry
// whose date is not a point in time is in no period: its items are listed
// ("Datum ungueltig") whatever days are chosen. Every batch of the days is
// written, also one without bookings.
class DatevExport {
public:
    // Empty when the request can be carried out, else one German sentence.
    static std::string requestFault(const DatevExportRequest& request);

    // Throws std::invalid_argument for a request with a fault.
    static DatevExportResult run(const EinnahmeList& entries, const DatevExportRequest& request);

    // The file each batch goes to when the user chose `path`: the path itself
    // for a single batch; else the batch's year is put before the extension
    // ("DATEV.csv" gives "DATEV-2024.csv" and "DATEV-2025.csv"), with the
    // month after it when the fiscal year does not begin in January
    // ("DATEV-2025-07.csv"), and "-teil1", "-teil2" … for the parts of a batch.
    static std::vector<std::string> filePaths(const std::string& path, const std::vector<DatevBatchFile>& files);

    // Writes every batch to its file through the atomic writer, never over a
    // file that holds a ledger; throws FileWriteError at the first that fails
    // (files written before it stay).
    static void write(const std::vector<std::string>& paths, const DatevExportResult& result);
};

} // namespace saldo
