#include "model/InterruptedSaves.h"

#include "model/LedgerFile.h"
#include "platform/TemporaryFile.h"

#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace saldo {

namespace {

bool newer(const timespec& a, const timespec& b)
{
    return a.tv_sec != b.tv_sec ? a.tv_sec > b.tv_sec : a.tv_nsec > b.tv_nsec;
}

} // namespace

std::optional<InterruptedSaves::Found> InterruptedSaves::sweep(const std::string& ledger, bool keepNewer)
{
    struct stat file { };
    const bool exists = ::stat(ledger.c_str(), &file) == 0;
    std::optional<Found> kept;
    const std::vector<std::string> left = TemporaryFile::leftBeside(ledger);
    // Newest first: the first complete one newer than the ledger is kept.
    for (auto it = left.rbegin(); it != left.rend(); ++it) {
        struct stat info { };
        if (keepNewer && !kept && ::stat(it->c_str(), &info) == 0 && (!exists || newer(info.st_mtim, file.st_mtim))) {
            try {
                kept = Found { *it, LedgerFile::read(*it), info.st_mtim.tv_sec };
                continue;
            } catch (const LedgerFileError&) {
                // Cut short by the kill: nothing to offer.
            } catch (const std::bad_alloc&) {
            }
        }
        ::unlink(it->c_str());
    }
    return kept;
}

} // namespace saldo
