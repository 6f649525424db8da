#include "bank/StatementReader.h"

#include "bank/CamtReader.h"
#include "bank/CsvStatementReader.h"
#include "bank/StatementError.h"
#include "bank/ZipArchive.h"
#include "platform/SmallFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

namespace saldo {

namespace {

bool isXmlName(std::string_view name)
{
    if (name.size() < 4)
        return false;
    std::string suffix(name.substr(name.size() - 4));
    for (char& c : suffix)
        c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return suffix == ".xml";
}

Statement readZip(std::string_view bytes)
{
    const std::vector<ZipArchive::Member> members = ZipArchive::read(bytes, isXmlName);
    if (members.empty())
        throw StatementError("Die ZIP-Datei enthaelt keinen Kontoauszug (keine XML-Datei).");
    Statement all;
    int next = 0;
    for (const ZipArchive::Member& member : members) {
        Statement one;
        try {
            one = CamtReader::read(member.bytes, next);
        } catch (const StatementError& e) {
            throw StatementError(member.name.substr(0, 80) + " in der ZIP-Datei: " + e.what());
        }
        if (all.format.empty())
            all.format = one.format;
        if (one.bookings.size() > Statement::kMaxBookings - all.bookings.size())
            throw StatementError("Die ZIP-Datei hat mehr als " + std::to_string(Statement::kMaxBookings) + " Buchungen.");
        std::move(one.bookings.begin(), one.bookings.end(), std::back_inserter(all.bookings));
        next += one.statementCount;
    }
    all.statementCount = next;
    return all;
}

// True when a profile's header cells are a strict part of another's.
bool isNarrower(const CsvProfile& a, const CsvProfile& b)
{
    if (a.header.size() >= b.header.size())
        return false;
    return std::all_of(a.header.begin(), a.header.end(), [&b](const std::string& cell) {
        return cell.empty() || std::find(b.header.begin(), b.header.end(), cell) != b.header.end();
    });
}

} // namespace

std::optional<std::string> StatementReader::decode(std::string_view bytes, const CsvProfile& profile)
{
    for (const TextEncoding::Kind kind : profile.encodings)
        if (std::optional<std::string> text = TextEncoding::toUtf8(bytes, kind))
            return text;
    return std::nullopt;
}

std::vector<const CsvProfile*> StatementReader::fittingProfiles(std::string_view bytes, const CsvProfiles& profiles)
{
    // The header stands near the top: each profile looks at the first lines only.
    std::string_view head = bytes;
    if (head.size() > kHeadSize)
        head = head.substr(0, head.find_last_of('\n', kHeadSize) + 1);
    std::vector<const CsvProfile*> fitting;
    for (const CsvProfile& profile : profiles.all()) {
        const std::optional<std::string> text = decode(head, profile);
        if (text && CsvStatementReader::hasHeader(*text, profile))
            fitting.push_back(&profile);
    }
    std::vector<const CsvProfile*> closest;
    for (const CsvProfile* candidate : fitting)
        if (std::none_of(fitting.begin(), fitting.end(),
                [candidate](const CsvProfile* other) { return isNarrower(*candidate, *other); }))
            closest.push_back(candidate);
    if (closest.size() < 2)
        return closest;
    // Equally close: those that read the file with the fewest skipped lines.
    std::vector<std::pair<const CsvProfile*, std::size_t>> read;
    for (const CsvProfile* candidate : closest) {
        try {
            read.emplace_back(candidate, CsvStatementReader::read(*decode(bytes, *candidate), *candidate).skippedLines);
        } catch (const StatementError&) {
        }
    }
    std::vector<const CsvProfile*> best;
    for (const auto& [profile, skipped] : read)
        if (std::none_of(read.begin(), read.end(), [skipped = skipped](const auto& other) { return other.second < skipped; }))
            best.push_back(profile);
    return best.empty() ? closest : best;
}

std::optional<Statement> StatementReader::read(
    std::string_view bytes, const CsvProfiles& profiles, const ProfileChoice& choose)
{
    if (bytes.size() > kMaxFileSize)
        throw StatementError("Die Datei ist groesser als " + std::to_string(kMaxFileSize >> 20)
            + " MiB; so grosse Kontoauszuege liest Saldo nicht.");
    if (bytes.empty())
        throw StatementError("Die Datei ist leer.");
    if (ZipArchive::looksLikeZip(bytes))
        return readZip(bytes);
    if (CamtReader::looksLikeXml(bytes))
        return CamtReader::read(bytes);
    if (std::memchr(bytes.data(), '\0', std::min<std::size_t>(bytes.size(), 64 * 1024)))
        throw StatementError("Die Datei ist kein Kontoauszug (weder camt.053 noch CSV).");

    const std::vector<const CsvProfile*> fitting = fittingProfiles(bytes, profiles);
    const CsvProfile* profile = fitting.size() == 1 ? fitting.front() : nullptr;
    if (!profile) {
        std::vector<const CsvProfile*> candidates = fitting;
        if (candidates.empty())
            for (const CsvProfile& any : profiles.all())
                candidates.push_back(&any);
        if (candidates.empty())
            throw StatementError("Saldo kennt kein Bankprofil, mit dem es diese Datei lesen koennte.");
        profile = choose ? choose(candidates, fitting.empty()) : nullptr;
        if (!profile)
            return std::nullopt;
    }
    const std::optional<std::string> text = decode(bytes, *profile);
    if (!text)
        throw StatementError("Die Datei ist nicht in der Kodierung des Formats \"" + profile->name + "\" geschrieben.");
    return CsvStatementReader::read(*text, *profile, fitting.empty());
}

std::optional<Statement> StatementReader::readFile(
    const std::string& path, const CsvProfiles& profiles, const ProfileChoice& choose)
{
    SmallFile::Outcome file = SmallFile::read(path, kMaxFileSize);
    if (file.fault) {
        switch (*file.fault) {
        case SmallFile::Fault::CannotOpen:
            throw StatementError("Die Datei kann nicht geoeffnet werden (" + std::string(std::strerror(file.error)) + ").");
        case SmallFile::Fault::NotRegular:
            throw StatementError("Das ist keine gewoehnliche Datei (ein Ordner, eine Pipe oder ein Geraet); "
                                 "Kontoauszuege liest Saldo nur aus Dateien.");
        case SmallFile::Fault::TooLarge:
            throw StatementError("Die Datei ist groesser als " + std::to_string(kMaxFileSize >> 20)
                + " MiB; so grosse Kontoauszuege liest Saldo nicht.");
        case SmallFile::Fault::CannotRead:
            throw StatementError("Die Datei kann nicht gelesen werden (" + std::string(std::strerror(file.error)) + ").");
        }
    }
    return read(file.bytes, profiles, choose);
}

} // namespace saldo
