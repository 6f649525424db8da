#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class QPdfWriter;
class QWidget;

namespace saldo::gui {

// A PDF the user saves: the bytes go through the atomic writer, so a failure
// leaves an earlier file of that name as it was, and never over a file that
// holds a ledger.
class PdfFile {
public:
    // The bytes of a PDF on A4 paper in portrait, without margins, that
    // `paint` paints (it may change the writer's resolution and title).
    static QByteArray render(const std::function<void(QPdfWriter&)>& paint);

    // Throws FileWriteError when the file cannot be written.
    static void write(const QString& path, const QByteArray& bytes);

    // Asks for a file proposing `suggestedPath` (".pdf" is added to a name
    // without it), writes what `render` makes there, and says in an alert why
    // when it cannot. Answers whether the file was written.
    static bool saveWithDialog(
        QWidget* parent, const QString& suggestedPath, const std::function<QByteArray()>& render);
};

} // namespace saldo::gui
