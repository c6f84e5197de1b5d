// What a user waits for in the store: generating a large store, walking all
// of it or one week of it by date, and saving one entry.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "reference_fixture.h"
#include "reference_store.h"
#include "store/entry_walk.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

void BM_GenerateInMemory(benchmark::State& state) {
    for (auto _ : state) {
        std::unique_ptr<Platform> platform = Platform::inMemory();
        if (!makeReferenceStore(*platform, ReferenceOptions())) {
            state.SkipWithError("generation failed");
            break;
        }
    }
}
BENCHMARK(BM_GenerateInMemory)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// Opening, generating and closing, as make_reference_store does; closing
// checkpoints the log into the file.
void BM_GenerateToFile(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto dir = std::make_unique<TempDir>();
        state.ResumeTiming();
        std::unique_ptr<Platform> platform;
        if (!dir->ok() || !Platform::open(dir->path(), &platform).isOk() ||
            !makeReferenceStore(*platform, ReferenceOptions())) {
            state.SkipWithError("generation failed");
            break;
        }
        platform.reset();
        state.PauseTiming();
        dir.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_GenerateToFile)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

using Walk = long (*)(EntryTable&, FILETIME, FILETIME,
                      const std::function<bool(const TimeEntry&)>&);

void walk(benchmark::State& state, FILETIME start, FILETIME end, Walk how = walkEntries) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    long visited = 0;
    long paid = 0;
    for (auto _ : state) {
        paid = 0;
        visited = how(f->entries(), start, end, [&paid](const TimeEntry& e) {
            paid += e.paid ? 1 : 0;
            return true;
        });
        benchmark::DoNotOptimize(paid);
    }
    state.counters["entries"] = static_cast<double>(visited);
}

// Every entry of the ten years, as an export or report over all of them.
void BM_WalkAll(benchmark::State& state) {
    walk(state, startOf(referenceFirstDay()), endOf(referenceLastDay()));
}
BENCHMARK(BM_WalkAll)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// The same as exports and reports walk: the records read on a second
// connection in a thread of their own while this one decodes and visits.
void BM_WalkAllReadingAhead(benchmark::State& state) {
    walk(state, startOf(referenceFirstDay()), endOf(referenceLastDay()), walkEntriesReadingAhead);
}
BENCHMARK(BM_WalkAllReadingAhead)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// The week view of an ordinary week (about 40 entries).
void BM_WalkQuietWeek(benchmark::State& state) {
    SYSTEMTIME monday = referenceQuietWeek();
    walk(state, startOf(monday), endOf(plusDays(monday, 6)));
}
BENCHMARK(BM_WalkQuietWeek)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// A week at the store's average density (about 190 entries).
void BM_WalkBusyWeek(benchmark::State& state) {
    SYSTEMTIME monday = makeDate(2024, 3, 4);
    walk(state, startOf(monday), endOf(plusDays(monday, 6)));
}
BENCHMARK(BM_WalkBusyWeek)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// New entries fall after the generated years, so that the walks above keep
// measuring the same entries whatever order benchmarks run in.
TimeEntry newEntry(const ReferenceSummary& s) {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 1, 5), &e.date);
    setStartTime(e, makeDate(2026, 1, 5, 9, 30));
    e.client = s.client;
    e.project = s.project;
    e.task = s.projectTask;
    e.duration = 150;
    e.billable = true;
    e.currency = u"USD";
    e.rate = 9500;
    return e;
}

// One entry added outside any batch: the write and its commit.
void BM_AddEntryCommitted(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    const TimeEntry e = newEntry(f->summary());
    for (auto _ : state) {
        if (!addEntry(f->entries(), e)) {
            state.SkipWithError("addEntry failed");
            break;
        }
    }
}
BENCHMARK(BM_AddEntryCommitted)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

// What the editor's OK writes: the entry and what the master data learns
// from it, committed together.
void BM_SaveEntryAsEditor(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    const TimeEntry prototype = newEntry(f->summary());
    DataFile& file = f->platform().file();
    for (auto _ : state) {
        TimeEntry e = prototype;
        bool ok = file.beginBatch() && saveEntry(f->entries(), e);
        if (ok) registerMasterData(f->masters(), e);
        if (!ok || !file.commitBatch()) {
            file.rollbackBatch();
            state.SkipWithError("saving the entry failed");
            break;
        }
    }
}
BENCHMARK(BM_SaveEntryAsEditor)
    ->Unit(benchmark::kMicrosecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

}  // namespace
}  // namespace qb
