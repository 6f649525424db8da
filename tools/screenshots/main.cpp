// Renders the README's pictures of the desktop program offscreen: the search
// menu, a filtered and sorted table with a selection, the detail panel of an
// income and of an expense, the delete confirmation, the file menu after a
// list that could not be loaded, the split-booking editor, the
// recurring-entries sheet, the preferences window and the summary panel over
// the income limit, the Hilfe menu with the shortcut list, the German open
// panel and save question, and the VAT return's window of the year. Nothing
// is saved: the ledger is read into an untitled document, and the
// preferences write into memory.
//   saldo-screenshots OUTDIR LEDGER [STATEMENT]
#include "app/Document.h"
#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/ShortcutsDialog.h"
#include "app/SplitViewController.h"
#include "app/WindowActions.h"
#include "editors/DetailViewController.h"
#include "editors/ModalDetailViewController.h"
#include "editors/SerialTransactionCreationViewController.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/EntryLists.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/ViewController.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/EuerViewController.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "bank/BankRuleCodec.h"
#include "bank/ProposalTableModel.h"
#include "bank/StatementImport.h"
#include "bank/StatementWindow.h"
#include "evaluation/SummaryViewController.h"
#include "evaluation/UstvaViewController.h"
#include "model/Kategorien.h"
#include "platform/DeleteConfirmation.h"
#include "platform/Dialogs.h"
#include "platform/FileDialog.h"
#include "platform/GermanTranslations.h"
#include "platform/UserDefaults.h"
#include "settings/PreferencesViewController.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <functional>
#include <map>

