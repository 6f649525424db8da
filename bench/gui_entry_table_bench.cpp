// Figures of the entry table alone at 100,000 and 1,000,000 entries, offscreen:
// painting its viewport, scrolling a page, replacing a document's entries,
// reloading after "DetailViewUpdated", adding an entry, deleting one row with
// its undo, selecting every row, and one gross-amount edit in a cell.
// Read medians with --benchmark_repetitions=5.
#include "app/Document.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/ViewController.h"
#include "model/Kategorien.h"
#include "platform/Diagnostics.h"
#include "platform/Dialogs.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"

#include <QApplication>
#include <QScrollBar>
#include <QTableView>
#include <QUndoStack>

#include <benchmark/benchmark.h>

#include "GuiBenchMain.h"

#include "RealisticLedger.h"

#include <map>
#include <random>

namespace {

using namespace saldo;
using namespace saldo::gui;

const EinnahmeList& ledgerOf(std::size_t count)
{
    return bench::cachedRealisticLedger(count);
}

// Answers every confirmation with "OK".
class AlwaysOk : public Dialogs {
public:
    bool confirmDelete(QWidget*, const QString&) override { return true; }
};

struct Table {
    explicit Table(std::size_t count)
        : document(defaults)
        , vc(document, defaults)
    {
        document.replaceAllEntries(ledgerOf(count));
        vc.resize(1250, 720);
        vc.show();
        vc.viewWillAppear();
        QApplication::processEvents();
    }
    QTableView* table() const { return vc.tableView(); }

    InMemoryUserDefaults defaults;
    Document document;
    ViewController vc;
};

void BM_PaintViewport(benchmark::State& state)
{
    Table t(static_cast<std::size_t>(state.range(0)));
    t.table()->verticalScrollBar()->setValue(t.table()->verticalScrollBar()->maximum() / 2);
    for (auto _ : state)
        benchmark::DoNotOptimize(t.table()->viewport()->grab());
    state.counters["rows"] = t.table()->model()->rowCount();
}
BENCHMARK(BM_PaintViewport)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_ScrollOnePageAndPaint(benchmark::State& state)
{
    Table t(static_cast<std::size_t>(state.range(0)));
    QScrollBar* bar = t.table()->verticalScrollBar();
    for (auto _ : state) {
        bar->setValue((bar->value() + bar->pageStep()) % (bar->maximum() + 1));
        benchmark::DoNotOptimize(t.table()->viewport()->grab());
    }
}
BENCHMARK(BM_ScrollOnePageAndPaint)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_SetEntriesAndPaint(benchmark::State& state)
{
    Table t(1);
    const EinnahmeList& entries = ledgerOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        t.document.replaceAllEntries(entries);
        t.vc.viewWillAppear();
        benchmark::DoNotOptimize(t.table()->viewport()->grab());
    }
}
BENCHMARK(BM_SetEntriesAndPaint)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_DetailViewUpdatedReload(benchmark::State& state)
{
    Table t(static_cast<std::size_t>(state.range(0)));
    t.table()->selectRow(t.table()->model()->rowCount() / 2);
    for (auto _ : state) {
        NotificationCenter::defaultCenter().post(kDetailViewUpdated);
        benchmark::DoNotOptimize(t.table()->viewport()->grab());
    }
}
BENCHMARK(BM_DetailViewUpdatedReload)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_AddEntry(benchmark::State& state)
{
    Table t(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        t.vc.addEntry();
        benchmark::DoNotOptimize(t.table()->viewport()->grab());
    }
}
BENCHMARK(BM_AddEntry)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_DeleteMiddleRowThenUndo(benchmark::State& state)
{
    AlwaysOk ok;
    Dialogs* previous = Dialogs::setInstance(&ok);
    Table t(static_cast<std::size_t>(state.range(0)));
    const int middle = t.table()->model()->rowCount() / 2;
    for (auto _ : state) {
        t.table()->selectRow(middle);
        t.vc.deleteEntries();
        t.document.undoManager()->undo();
        benchmark::DoNotOptimize(t.table()->viewport()->grab());
    }
    Dialogs::setInstance(previous);
}
BENCHMARK(BM_DeleteMiddleRowThenUndo)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_SelectAllThenOne(benchmark::State& state)
{
    Table t(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        t.table()->selectAll();
        t.table()->selectRow(0);
    }
}
BENCHMARK(BM_SelectAllThenOne)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_GrossEditInCell(benchmark::State& state)
{
    Table t(static_cast<std::size_t>(state.range(0)));
    const DiagnosticSink previous = setDiagnosticSink([](const std::string&) {});
    QAbstractItemModel* model = t.table()->model();
    const QModelIndex cell = model->index(model->rowCount() / 2, EntryColumn::Brutto);
    t.table()->selectRow(cell.row());
    bool flip = false;
    for (auto _ : state) {
        model->setData(cell, flip ? QStringLiteral("12,50") : QStringLiteral("13,75"));
        flip = !flip;
    }
    setDiagnosticSink(previous);
}
BENCHMARK(BM_GrossEditInCell)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    return runGuiBenchmarks(argc, argv);
}
