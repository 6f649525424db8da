#include "bank/CsvRows.h"

#include "bank/StatementError.h"

namespace saldo {

CsvRows::CsvRows(std::string_view text, char separator)
    : text_(text)
    , separator_(separator)
{
}

bool CsvRows::next(std::vector<std::string>& cells)
{
    if (at_ >= text_.size())
        return false;
    rowLine_ = line_;
    std::size_t count = 0;
    auto cell = [&]() -> std::string& {
        if (++count > kMaxCells)
            throw StatementError("Zeile " + std::to_string(rowLine_) + " der Datei hat mehr als "
                + std::to_string(kMaxCells) + " Felder.");
        if (cells.size() < count)
            cells.emplace_back();
        std::string& current = cells[count - 1];
        current.clear();
        return current;
    };
    while (true) {
        std::string& out = cell();
        // Blanks before an opening quote belong to no one.
        std::size_t start = at_;
        while (start < text_.size() && text_[start] == ' ')
            ++start;
        if (start < text_.size() && text_[start] == '"') {
            at_ = start + 1;
            while (true) {
                const std::size_t quote = text_.find('"', at_);
                if (quote == std::string_view::npos)
                    throw StatementError("Die Datei endet mitten in einem Feld, das in Zeile "
                        + std::to_string(rowLine_) + " beginnt (abgeschnitten?).");
                for (std::size_t i = at_; i < quote; ++i)
                    line_ += text_[i] == '\n';
                out.append(text_.substr(at_, quote - at_));
                at_ = quote + 1;
                if (at_ < text_.size() && text_[at_] == '"') {
                    out += '"';
                    ++at_;
                    continue;
                }
                break;
            }
        }
        // Up to the separator or the end of the row (text after a closing quote is kept).
        std::size_t end = at_;
        while (end < text_.size() && text_[end] != separator_ && text_[end] != '\n' && text_[end] != '\r')
            ++end;
        out.append(text_.substr(at_, end - at_));
        at_ = end;
        if (at_ < text_.size() && text_[at_] == separator_) {
            ++at_;
            continue;
        }
        if (at_ < text_.size() && text_[at_] == '\r')
            ++at_;
        if (at_ < text_.size() && text_[at_] == '\n')
            ++at_;
        ++line_;
        break;
    }
    cells.resize(count);
    return true;
}

} // namespace saldo
