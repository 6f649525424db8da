// Figures of the desktop program at ledger sizes a large business reaches:
// opening a document into a painted window, saving it, one summary-panel refresh (engine
// plus text view), the text view alone, scrolling the entry table, and a
// change in the category preferences reaching an open window, and the main
// thread's share of an evaluation of the Anlage EÜR's window. Runs
// offscreen. Read medians with --benchmark_repetitions=5. SALDO_BENCH_LEDGER=FILE
// measures that ledger instead of the made one.
//   gui_bench [benchmark options]
//   gui_bench --write-ledger COUNT FILE    writes a ledger of COUNT entries
#include "app/BackgroundSave.h"
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "app/SplitViewController.h"
#include "entrylist/ViewController.h"
#include "evaluation/CalcEngine.h"
#include "evaluation/EuerViewController.h"
#include "evaluation/FormTableModel.h"
#include "evaluation/LedgerWorker.h"
#include "evaluation/ListedItemsModel.h"
#include "evaluation/ListedItemsView.h"
#include "evaluation/SummaryViewController.h"
#include "model/Kategorien.h"
#include "model/LedgerFile.h"
#include "platform/UserDefaults.h"
#include "settings/PreferencesViewController.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTableView>
#include <benchmark/benchmark.h>

#include <memory>

#include "GuiBenchMain.h"

#include "RealisticLedger.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <random>

