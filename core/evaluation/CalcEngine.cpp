#include "evaluation/CalcEngine.h"

#include "evaluation/AmountFormat.h"
#include "evaluation/MonthTable.h"
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

}  // namespace

CalcEngine& sharedCalcEngine()
{
    static CalcEngine* const engine = new CalcEngine;  // lives until the process ends
    return *engine;
}

std::optional<float>& einnahmenLimit()
{
    static std::optional<float> limit;
    return limit;
}

void CalcEngine::calculate(EinnahmeList entries)
{
    einnahmen_ = std::move(entries);
    ergebnisString_.clear();
    ergebnisStringRows_ = 0;
    if (einnahmen_.empty()) {
        ergebnisStringAsArray_.clear();
        return;
    }
    digest();
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
    groups_.reset();  // it holds views of the entries' texts
}

void CalcEngine::digest()
{
    const std::size_t count = einnahmen_.size();
    rows_.resize(count);
    datums_.resize(count);
    groups_.reset();
    double earliest = std::numeric_limits<double>::infinity();
    double latest = -earliest;
    for (std::size_t i = 0; i < count; ++i) {
        const Einnahme& e = *einnahmen_[i];
        Row& row = rows_[i];
        row.brutto = e.brutto();
        const float steuersatz = e.steuersatz();
        row.netto = Einnahme::nettoOf(row.brutto, steuersatz);
        const bool income = e.isIncome();
        row.flags = static_cast<std::uint8_t>((income ? kIncome : 0) | (e.innergemeinschaftlicherErwerb() ? kInnergem : 0)
            | (e.isNonEU() ? kNonEU : 0));
        // Exact single-precision equality: -0 is 0, a NaN rate is "other".
        row.rateSlot = steuersatz == 19.0f ? kSlot19 : steuersatz == 7.0f ? kSlot7 : steuersatz == 0.0f ? kSlot0 : kSlotOther;
        row.group = groups_.add(e.kategorie(), income);
        const double datum = e.datum();
        datums_[i] = datum;
        if (datum < earliest)
            earliest = datum;
        if (datum > latest)
            latest = datum;
    }
    const MonthTable months(earliest, latest);
    for (std::size_t i = 0; i < count; ++i)
        rows_[i].month = static_cast<std::uint8_t>(months.monthOf(datums_[i]));
    ergebnisString_.reserve(6000 + 400 * groups_.groups().size());
}

