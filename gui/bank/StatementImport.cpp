#include "bank/StatementImport.h"

#include "app/Document.h"
#include "bank/BankRuleCodec.h"
#include "bank/BankRuleError.h"
#include "bank/StatementError.h"
#include "bank/StatementProposals.h"
#include "bank/StatementReader.h"
#include "bank/StatementWindow.h"
#include "platform/Dialogs.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace saldo::gui {

StatementImport::StatementImport(Document& document, QWidget& window)
    : QObject(&window)
    , document_(document)
    , window_(window)
{
}

StatementWindow* StatementImport::statementWindow() const
{
    return shown_;
}

void StatementImport::kontoauszugLaden()
{
    const QString start = document_.isUntitled() ? QDir::homePath() : QFileInfo(document_.filePath()).absolutePath();
    const QString path = Dialogs::instance().getOpenFileName(&window_, QStringLiteral("Kontoauszug laden"),
        QStringLiteral("Kontoauszuege (*.xml *.zip *.csv *.txt *.CSV *.XML *.ZIP);;Alle Dateien (*)"), start);
    if (!path.isEmpty())
        loadFile(path);
}

bool StatementImport::loadFile(const QString& path)
{
    const CsvProfiles profiles = CsvProfiles::load();
    const auto choose = [&](const std::vector<const CsvProfile*>& candidates, bool noneFits) -> const CsvProfile* {
        QStringList names;
        for (const CsvProfile* candidate : candidates)
            names << QString::fromStdString(candidate->name);
        QString details = QStringLiteral("In welchem Format hat die Bank die Datei geschrieben?");
        if (noneFits) {
            details += QStringLiteral("\nEigene Formate gehoeren als Bankprofil nach %1.")
                           .arg(QString::fromStdString(CsvProfiles::userFolder()));
            for (const std::string& problem : profiles.problems())
                details += QLatin1Char('\n') + QString::fromStdString(problem);
        }
        const int chosen = Dialogs::instance().chooseItem(&window_,
            noneFits ? QStringLiteral("Kein bekanntes Bankformat passt zur Kopfzeile dieser Datei.")
                     : QStringLiteral("Mehrere Bankformate passen zu dieser Datei."),
            details, names);
        return chosen >= 0 && chosen < names.size() ? candidates[static_cast<std::size_t>(chosen)] : nullptr;
    };
    std::optional<Statement> statement;
    try {
        statement = StatementReader::readFile(QFile::encodeName(path).toStdString(), profiles, choose);
    } catch (const StatementError& e) {
        Dialogs::instance().showError(&window_,
            QStringLiteral("\u201E%1\u201C kann nicht als Kontoauszug gelesen werden.").arg(QFileInfo(path).fileName()),
            QString::fromStdString(e.what()));
        return false;
    }
    if (!statement)
        return false;

    BankRules rules;
    QString rulesNote;
    try {
        rules = BankRules(BankRuleCodec::load(document_.defaults()));
    } catch (const BankRuleError& e) {
        rulesNote = QStringLiteral("Die gespeicherten Bankregeln sind beschaedigt und werden nicht verwendet: %1")
                        .arg(QString::fromStdString(e.what()));
    }
    std::vector<Proposal> proposals = StatementProposals::make(*statement, rules, document_.backupEinnahmen());
    if (shown_)
        shown_->close();
    shown_ = new StatementWindow(document_, *statement, std::move(proposals), QFileInfo(path).fileName(), rulesNote, &window_);
    shown_->setWindowModality(Qt::WindowModal);
    shown_->show();
    return true;
}

} // namespace saldo::gui
