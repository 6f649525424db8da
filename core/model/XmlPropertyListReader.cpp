#include "model/XmlPropertyListReader.h"

#include "model/LedgerEntryPath.h"
#include "model/LedgerFile.h"
#include "model/NearestFloat.h"
#include "model/Utf16.h"

#include <pugixml.hpp>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <limits>
#include <string>

namespace saldo {

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

bool isBlankText(const char* text)
{
    for (; *text; ++text) {
        if (!isBlank(*text))
            return false;
    }
    return true;
}

// Days from 1970-01-01 to the given civil date (proleptic Gregorian calendar).
std::int64_t daysFromCivil(std::int64_t y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

bool digits(std::string_view text, std::size_t at, std::size_t count, unsigned& value)
{
    value = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + static_cast<unsigned>(text[i] - '0');
    }
    return true;
}

class Reader {
public:
    EinnahmeList read(std::string_view bytes);

private:
    EinnahmeList readEntryArray(const pugi::xml_node& array);
    EinnahmePtr readEntry(const pugi::xml_node& dict);
    void readValue(int key, const pugi::xml_node& value, Einnahme::Stored& stored);
    void checkValue(const pugi::xml_node& value, std::size_t depth);

    // The first element child (or none), refusing non-blank text among the children.
    pugi::xml_node firstElement(const pugi::xml_node& parent);
    pugi::xml_node nextElement(const pugi::xml_node& node);
    std::string text(const pugi::xml_node& element);
    void unescape(std::string_view raw, std::string& out, const pugi::xml_node& at);
    float readNumber(const pugi::xml_node& value);
    double readReal(const pugi::xml_node& value);
    double readDate(const pugi::xml_node& value);
    void checkBase64(const pugi::xml_node& value);
    void expectEmpty(const pugi::xml_node& value);

    [[noreturn]] void fail(const pugi::xml_node& at, const std::string& what) const;

