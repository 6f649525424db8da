#pragma once

#include "core/support/TestSupport.h"
#include "model/Einnahme.h"

#include <gtest/gtest.h>

#include <string>

namespace saldo::testing {

// The entries of a ledger written by tests/data/report/reference_report.py as
// tab-separated lines (art, kategorie, brutto, steuersatz, datum, both flags,
// number of split bookings). The split bookings get large amounts so that any
// step that visits them changes the report.
EinnahmeList readEntriesTsv(const std::string& path);

// Sets TZ for the lifetime of the object and restores the previous value.
class ScopedTimeZone {
public:
    explicit ScopedTimeZone(const char* tz);
    ~ScopedTimeZone();
    ScopedTimeZone(const ScopedTimeZone&) = delete;
    ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;

private:
    bool hadValue_ = false;
    std::string previous_;
};

} // namespace saldo::testing
