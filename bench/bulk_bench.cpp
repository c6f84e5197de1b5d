// Bulk operations the user waits for: Replace Field Text over every entry,
// importing a 10,000-line list, Mark Paid Entries over a year. Each
// iteration leaves the store as it found it, so repetitions measure the
// same work.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <vector>

#include "entry/client_lists.h"
#include "entry/list_file.h"
#include "entry/mark_paid.h"
#include "entry/replace_text.h"
#include "platform/platform.h"
#include "reference_fixture.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

// One replace each way per iteration pair: the same entries change every time.
void BM_ReplaceClientAllEntries(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    const std::u16string name = allClients(f->masters().clients).front().name;
    const std::u16string renamed = name + u" (renamed)";
    bool forward = true;
    long changed = 0;
    for (auto _ : state) {
        ReplaceResult r = replaceFieldText(f->platform().file(), f->entries(), f->masters(),
                                           ReplaceField::kClient, forward ? name : renamed,
                                           forward ? renamed : name, nullptr);
        changed = r.entriesChanged;
        forward = !forward;
    }
    if (!forward) {
        replaceFieldText(f->platform().file(), f->entries(), f->masters(), ReplaceField::kClient,
                         renamed, name, nullptr);
    }
    state.counters["changed"] = static_cast<double>(changed);
}
BENCHMARK(BM_ReplaceClientAllEntries)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// Reading and adding 10,000 new clients; they are deleted again untimed.
void BM_ImportListOf10000(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    TempDir dir;
    const std::string path = dir.path() + "/list.txt";
    std::string text;
    for (int i = 0; i < 10000; ++i) text += "Imported client " + std::to_string(i) + "\r\n";
    if (std::FILE* out = std::fopen(path.c_str(), "wb")) {
        std::fwrite(text.data(), 1, text.size(), out);
        std::fclose(out);
    }
    for (auto _ : state) {
        std::vector<std::u16string> items;
        std::size_t added = 0;
        if (!readListFile(path, "CP1252", &items) ||
            !importListItems(f->platform().file(), f->masters(), ListLevel::kClients, {}, items,
                             &added)) {
            state.SkipWithError("import failed");
            return;
        }
        state.PauseTiming();
        std::vector<CEOID> doomed;
        for (const ClientRecord& c : allClients(f->masters().clients)) {
            if (c.name.rfind(u"Imported client ", 0) == 0) doomed.push_back(c.oid);
        }
        f->platform().file().beginBatch();
        removeClient(f->masters(), doomed);
        f->platform().file().commitBatch();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ImportListOf10000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

// A year of the reference store; the entries it marked are unmarked untimed.
void BM_MarkPaidYear(benchmark::State& state) {
    ReferenceFixture* f = fixtureOrSkip(state);
    if (!f) return;
    const SYSTEMTIME first = plusDays(referenceFirstDay(), 365 * 8);
    const FILETIME start = startOf(first);
    const FILETIME end = endOf(plusDays(first, 364));
    long written = 0;
    for (auto _ : state) {
        std::vector<CEOID> marked;
        MarkPaidResult r = markPaidEntries(f->platform().file(), f->entries(), start, end,
                                           [&](const TimeEntry& e) {
                                               if (e.billable && !e.paid) {
                                                   marked.push_back(e.recordOid);
                                               }
                                               return true;
                                           });
        written = r.written;
        state.PauseTiming();
        f->platform().file().beginBatch();
        TimeEntry e;
        for (CEOID oid : marked) {
            if (f->entries().seekOid(oid) && readEntry(f->entries(), e) == 0) {
                e.paid = false;
                updateEntry(f->entries(), e);
            }
        }
        f->platform().file().commitBatch();
        state.ResumeTiming();
    }
    state.counters["written"] = static_cast<double>(written);
}
BENCHMARK(BM_MarkPaidYear)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
}  // namespace qb