    LedgerEntryPath path_;
    int key_ = -1;
};

EinnahmeList Reader::read(std::string_view bytes)
{
    pugi::xml_document document;
    const unsigned options = pugi::parse_cdata | pugi::parse_ws_pcdata | pugi::parse_eol | pugi::parse_doctype;
    const pugi::xml_parse_result result = document.load_buffer(bytes.data(), bytes.size(), options);
    if (!result)
        throw LedgerFileError(
            std::string("malformed XML: ") + result.description() + " (byte " + std::to_string(result.offset) + ")",
            LedgerFileError::Kind::Damaged, static_cast<std::uint64_t>(result.offset));

    pugi::xml_node top;
    for (pugi::xml_node node = document.first_child(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_doctype) {
            if (std::strstr(node.value(), "<!ENTITY"))
                fail(node, "the document type declares entities; they are never expanded");
        } else if (node.type() == pugi::node_element) {
            if (top)
                fail(node, "more than one document element");
            top = node;
        } else if (node.type() == pugi::node_pcdata && isBlankText(node.value())) {
            continue;
        } else {
            fail(node, "text outside the document element");
        }
    }
    if (!top)
        throw LedgerFileError("not a property list: no document element", LedgerFileError::Kind::NotALedger);
    pugi::xml_node root = top;
    if (std::strcmp(top.name(), "plist") == 0) {
        root = firstElement(top);
        if (!root)
            fail(top, "the property list is empty");
        if (nextElement(root))
            fail(top, "the property list holds more than one root value");
    }
    if (std::strcmp(root.name(), "array") != 0)
        throw LedgerFileError(std::string("root is <") + root.name() + ">, not an array (byte "
                + std::to_string(root.offset_debug()) + ")",
            LedgerFileError::Kind::NotALedger);
    return readEntryArray(root);
}

EinnahmeList Reader::readEntryArray(const pugi::xml_node& array)
{
    EinnahmeList list;
    path_.push(0);
    std::uint64_t position = 0;
    for (pugi::xml_node node = firstElement(array); node; node = nextElement(node)) {
        path_.setLast(++position);
        list.push_back(readEntry(node));
    }
    path_.pop();
    return list;
}

EinnahmePtr Reader::readEntry(const pugi::xml_node& dict)
{
    if (std::strcmp(dict.name(), "dict") != 0)
        fail(dict, std::string("is <") + dict.name() + ">, not a dictionary");
    Einnahme::Stored stored;
    unsigned seen = 0;
    for (pugi::xml_node node = firstElement(dict); node; node = nextElement(node)) {
        if (std::strcmp(node.name(), "key") != 0)
            fail(node, std::string("<") + node.name() + "> where a <key> belongs");
        const std::string key = text(node);
        const pugi::xml_node value = nextElement(node);
        if (!value)
            fail(node, "key \"" + key + "\" has no value");
        const int index = LedgerEntryPath::keyIndex(key);
        key_ = index;
        if (index < 0) {
            checkValue(value, path_.depth());
        } else {
            readValue(index, value, stored);
            seen |= 1u << index;
        }
        key_ = -1;
        node = value;
    }
    if (seen != LedgerEntryPath::kAllKeysMask)
        fail(dict, "key \"" + std::string(LedgerEntryPath::firstMissingKey(seen)) + "\" missing");
    return Einnahme::restore(std::move(stored));
}

void Reader::readValue(int key, const pugi::xml_node& value, Einnahme::Stored& stored)
{
    const std::string_view name = value.name();
    auto wrongType
        = [&](const char* expected) { fail(value, std::string("holds <") + value.name() + ">, expected " + expected); };
    switch (key) {
    case 3:
    case 4:
        if (name != "true" && name != "false")
            wrongType("a boolean");
        expectEmpty(value);
        (key == 3 ? stored.innergemeinschaftlicherErwerb : stored.isNonEU) = name == "true";
        return;
    case 5:
    case 6:
        if (name != "real" && name != "integer")
            wrongType("a real");
        (key == 5 ? stored.brutto : stored.steuersatz) = readNumber(value);
        return;
    case 7:
        if (name == "date")
            stored.datum = readDate(value);
        else if (name == "real")
            stored.datum = readReal(value);
        else
            wrongType("a date");
        return;
    case 11:
        if (name != "array")
            wrongType("an array");
        if (firstElement(value) && path_.depth() > LedgerEntryPath::kMaxNesting)
            fail(
                value, "split bookings nested deeper than " + std::to_string(LedgerEntryPath::kMaxNesting) + " levels");
        key_ = -1;
        stored.childTransactions = readEntryArray(value);
        return;
    default: {
        if (name != "string")
            wrongType("a string");
        std::string* fields[] = { &stored.name, &stored.kategorie, &stored.art, nullptr, nullptr, nullptr, nullptr,
            nullptr, &stored.rechnungsnummer, &stored.steuernummer, &stored.leistungsart };
        *fields[key] = text(value);
        return;
    }
    }
}

void Reader::checkValue(const pugi::xml_node& value, std::size_t depth)
{
    constexpr std::size_t kMaxDepth = 2 * LedgerEntryPath::kMaxNesting + 2;
    if (depth > kMaxDepth)
        fail(value, "values nested deeper than " + std::to_string(kMaxDepth) + " levels");
    const std::string_view name = value.name();
    if (name == "string" || name == "key") {
        text(value);
    } else if (name == "true" || name == "false") {
        expectEmpty(value);
    } else if (name == "integer" || name == "real") {
        readNumber(value);
    } else if (name == "date") {
        readDate(value);
    } else if (name == "data") {
        checkBase64(value);
    } else if (name == "array") {
        for (pugi::xml_node node = firstElement(value); node; node = nextElement(node))
            checkValue(node, depth + 1);
    } else if (name == "dict") {
        for (pugi::xml_node node = firstElement(value); node; node = nextElement(node)) {
            if (std::strcmp(node.name(), "key") != 0)
                fail(node, std::string("<") + node.name() + "> where a <key> belongs");
            text(node);
            node = nextElement(node);
            if (!node)
                fail(value, "a key has no value");
            checkValue(node, depth + 1);
        }
    } else {
        fail(value, std::string("unknown element <") + value.name() + ">");
    }
}

pugi::xml_node Reader::firstElement(const pugi::xml_node& parent)
{
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_element)
            return node;
        if (node.type() != pugi::node_pcdata || !isBlankText(node.value()))
            fail(node, std::string("text inside <") + parent.name() + ">");
    }
    return {};
}

