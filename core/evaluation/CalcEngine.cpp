#include "evaluation/CalcEngine.h"

#include "evaluation/AmountFormat.h"
#include "evaluation/MonthTable.h"
#include "model/HugePageMemory.h"
#include "platform/Sound.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace saldo {
namespace {

// Line ends of the report.
constexpr const char* kEndA = "  \n";
constexpr const char* kEndB = " \n\n";
constexpr const char* kEndC = "\n\n";
constexpr const char* kEndD = "  \n\n";

} // namespace

CalcEngine& sharedCalcEngine()
{
    static CalcEngine* const engine = new CalcEngine; // lives until the process ends
    return *engine;
}

std::optional<float>& einnahmenLimit()
{
    static std::optional<float> limit;
    return limit;
}

void CalcEngine::calculate(EinnahmeList entries)
{
    run(std::move(entries), nullptr, einnahmenLimit());
    if (limitWarning_)
        playSound("Ping");
}

void CalcEngine::calculateSnapshot(EinnahmeList snapshot, const SnapshotGate& gate, std::optional<float> limit)
{
    run(std::move(snapshot), &gate, limit);
}

void CalcEngine::run(EinnahmeList entries, const SnapshotGate* gate, std::optional<float> limit)
{
    limit_ = limit;
    einnahmen_ = std::move(entries);
    ergebnisString_.clear();
    ergebnisStringRows_ = 0;
    limitWarning_.reset();
    if (einnahmen_.empty()) {
        ergebnisStringAsArray_.clear();
        return;
    }
    digest(gate);
    appendTotals();
    appendRate19();
    appendRate7();
    appendRate0();
    appendRateOther();
    appendInnergem();
    appendNonEU();
    appendCategories();
    appendMonths();
    appendQuarters();
    splitLines();
    runTexts_.clear();
}

// One pass over the entries in list order: each entry's net amount, kind and
// rate class, the sums of the first seven blocks and the per-category sums.
// Every sum is its own single-precision accumulator, so adding each entry to
// all of its sums in one pass gives the same values as one pass per block.
void CalcEngine::digest(const SnapshotGate* gate)
{
    const std::size_t count = einnahmen_.size();
    if (rows_.capacity() < count) {
        // Fresh storage, faulted in at once and for a large list in huge pages:
        // the first report of a million entries would otherwise fault in 6,000
        // small ones, one at a time.
        rows_ = std::vector<Row>();
        rows_.reserve(count);
        HugePageMemory::prepareToFill(rows_.data(), count * sizeof(Row));
    }
    rows_.resize(count);
    groups_.reset();
    for (Sums& sums : blockSums_)
        sums = Sums {};
    incomeByGroup_.clear();
    expenseByGroup_.clear();
    runTexts_.clear();
    // Under a gate, the entries are read in batches, each under its lock.
    constexpr std::size_t kBatch = 4096;
    std::unique_lock<std::mutex> batch;
    if (gate)
        batch = gate->lockBatch();
    // The entries and their category texts lie wherever the allocator put
    // them: fetch the entries well ahead, and their texts once the entries
    // are in the cache.
    constexpr std::size_t kEntryAhead = 16, kTextAhead = 8;
    double earliest = std::numeric_limits<double>::infinity(); // NaN dates are left out
    double latest = -earliest;
    for (std::size_t i = 0; i < count; ++i) {
        if (i + kEntryAhead < count) {
            const Einnahme* ahead = einnahmen_[i + kEntryAhead].get();
            __builtin_prefetch(ahead);
            __builtin_prefetch(reinterpret_cast<const char*>(ahead) + 64);
        }
        if (gate && i % kBatch == 0 && i != 0) {
            batch.unlock();
            batch.lock();
        }
        if (i + kTextAhead < count && !gate) {
            const Einnahme& ahead = *einnahmen_[i + kTextAhead];
            __builtin_prefetch(&ahead.kategorie());
            __builtin_prefetch(&ahead.art());
        }
        const Einnahme& e = gate ? gate->values(*einnahmen_[i]) : *einnahmen_[i];
        Row& row = rows_[i];
        const float brutto = e.brutto();
        const float steuersatz = e.steuersatz();
        const float netto = Einnahme::nettoOf(brutto, steuersatz);
        const bool income = e.art() == kArtEinnahme || e.isIncome();
        // Exact single-precision equality: -0 is 0, a NaN rate is "other".
        const std::uint8_t slot = steuersatz == 19.0f ? kSlot19
            : steuersatz == 7.0f                      ? kSlot7
            : steuersatz == 0.0f                      ? kSlot0
                                                      : kSlotOther;
        row = Row { e.datum(), brutto, netto, static_cast<std::uint8_t>(income ? 0 : 1), slot };
        earliest = std::min(earliest, row.datum);
        latest = std::max(latest, row.datum);

        auto add = [&](Sums& sums) {
            if (income) {
                sums.bruttoEinnahme += brutto;
                sums.nettoEinnahme += netto;
            } else {
                sums.bruttoAusgabe += brutto;
                sums.nettoAusgabe += netto;
            }
        };
        add(blockSums_[kAll]);
        add(blockSums_[slot]);
        if (e.innergemeinschaftlicherErwerb())
            add(blockSums_[kInnergem]);
        if (e.isNonEU())
            add(blockSums_[kNonEU]);

        const std::uint32_t group = groups_.add(e.kategorie(), income);
        const CategoryGroups::Group& named = groups_.groups()[group];
        if (named.first == i || named.firstIncome == i || named.firstExpense == i)
            runTexts_.emplace(static_cast<std::uint32_t>(i), e.kategorie());
        if (group >= incomeByGroup_.size()) {
            incomeByGroup_.resize(group + 1);
            expenseByGroup_.resize(group + 1);
        }
        GroupSums& g = income ? incomeByGroup_[group] : expenseByGroup_[group];
        if (g.started) {
            g.brutto += brutto;
            g.netto += netto;
        } else {
            g = GroupSums { brutto, netto, true };
        }
    }
    tallyPeriods(earliest, latest);
    ergebnisString_.reserve(6000 + 400 * groups_.groups().size());
}

