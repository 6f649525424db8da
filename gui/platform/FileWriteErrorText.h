#pragma once

#include <QString>

namespace saldo {
class FileWriteError;
}

namespace saldo::gui {

// Says in German, for an alert, why a file the user named could not be
// written: one sentence for the kind of failure, and the system's own detail
// in parentheses when there is one.
class FileWriteErrorText {
public:
    static QString reason(const FileWriteError& error);
    // A file's name as it stands in a one-line message (the status bar):
    // control characters escaped (see PathText).
    static QString fileName(const QString& path);
};

} // namespace saldo::gui
