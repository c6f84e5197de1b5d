// What the main window waits for: the refresh of a week or a month, arranging
// a month by client, and the quick summary of a month.

#include <benchmark/benchmark.h>

#include "app/settings.h"
#include "platform/date_format.h"
#include "reference_fixture.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"
#include "views/period_rows.h"
#include "views/period_totals.h"
#include "views/period_view.h"
#include "views/quick_summary.h"
#include "views/timesheet.h"

namespace qb {
namespace {

// An ordinary busy period of the reference store: a week of November 2024.
std::unique_ptr<PeriodView> periodOf(ViewKind kind) {
    auto view = makePeriodView(kind, false);
    SYSTEMTIME day = plusDays(referenceFirstDay(), 365 * 8 + 320);
    view->setPeriod(day, day);
    return view;
}

void refresh(benchmark::State& state, ViewKind kind, std::uint16_t arrangeKey) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    auto view = periodOf(kind);
    EntryFilter filter;
    std::size_t rows = 0;
    for (auto _ : state) {
        std::vector<TimeEntry> entries = periodEntries(f->entries(), *view, filter);
        arrangeEntries(entries, arrangeKey);
        rows = entries.size();
        benchmark::DoNotOptimize(entries.data());
    }
    state.counters["rows"] = static_cast<double>(rows);
}

void BM_RefreshWeek(benchmark::State& state) {
    refresh(state, kWeekView, 0);
}
BENCHMARK(BM_RefreshWeek)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void BM_RefreshMonth(benchmark::State& state) {
    refresh(state, kMonthView, 0);
}
BENCHMARK(BM_RefreshMonth)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void BM_ArrangeMonthByClient(benchmark::State& state) {
    refresh(state, kMonthView, 1);
}
BENCHMARK(BM_ArrangeMonthByClient)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

void BM_QuickSummaryMonth(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    auto view = periodOf(kMonthView);
    std::vector<CEOID> ids;
    for (const TimeEntry& e : periodEntries(f->entries(), *view, EntryFilter())) {
        ids.push_back(e.recordOid);
    }
    Settings settings = defaultSettings();
    LocaleInfo locale;
    SYSTEMTIME start, end;
    view->getPeriod(&start, &end);
    for (auto _ : state) {
        auto rows = quickSummary(f->entries(), ids, kMonthView, start, end, settings, locale);
        benchmark::DoNotOptimize(rows.data());
    }
    state.counters["entries"] = static_cast<double>(ids.size());
}
BENCHMARK(BM_QuickSummaryMonth)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// Everything the core computes when the window switches to a month: the
// rows, the totals bar, the right side of each wide row and the timesheet.
// One frame (16 ms) is the budget.
void BM_SwitchToMonth(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    auto view = periodOf(kMonthView);
    SYSTEMTIME first, last;
    view->getPeriod(&first, &last);
    const Settings settings = defaultSettings();
    EntryFilter filter;
    std::size_t rows = 0;
    for (auto _ : state) {
        std::vector<TimeEntry> entries = periodEntries(f->entries(), *view, filter);
        PeriodTotals totals = periodTotals(entries, settings);
        benchmark::DoNotOptimize(totals.amounts.data());
        for (const TimeEntry& e : entries) {
            RowSide side = rowSide(e, settings);
            benchmark::DoNotOptimize(side.amount.data());
        }
        Timesheet sheet = buildTimesheet(entries, first, last);
        benchmark::DoNotOptimize(sheet.rows.data());
        rows = entries.size();
    }
    state.counters["rows"] = static_cast<double>(rows);
}
BENCHMARK(BM_SwitchToMonth)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace qb
