#include "printing/PrintLayout.h"

#include "evaluation/CalcEngine.h"
#include "printing/PrintColumns.h"

#include <algorithm>
#include <cmath>

namespace saldo {
namespace {

// Rectangles that touch within this many points do not meet: places are
// sums of products of the paper height, which may differ in the last bit.
constexpr double kTolerance = 1e-6;

} // namespace

PrintLayout::PrintLayout(EinnahmeList einnahmen, double paperWidth, double paperHeight)
    : einnahmen_(std::move(einnahmen))
    , paperWidth_(paperWidth)
    , paperHeight_(paperHeight)
    , lineHeight_(paperHeight / kTransactionsPerPage)
{
    CalcEngine& engine = sharedCalcEngine();
    engine.calculate(einnahmen_);
    evaluation_ = engine.ergebnisStringAsArray();

    float extraLines = 0.0f;
    std::uint64_t slot = 0;
    slots_.reserve(einnahmen_.size());
    for (const EinnahmePtr& entry : einnahmen_) {
        slots_.push_back(slot);
        const std::size_t splits = entry->childTransactions().size();
        extraLines += static_cast<float>(splits);
        slot += 1 + splits;
    }
    headingSlot_ = slot;
    extraLines += static_cast<float>(evaluation_.size());
    pages_ = pageCount(einnahmen_.size(), extraLines);
    drawable_ = std::isfinite(paperWidth) && std::isfinite(paperHeight) && paperWidth > 0.0 && paperHeight > 0.0;
}

int PrintLayout::pageCount(std::size_t entryCount, float extraLines)
{
    const float lines = static_cast<float>(entryCount) + extraLines;
    int pages = static_cast<int>(lines / static_cast<float>(kTransactionsPerPage));
    const auto wholeExtra = static_cast<std::uint64_t>(extraLines);
    if (entryCount + wholeExtra % kTransactionsPerPage != 0)
        ++pages;
    return pages;
}

double PrintLayout::placeY(std::uint64_t slot) const
{
    return static_cast<double>(slot / kTransactionsPerPage) * paperHeight_
        + static_cast<double>(slot % kTransactionsPerPage) * lineHeight_;
}

double PrintLayout::groupBottom(std::size_t entry) const
{
    const std::uint64_t slot = slots_[entry];
    const std::size_t splits = einnahmen_[entry]->childTransactions().size();
    return std::max(placeY(slot) + kEntryOffset, placeY(slot + splits)) + lineHeight_;
}

int PrintLayout::pageOf(double y) const
{
    int page = static_cast<int>(std::floor(y / paperHeight_));
    while (page > 0 && y < static_cast<double>(page) * paperHeight_)
        --page;
    while (y >= static_cast<double>(page + 1) * paperHeight_)
        ++page;
    return page;
}

bool PrintLayout::shows(const Window& window, double x, double y) const
{
    return x < paperWidth_ && y < sheetHeight() - kTolerance && y < window.bottom - kTolerance
        && y + lineHeight_ > window.top + kTolerance;
}

void PrintLayout::add(
    std::vector<PrintText>& out, double x, double y, PrintFont font, PrintColour colour, std::string text) const
{
    out.push_back({ x, y, paperWidth_ - x, lineHeight_, pageOf(y), font, colour, std::move(text) });
}

void PrintLayout::addColumn(std::vector<PrintText>& out, std::size_t column, double y, PrintFont font,
    PrintColour colour, std::string text) const
{
    const double x = PrintColumns::kColumns[column].x;
    out.push_back({ x, y, PrintColumns::width(column, paperWidth_), lineHeight_, pageOf(y), font, colour,
        std::move(text) });
}

std::vector<PrintText> PrintLayout::textsOfPage(int page) const
{
    std::vector<PrintText> out;
    if (!drawable_ || page < 0 || page >= pages_)
        return out;
    const Window window { static_cast<double>(page) * paperHeight_, static_cast<double>(page + 1) * paperHeight_ };
    // Places that can meet the window: the last of the page before to the first of the page after.
    const std::uint64_t firstSlot = static_cast<std::uint64_t>(page) * kTransactionsPerPage;
    const std::uint64_t lowSlot = firstSlot > 0 ? firstSlot - 1 : 0;
    const std::uint64_t highSlot = firstSlot + kTransactionsPerPage;

    for (std::size_t c = 0; c < PrintColumns::kCount; ++c)
        if (shows(window, PrintColumns::kColumns[c].x, 0.0))
            addColumn(out, c, 0.0, PrintFont::Bold, PrintColour::Black, std::string(PrintColumns::kColumns[c].title));

    // The first entry that draws anything at or below the window's top.
    std::size_t first = 0, count = einnahmen_.size();
    while (count > 0) {
        const std::size_t half = count / 2;
        if (groupBottom(first + half) <= window.top + kTolerance) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    for (std::size_t i = first; i < einnahmen_.size() && placeY(slots_[i]) < window.bottom - kTolerance; ++i) {
        const std::uint64_t slot = slots_[i];
        const double lineY = placeY(slot) + kEntryOffset;
        // An entry whose own line lies below the sheet draws nothing, and so do all after it.
        if (!(lineY < sheetHeight() - kTolerance))
            break;
        const Einnahme& entry = *einnahmen_[i];
        const double captionY = placeY(slot) + kCaptionOffset;
        if (shows(window, 0.0, captionY))
            add(out, 0.0, captionY, PrintFont::Regular, PrintColour::Gray,
                std::string(kCaptionPrefix) + entry.kategorie());
        if (shows(window, 0.0, lineY)) {
            auto values = PrintColumns::values(entry, false);
            for (std::size_t c = 0; c < PrintColumns::kCount; ++c)
                if (shows(window, PrintColumns::kColumns[c].x, lineY))
                    addColumn(out, c, lineY, PrintFont::Regular, PrintColour::Black, std::move(values[c]));
        }
        // Split booking j (from 1) sits at place slot + j; only those near the window can meet it.
        const EinnahmeList& splits = entry.childTransactions();
        const std::uint64_t fromJ = std::max<std::uint64_t>(1, lowSlot > slot ? lowSlot - slot : 0);
        const std::uint64_t toJ = std::min<std::uint64_t>(splits.size(), highSlot > slot ? highSlot - slot : 0);
        for (std::uint64_t j = fromJ; j <= toJ; ++j) {
            const double y = placeY(slot + j);
            if (!shows(window, 0.0, y))
                continue;
            auto values = PrintColumns::values(*splits[j - 1], true);
            for (std::size_t c = 0; c < PrintColumns::kCount; ++c)
                if (shows(window, PrintColumns::kColumns[c].x, y))
                    addColumn(out, c, y, PrintFont::Regular, PrintColour::Blue, std::move(values[c]));
        }
    }

    // "Auswertung:" at its place, the evaluation lines at the places after it.
    const std::uint64_t lastSlot = headingSlot_ + evaluation_.size();
    for (std::uint64_t slot = std::max(lowSlot, headingSlot_); slot <= std::min(highSlot, lastSlot); ++slot) {
        const double y = placeY(slot);
        if (shows(window, 0.0, y))
            add(out, 0.0, y, PrintFont::Regular, PrintColour::Blue,
                slot == headingSlot_ ? std::string(kHeading) : evaluation_[slot - headingSlot_ - 1]);
    }
    return out;
}

} // namespace saldo