pugi::xml_node Reader::nextElement(const pugi::xml_node& after)
{
    for (pugi::xml_node node = after.next_sibling(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_element)
            return node;
        if (node.type() != pugi::node_pcdata || !isBlankText(node.value()))
            fail(node, std::string("text inside <") + after.parent().name() + ">");
    }
    return {};
}

std::string Reader::text(const pugi::xml_node& element)
{
    std::string out;
    for (pugi::xml_node node = element.first_child(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_pcdata)
            unescape(node.value(), out, element);
        else if (node.type() == pugi::node_cdata)
            out += node.value();
        else
            fail(node, std::string("<") + element.name() + "> holds an element");
    }
    if (!Utf16::isValidUtf8(out))
        fail(element, "text is not valid UTF-8");
    return out;
}

void Reader::unescape(std::string_view raw, std::string& out, const pugi::xml_node& at)
{
    std::size_t i = 0;
    while (i < raw.size()) {
        const std::size_t amp = raw.find('&', i);
        out.append(raw.substr(i, amp == std::string_view::npos ? std::string_view::npos : amp - i));
        if (amp == std::string_view::npos)
            return;
        const std::size_t semicolon = raw.find(';', amp);
        if (semicolon == std::string_view::npos || semicolon - amp > 12)
            fail(at, "an '&' that starts no reference");
        const std::string_view name = raw.substr(amp + 1, semicolon - amp - 1);
        if (name == "lt") {
            out += '<';
        } else if (name == "gt") {
            out += '>';
        } else if (name == "amp") {
            out += '&';
        } else if (name == "apos") {
            out += '\'';
        } else if (name == "quot") {
            out += '"';
        } else if (name.size() > 1 && name[0] == '#') {
            const bool hex = name[1] == 'x';
            const std::string_view number = name.substr(hex ? 2 : 1);
            std::uint32_t cp = 0;
            const auto [end, ec] = std::from_chars(number.data(), number.data() + number.size(), cp, hex ? 16 : 10);
            if (number.empty() || ec != std::errc() || end != number.data() + number.size() || cp == 0 || cp > 0x10FFFF
                || (cp >= 0xD800 && cp <= 0xDFFF))
                fail(at, "invalid character reference &" + std::string(name) + ";");
            const std::uint8_t unit[4] = { static_cast<std::uint8_t>(cp >> 24), static_cast<std::uint8_t>(cp >> 16),
                static_cast<std::uint8_t>(cp >> 8), static_cast<std::uint8_t>(cp) };
            if (cp >= 0x10000) {
                const std::uint32_t v = cp - 0x10000;
                const std::uint32_t hi = 0xD800 + (v >> 10);
                const std::uint32_t lo = 0xDC00 + (v & 0x3FF);
                const std::uint8_t pair[4] = { static_cast<std::uint8_t>(hi >> 8), static_cast<std::uint8_t>(hi),
                    static_cast<std::uint8_t>(lo >> 8), static_cast<std::uint8_t>(lo) };
                Utf16::appendUtf8FromBigEndian(pair, 2, out);
            } else {
                Utf16::appendUtf8FromBigEndian(unit + 2, 1, out);
            }
        } else {
            fail(at, "unknown entity &" + std::string(name) + "; (entities are never expanded)");
        }
        i = semicolon + 1;
    }
}

