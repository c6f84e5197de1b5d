// What the desktop's windows cost to open on the reference store: the entry
// editor fills its lists from 200 clients and their master data.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdlib>

#include "gui/app_state.h"
#include "gui/entry/entry_editor.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "reference_fixture.h"
#include "store/record_props.h"
#include "store/time_entry.h"

namespace qb {
namespace {

QApplication& application() {
    static int argc = 1;
    static char name[] = "quillarbor_bench";
    static char* argv[] = {name, nullptr};
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static QApplication app(argc, argv);
    return app;
}

// A second view of the fixture's file, as the desktop application opens it.
AppState* desktopState(ReferenceFixture& f) {
    static std::unique_ptr<AppState> state = [&f] {
        std::unique_ptr<Platform> platform;
        if (!Platform::open(f.dataDir(), &platform).isOk()) return std::unique_ptr<AppState>();
        auto s = std::make_unique<AppState>(std::move(platform));
        return s->open() ? std::move(s) : std::unique_ptr<AppState>();
    }();
    return state.get();
}

void BM_OpenEntryEditor(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    application();
    AppState* app = desktopState(*f);
    if (!app) {
        state.SkipWithError("cannot open the reference store");
        return;
    }
    TimeEntry entry;
    f->entries().seekAfter(CEPROPVAL::fileTime(kPropDate, startOf(referenceQuietWeek())));
    readEntry(f->entries(), entry);
    for (auto _ : state) {
        EntryEditor editor(*app, entry);
        editor.show();
        QApplication::processEvents();
        benchmark::DoNotOptimize(&editor);
    }
}
BENCHMARK(BM_OpenEntryEditor)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace qb
