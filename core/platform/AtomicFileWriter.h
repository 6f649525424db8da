#pragma once

#include "platform/FileWriteError.h"

#include <string>
#include <string_view>

namespace saldo {

// Writes the whole content of a file the user named, so that no failure and no
// crash ever leaves a half-written file in place of a good one. Every writer of
// the program goes through it: the ledger, an exported entry list, the
// spreadsheet export, and the command line's convert.
//
// - A regular file (or a new name) is replaced atomically: the bytes go into a
//   temporary file beside it, are flushed to the disk, and only then is the
//   temporary renamed over the file and the folder flushed. The old file's
//   permissions are kept, and its owner and group where the system allows it.
//   A file that the user may not write is refused, not renamed over.
// - A symbolic link stays a link: the file it points to is replaced (or made,
//   when the link points to a name that does not exist yet).
// - A character device or a named pipe is written through, never replaced;
//   a pipe that no program reads from is refused at once instead of waiting.
//   Directories, block devices and sockets are refused.
//
// On failure it throws FileWriteError: no temporary file is left behind and an
// earlier file keeps its bytes. It keeps no state between calls and may be
// called from any thread.
class AtomicFileWriter {
public:
    static void write(const std::string& path, std::string_view bytes);
};

} // namespace saldo
