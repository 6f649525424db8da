#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace saldo {

// Writes the user's texts (UTF-8) into a file in Windows-1252, the character
// set the tax adviser's system reads by default. A text is first put into its
// composed form (NFC), so that a letter typed as a base letter and an accent
// becomes the one character Windows-1252 has for it. Line breaks (CR, LF,
// CRLF, NEL, the Unicode line and paragraph separators), tabs and the other
// control characters become one blank each, as no field may hold them. A text
// longer than the field allows is cut after that many characters. A character
// Windows-1252 cannot hold (or a byte that is not UTF-8) is written as "?" and
// counted. The conversion itself is glibc's iconv.
//
// An object keeps its converter and its count of replaced characters; it is
// not shared between threads.
class Cp1252Text {
public:
    Cp1252Text();
    ~Cp1252Text();
    Cp1252Text(const Cp1252Text&) = delete;
    Cp1252Text& operator=(const Cp1252Text&) = delete;

    // The text as Windows-1252 bytes, at most `maxCharacters` of them.
    void append(std::string& out, std::string_view utf8, std::size_t maxCharacters);
    // The same in double quotes, a quote inside written twice. An ASCII
    // `suffix` follows the text inside the quotes and counts toward the
    // characters: the text is cut the shorter for it.
    void appendQuoted(std::string& out, std::string_view utf8, std::size_t maxCharacters, std::string_view suffix = {});

    // How many characters were written as "?" so far.
    std::size_t replaced() const { return replaced_; }

private:
    void convert(std::string& out, std::string_view cleanUtf8);

    void* converter_;
    std::size_t replaced_ = 0;
    std::string clean_;
    std::string converted_;
};

} // namespace saldo
