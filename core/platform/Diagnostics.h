#pragma once

#include <functional>
#include <string>

namespace saldo {

// Diagnostic lines ("data saved", the "Row: " line of a cell edit) are plain
// lines on standard output, written and flushed one at a time.
void diagnosticLine(const std::string& text);

// Redirects the lines (tests capture them); returns the previous sink.
// An empty sink means standard output.
using DiagnosticSink = std::function<void(const std::string& line)>;
DiagnosticSink setDiagnosticSink(DiagnosticSink sink);

}  // namespace saldo
