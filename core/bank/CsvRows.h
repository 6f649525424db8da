#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Splits CSV text into rows of cells, one row at a time: cells between
// separators, a cell in double quotes may hold separators and line breaks,
// a doubled quote in it is one quote. Rows end at LF, CRLF or CR. A quote
// that is never closed, or a row of more than kMaxCells cells, throws
// StatementError.
class CsvRows {
public:
    static constexpr std::size_t kMaxCells = 1000;

    CsvRows(std::string_view text, char separator);

    // The next row's cells; false at the end of the text.
    bool next(std::vector<std::string>& cells);
    // The number of the line the last row began on, counted from 1.
    std::size_t lineNumber() const { return rowLine_; }

private:
    std::string_view text_;
    char separator_;
    std::size_t at_ = 0;
    std::size_t line_ = 1;
    std::size_t rowLine_ = 0;
};

} // namespace saldo