namespace {

using namespace saldo;
using namespace saldo::gui;

// Lets fades and pop-ups settle before a picture is taken.
void settle()
{
    QElapsedTimer settling;
    settling.start();
    while (settling.elapsed() < 400)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

QAction* itemTitled(const QMenu* menu, const QString& title)
{
    for (QAction* action : menu->actions())
        if (action->text() == title)
            return action;
    return nullptr;
}

bool save(const QPixmap& picture, const QDir& target, const QString& name)
{
    const QString path = target.filePath(name);
    if (!picture.save(path)) {
        std::fprintf(stderr, "saldo-screenshots: could not write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

struct Scene {
    Document& document;
    DocumentWindow* window;
    ViewController* list;
    const QDir& target;
    QString ledgerPath;
};

bool searchMenuAndFilteredTable(const Scene& s)
{
    SearchFieldController* search = s.list->searchFieldController();
    QMenu* menu = search->searchMenu();
    search->popUpSearchMenu();
    QAction* brutto = itemTitled(menu, QStringLiteral("Brutto"));
    menu->setActiveAction(brutto);
    brutto->menu()->popup(menu->mapToGlobal(menu->actionGeometry(brutto).topRight()));
    settle();
    // Pop-ups are windows of their own: drawn over the window where they show.
    QPixmap picture = s.window->grab();
    {
        QPainter painter(&picture);
        const QPoint origin = s.window->mapToGlobal(QPoint(0, 0));
        painter.drawPixmap(menu->pos() - origin, menu->grab());
        painter.drawPixmap(brutto->menu()->pos() - origin, brutto->menu()->grab());
    }
    brutto->menu()->close();
    menu->close();
    bool ok = save(picture, s.target, QStringLiteral("search-menu.png"));

    // "Gestaltung" entries, highest gross amount first, three of them selected.
    search->searchField()->setText(QStringLiteral("Gestaltung"));
    QTableView* table = s.list->tableView();
    table->sortByColumn(EntryColumn::Brutto, Qt::DescendingOrder);
    table->selectRow(0);
    for (int row : { 5, 12 })
        table->selectionModel()->setCurrentIndex(
            table->model()->index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    settle();
    ok = save(s.window->grab(), s.target, QStringLiteral("filtered-sorted-selection.png")) && ok;
    search->searchField()->clear();
    return ok;
}

bool detailPanels(const Scene& s)
{
    auto income = Einnahme::make("Webdesign Praxis Dr. Keller", "8400 Erlöse 19% Gesch. ", 1190.0f, 19.0f);
    income->setRechnungsnummer("2025-041");
    income->setLeistungsart("Dienstleistung");
    income->setDatum(785000000.0);
    auto expense = Einnahme::make("Druckerpatronen", "4930 Bürobedarf Gesch. ", 59.5f, 19.0f);
    expense->setArt(kArtAusgabe);
    expense->setRechnungsnummer("A-99812");
    expense->setSteuernummer("DE811907980");
    expense->setInnergemeinschaftlicherErwerb(true);
    expense->setDatum(784000000.0);

    InMemoryUserDefaults defaults;
    defaults.setStringArray(Kategorien::kKey, Kategorien::defaultKategorien());
    DetailViewController panel(s.document, defaults);
    panel.resize(620, 330);
    panel.show();
    bool ok = true;
    for (auto [entry, file] :
        { std::pair { income, "detail-income.png" }, std::pair { expense, "detail-expense.png" } }) {
        panel.showEntry(entry);
        settle();
        ok = save(panel.grab(), s.target, QLatin1String(file)) && ok;
    }
    return ok;
}

bool deleteConfirmation(const Scene& s)
{
    auto [box, okButton]
        = DeleteConfirmation::create(nullptr, QString::fromStdString(EntryLists::deleteConfirmationText(3)));
    box->show();
    box->adjustSize();
    settle();
    return save(box->grab(), s.target, QStringLiteral("delete-confirmation.png"));
}

// Answers the open panel with one file instead of showing it.
class ChosenFile : public Dialogs {
public:
    explicit ChosenFile(QString path)
        : path_(std::move(path))
    {
        Dialogs::setInstance(this);
    }
    ~ChosenFile() override { Dialogs::setInstance(nullptr); }
    QString getOpenFileName(QWidget*, const QString&, const QString&, const QString&) override { return path_; }

private:
    QString path_;
};

bool fileMenuAfterAFailedLoad(const Scene& s)
{
    QTemporaryDir scratch;
    const QString notes = scratch.filePath(QStringLiteral("Notizen.txt"));
    QFile file(notes);
    if (!file.open(QIODevice::WriteOnly) || file.write("Miete;1190\n") < 0)
        return false;
    file.close();
    s.list->tableView()->selectRow(0);
    {
        ChosenFile chosen(notes);
        s.window->actions()->importEntriesAction()->trigger();
    }
    QMenuBar* bar = s.window->menuBar();
    QAction* ablage = bar->actions().front();
    QMenu* menu = ablage->menu();
    menu->popup(bar->mapToGlobal(bar->actionGeometry(ablage).bottomLeft()));
    menu->setActiveAction(s.window->actions()->importEntriesAction());
    settle();
    QPixmap picture = s.window->grab();
    {
        QPainter painter(&picture);
        painter.drawPixmap(menu->pos() - s.window->mapToGlobal(QPoint(0, 0)), menu->grab());
    }
    menu->close();
    return save(picture, s.target, QStringLiteral("file-menu.png"));
}

// The row of the first entry of that name in the shown list.
int rowNamed(const Scene& s, const std::string& name)
{
    const auto& einnahmen = s.document.einnahmen();
    for (std::size_t row = 0; row < einnahmen.size(); ++row)
        if (einnahmen[row]->name() == name)
            return static_cast<int>(row);
    std::fprintf(stderr, "saldo-screenshots: no entry %s\n", name.c_str());
    return -1;
}

bool splitBookingEditor(const Scene& s)
{
    const int row = rowNamed(s, "Einkauf Bürofachmarkt");
    s.list->tableView()->selectRow(row);
    ModalDetailViewController* editor = s.window->splitViewController()->openSplitBookingEditor(row);
    if (!editor)
        return false;
    editor->tableView()->selectRow(1);
    settle();
    const bool ok = save(editor->grab(), s.target, QStringLiteral("split-booking-editor.png"));
    editor->reject();
    return ok;
}

bool serialTransactionSheet(const Scene& s)
{
    const int row = rowNamed(s, "Zeitschrift Page (Abo)");
    s.list->tableView()->selectRow(row);
    SerialTransactionCreationViewController* sheet = s.window->splitViewController()->openSerialTransactionSheet(row);
    if (!sheet)
        return false;
    sheet->whenInMonthSelection()->setCurrentIndex(1);
    sheet->intervallSelection()->setCurrentIndex(2);
    settle();
    const bool ok = save(sheet->grab(), s.target, QStringLiteral("serial-transaction.png"));
    sheet->reject();
    return ok;
}

// The proposals of the example statement with two rules kept and a category
// just given by hand (so that "Regel merken" is offered), and the
// preferences page of the rules.
QString g_statement;
bool statementProposals(const Scene& s)
{
    if (g_statement.isEmpty())
        return true;
    UserDefaults& defaults = s.document.defaults();
    BankRule telekom;
    telekom.name = "Telefon";
    telekom.partner = "telekom";
    telekom.kategorie = "4925 Telefax und Internetkosten Gesch. ";
    BankRule porto;
    porto.name = "Porto";
    porto.text = "porto";
    porto.sign = BankRule::Sign::Out;
    porto.kategorie = "4910 Porto Gesch. ";
    porto.steuersatz = 0.0f;
    porto.nameTemplate = "Porto %partner";
    BankRuleCodec::store(defaults, { telekom, porto });
    auto* import = s.window->findChild<StatementImport*>();
    if (!import || !import->loadFile(g_statement))
        return false;
    StatementWindow* proposals = import->statementWindow();
    proposals->resize(1240, 330);
    ProposalTableModel* model = proposals->model();
    const QModelIndex weingut = model->index(2, ProposalTableModel::Kategorie);
    proposals->tableView()->setCurrentIndex(weingut);
    model->setData(weingut, QStringLiteral("8400 Erl\u00f6se 19% Gesch. "));
    settle();
    bool ok = save(proposals->grab(), s.target, QStringLiteral("statement-proposals.png"));
    proposals->close();

    PreferencesViewController preferences(defaults);
    preferences.pages()->setCurrentIndex(preferences.pages()->count() - 1);
    preferences.show();
    settle();
    ok = save(preferences.grab(), s.target, QStringLiteral("bank-rules.png")) && ok;
    BankRuleCodec::store(defaults, {});
    return ok;
}

// The preferences with a row selected and an income limit set, then
// the summary panel of the ledger whose income is over that limit.
bool preferencesAndLimitWarning(const Scene& s)
{
    InMemoryUserDefaults defaults;
    defaults.setStringArray(Kategorien::kKey, Kategorien::defaultKategorien());
    einnahmenLimit() = 30000.0f;
    PreferencesViewController preferences(defaults);
    preferences.show();
    QTableView* table = preferences.tableView();
    const QModelIndex row = table->model()->index(6, 0);
    table->scrollTo(row, QAbstractItemView::PositionAtCenter);
    table->selectRow(row.row());
    settle();
    bool ok = save(preferences.grab(), s.target, QStringLiteral("preferences.png"));

    SummaryViewController* summary = s.window->splitViewController()->summaryViewController();
    summary->updateLabels();
    settle();
    // The warning line and the totals below it.
    ok = save(summary->grab(QRect(0, 0, summary->width(), 150)), s.target, QStringLiteral("limit-warning.png")) && ok;
    einnahmenLimit().reset();
    summary->updateLabels();
    return ok;
}

// The Hilfe menu open over the window, and the shortcut list it opens.
bool helpMenuAndShortcuts(const Scene& s)
{
    QMenu* hilfe = nullptr;
    QAction* entry = nullptr;
    for (QAction* action : s.window->menuBar()->actions())
        if (action->menu() && action->text() == QStringLiteral("&Hilfe"))
            entry = action, hilfe = action->menu();
    if (!hilfe)
        return false;
    s.window->menuBar()->setActiveAction(entry);
    settle();
    // The menu bar and the menu, with the window's top left below them.
    QPixmap picture = s.window->grab(QRect(0, 0, 720, 300));
    {
        QPainter painter(&picture);
        painter.drawPixmap(hilfe->pos() - s.window->mapToGlobal(QPoint(0, 0)), hilfe->grab());
    }
    hilfe->close();
    bool ok = save(picture, s.target, QStringLiteral("help-menu.png"));

    s.window->actions()->shortcutsAction()->trigger();
    settle();
    if (auto* shortcuts = s.window->findChild<ShortcutsDialog*>()) {
        ok = save(shortcuts->grab(), s.target, QStringLiteral("shortcuts.png")) && ok;
        shortcuts->close();
    }
    return ok;
}

// Qt's own dialogs in German: the open panel in the ledger's folder, and the
// question before an untitled ledger with changes closes.
bool germanDialogs(const Scene& s)
{
    const auto open = FileDialog::create(s.window, QStringLiteral("Oeffnen"), s.ledgerPath,
        QStringLiteral("Saldo-Dokumente (*.saldo);;Alle Dateien (*)"), QFileDialog::AcceptOpen);
    open->setOption(QFileDialog::DontUseNativeDialog);
    open->show();
    settle();
    bool ok = save(open->grab(), s.target, QStringLiteral("open-dialog.png"));
    open->close();

    // The question is modal: it is photographed from inside its own loop.
    bool asked = false;
    QTimer::singleShot(400, s.window, [&] {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(top); box && box->isVisible()) {
                asked = save(box->grab(), s.target, QStringLiteral("save-question.png"));
                box->reject();
            }
        }
    });
    Dialogs::instance().askSaveChanges(s.window, s.document.displayName());
    return ok && asked;
}

// The VAT return's window over the example ledger, for the whole year.
bool ustvaWindow(const Scene& s)
{
    s.window->actions()->ustvaAction()->trigger();
    auto* ustva = s.window->findChild<UstvaViewController*>();
    if (!ustva)
        return false;
    ustva->setPeriod(*tax::TaxPeriod::months(2025, 1, 12));
    ustva->worker().finish();
    ustva->resize(980, 700);
    settle();
    const bool ok = save(ustva->grab(), s.target, QStringLiteral("ustva-window.png"));
    ustva->close();
    return ok;
}

// The Anlage EÜR's window over the example ledger's year, with the items
// behind Zeile 51 (Arbeitsmittel) in their tab.
bool euerWindow(const Scene& s)
{
    s.window->actions()->euerAction()->trigger();
    auto* euer = s.window->findChild<EuerViewController*>();
    if (!euer)
        return false;
    euer->resize(1000, 860);
    euer->setYear(2025);
    euer->worker().finish();
    for (int row = 0; row < euer->formModel()->rowCount(); ++row)
        if (euer->formModel()->rows().at(row).cells.at(0) == QStringLiteral("51"))
            euer->showItemsBehind(row);
    euer->worker().finish();
    settle();
    const bool ok = save(euer->grab(), s.target, QStringLiteral("euer-window.png"));
    euer->close();
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    Q_INIT_RESOURCE(saldo);
    QApplication app(argc, argv);
    GermanTranslations::install(app);
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr, "usage: saldo-screenshots OUTDIR LEDGER [STATEMENT]\n");
        return 2;
    }
    if (argc == 4)
        g_statement = QString::fromLocal8Bit(argv[3]);
    const QDir target(QString::fromLocal8Bit(argv[1]));
    QDir().mkpath(target.path());
    QFile file(QString::fromLocal8Bit(argv[2]));
    InMemoryUserDefaults defaults;
    // Enables the menu items of the program as a whole; it opens nothing.
    DocumentController controller(defaults);
    Document document(defaults);
    if (!file.open(QIODevice::ReadOnly) || !document.readFromData(file.readAll())) {
        std::fprintf(stderr, "saldo-screenshots: cannot read %s\n", argv[2]);
        return 1;
    }
    document.showWindows();
    DocumentWindow* window = document.windowController();
    settle();
    const Scene scene { document, window, window->splitViewController()->viewController(), target,
        QFileInfo(file.fileName()).absoluteFilePath() };

    bool ok = true;
    for (const auto& render :
        { searchMenuAndFilteredTable, detailPanels, deleteConfirmation, fileMenuAfterAFailedLoad, splitBookingEditor,
            serialTransactionSheet, preferencesAndLimitWarning, statementProposals, helpMenuAndShortcuts, germanDialogs,
            ustvaWindow, euerWindow })
        ok = render(scene) && ok;
    return ok ? 0 : 1;
}
