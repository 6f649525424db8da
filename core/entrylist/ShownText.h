#pragma once

#include <cstddef>
#include <string_view>

namespace saldo {

// What a table cell or a form field shows of an entry's text: at most the
// first kMostShown characters, never a character cut in two. A longer text
// (a name of many megabytes) is shown as this view, so that laying it out
// costs what a page of text costs; the entry keeps the whole text, and where
// it is shown cut it cannot be edited, so that an edit never takes the view
// for the text.
class ShownText {
public:
    static constexpr std::size_t kMostShown = 10'000;

    // The start of `text` shown in its place (UTF-8, counted in characters).
    static std::string_view of(std::string_view text);
    static bool isCut(std::string_view text) { return of(text).size() < text.size(); }
};

} // namespace saldo
