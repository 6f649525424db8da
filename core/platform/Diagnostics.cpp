#include "platform/Diagnostics.h"

#include <cstdio>

namespace saldo {
namespace {
DiagnosticSink& installedSink()
{
    static DiagnosticSink sink;
    return sink;
}
}  // namespace

void diagnosticLine(const std::string& text)
{
    if (auto& sink = installedSink()) {
        sink(text);
        return;
    }
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

DiagnosticSink setDiagnosticSink(DiagnosticSink sink)
{
    DiagnosticSink previous = std::move(installedSink());
    installedSink() = std::move(sink);
    return previous;
}

}  // namespace saldo
