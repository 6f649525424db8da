#pragma once

#include "entrylist/SearchCondition.h"

#include <optional>
#include <string_view>

namespace saldo {

// What one action of the search field does, decided from the search mode (the
// placeholder, one of the menu titles) and the search text:
// - ShowAll: the text is empty; the shown list becomes the complete list.
// - NoChange: a number or date could not be read; nothing changes, the table is
//   not reloaded and nothing is posted.
// - KeepShown: the mode matches no condition (an unknown placeholder); the shown
//   list stays as it is, but the table is reloaded and the change posted.
// - Filter: the shown list becomes the complete list filtered by `condition`.
// A flag mode ("Non EU", "Innergemeinschaftlich") with a text other than "1" or
// "0" filters with a condition that admits every entry. "Datum =" selects the
// whole local day of the date.
class SearchOutcome {
public:
    enum class Kind { ShowAll, NoChange, KeepShown, Filter };

    static SearchOutcome decide(std::string_view mode, std::string_view text);

    Kind kind() const { return kind_; }
    // Set for Filter only.
    const std::optional<SearchCondition>& condition() const { return condition_; }

    static SearchOutcome showAll() { return SearchOutcome(Kind::ShowAll); }
    static SearchOutcome noChange() { return SearchOutcome(Kind::NoChange); }
    static SearchOutcome keepShown() { return SearchOutcome(Kind::KeepShown); }
    static SearchOutcome filter(SearchCondition condition);

private:
    explicit SearchOutcome(Kind kind)
        : kind_(kind)
    {
    }

    Kind kind_;
    std::optional<SearchCondition> condition_;
};

}  // namespace saldo
