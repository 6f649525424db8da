#pragma once

#include "model/Einnahme.h"
#include "model/Kategorien.h"
#include "model/LedgerFile.h"

#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace saldo::bench {

// A ledger that looks like a real one: German names and service texts,
// categories of the default chart, invoice numbers on most entries, amounts
// in cents, dates spread over a year with their time of day, and 5 % of the
// entries split into one to three bookings. Without a year the dates span the
// 366 days from 2 January 2024, 00:00 UTC; with one, that calendar year in UTC.
// The same count and year always give the same ledger (fixed rng state).
inline EinnahmeList realisticLedger(std::size_t count, std::optional<int> year = std::nullopt)
{
    // Where the dates start, and the span they are spread over.
    const auto leap = [](int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; };
    double yearStart = 725'846'400.0;
    std::size_t yearSeconds = 366 * std::size_t(86'400);
    if (year) {
        yearStart = 0.0;
        for (int y = 2001; y < *year; ++y)
            yearStart += (leap(y) ? 366 : 365) * 86'400.0;
        for (int y = *year; y < 2001; ++y)
            yearStart -= (leap(y) ? 366 : 365) * 86'400.0;
        yearSeconds = (leap(*year) ? 366 : 365) * std::size_t(86'400);
    }
    static const char* const names[] = { "Miete Büro Hauptstraße", "Bürobedarf Müller & Söhne", "Telefon und Internet",
        "Beratung Schäfer GmbH", "Fahrtkosten Köln–Düsseldorf", "Honorar Projekt Übersetzung", "Porto", "Strom",
        "Versicherung Betriebshaftpflicht", "Software-Abonnement", "Reparatur Drucker", "Bewirtung Kunde Weiß",
        "Fortbildung Steuerrecht", "Zeitschriften", "Werbung Anzeige Lokalblatt", "Webhosting", "Kontoführung",
        "Verkauf Ware an Meier", "Provision Großhändler", "Lizenzgebühr" };
    static const char* const leistungen[]
        = { "", "", "Beratung", "Lieferung", "Dienstleistung", "Wartung", "Übersetzung", "Schulung" };
    static const float rates[] = { 19.0f, 19.0f, 19.0f, 7.0f, 0.0f };
    const std::vector<std::string> chart = Kategorien::defaultKategorien();

    std::mt19937_64 rng(20240101);
    auto pick = [&](std::size_t n) { return static_cast<std::size_t>(rng() % n); };
    auto make = [&](std::size_t i) {
        Einnahme::Stored s;
        s.name = names[pick(std::size(names))];
        s.kategorie = chart[pick(chart.size())];
        s.art = pick(3) == 0 ? kArtEinnahme : kArtAusgabe;
        s.innergemeinschaftlicherErwerb = pick(50) == 0;
        s.isNonEU = !s.innergemeinschaftlicherErwerb && pick(50) == 0;
        s.brutto = static_cast<float>(pick(500'000)) / 100.0f;
        s.steuersatz = rates[pick(std::size(rates))];
        // With seconds and a fraction of a second.
        s.datum = yearStart + static_cast<double>(pick(yearSeconds)) + static_cast<double>(pick(1000)) / 1000.0;
        if (pick(10) != 0)
            s.rechnungsnummer = "RE-2024-" + std::to_string(100'000 + i);
        if (pick(4) == 0)
            s.steuernummer = "12/345/" + std::to_string(10'000 + pick(90'000));
        s.leistungsart = leistungen[pick(std::size(leistungen))];
        return s;
    };
    EinnahmeList entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        Einnahme::Stored s = make(i);
        if (pick(20) == 0) {
            const std::size_t parts = 1 + pick(3);
            for (std::size_t k = 0; k < parts; ++k)
                s.childTransactions.push_back(Einnahme::restore(make(i)));
        }
        entries.push_back(Einnahme::restore(std::move(s)));
    }
    return entries;
}

// With SALDO_BENCH_LEDGER=FILE, the entries of that file, read once, stand in
// for the made ledger of every size (run one size with --benchmark_filter).
inline const EinnahmeList* ledgerFromFile()
{
    static const std::optional<EinnahmeList> read = []() -> std::optional<EinnahmeList> {
        const char* path = std::getenv("SALDO_BENCH_LEDGER");
        if (!path || !*path)
            return std::nullopt;
        return LedgerFile::read(path);
    }();
    return read ? &*read : nullptr;
}

// The realistic ledger of that size, made once per process and then shared.
// `readFromFile`: as a program has it after reading it from a file, its
// entries lying together and each repeated text held once.
inline const EinnahmeList& cachedRealisticLedger(std::size_t count, bool readFromFile = false)
{
    if (const EinnahmeList* file = ledgerFromFile())
        return *file;
    static std::map<std::pair<std::size_t, bool>, EinnahmeList> ledgers;
    auto it = ledgers.find({ count, readFromFile });
    if (it == ledgers.end()) {
        EinnahmeList made = realisticLedger(count);
        if (readFromFile)
            made = LedgerFile::decode(LedgerFile::encode(made));
        it = ledgers.emplace(std::pair { count, readFromFile }, std::move(made)).first;
    }
    return it->second;
}

} // namespace saldo::bench
