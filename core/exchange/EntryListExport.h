#pragma once

#include "model/Einnahme.h"

#include <string>

namespace saldo {

// An exported entry list: the entries the table shows, in the order it shows
// them, encoded exactly as a ledger file is, so that any exported list can be
// loaded again and any ledger file can be loaded as a list. The file is the
// name the user chose with ".plist" appended, always ("Januar.plist" is written
// as "Januar.plist.plist"). Two diagnostic lines say how many bytes were
// encoded and which file received them; the file is replaced atomically, so a
// failed write leaves an earlier file of that name whole. A file of that name
// that holds a readable ledger (an earlier export included) is not written over.
class EntryListExport {
public:
    // The file an export to `chosenPath` writes.
    static std::string filePath(const std::string& chosenPath);

    // The file's URL: "file://", then the absolute path with every byte that
    // may not stand in a URL path percent-encoded ("Mein Januar" is
    // "Mein%20Januar").
    static std::string fileUrl(const std::string& path);

    // Encodes `einnahmen`, writes "Einnahmen erfolgreich verschluesselt: N bytes",
    // replaces the file and writes "Einnahmen erfolgreich auf Disk geschrieben: "
    // with the file's URL. Answers the file's path. Throws LedgerFileError when
    // the entries cannot be encoded (no line, no file) and FileWriteError when
    // the file cannot be written (only the first line).
    static std::string write(const std::string& chosenPath, const EinnahmeList& einnahmen);
};

} // namespace saldo