namespace {

using namespace saldo;
using namespace saldo::gui;

const EinnahmeList& ledgerOf(std::size_t count)
{
    return bench::cachedRealisticLedger(count);
}

void BM_OpenDocumentUntilPainted(benchmark::State& state)
{
    const std::string bytes = LedgerFile::encode(ledgerOf(static_cast<std::size_t>(state.range(0))));
    const QByteArray data(bytes.data(), static_cast<qsizetype>(bytes.size()));
    InMemoryUserDefaults defaults;
    for (auto _ : state) {
        Document document(defaults);
        document.readFromData(data);
        document.makeWindowControllers();
        document.windowController()->show();
        // grab() paints the whole window now, whether or not the platform
        // has exposed it yet.
        benchmark::DoNotOptimize(document.windowController()->grab());
        state.PauseTiming();
        document.windowController()->hide();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenDocumentUntilPainted)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

// What opening adds after the file is read: the window with its table model,
// the first paint and the first summary.
void BM_OpenDocumentAfterRead(benchmark::State& state)
{
    const std::string bytes = LedgerFile::encode(ledgerOf(static_cast<std::size_t>(state.range(0))));
    const QByteArray data(bytes.data(), static_cast<qsizetype>(bytes.size()));
    InMemoryUserDefaults defaults;
    for (auto _ : state) {
        state.PauseTiming();
        auto document = std::make_unique<Document>(defaults);
        document->readFromData(data);
        state.ResumeTiming();
        document->makeWindowControllers();
        document->windowController()->show();
        benchmark::DoNotOptimize(document->windowController()->grab());
        state.PauseTiming();
        document.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OpenDocumentAfterRead)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

// A save by hand (Sichern): the entries coded, written beside the file,
// flushed to disk and renamed over it. The window waits for all of it.
void BM_SaveDocument(benchmark::State& state)
{
    const std::string bytes = LedgerFile::encode(ledgerOf(static_cast<std::size_t>(state.range(0))));
    InMemoryUserDefaults defaults;
    Document document(defaults);
    document.readFromData(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    document.makeWindowControllers();
    const QString path = QDir::temp().filePath(QStringLiteral("saldo-save-bench.saldo"));
    for (auto _ : state) {
        if (!document.saveTo(path))
            state.SkipWithError("the save failed");
    }
    QFile::remove(path);
}
BENCHMARK(BM_SaveDocument)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

// The time the main thread is held by one autosave of N entries: the
// snapshot taken and the worker started, then, when the worker is done, the
// outcome noted. The worker's coding and writing are not counted.
void BM_AutosaveMainThreadHold(benchmark::State& state)
{
    const std::string bytes = LedgerFile::encode(ledgerOf(static_cast<std::size_t>(state.range(0))));
    InMemoryUserDefaults defaults;
    Document document(defaults);
    document.readFromData(QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
    const QString path = QDir::temp().filePath(QStringLiteral("saldo-autosave-bench.saldo"));
    if (!document.saveTo(path))
        state.SkipWithError("the first save failed");
    for (auto _ : state) {
        state.PauseTiming();
        document.noteChangeOutsideVerbs();
        state.ResumeTiming();
        document.autosave();
        state.PauseTiming();
        if (!document.isSaving())
            state.SkipWithError("no save started");
        document.waitForBackgroundSave();
        state.ResumeTiming();
        document.finishBackgroundSave();
    }
    QFile::remove(path);
}
BENCHMARK(BM_AutosaveMainThreadHold)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

// The time the main thread is held by one refresh of the summary panel: the
// snapshot taken and the worker started, then the text replaced. One amount
// changes before each refresh, so that the report's text is a new one.
// A document of N entries without a window, with a summary panel over it.
struct SummaryOfLedger {
    explicit SummaryOfLedger(std::size_t count)
    {
        document.replaceAllEntries(ledgerOf(count));
    }
    InMemoryUserDefaults defaults;
    Document document { defaults };
    SummaryViewController summary { document };
};

void BM_SummaryMainThreadHold(benchmark::State& state)
{
    SummaryOfLedger bench(static_cast<std::size_t>(state.range(0)));
    Document& document = bench.document;
    SummaryViewController& summary = bench.summary;
    float brutto = 100.0f;
    for (auto _ : state) {
        state.PauseTiming();
        brutto += 1.0f;
        document.editEntry(document.einnahmen().front(), [&](Einnahme& e) { e.setBrutto(brutto); });
        state.ResumeTiming();
        summary.refresh();
        state.PauseTiming();
        summary.waitForWorker();
        state.ResumeTiming();
        summary.finishRefresh();
    }
}
BENCHMARK(BM_SummaryMainThreadHold)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond)->UseRealTime();

// A whole refresh, the worker's evaluation included (what the panel waits
// for before its text changes).
void BM_SummaryRefresh(benchmark::State& state)
{
    SummaryOfLedger bench(static_cast<std::size_t>(state.range(0)));
    SummaryViewController& summary = bench.summary;
    for (auto _ : state)
        summary.updateLabels();
    state.counters["text_bytes"] = static_cast<double>(summary.resultTextView()->toPlainText().toUtf8().size());
}
BENCHMARK(BM_SummaryRefresh)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_EngineOnly(benchmark::State& state)
{
    const EinnahmeList& entries = ledgerOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        sharedCalcEngine().calculate(entries);
}
BENCHMARK(BM_EngineOnly)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_ReportIntoTextView(benchmark::State& state)
{
    sharedCalcEngine().calculate(ledgerOf(100000));
    const QString text = QString::fromStdString(sharedCalcEngine().ergebnisString());
    InMemoryUserDefaults defaults;
    Document document(defaults);
    SummaryViewController summary(document);
    summary.resize(440, 400);
    summary.show();
    for (auto _ : state) {
        summary.resultTextView()->setPlainText(text);
        benchmark::DoNotOptimize(summary.resultTextView()->viewport()->grab());
    }
    state.counters["text_bytes"] = static_cast<double>(text.toUtf8().size());
}
BENCHMARK(BM_ReportIntoTextView)->Unit(benchmark::kMillisecond);

void BM_ScrollTablePage(benchmark::State& state)
{
    InMemoryUserDefaults defaults;
    Document document(defaults);
    document.readFromData([&] {
        const std::string bytes = LedgerFile::encode(ledgerOf(static_cast<std::size_t>(state.range(0))));
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }());
    document.makeWindowControllers();
    document.windowController()->show();
    QTableView* table = document.windowController()->splitViewController()->viewController()->tableView();
    QScrollBar* bar = table->verticalScrollBar();
    state.counters["rows"] = table->model()->rowCount();
    std::mt19937 rng(7);
    for (auto _ : state) {
        bar->setValue(static_cast<int>(rng() % static_cast<unsigned>(bar->maximum() + 1)));
        benchmark::DoNotOptimize(table->viewport()->grab());
    }
}
BENCHMARK(BM_ScrollTablePage)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// One rename in the category preferences: the list stored, DetailViewUpdated
// posted, and the open window's table reloaded with its selection kept and
// repainted.
void BM_CategoryRenameReachesAnOpenWindow(benchmark::State& state)
{
    InMemoryUserDefaults defaults;
    Document document(defaults);
    document.readFromData([&] {
        const std::string bytes = LedgerFile::encode(ledgerOf(static_cast<std::size_t>(state.range(0))));
        return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
    }());
    document.makeWindowControllers();
    document.windowController()->show();
    QTableView* table = document.windowController()->splitViewController()->viewController()->tableView();
    table->selectRow(table->model()->rowCount() / 2);
    PreferencesViewController preferences(defaults);
    QAbstractItemModel* categories = preferences.tableView()->model();
    int round = 0;
    for (auto _ : state) {
        categories->setData(categories->index(0, 0), QStringLiteral("0027 EDV-Software %1 ").arg(++round));
        benchmark::DoNotOptimize(table->viewport()->grab());
    }
}
BENCHMARK(BM_CategoryRenameReachesAnOpenWindow)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// The time the main thread is held by one evaluation of the Anlage EÜR's
// window over a million entries: the snapshot taken and the worker started,
// then the form and the lists shown and painted; with an argument of 1 also
// the items behind Zeile 23 (every income of the year) in their tab. The
// worker's own time is not counted: the window stays responsive meanwhile.
void BM_EuerWindowMainThreadHold(benchmark::State& state)
{
    InMemoryUserDefaults defaults;
    Document document(defaults);
    document.replaceAllEntries(ledgerOf(1000000));
    EuerViewController euer(document, defaults);
    euer.resize(1000, 860);
    euer.show();
    euer.setYear(2024);
    euer.worker().finish();
    if (state.range(0) == 1) {
        for (int row = 0; row < euer.formModel()->rowCount(); ++row)
            if (euer.formModel()->rows().at(row).cells.at(0) == QStringLiteral("23"))
                euer.showItemsBehind(row);
        euer.worker().finish();
    }
    for (auto _ : state) {
        euer.worker().request();
        state.PauseTiming();
        euer.worker().waitForJob();
        state.ResumeTiming();
        QCoreApplication::processEvents();
    }
    state.counters["line_items"] = euer.lineItemsView()->model()->rowCount();
}
BENCHMARK(BM_EuerWindowMainThreadHold)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--write-ledger") == 0) {
        const std::string bytes = LedgerFile::encode(bench::realisticLedger(std::strtoull(argv[2], nullptr, 10)));
        std::ofstream(argv[3], std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return 0;
    }
    return runGuiBenchmarks(argc, argv);
}
