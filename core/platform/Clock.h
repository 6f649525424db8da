#pragma once

namespace saldo {

// Seconds since the reference date 2001-01-01 00:00:00 UTC, the time base of
// every `datum` in a ledger.
using ReferenceSeconds = double;

// Seconds between the Unix epoch and the reference date.
inline constexpr double kReferenceDateUnixSeconds = 978307200.0;

// The current moment, with its fraction of a second. Tests may pin it.
ReferenceSeconds now();
void setNowOverrideForTesting(const ReferenceSeconds* fixed);

}  // namespace saldo
