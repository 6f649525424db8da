#include "app/WindowLayout.h"

#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/ViewController.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QSplitter>
#include <QTableView>
#include <QWindow>

#include <algorithm>
#include <array>
#include <optional>

namespace saldo::gui {

namespace {

std::array<QSplitter*, 3> splittersOf(const DocumentWindow& window)
{
    SplitViewController* split = window.splitViewController();
    return { split, split->innerSplitViewController(), split->viewController()->tableSplitter() };
}

QHeaderView* columnsOf(const DocumentWindow& window)
{
    return window.splitViewController()->viewController()->tableView()->horizontalHeader();
}

std::optional<QRect> availableArea(const DocumentWindow& window)
{
    const QScreen* screen = window.screen() ? window.screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return std::nullopt;
    return screen->availableGeometry();
}

WindowGeometry::Size availableSize(const DocumentWindow& window)
{
    const auto area = availableArea(window);
    if (!area)
        return WindowLayout::kPreferredSize;
    return { area->width(), area->height() };
}

} // namespace

void WindowLayout::restore(DocumentWindow& window, const UserDefaults& defaults)
{
    const WindowGeometry::Size available = availableSize(window);
    const WindowGeometry::Size minimum = WindowGeometry::clampedMinimum(kMinimumSize, available);
    window.setMinimumSize(minimum.width, minimum.height);
    const auto size = WindowGeometry::readNumbers(defaults, kSizeKey, 2);
    const WindowGeometry::Size chosen = size
        ? WindowGeometry::clampedSize({ (*size)[0], (*size)[1] }, kMinimumSize, available)
        : WindowGeometry::firstSize(kPreferredSize, available);
    window.resize(chosen.width, chosen.height);

    QHeaderView* columns = columnsOf(window);
    if (const auto widths = WindowGeometry::readNumbers(defaults, kColumnsKey, EntryColumn::Count)) {
        const int widest = std::max(columns->minimumSectionSize(), available.width);
        for (int column = 0; column < EntryColumn::Count; ++column)
            columns->resizeSection(column, std::clamp((*widths)[column], columns->minimumSectionSize(), widest));
    }
}

void WindowLayout::restoreSplitters(DocumentWindow& window, const UserDefaults& defaults)
{
    const auto splitters = splittersOf(window);
    const auto sizes = WindowGeometry::readNumbers(defaults, kSplittersKey, 2 * splitters.size());
    if (!sizes || !std::all_of(sizes->begin(), sizes->end(), [](int pane) { return pane > 0; }))
        return;
    // A splitter shares its own length out in the proportions given.
    for (std::size_t i = 0; i < splitters.size(); ++i)
        splitters[i]->setSizes({ (*sizes)[2 * i], (*sizes)[2 * i + 1] });
}

bool WindowLayout::fitFrame(DocumentWindow& window)
{
    const QWindow* handle = window.windowHandle();
    const auto area = availableArea(window);
    if (!handle || !area || window.isMaximized() || window.isFullScreen())
        return false;
    const QMargins margins = handle->frameMargins();
    if (margins.isNull())
        return false;
    const QRect content = window.geometry();
    const WindowGeometry::Rect fitted = WindowGeometry::fittedFrame(
        { content.x(), content.y(), content.width(), content.height() },
        { margins.left(), margins.top(), margins.right(), margins.bottom() },
        { area->x(), area->y(), area->width(), area->height() }, kMinimumSize);
    if (fitted.width != content.width() || fitted.height != content.height())
        window.resize(fitted.width, fitted.height);
    // A window's position is its frame's.
    if (fitted.x != content.x() || fitted.y != content.y())
        window.move(fitted.x - margins.left(), fitted.y - margins.top());
    return true;
}

void WindowLayout::save(const DocumentWindow& window, UserDefaults& defaults)
{
    // A window that was never shown has no layout the user chose.
    if (!window.isVisible())
        return;
    const bool filled = (window.isMaximized() || window.isFullScreen()) && window.normalGeometry().isValid();
    const QSize size = filled ? window.normalGeometry().size() : window.size();
    WindowGeometry::writeNumbers(defaults, kSizeKey, { size.width(), size.height() });

    std::vector<int> sizes;
    for (const QSplitter* splitter : splittersOf(window))
        for (int pane : splitter->sizes())
            sizes.push_back(pane);
    WindowGeometry::writeNumbers(defaults, kSplittersKey, sizes);

    const QHeaderView* columns = columnsOf(window);
    std::vector<int> widths;
    for (int column = 0; column < EntryColumn::Count; ++column)
        widths.push_back(columns->sectionSize(column));
    WindowGeometry::writeNumbers(defaults, kColumnsKey, widths);
}

} // namespace saldo::gui
