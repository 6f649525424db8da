#pragma once

#include "evaluation/CategoryGroups.h"
#include "evaluation/LimitWarning.h"
#include "model/Einnahme.h"
#include "model/SnapshotGate.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace saldo {

// The evaluation report: turns an entry list into one plain German text of
// gross, net and tax amounts, in total, per VAT class, per tax flag, per
// category, per month and per quarter. One shared instance serves the whole
// process; every calculate replaces the results of the previous one.
class CalcEngine {
public:
    void calculate(EinnahmeList entries);
    // The same report, computed by a worker thread over a snapshot of a list
    // while the main thread goes on (see SnapshotGate). It plays no sound:
    // the caller plays "Ping" on the main thread when it has a limitWarning().
    // The income limit is the one in force when the caller took the snapshot.
    void calculateSnapshot(EinnahmeList snapshot, const SnapshotGate& gate, std::optional<float> limit);

    const EinnahmeList& einnahmen() const { return einnahmen_; }
    const std::string& ergebnisString() const { return ergebnisString_; }
    std::int64_t ergebnisStringRows() const { return ergebnisStringRows_; }
    const std::vector<std::string>& ergebnisStringAsArray() const { return ergebnisStringAsArray_; }
    // Set when the last calculate found the gross income over the income
    // limit (a calculate plays "Ping" then), so that a view can say so
    // without evaluating the list a second time.
    const std::optional<LimitWarning>& limitWarning() const { return limitWarning_; }

private:
    // What the period steps need of one entry, taken from the list in one pass.
    struct Row {
        double datum;
        float brutto;
        float netto; // single precision, computed as the entry's own net amount
        std::uint8_t kind; // 0 income, 1 expense
        std::uint8_t rateSlot; // kSlot0, kSlot7, kSlot19, kSlotOther
    };
    static constexpr std::uint8_t kSlot0 = 1, kSlot7 = 2, kSlot19 = 3, kSlotOther = 4;

    // Gross and net sums of income and of expense, accumulated in list order.
    struct Sums {
        float bruttoEinnahme = 0.0f, nettoEinnahme = 0.0f;
        float bruttoAusgabe = 0.0f, nettoAusgabe = 0.0f;
    };
    // The sums of the first seven blocks: all entries, the four rate classes
    // (indexed by rate slot) and the two flags.
    static constexpr int kAll = 0, kInnergem = 5, kNonEU = 6;
    // Gross and net of one kind of one category group, in list order.
    struct GroupSums {
        float brutto = 0.0f, netto = 0.0f;
        bool started = false;
    };
    // Per kind (0 income, 1 expense) slot 0 for all entries and slots 1..4 per rate class.
    struct PeriodTables {
        float brutto[2][5];
        float netto[2][5];
    };
    // The five labels of a six-line block (the tax label serves both kinds).
    struct BlockLabels {
        const char* bruttoEinnahme;
        const char* nettoEinnahme;
        const char* steuerbetrag;
        const char* bruttoAusgabe;
        const char* nettoAusgabe;
    };

    void run(EinnahmeList entries, const SnapshotGate* gate, std::optional<float> limit);
    void digest(const SnapshotGate* gate);
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

    void tallyPeriods(double earliest, double latest);
    void appendBlock(const Sums& sums, const BlockLabels& labels, const char* lastEnd);
    void appendLine(const char* label, float amount, const char* end);
    // The category text of the entry at `entryIndex`, one that starts a run or a kind of a run.
    void appendCategoryLine(const char* prefix, std::uint32_t entryIndex, float amount, const char* end);
    void appendPeriods(const PeriodTables tables[], const char* const names[], int periods);
    void splitLines();

    EinnahmeList einnahmen_;
    std::string ergebnisString_;
    std::int64_t ergebnisStringRows_ = 0;
    std::vector<std::string> ergebnisStringAsArray_;
    std::optional<LimitWarning> limitWarning_;
    std::optional<float> limit_; // the income limit of the calculate under way

    // Working state of one calculate: the sums every step writes from, taken in
    // list order, one entry at a time (kept between calls only for its memory).
    std::vector<Row> rows_;
    CategoryGroups groups_;
    // The category texts of the entries a category line names (the first of a
    // run, of its income, of its expenses), by entry index: copied while the
    // entries are read, so that the text is written from the values read.
    std::unordered_map<std::uint32_t, std::string> runTexts_;
    Sums blockSums_[7];
    std::vector<GroupSums> incomeByGroup_, expenseByGroup_;
    PeriodTables months_[12];
    PeriodTables quarters_[4];
};

// The one engine of the process, made on first use.
CalcEngine& sharedCalcEngine();

// The process-wide income limit: unset at start, never stored. When set, every
// calculate whose gross income is greater than it plays "Ping".
std::optional<float>& einnahmenLimit();

} // namespace saldo
