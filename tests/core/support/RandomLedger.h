#pragma once
// Random ledgers for the tests of the tax office's and the adviser's figures.
#include "model/Einnahme.h"
#include "model/Kategorien.h"

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace saldo::testing {

// A ledger of whatever a user or another program might have put into one:
// texts in every script, with quotes, semicolons and line breaks; amounts
// negative, zero, tiny, huge and not a number; rates the tax keys know and
// others; categories with and without a four-digit number; split bookings
// two levels deep; dates spread over the span given, and some that are not a
// point in time.
class RandomLedger {
public:
    explicit RandomLedger(std::uint64_t draw)
        : rng_(draw)
        , chart_(Kategorien::defaultKategorien())
    {
        chart_.insert(chart_.end(), { "Ohne Nummer", "8400Erlöse", "123 Drei", "99999 Fünf", "" });
    }

    EinnahmeList make(std::size_t count, double firstDatum, double span)
    {
        EinnahmeList ledger;
        for (std::size_t i = 0; i < count; ++i) {
            EinnahmePtr entry = one();
            entry->setDatum(pick(50) == 0 ? std::nan("") : firstDatum + uniform(span));
            if (pick(8) == 0)
                entry->setChildTransactions(children(2));
            ledger.push_back(entry);
        }
        return ledger;
    }

private:
    std::size_t pick(std::size_t n) { return static_cast<std::size_t>(rng_() % n); }
    double uniform(double span) { return std::uniform_real_distribution<double>(0.0, span)(rng_); }

    EinnahmeList children(int depth)
    {
        EinnahmeList list;
        for (std::size_t k = 0, n = 1 + pick(3); k < n; ++k) {
            EinnahmePtr child = one();
            if (depth > 1 && pick(4) == 0)
                child->setChildTransactions(children(depth - 1));
            list.push_back(child);
        }
        return list;
    }

    EinnahmePtr one()
    {
        static const char* const texts[] = { "Miete", "Bürobedarf Müller & Söhne", "Zitat \"ja\"; nein",
            "Zeile 1\r\nZeile 2\tTab", "日本語のテキスト", "Emoji 🙂🙂", "Ω≈ç√∫", "A\xCC\x88rger", "kaputt\xFF",
            "Eine sehr lange Beschreibung, die weit über sechzig Zeichen hinausgeht und abgeschnitten wird", "",
            "€ 19 % ‰ „Anführung“ – ‚einfach‘", "\xC2\x81\xC2\x8D Steuer\x01zeichen" };
        static const char* const numbers[] = { "", "2025-001", "RE 2025/17", "Größe_1", "#12.3", "Nº 7",
            "1234567890123456789012345678901234567890", "$&%*+-/", "日本" };
        static const float rates[] = { 19.0f, 19.0f, 7.0f, 7.0f, 0.0f, 16.0f, 10.7f, -1.0f, std::nanf("") };
        const float amounts[]
            = { static_cast<float>(pick(1'000'000)) / 100.0f, -static_cast<float>(pick(100'000)) / 100.0f, 0.0f, 0.004f,
                  9.9e9f, 2e10f, std::nanf(""), static_cast<float>(pick(10'000)) / 100.0f };
        auto entry = Einnahme::make(texts[pick(std::size(texts))], chart_[pick(chart_.size())],
            amounts[pick(std::size(amounts))], rates[pick(std::size(rates))]);
        entry->setArt(pick(2) == 0 ? kArtEinnahme : kArtAusgabe);
        entry->setInnergemeinschaftlicherErwerb(pick(6) == 0);
        entry->setIsNonEU(pick(6) == 0);
        entry->setRechnungsnummer(numbers[pick(std::size(numbers))]);
        return entry;
    }

    std::mt19937_64 rng_;
    std::vector<std::string> chart_;
};

} // namespace saldo::testing
