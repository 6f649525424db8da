// Figures of finding entries in the entry list at 100,000 and 1,000,000
// entries, offscreen: one keystroke in the search field (filter, table reset,
// paint of the pane) in a text mode and in a number mode, and one header click
// on an unsorted list (sort, layout change, paint) on a text, a number and a
// date column. Every iteration ends with grab(), which paints the pane now.
// Read medians with --benchmark_repetitions=5. SALDO_BENCH_LEDGER=FILE measures
// that ledger instead of the made one.
#include "app/Document.h"
#include "entrylist/EntryColumn.h"
#include "entrylist/SearchFieldController.h"
#include "entrylist/ViewController.h"
#include "model/Kategorien.h"
#include "platform/UserDefaults.h"

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QSignalBlocker>
#include <QTableView>
#include <benchmark/benchmark.h>

#include "GuiBenchMain.h"
#include "RealisticLedger.h"

#include <map>
#include <random>

namespace {

using namespace saldo;
using namespace saldo::gui;

// Names of a small business's year: about one entry in ten holds "Miete".
EinnahmeList makeLedger(std::size_t count)
{
    static const char* const names[] = { "Miete Büro", "Bürobedarf Müller", "Telefon", "Beratung Schäfer GmbH",
        "Fahrtkosten", "Honorar Übersetzung", "Porto", "Strom", "Versicherung", "Software-Abo" };
    static const std::vector<std::string> chart = Kategorien::defaultKategorien();
    static const float rates[] = { 19.0f, 19.0f, 19.0f, 7.0f, 0.0f };
    std::mt19937 rng(815);
    EinnahmeList list;
    list.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        auto entry = Einnahme::make(std::string(names[rng() % 10]) + " " + std::to_string(i + 1),
            chart[rng() % chart.size()], static_cast<float>(rng() % 300000) / 100.0f, rates[rng() % 5]);
        entry->setArt(rng() % 3 == 0 ? kArtAusgabe : kArtEinnahme);
        entry->setDatum(757382400.0 + static_cast<double>(rng() % 31536000u));
        list.push_back(entry);
    }
    return list;
}

const EinnahmeList& ledgerOf(std::size_t count)
{
    if (const EinnahmeList* file = bench::ledgerFromFile())
        return *file;
    static std::map<std::size_t, EinnahmeList> ledgers;
    auto it = ledgers.find(count);
    if (it == ledgers.end())
        it = ledgers.emplace(count, makeLedger(count)).first;
    return it->second;
}

struct Pane {
    explicit Pane(std::size_t count)
        : document(defaults)
        , vc(document, defaults)
    {
        document.replaceAllEntries(ledgerOf(count));
        vc.resize(1250, 720);
        vc.show();
        vc.viewWillAppear();
        QApplication::processEvents();
        search = vc.searchFieldController();
    }
    void chooseMode(const QString& title)
    {
        for (QAction* top : search->searchMenu()->actions()) {
            const QList<QAction*> items = top->menu() ? top->menu()->actions() : QList<QAction*> { top };
            for (QAction* item : items)
                if (item->text() == title)
                    item->trigger();
        }
    }

    InMemoryUserDefaults defaults;
    Document document;
    ViewController vc;
    SearchFieldController* search = nullptr;
};

// Typing alternates between two texts that both filter the complete list.
void searchKeystroke(benchmark::State& state, const QString& mode, const QString& first, const QString& second)
{
    Pane p(static_cast<std::size_t>(state.range(0)));
    p.chooseMode(mode);
    QLineEdit* field = p.search->searchField();
    bool flip = false;
    for (auto _ : state) {
        field->setText(flip ? first : second);
        flip = !flip;
        benchmark::DoNotOptimize(p.vc.grab());
    }
    state.counters["shown"] = static_cast<double>(p.vc.einnahmen().size());
}

void BM_SearchKeystrokeName(benchmark::State& state)
{
    searchKeystroke(state, QStringLiteral("Name"), QStringLiteral("Miete"), QStringLiteral("Miet"));
}
BENCHMARK(BM_SearchKeystrokeName)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_SearchKeystrokeBrutto(benchmark::State& state)
{
    searchKeystroke(state, QStringLiteral("Brutto >="), QStringLiteral("1500"), QStringLiteral("150"));
}
BENCHMARK(BM_SearchKeystrokeBrutto)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);

// A header click on the list in the complete list's order, with one row selected.
void BM_HeaderClick(benchmark::State& state)
{
    Pane p(static_cast<std::size_t>(state.range(0)));
    const int column = static_cast<int>(state.range(1));
    QTableView* table = p.vc.tableView();
    QHeaderView* header = table->horizontalHeader();
    QLineEdit* field = p.search->searchField();
    for (auto _ : state) {
        state.PauseTiming();
        // Filtering and clearing gives the unsorted complete list back.
        field->setText(QStringLiteral("x"));
        field->clear();
        table->selectRow(static_cast<int>(p.vc.einnahmen().size() / 2));
        {
            const QSignalBlocker quiet(header);
            header->setSortIndicator(-1, Qt::AscendingOrder);
        }
        state.ResumeTiming();
        // What a click does: the header moves its indicator and the view sorts
        // once. (QTableView::sortByColumn would sort twice here with sorting
        // enabled.)
        header->setSortIndicator(column, Qt::AscendingOrder);
        benchmark::DoNotOptimize(p.vc.grab());
    }
}
BENCHMARK(BM_HeaderClick)
    ->ArgsProduct(
        { { 100000, 1000000 }, { EntryColumn::Name, EntryColumn::Brutto, EntryColumn::Netto, EntryColumn::Date } })
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    return runGuiBenchmarks(argc, argv);
}
