// The statement import in a document window: Ablage's action and its
// shortcut, a refused file that changes nothing, the proposals window over
// its model (ticks, a category given by hand, Regel merken, Uebernehmen as
// one step that undo takes back), and the preferences page of the rules.
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "bank/BankRuleCodec.h"
#include "bank/ProposalTableModel.h"
#include "bank/StatementImport.h"
#include "bank/StatementWindow.h"
#include "core/bank/StatementFixtures.h"
#include "gui/support/LedgerFixtures.h"
#include "gui/support/ScriptedDialogs.h"
#include "platform/Calendar.h"
#include "settings/BankRuleDialog.h"
#include "settings/BankRuleListModel.h"
#include "settings/BankRulesPage.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <gtest/gtest.h>

#include <fstream>

namespace saldo::gui {
namespace {

using namespace testing;
using saldo::testing::camt;
using saldo::testing::CamtEntry;
using saldo::testing::camtDetail;

QString writeFile(const QTemporaryDir& dir, const char* name, const std::string& bytes)
{
    const QString path = dir.filePath(QString::fromLatin1(name));
    std::ofstream(path.toStdString(), std::ios::binary) << bytes;
    return path;
}

TEST(StatementWindowTest, TheActionLoadsAStatementAndTheTickedProposalsBecomeOneStep)
{
    InMemoryUserDefaults defaults;
    ScriptedDialogs dialogs;
    QTemporaryDir dir;
    auto document = shownDocument(defaults, 3);
    DocumentWindow& window = *document->windowController();
    auto* import = window.findChild<StatementImport*>();
    ASSERT_NE(import, nullptr);
    int withShortcut = 0;
    for (const QAction* action : window.findChildren<QAction*>())
        withShortcut += action->shortcuts().contains(QKeySequence(QStringLiteral("Ctrl+Shift+I")));
    EXPECT_EQ(withShortcut, 1);

    // A truncated statement: one reason, nothing changed.
    CamtEntry rent;
    rent.amount = "1190.00";
    rent.indicator = "DBIT";
    rent.details = camtDetail("08", "Cdtr", "Hausverwaltung", "DE11", { "Miete" });
    const std::string camtText = camt("08", { { rent, rent, rent } });
    dialogs.openFileNames.push_back(writeFile(dir, "kaputt.xml", camtText.substr(0, 300)));
    import->kontoauszugLaden();
    ASSERT_EQ(dialogs.errors.size(), 1);
    EXPECT_TRUE(dialogs.errors[0].contains(QStringLiteral("abgeschnitten"))) << dialogs.errors[0].toStdString();
    EXPECT_EQ(import->statementWindow(), nullptr);
    EXPECT_EQ(document->undoManager()->count(), 0);

    // The same rent three times, once already in the ledger (typed, another time of day).
    auto typed = Einnahme::make("Miete", "", 1190.0f, 19.0f);
    typed->setArt(kArtAusgabe);
    typed->setDatum(*Calendar::localMidnight(2025, 11, 3) + 60);
    document->appendStatementEntries({ typed });
    const std::size_t before = document->backupEinnahmen().size();
    dialogs.openFileNames.push_back(writeFile(dir, "auszug.xml", camtText));
    import->kontoauszugLaden();
    StatementWindow* shown = import->statementWindow();
    ASSERT_NE(shown, nullptr);
    ProposalTableModel* model = shown->model();
    QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    ASSERT_EQ(model->rowCount(), 3);
    EXPECT_EQ(model->index(0, ProposalTableModel::Status).data().toString(), QStringLiteral("schon im Ledger"));
    EXPECT_EQ(model->index(1, ProposalTableModel::Status).data().toString(), QStringLiteral("neu"));
    EXPECT_EQ(model->tickedCount(), 2);

    // A category given by hand offers Regel merken, which fills the other proposals of the counterparty.
    shown->tableView()->setCurrentIndex(model->index(1, ProposalTableModel::Kategorie));
    EXPECT_FALSE(shown->rememberButton()->isEnabled());
    ASSERT_TRUE(model->setData(model->index(1, ProposalTableModel::Kategorie), QStringLiteral("4210 Miete Gesch. ")));
    EXPECT_TRUE(shown->rememberButton()->isEnabled());
    shown->rememberButton()->click();
    const std::vector<BankRule> rules = BankRuleCodec::load(defaults);
    ASSERT_EQ(rules.size(), 1u);
    EXPECT_EQ(rules[0].partner, "Hausverwaltung");
    EXPECT_EQ(model->index(2, ProposalTableModel::Kategorie).data().toString(), QStringLiteral("4210 Miete Gesch. "));
    EXPECT_EQ(model->index(2, ProposalTableModel::Regel).data().toString(), QStringLiteral("Hausverwaltung"));

    // One proposal unticked; Uebernehmen appends the other as one step.
    ASSERT_TRUE(model->setData(model->index(2, ProposalTableModel::Tick), Qt::Unchecked, Qt::CheckStateRole));
    shown->takeButton()->click();
    EXPECT_EQ(document->backupEinnahmen().size(), before + 1);
    EXPECT_EQ(document->backupEinnahmen().back()->kategorie(), "4210 Miete Gesch. ");
    EXPECT_EQ(document->undoManager()->undoText(), QStringLiteral("Kontoauszug"));
    EXPECT_TRUE(document->isDocumentEdited());
    document->undoManager()->undo();
    EXPECT_EQ(document->backupEinnahmen().size(), before);
}

TEST(StatementWindowTest, TheRulesPageAddsEditsMovesAndRemoves)
{
    InMemoryUserDefaults defaults;
    defaults.setStringArray(BankRuleCodec::kKey, { "kaputt" });
    BankRulesPage page(defaults);
    QAbstractItemModelTester tester(page.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_FALSE(page.damage()->isHidden());
    EXPECT_EQ(page.model()->rowCount(), 0);

    for (const char* name : { "Miete", "Porto" }) {
        page.addRule();
        BankRuleDialog* dialog = page.openDialog();
        ASSERT_NE(dialog, nullptr);
        dialog->nameField()->setText(QString::fromLatin1(name));
        dialog->patternField()->setText(QStringLiteral("(offen"));
        dialog->accept();
        EXPECT_TRUE(dialog->problem()->text().startsWith(QStringLiteral("Das Muster ist fehlerhaft")));
        dialog->patternField()->clear();
        dialog->minField()->setText(QStringLiteral("1.234,5"));
        dialog->accept();
        EXPECT_TRUE(dialog->problem()->text().contains(QStringLiteral("kein Betrag")));
        dialog->minField()->setText(QStringLiteral("10,5"));
        dialog->kategorieField()->setCurrentText(QStringLiteral("4210 Miete Gesch. "));
        dialog->accept();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_TRUE(page.damage()->isHidden());
    std::vector<BankRule> stored = BankRuleCodec::load(defaults);
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(stored[1].name, "Porto");
    EXPECT_EQ(stored[1].minCents, 1050);
    EXPECT_EQ(stored[1].kategorie, "4210 Miete Gesch. ");

    page.moveUp();
    EXPECT_EQ(BankRuleCodec::load(defaults)[0].name, "Porto");
    page.removeRule();
    stored = BankRuleCodec::load(defaults);
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(stored[0].name, "Miete");
    EXPECT_EQ(page.model()->index(0, BankRuleListModel::Bedingung).data().toString(), QStringLiteral("ab 10,50 €"));
}

} // namespace
} // namespace saldo::gui
