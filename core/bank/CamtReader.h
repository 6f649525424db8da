#pragma once

#include "bank/Statement.h"

#include <string_view>

namespace saldo {

// Reads a camt.053 bank-to-customer statement (ISO 20022, versions 001.02 to
// 001.13; German banks deliver 001.02, 001.04 and 001.08) into bookings.
// Elements are found by their local names, whatever prefix a bank gives them.
// Each entry gives one booking; a batch entry whose details carry an amount
// each gives one booking per detail. The markup is parsed without a document
// type: a DOCTYPE (and with it every entity declaration) is refused, nesting
// is capped at kMaxDepth, and a statement in another currency than EUR is
// refused. Every fault throws StatementError with a German reason.
class CamtReader {
public:
    static constexpr int kMaxDepth = 40;

    // True when the bytes look like XML markup (after a byte-order mark and blanks).
    static bool looksLikeXml(std::string_view bytes);

    // The bookings of every statement of the message; `firstStatement` numbers
    // its first statement (a ZIP's files count on).
    static Statement read(std::string_view bytes, int firstStatement = 0);
};

} // namespace saldo