// Month and quarter tables: every entry adds to slot 0 and to its rate class's
// slot of its month and of its quarter, in list order.
void CalcEngine::tallyPeriods(double earliest, double latest)
{
    const MonthTable table(earliest, latest);
    for (PeriodTables& t : months_)
        t = PeriodTables {};
    for (PeriodTables& t : quarters_)
        t = PeriodTables {};
    for (const Row& row : rows_) {
        const int month = table.monthOf(row.datum);
        for (PeriodTables* t : { &months_[month - 1], &quarters_[(month - 1) / 3] }) {
            t->brutto[row.kind][0] += row.brutto;
            t->brutto[row.kind][row.rateSlot] += row.brutto;
            t->netto[row.kind][0] += row.netto;
            t->netto[row.kind][row.rateSlot] += row.netto;
        }
    }
}

void CalcEngine::appendLine(const char* label, float amount, const char* end)
{
    ergebnisString_ += label;
    AmountFormat::append(ergebnisString_, amount);
    ergebnisString_ += end;
}

void CalcEngine::appendBlock(const Sums& s, const BlockLabels& labels, const char* lastEnd)
{
    appendLine(labels.bruttoEinnahme, s.bruttoEinnahme, kEndA);
    appendLine(labels.nettoEinnahme, s.nettoEinnahme, kEndA);
    appendLine(labels.steuerbetrag, s.bruttoEinnahme - s.nettoEinnahme, kEndB);
    appendLine(labels.bruttoAusgabe, s.bruttoAusgabe, kEndA);
    appendLine(labels.nettoAusgabe, s.nettoAusgabe, kEndA);
    appendLine(labels.steuerbetrag, s.bruttoAusgabe - s.nettoAusgabe, lastEnd);
}

void CalcEngine::appendSeparatorLine()
{
    ergebnisString_ += ' ';
    ergebnisString_.append(80, '-');
    ergebnisString_ += kEndB;
}