template <typename Predicate> CalcEngine::Sums CalcEngine::sumWhere(Predicate selected) const
{
    Sums sums;
    for (const Row& row : rows_)
        if (selected(row))
            sums.add(row);
    return sums;
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
    const Sums sums = sumWhere([](const Row&) { return true; });
    const std::optional<float>& limit = einnahmenLimit();
    if (limit && sums.bruttoEinnahme > *limit)
        playSound("Ping");
    appendBlock(sums,
        {"Bruttoeinnahme:\t\t ", "Nettoeinnahme:\t\t ", "Steuerbetrag:\t\t\t ", "BruttoAusgabe:  \t\t ",
            "NettoAusgabe:  \t\t "},
        kEndB);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendRate19()
{
    appendBlock(sumWhere([](const Row& r) { return r.rateSlot == kSlot19; }),
        {"Bruttoeinnahme(19 %):\t ", "Nettoeinnahme(19 %):\t ", "Steuerbetrag(19 %):\t\t ", "BruttoAusgabe(19 %):  \t ",
            "NettoAusgabe(19 %):  \t "},
        kEndB);
    ergebnisStringRows_ += 6;
}

void CalcEngine::appendRate7()
{
    // The income gross label of this block has no opening parenthesis.
    appendBlock(sumWhere([](const Row& r) { return r.rateSlot == kSlot7; }),
        {"Bruttoeinnahme7 %):\t ", "Nettoeinnahme(7 %):\t ", "Steuerbetrag(7 %):\t\t ", "BruttoAusgabe(7 %):  \t ",
            "NettoAusgabe(7 %):  \t "},
        kEndB);
    ergebnisStringRows_ += 6;
}

void CalcEngine::appendRate0()
{
    // The income gross label of this block has no opening parenthesis.
    appendBlock(sumWhere([](const Row& r) { return r.rateSlot == kSlot0; }),
        {"Bruttoeinnahme0 %):\t ", "Nettoeinnahme(0 %):\t ", "Steuerbetrag(0 %):\t\t ", "BruttoAusgabe(0 %):  \t ",
            "NettoAusgabe(0 %):  \t "},
        kEndC);
    ergebnisStringRows_ += 6;
}

void CalcEngine::appendRateOther()
{
    appendBlock(sumWhere([](const Row& r) { return r.rateSlot == kSlotOther; }),
        {"Bruttoeinnahme(X %):\t ", "Nettoeinnahme(X %):\t ", "Steuerbetrag(X %):\t\t ", "BruttoAusgabe(X %):  \t ",
            "NettoAusgabe(X %):  \t "},
        kEndC);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendInnergem()
{
    appendBlock(sumWhere([](const Row& r) { return (r.flags & kInnergem) != 0; }),
        {"Bruttoeinnahme(innergem):\t ", "Nettoeinnahme(innergem):\t ", "Steuerbetrag(innergem):\t\t ",
            "BruttoAusgabe(innergem):  \t ", "NettoAusgabe(innergem):  \t "},
        kEndC);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendNonEU()
{
    appendBlock(sumWhere([](const Row& r) { return (r.flags & kNonEU) != 0; }),
        {"Bruttoeinnahme(non EU):\t\t ", "Nettoeinnahme(non EU):\t\t ", "Steuerbetrag(non EU):\t\t ",
            "BruttoAusgabe(non EU): \t \t ", "NettoAusgabe(non EU):  \t\t "},
        kEndC);
    appendSeparatorLine();
    ergebnisStringRows_ += 7;
}

void CalcEngine::appendCategoryLine(const char* prefix, std::uint32_t entryIndex, float amount, const char* end)
{
    ergebnisString_ += prefix;
    ergebnisString_ += einnahmen_[entryIndex]->kategorie();
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

    // Per group and kind, gross and net in list order. The first run adds onto
    // the pass's starting sums of 0; every other run starts with its first entry.
    struct GroupSums {
        float brutto = 0.0f, netto = 0.0f;
        bool started = false;
    };
    std::vector<GroupSums> income(groupCount), expense(groupCount);
    income[firstRun].started = true;
    expense[firstRun].started = true;
    for (const Row& row : rows_) {
        GroupSums& g = (row.flags & kIncome) ? income[row.group] : expense[row.group];
        if (g.started) {
            g.brutto += row.brutto;
            g.netto += row.netto;
        } else {
            g.brutto = row.brutto;
            g.netto = row.netto;
            g.started = true;
        }
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
    static const char* const names[12] = {"Januar", "Februar", "Maerz", "April", "Mai", "Juni", "Juli", "August",
        "September", "Oktober", "November", "Dezember"};
    static const std::uint8_t monthToPeriod[13] = {0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    appendPeriods(names, 12, monthToPeriod);
}

void CalcEngine::appendQuarters()
{
    static const char* const names[4] = {"Quartal 1", "Quartal 2", "Quartal 3", "Quartal 4"};
    static const std::uint8_t monthToPeriod[13] = {0, 0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3};
    appendPeriods(names, 4, monthToPeriod);
}

// Each period sums, per kind, gross and net in slot 0 (all) and in the slot of
// the entry's rate class, in list order; a kind's section is written when its
// gross slot 0 is positive. The separator closes the step.
void CalcEngine::appendPeriods(const char* const names[], int periods, const std::uint8_t periodOfMonth[13])
{
    struct Tables {
        float brutto[2][5] = {};  // [0] income, [1] expense
        float netto[2][5] = {};
    };
    Tables tables[12];
    for (const Row& row : rows_) {
        Tables& t = tables[periodOfMonth[row.month]];
        const int kind = (row.flags & kIncome) ? 0 : 1;
        t.brutto[kind][0] += row.brutto;
        t.brutto[kind][row.rateSlot] += row.brutto;
        t.netto[kind][0] += row.netto;
        t.netto[kind][row.rateSlot] += row.netto;
    }

    static const char* const headers[2] = {"Brutto/Netto/Steuer Einnahme ", "Brutto/Netto/Steuer Ausgabe "};
    static const char* const classLabels[5] = {nullptr, " 0 % Brutto/Netto/Steuer\t  ", " 7 % Brutto/Netto/Steuer\t  ",
        " 19 % Brutto/Netto/Steuer\t  ", " X % Brutto/Netto/Steuer\t  "};
    auto amounts = [this](float brutto, float netto, const char* end) {
        AmountFormat::append(ergebnisString_, brutto);
        ergebnisString_ += '/';
        AmountFormat::append(ergebnisString_, netto);
        ergebnisString_ += '/';
        AmountFormat::append(ergebnisString_, brutto - netto);
        ergebnisString_ += end;
    };
    for (int p = 0; p < periods; ++p) {
        const Tables& t = tables[p];
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

}  // namespace saldo
