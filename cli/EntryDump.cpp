#include "EntryDump.h"

#include "platform/Clock.h"

#include <charconv>
#include <cmath>
#include <ctime>
#include <vector>

namespace saldo::cli {

namespace {

template <typename Number> void appendNumber(std::string& out, Number value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

void appendPadded(std::string& out, long value, int width)
{
    if (value < 0) {
        out += '-';
        value = -value;
    }
    const std::string digits = std::to_string(value);
    if (static_cast<int>(digits.size()) < width)
        out.append(static_cast<std::size_t>(width) - digits.size(), '0');
    out += digits;
}

void appendQuoted(std::string& out, const std::string& text)
{
    static const char hex[] = "0123456789abcdef";
    out += '"';
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (u < 0x20 || u == 0x7F) {
            out += "\\x";
            out += hex[u >> 4];
            out += hex[u & 15];
        } else {
            out += c;
        }
    }
    out += '"';
}

void appendField(std::string& out, const char* name, const std::string& text)
{
    out += ' ';
    out += name;
    out += '=';
    appendQuoted(out, text);
}

void appendLines(const EinnahmeList& entries, std::size_t depth, std::string& out, std::FILE* file, bool& ok)
{
    for (const auto& entry : entries) {
        out.append(2 * depth, ' ');
        out += EntryDump::line(*entry);
        out += '\n';
        if (out.size() > (1u << 20)) {
            ok = ok && std::fwrite(out.data(), 1, out.size(), file) == out.size();
            out.clear();
        }
        appendLines(entry->childTransactions(), depth + 1, out, file, ok);
    }
}

} // namespace

bool EntryDump::write(const EinnahmeList& entries, std::FILE* out)
{
    std::string buffer;
    bool ok = true;
    appendLines(entries, 0, buffer, out, ok);
    ok = ok && std::fwrite(buffer.data(), 1, buffer.size(), out) == buffer.size();
    return ok && std::fflush(out) == 0;
}

std::string EntryDump::line(const Einnahme& e)
{
    std::string out = "name=";
    appendQuoted(out, e.name());
    appendField(out, "kategorie", e.kategorie());
    appendField(out, "art", e.art());
    out += e.innergemeinschaftlicherErwerb() ? " innergemeinschaftlicherErwerb=true"
                                             : " innergemeinschaftlicherErwerb=false";
    out += e.isNonEU() ? " isNonEU=true" : " isNonEU=false";
    out += " brutto=";
    appendNumber(out, e.brutto());
    out += " steuersatz=";
    appendNumber(out, e.steuersatz());
    out += " netto=";
    appendNumber(out, e.netto());
    out += " datum=";
    out += datum(e.datum());
    appendField(out, "rechnungsnummer", e.rechnungsnummer());
    appendField(out, "steuernummer", e.steuernummer());
    appendField(out, "leistungsart", e.leistungsart());
    out += " childTransactions=";
    appendNumber(out, e.childTransactions().size());
    return out;
}

std::string EntryDump::datum(double seconds)
{
    std::string out;
    const double unix = std::floor(seconds + kReferenceDateUnixSeconds);
    std::tm local {};
    // Far beyond any calendar a year of four or five digits can hold.
    const bool expressible = std::isfinite(unix) && std::fabs(unix) < 1e14;
    const auto t = static_cast<std::time_t>(expressible ? unix : 0);
    if (expressible && ::localtime_r(&t, &local)) {
        appendPadded(out, long(local.tm_year) + 1900, 4);
        out += '-';
        appendPadded(out, local.tm_mon + 1, 2);
        out += '-';
        appendPadded(out, local.tm_mday, 2);
        out += 'T';
        appendPadded(out, local.tm_hour, 2);
        out += ':';
        appendPadded(out, local.tm_min, 2);
        out += ':';
        appendPadded(out, local.tm_sec, 2);
        const long offset = local.tm_gmtoff;
        out += offset < 0 ? '-' : '+';
        appendPadded(out, std::labs(offset) / 3600, 2);
        out += ':';
        appendPadded(out, (std::labs(offset) % 3600) / 60, 2);
    } else {
        out += '-';
    }
    out += " (";
    appendNumber(out, seconds);
    out += ')';
    return out;
}

} // namespace saldo::cli
