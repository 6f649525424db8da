#pragma once

#include "model/Einnahme.h"

#include <string_view>

namespace saldo {

// Decodes an XML property list whose root is an array of entry dictionaries
// into entries. The markup is parsed without processing a document type:
// entities are never expanded or fetched, a document type that declares
// entities is refused, and an entity reference other than the five predefined
// ones and numeric character references is refused. Text is decoded here, so
// every string is checked to be UTF-8. Values under keys other than the twelve
// are checked for well-formedness and dropped. Split bookings nest at most
// LedgerEntryPath::kMaxNesting levels, other values a bounded depth too. Any
// fault throws LedgerFileError naming what was wrong and where.
class XmlPropertyListReader {
public:
    static EinnahmeList readEntries(std::string_view bytes);
};

} // namespace saldo
