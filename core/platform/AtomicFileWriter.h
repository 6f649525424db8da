#pragma once

#include "platform/FileWriteError.h"
#include "platform/TemporaryFile.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace saldo {

// Writes the whole content of a file the user named, so that no failure and no
// crash ever leaves a half-written file in place of a good one. Every writer of
// the program goes through it: the ledger, an exported entry list, the
// spreadsheet export, the printout, and the command line's convert.
//
// - A regular file (or a new name) is replaced atomically: the bytes go into a
//   temporary file beside it (see TemporaryFile), are flushed to the disk, and
//   only then is the temporary renamed over the file and the folder flushed.
//   The old file's permissions are kept, and its owner and group where the
//   system allows it. A file that the user may not write, or whose
//   permissions let nobody write it (also when the superuser writes), is
//   refused, not renamed over.
// - A symbolic link stays a link: the file it points to is replaced (or made,
//   when the link points to a name that does not exist yet).
// - A character device or a named pipe is written through, never replaced;
//   a pipe that no program reads from is refused at once instead of waiting,
//   and one whose reader goes away fails the write.
//   Directories, block devices and sockets are refused.
// - A write stopped by the file-size limit fails with its error (the limit's
//   signal does not end the program) and cleans up like any other failure.
//
// On failure it throws FileWriteError: no temporary file is left behind and an
// earlier file keeps its bytes. It keeps no state between calls and may be
// called from any thread.
class AtomicFileWriter {
public:
    struct Options {
        // Asked with the regular file about to be replaced: true refuses the
        // write (FileWriteError::Kind::HoldsLedger) before anything is made.
        std::function<bool(const std::string& file)> holdsLedger;
        // Asked on the writing thread once every byte is on the disk, just
        // before the rename: false keeps the temporary file, complete and
        // flushed, instead of renaming it (a regular file or a new name only).
        std::function<bool()> mayReplace;
    };
    struct Result {
        // The file as written, right after the rename; zero for a device or a pipe.
        struct stat file { };
        // The temporary file when `mayReplace` said no: renamed over the file
        // later by renameOverTarget(), or removed with this object.
        std::unique_ptr<TemporaryFile> kept;
    };

    static Result write(const std::string& path, std::string_view bytes, const Options& options = {});
};

} // namespace saldo