float Reader::readNumber(const pugi::xml_node& value)
{
    if (std::strcmp(value.name(), "real") == 0)
        return nearestFloat(readReal(value));
    const std::string content = text(value);
    std::string_view t = trimmed(content);
    bool negative = false;
    if (!t.empty() && (t[0] == '-' || t[0] == '+')) {
        negative = t[0] == '-';
        t.remove_prefix(1);
    }
    int base = 10;
    if (t.size() > 2 && t[0] == '0' && (t[1] == 'x' || t[1] == 'X')) {
        base = 16;
        t.remove_prefix(2);
    }
    std::uint64_t magnitude = 0;
    const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), magnitude, base);
    if (t.empty() || ec == std::errc::invalid_argument || end != t.data() + t.size())
        fail(value, "\"" + content + "\" is not an integer");
    if (ec == std::errc::result_out_of_range || (negative && magnitude > (std::uint64_t(1) << 63)))
        fail(value, "integer " + content + " out of range");
    if (!negative)
        return static_cast<float>(magnitude);
    if (magnitude == (std::uint64_t(1) << 63))
        return static_cast<float>(std::numeric_limits<std::int64_t>::min());
    return static_cast<float>(-static_cast<std::int64_t>(magnitude));
}

double Reader::readReal(const pugi::xml_node& value)
{
    const std::string content = text(value);
    std::string_view t = trimmed(content);
    if (!t.empty() && t[0] == '+')
        t.remove_prefix(1);
    double result = 0;
    const auto [end, ec] = std::from_chars(t.data(), t.data() + t.size(), result);
    if (t.empty() || ec == std::errc::invalid_argument || end != t.data() + t.size())
        fail(value, "\"" + content + "\" is not a real number");
    if (ec != std::errc())
        fail(value, "real " + content + " out of range");
    return result;
}

double Reader::readDate(const pugi::xml_node& value)
{
    const std::string content = text(value);
    const std::string_view t = trimmed(content);
    unsigned year, month, day, hour, minute, second;
    const bool shaped
        = t.size() == 20 && t[4] == '-' && t[7] == '-' && t[10] == 'T' && t[13] == ':' && t[16] == ':' && t[19] == 'Z';
    if (!shaped || !digits(t, 0, 4, year) || !digits(t, 5, 2, month) || !digits(t, 8, 2, day) || !digits(t, 11, 2, hour)
        || !digits(t, 14, 2, minute) || !digits(t, 17, 2, second))
        fail(value, "\"" + content + "\" is not a date of the form YYYY-MM-DDTHH:MM:SSZ");
    static constexpr unsigned kDays[12] = { 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (month < 1 || month > 12 || day < 1 || day > kDays[month - 1] || (month == 2 && day == 29 && !leap) || hour > 23
        || minute > 59 || second > 59)
        fail(value, "\"" + content + "\" is not a valid date");
    const std::int64_t days = daysFromCivil(year, month, day) - daysFromCivil(2001, 1, 1);
    return static_cast<double>(days * 86400 + hour * 3600 + minute * 60 + second);
}

void Reader::checkBase64(const pugi::xml_node& value)
{
    const std::string content = text(value);
    std::size_t count = 0;
    std::size_t padding = 0;
    for (const char c : content) {
        if (isBlank(c))
            continue;
        const bool alphabet
            = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
        if (c == '=') {
            ++padding;
        } else if (!alphabet || padding > 0) {
            fail(value, "<data> is not valid base64");
        }
        ++count;
    }
    if (count % 4 != 0 || padding > 2)
        fail(value, "<data> is not valid base64");
}

void Reader::expectEmpty(const pugi::xml_node& value)
{
    for (pugi::xml_node node = value.first_child(); node; node = node.next_sibling()) {
        if (node.type() != pugi::node_pcdata || !isBlankText(node.value()))
            fail(value, std::string("<") + value.name() + "> must be empty");
    }
}

void Reader::fail(const pugi::xml_node& at, const std::string& what) const
{
    std::string message;
    if (path_.depth() > 0)
        message = path_.describe() + ": ";
    if (key_ >= 0)
        message += "key \"" + std::string(kEinnahmeKeys[key_]) + "\" ";
    message += what;
    std::optional<std::uint64_t> byte;
    if (at) {
        byte = static_cast<std::uint64_t>(at.offset_debug());
        message += " (byte " + std::to_string(*byte) + ")";
    }
    throw LedgerFileError(message, LedgerFileError::Kind::Damaged, byte);
}

} // namespace

EinnahmeList XmlPropertyListReader::readEntries(std::string_view bytes)
{
    Reader reader;
    return reader.read(bytes);
}

} // namespace saldo
