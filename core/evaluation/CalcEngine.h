#pragma once

#include "evaluation/CategoryGroups.h"
#include "model/Einnahme.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace saldo {

// The evaluation report: turns an entry list into one plain German text of
// gross, net and tax amounts, in total, per VAT class, per tax flag, per
// category, per month and per quarter. One shared instance serves the whole
// process; every calculate replaces the results of the previous one.
class CalcEngine {
public:
    void calculate(EinnahmeList entries);

    const EinnahmeList& einnahmen() const { return einnahmen_; }
    const std::string& ergebnisString() const { return ergebnisString_; }
    std::int64_t ergebnisStringRows() const { return ergebnisStringRows_; }
    const std::vector<std::string>& ergebnisStringAsArray() const { return ergebnisStringAsArray_; }

private:
    // What every step needs of one entry, taken from the list once per calculate
    // so that the steps run over a compact array in list order.
    struct Row {
        float brutto;
        float netto;  // single precision, computed as the entry's own net amount
        std::uint32_t group;  // category group, numbered by first appearance
        std::uint8_t month;  // local month 1..12
        std::uint8_t flags;  // kIncome, kInnergem, kNonEU
        std::uint8_t rateSlot;  // kSlot0, kSlot7, kSlot19, kSlotOther
    };
    static constexpr std::uint8_t kIncome = 1, kInnergem = 2, kNonEU = 4;
    static constexpr std::uint8_t kSlot0 = 1, kSlot7 = 2, kSlot19 = 3, kSlotOther = 4;

    // Gross and net sums of income and of expense, accumulated in list order.
    struct Sums {
        float bruttoEinnahme = 0.0f, nettoEinnahme = 0.0f;
        float bruttoAusgabe = 0.0f, nettoAusgabe = 0.0f;
        void add(const Row& row)
        {
            if (row.flags & kIncome) {
                bruttoEinnahme += row.brutto;
                nettoEinnahme += row.netto;
            } else {
                bruttoAusgabe += row.brutto;
                nettoAusgabe += row.netto;
            }
        }
    };
    // The five labels of a six-line block (the tax label serves both kinds).
    struct BlockLabels {
        const char* bruttoEinnahme;
        const char* nettoEinnahme;
        const char* steuerbetrag;
        const char* bruttoAusgabe;
        const char* nettoAusgabe;
    };

    void digest();
    void appendTotals();
    void appendRate19();
    void appendRate7();
    void appendRate0();
    void appendRateOther();
    void appendInnergem();
    void appendNonEU();
    void appendCategories();
    void appendMonths();
    void appendQuarters();
    void appendSeparatorLine();

    template <typename Predicate> Sums sumWhere(Predicate selected) const;
    void appendBlock(const Sums& sums, const BlockLabels& labels, const char* lastEnd);
    void appendLine(const char* label, float amount, const char* end);
    void appendCategoryLine(const char* prefix, std::uint32_t entryIndex, float amount, const char* end);
    void appendPeriods(const char* const names[], int periods, const std::uint8_t periodOfMonth[13]);
    void splitLines();

    EinnahmeList einnahmen_;
    std::string ergebnisString_;
    std::int64_t ergebnisStringRows_ = 0;
    std::vector<std::string> ergebnisStringAsArray_;

    // Working state of one calculate, kept only to reuse its memory.
    std::vector<Row> rows_;
    std::vector<double> datums_;
    CategoryGroups groups_;
};

// The one engine of the process, made on first use.
CalcEngine& sharedCalcEngine();

// The process-wide income limit: unset at start, never stored. When set, every
// calculate whose gross income is greater than it plays "Ping".
std::optional<float>& einnahmenLimit();

}  // namespace saldo
