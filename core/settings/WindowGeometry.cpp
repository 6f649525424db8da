#include "settings/WindowGeometry.h"

#include <algorithm>
#include <charconv>

namespace saldo {

namespace {
int share(int length)
{
    return static_cast<int>(static_cast<long long>(length) * WindowGeometry::kScreenPercent / 100);
}
} // namespace

WindowGeometry::Size WindowGeometry::firstSize(Size preferred, Size available)
{
    return { std::min(preferred.width, share(available.width)), std::min(preferred.height, share(available.height)) };
}

WindowGeometry::Size WindowGeometry::clampedMinimum(Size minimum, Size available)
{
    return firstSize(minimum, available);
}

WindowGeometry::Size WindowGeometry::clampedSize(Size wanted, Size minimum, Size available)
{
    const Size least = clampedMinimum(minimum, available);
    return { std::clamp(wanted.width, least.width, available.width),
        std::clamp(wanted.height, least.height, available.height) };
}

WindowGeometry::Rect WindowGeometry::fittedFrame(Rect content, Margins frame, Rect available, Size minimum)
{
    const Size room { available.width - frame.left - frame.right, available.height - frame.top - frame.bottom };
    const Size least = clampedMinimum(minimum, room);
    content.width = std::max(std::min(content.width, room.width), least.width);
    content.height = std::max(std::min(content.height, room.height), least.height);
    // The frame's left and top edges, moved in so that its far edges are inside as well.
    const int frameX = std::max(
        std::min(content.x - frame.left, available.x + available.width - content.width - frame.left - frame.right),
        available.x);
    const int frameY = std::max(
        std::min(content.y - frame.top, available.y + available.height - content.height - frame.top - frame.bottom),
        available.y);
    content.x = frameX + frame.left;
    content.y = frameY + frame.top;
    return content;
}

std::optional<std::vector<int>> WindowGeometry::readNumbers(
    const UserDefaults& defaults, const std::string& key, std::size_t count)
{
    const auto texts = defaults.stringArray(key);
    if (!texts || texts->size() != count)
        return std::nullopt;
    std::vector<int> numbers;
    numbers.reserve(count);
    for (const std::string& text : *texts) {
        int number = 0;
        const char* end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        if (error != std::errc() || stop != end || text.empty())
            return std::nullopt;
        numbers.push_back(number);
    }
    return numbers;
}

void WindowGeometry::writeNumbers(UserDefaults& defaults, const std::string& key, const std::vector<int>& numbers)
{
    std::vector<std::string> texts;
    texts.reserve(numbers.size());
    for (int number : numbers) {
        char buffer[16];
        texts.emplace_back(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
    }
    defaults.setStringArray(key, texts);
}

} // namespace saldo