void CalcEngine::appendTotals()
{
    const Sums& sums = blockSums_[kAll];
    if (limit_ && sums.bruttoEinnahme > *limit_)
        limitWarning_ = LimitWarning { sums.bruttoEinnahme, *limit_ };
    appendBlock(sums,
        { "Bruttoeinnahme:\t\t ", "Nettoeinnahme:\t\t ", "Steuerbetrag:\t\t\t ", "BruttoAusgabe:  \t\t ",
            "NettoAusgabe:  \t\t " },
        kEndB);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendRate19()
{
    appendBlock(blockSums_[kSlot19],
        { "Bruttoeinnahme(19 %):\t ", "Nettoeinnahme(19 %):\t ", "Steuerbetrag(19 %):\t\t ",
            "BruttoAusgabe(19 %):  \t ", "NettoAusgabe(19 %):  \t " },
        kEndB);
    ergebnisStringRows_ += 6;
}

void CalcEngine::appendRate7()
{
    // The income gross label of this block has no opening parenthesis.
    appendBlock(blockSums_[kSlot7],
        { "Bruttoeinnahme7 %):\t ", "Nettoeinnahme(7 %):\t ", "Steuerbetrag(7 %):\t\t ", "BruttoAusgabe(7 %):  \t ",
            "NettoAusgabe(7 %):  \t " },
        kEndB);
    ergebnisStringRows_ += 6;
}

void CalcEngine::appendRate0()
{
    // The income gross label of this block has no opening parenthesis.
    appendBlock(blockSums_[kSlot0],
        { "Bruttoeinnahme0 %):\t ", "Nettoeinnahme(0 %):\t ", "Steuerbetrag(0 %):\t\t ", "BruttoAusgabe(0 %):  \t ",
            "NettoAusgabe(0 %):  \t " },
        kEndC);
    ergebnisStringRows_ += 6;
}

void CalcEngine::appendRateOther()
{
    appendBlock(blockSums_[kSlotOther],
        { "Bruttoeinnahme(X %):\t ", "Nettoeinnahme(X %):\t ", "Steuerbetrag(X %):\t\t ", "BruttoAusgabe(X %):  \t ",
            "NettoAusgabe(X %):  \t " },
        kEndC);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendInnergem()
{
    appendBlock(blockSums_[kInnergem],
        { "Bruttoeinnahme(innergem):\t ", "Nettoeinnahme(innergem):\t ", "Steuerbetrag(innergem):\t\t ",
            "BruttoAusgabe(innergem):  \t ", "NettoAusgabe(innergem):  \t " },
        kEndC);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendNonEU()
{
    appendBlock(blockSums_[kNonEU],
        { "Bruttoeinnahme(non EU):\t\t ", "Nettoeinnahme(non EU):\t\t ", "Steuerbetrag(non EU):\t\t ",
            "BruttoAusgabe(non EU): \t \t ", "NettoAusgabe(non EU):  \t\t " },
        kEndC);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendCategoryLine(const char* prefix, std::uint32_t entryIndex, float amount, const char* end)
{
    ergebnisString_ += prefix;
    ergebnisString_ += runTexts_.at(entryIndex);
    ergebnisString_ += "):\t\t ";
    AmountFormat::append(ergebnisString_, amount);
    ergebnisString_ += end;
}

// The categories form runs in the reverse order of their first appearance, each
// run holding its entries in list order. Each pass walks the runs with a running
// category that starts as the first run's; a run of the pass's kind that differs
// from it writes the running category's two lines and takes over, its sums
// started with its own first entry. Only the last category of a pass is tested
// for a positive sum.
void CalcEngine::appendCategories()
{
    const std::vector<CategoryGroups::Group>& groups = groups_.groups();
    const std::size_t groupCount = groups.size();
    const std::uint32_t firstRun = static_cast<std::uint32_t>(groupCount - 1);

    // The digest started every group's sums with its first entry. The first
    // run instead adds onto the pass's starting sums of 0, which differs only
    // in the sign of a zero sum: 0 + -0 is 0.
    std::vector<GroupSums>& income = incomeByGroup_;
    std::vector<GroupSums>& expense = expenseByGroup_;
    for (GroupSums* g : { &income[firstRun], &expense[firstRun] }) {
        g->brutto = g->brutto == 0.0f ? 0.0f : g->brutto;
        g->netto = g->netto == 0.0f ? 0.0f : g->netto;
    }

    // Income section.
    std::uint32_t running = groups[firstRun].first;
    GroupSums sums = income[firstRun];
    for (std::uint32_t run = firstRun; run-- > 0;) {
        if (groups[run].firstIncome == CategoryGroups::kNone)
            continue;
        appendCategoryLine("Bruttoeinnahme(", running, sums.brutto, kEndA);
        appendCategoryLine("Nettoeinnahme(", running, sums.netto, kEndA);
        ergebnisStringRows_ += 2;
        running = groups[run].firstIncome;
        sums = income[run];
    }
    if (sums.brutto > 0.0f) {
        appendCategoryLine("Bruttoeinnahme(", running, sums.brutto, kEndA);
        ergebnisStringRows_ += 1;
    }
    if (sums.netto > 0.0f) {
        appendCategoryLine("Nettoeinnahme(", running, sums.netto, kEndA);
        ergebnisStringRows_ += 1;
    }
    ergebnisString_ += '\n';
    ergebnisStringRows_ += 1;

    // Expense section.
    running = groups[firstRun].first;
    sums = expense[firstRun];
    for (std::uint32_t run = firstRun; run-- > 0;) {
        if (groups[run].firstExpense == CategoryGroups::kNone)
            continue;
        appendCategoryLine("Bruttoausgabe(", running, sums.brutto, kEndA);
        appendCategoryLine("Nettoausgabe(", running, sums.netto, kEndA);
        ergebnisStringRows_ += 2;
        running = groups[run].firstExpense;
        sums = expense[run];
    }
    if (sums.brutto > 0.0f) {
        appendCategoryLine("Bruttoausgabe(", running, sums.brutto, kEndA);
        appendCategoryLine("Nettoausgabe(", running, sums.netto, kEndD);
        ergebnisStringRows_ += 2;
    }

    appendSeparatorLine();
    ergebnisStringRows_ += 1;
}

void CalcEngine::appendMonths()
{
    static const char* const names[12] = { "Januar", "Februar", "Maerz", "April", "Mai", "Juni", "Juli", "August",
        "September", "Oktober", "November", "Dezember" };
    appendPeriods(months_, names, 12);
}

void CalcEngine::appendQuarters()
{
    static const char* const names[4] = { "Quartal 1", "Quartal 2", "Quartal 3", "Quartal 4" };
    appendPeriods(quarters_, names, 4);
}

// A kind's section of a period is written when its gross slot 0 is positive:
// the totals line under the header, then one line per rate class. The
// separator closes the step.
void CalcEngine::appendPeriods(const PeriodTables tables[], const char* const names[], int periods)
{
    static const char* const headers[2] = { "Brutto/Netto/Steuer Einnahme ", "Brutto/Netto/Steuer Ausgabe " };
    static const char* const classLabels[5] = { nullptr, " 0 % Brutto/Netto/Steuer\t  ", " 7 % Brutto/Netto/Steuer\t  ",
        " 19 % Brutto/Netto/Steuer\t  ", " X % Brutto/Netto/Steuer\t  " };
    auto amounts = [this](float brutto, float netto, const char* end) {
        AmountFormat::append(ergebnisString_, brutto);
        ergebnisString_ += '/';
        AmountFormat::append(ergebnisString_, netto);
        ergebnisString_ += '/';
        AmountFormat::append(ergebnisString_, brutto - netto);
        ergebnisString_ += end;
    };
    for (int p = 0; p < periods; ++p) {
        const PeriodTables& t = tables[p];
        for (int kind = 0; kind < 2; ++kind) {
            if (!(t.brutto[kind][0] > 0.0f))
                continue;
            ergebnisString_ += headers[kind];
            ergebnisString_ += names[p];
            ergebnisString_ += ":\n ";
            amounts(t.brutto[kind][0], t.netto[kind][0], kEndA);
            for (int slot = 1; slot <= 4; ++slot) {
                ergebnisString_ += classLabels[slot];
                amounts(t.brutto[kind][slot], t.netto[kind][slot], slot == 4 ? kEndD : kEndA);
            }
            ergebnisStringRows_ += 5;
        }
    }
    appendSeparatorLine();
    ergebnisStringRows_ += 1;
}

void CalcEngine::splitLines()
{
    ergebnisStringAsArray_.clear();
    const std::string& text = ergebnisString_;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        if (end > start)
            ergebnisStringAsArray_.emplace_back(text, start, end - start);
        start = end + 1;
    }
}

} // namespace saldo
