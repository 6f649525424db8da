#pragma once

#include "bank/CsvProfiles.h"
#include "bank/Statement.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace saldo {

// Reads any statement file the program knows: a camt.053 message, a ZIP of
// them, or a bank's CSV export. A CSV file is read with the profile whose
// header it has; when several profiles fit, one whose header cells include
// another's is the closer fit, and of those still left the ones that read
// the file with the fewest skipped lines. Only when no profile fits, or
// several fit equally, the person is asked. Nothing is ever half read: a
// fault throws StatementError with one German reason.
class StatementReader {
public:
    static constexpr std::size_t kMaxFileSize = 256u << 20;
    // How much of a CSV file is looked at to find its header.
    static constexpr std::size_t kHeadSize = 64 * 1024;

    // Asked when no profile or several fit, with the candidates (every
    // profile when none fits). Answers the chosen one, or nullptr to stop.
    // A profile chosen when none fits reads its columns by their place.
    using ProfileChoice
        = std::function<const CsvProfile*(const std::vector<const CsvProfile*>& candidates, bool noneFits)>;

    // The statement, or nothing when the person stopped at the question.
    static std::optional<Statement> read(
        std::string_view bytes, const CsvProfiles& profiles, const ProfileChoice& choose);
    // The same for a file; an unreadable file is a StatementError too.
    static std::optional<Statement> readFile(
        const std::string& path, const CsvProfiles& profiles, const ProfileChoice& choose);

    // The profiles that fit a CSV file after the narrowing above.
    static std::vector<const CsvProfile*> fittingProfiles(std::string_view bytes, const CsvProfiles& profiles);

    // The bytes as UTF-8 text in the first of the profile's encodings that
    // takes them, or nothing.
    static std::optional<std::string> decode(std::string_view bytes, const CsvProfile& profile);
};

} // namespace saldo
