// Settings with very many category rows, read the way the program reads its
// own: the settings file taken in, a ledger window opened and the category
// preferences opened, at 10,000 and 100,000 rows. Growing tenfold, each should
// take about ten times as long. Read medians with --benchmark_repetitions=5.
//   gui_settings_bench [benchmark options]
#include "app/Document.h"
#include "app/DocumentWindow.h"
#include "model/Kategorien.h"
#include "model/LedgerFile.h"
#include "platform/SettingsUserDefaults.h"
#include "settings/PreferencesViewController.h"

#include <QDir>
#include <QFile>
#include <benchmark/benchmark.h>

#include "GuiBenchMain.h"

#include "RealisticLedger.h"

namespace {

using namespace saldo;
using namespace saldo::gui;

// A settings file holding `rows` category rows, written by the program itself.
QString settingsWithRows(std::int64_t rows)
{
    const QString path = QDir::temp().filePath(QStringLiteral("saldo-settings-bench-%1.conf").arg(rows));
    QFile::remove(path);
    std::vector<std::string> categories;
    for (std::int64_t i = 0; i < rows; ++i)
        categories.push_back(std::to_string(10000 + i) + " Kategorie " + std::to_string(i) + " Kat. ");
    SettingsUserDefaults(path).setStringArray(Kategorien::kKey, categories);
    return path;
}

void BM_ReadCategoryRows(benchmark::State& state)
{
    const QString path = settingsWithRows(state.range(0));
    for (auto _ : state) {
        SettingsUserDefaults defaults(path);
        benchmark::DoNotOptimize(Kategorien::storedList(defaults));
    }
    QFile::remove(path);
}
BENCHMARK(BM_ReadCategoryRows)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_OpenLedgerWindowWithCategoryRows(benchmark::State& state)
{
    const QString path = settingsWithRows(state.range(0));
    const std::string bytes = LedgerFile::encode(bench::cachedRealisticLedger(1000));
    const QByteArray data(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (auto _ : state) {
        SettingsUserDefaults defaults(path);
        Document document(defaults);
        document.readFromData(data);
        document.makeWindowControllers();
        document.windowController()->show();
        benchmark::DoNotOptimize(document.windowController()->grab());
    }
    QFile::remove(path);
}
BENCHMARK(BM_OpenLedgerWindowWithCategoryRows)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

void BM_OpenPreferencesWithCategoryRows(benchmark::State& state)
{
    const QString path = settingsWithRows(state.range(0));
    for (auto _ : state) {
        SettingsUserDefaults defaults(path);
        PreferencesViewController preferences(defaults);
        preferences.show();
        benchmark::DoNotOptimize(preferences.grab());
    }
    QFile::remove(path);
}
BENCHMARK(BM_OpenPreferencesWithCategoryRows)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    return runGuiBenchmarks(argc, argv);
}
