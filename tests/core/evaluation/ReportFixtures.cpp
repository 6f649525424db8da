#include "core/evaluation/ReportFixtures.h"

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <sstream>
#include <vector>

namespace saldo::testing {
namespace {

std::vector<std::string> splitTabs(const std::string& line)
{
    std::vector<std::string> fields;
    std::string field;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '\t') {
            fields.push_back(field);
            field.clear();
        } else if (c == '\\' && i + 1 < line.size()) {
            const char next = line[++i];
            field += next == 't' ? '\t' : next == 'n' ? '\n' : next;
        } else {
            field += c;
        }
    }
    fields.push_back(field);
    return fields;
}

double parseDouble(const std::string& text)
{
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    EXPECT_TRUE(result.ec == std::errc() && result.ptr == text.data() + text.size()) << "not a number: " << text;
    return value;
}

} // namespace

EinnahmeList readEntriesTsv(const std::string& path)
{
    EinnahmeList entries;
    std::istringstream lines(readFile(path));
    std::string line;
    while (std::getline(lines, line)) {
        if (line.empty() || line[0] == '#')
            continue;
        const std::vector<std::string> f = splitTabs(line);
        EXPECT_EQ(f.size(), 8u) << line;
        if (f.size() != 8)
            continue;
        Einnahme::Stored s;
        s.name = "Eintrag";
        s.art = f[0];
        s.kategorie = f[1];
        s.brutto = static_cast<float>(parseDouble(f[2]));
        s.steuersatz = static_cast<float>(parseDouble(f[3]));
        s.datum = parseDouble(f[4]);
        s.innergemeinschaftlicherErwerb = f[5] == "1";
        s.isNonEU = f[6] == "1";
        for (int i = 0; i < std::atoi(f[7].c_str()); ++i)
            s.childTransactions.push_back(Einnahme::make("Teil", "Teil", 1000.0f, 19.0f));
        entries.push_back(Einnahme::restore(std::move(s)));
    }
    return entries;
}

ScopedTimeZone::ScopedTimeZone(const char* tz)
{
    if (const char* old = std::getenv("TZ")) {
        hadValue_ = true;
        previous_ = old;
    }
    setenv("TZ", tz, 1);
    tzset();
}

ScopedTimeZone::~ScopedTimeZone()
{
    if (hadValue_)
        setenv("TZ", previous_.c_str(), 1);
    else
        unsetenv("TZ");
    tzset();
}

} // namespace saldo::testing
