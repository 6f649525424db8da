#include "app/AboutDialog.h"

#include "app/AutosaveStore.h"
#include "app/DocumentController.h"
#include "platform/SettingsUserDefaults.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

namespace saldo::gui {

namespace {
QString pathRow(const QString& what, const QString& path)
{
    return QStringLiteral("<tr><td>%1:&nbsp;</td><td>%2</td></tr>")
        .arg(what, QDir::toNativeSeparators(path).toHtmlEscaped());
}
} // namespace

AboutDialog::AboutDialog(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("AboutDialog"));
    setWindowTitle(QStringLiteral("Ueber Saldo"));

    const QString version = QCoreApplication::applicationVersion();
    const DocumentController* controller = DocumentController::sharedDocumentController();
    const QString ledgers = controller ? controller->ledgerFolder() : QDir::homePath();
    text_ = new QLabel(this);
    text_->setTextFormat(Qt::RichText);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text_->setText(QStringLiteral("<h3>Saldo %1</h3>"
                                  "<p>Einnahmen-Ueberschuss-Rechnung fuer kleine Unternehmen.</p>"
                                  "<p>Freie Software unter der GNU General Public License, Version 3 oder "
                                  "neuer (GPL-3.0-or-later).</p>"
                                  "<table>%2%3%4</table>")
                       .arg(version.isEmpty() ? QStringLiteral("(Entwicklungsstand)") : version,
                           pathRow(QStringLiteral("Zuletzt benutzter Ordner fuer Dokumente"), ledgers),
                           pathRow(QStringLiteral("Einstellungen"), SettingsUserDefaults::programFileName()),
                           pathRow(QStringLiteral("Sicherungskopien unbenannter Dokumente"), AutosaveStore::folder())));

    auto* icon = new QLabel(this);
    const QIcon appIcon = QApplication::windowIcon().isNull() ? style()->standardIcon(QStyle::SP_MessageBoxInformation)
                                                              : QApplication::windowIcon();
    icon->setPixmap(appIcon.pixmap(64, 64));
    icon->setAlignment(Qt::AlignTop);

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(QStringLiteral("S&chliessen"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);

    auto* row = new QHBoxLayout;
    row->addWidget(icon);
    row->addWidget(text_, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(buttons);
}

QString AboutDialog::text() const
{
    return text_->text();
}

} // namespace saldo::gui
