// What a user waits for when exporting: the CSV and XML exports and a
// grouped report of every entry of the reference store (100,000 entries).

#include <benchmark/benchmark.h>
#include <string>

#include "app/settings.h"
#include "export/csv_export.h"
#include "export/export_settings.h"
#include "export/xml_export.h"
#include "platform/platform.h"
#include "reference_fixture.h"
#include "reference_store.h"
#include "report/report_generator.h"
#include "store/tables.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

// What every export reads besides the store: the settings in force, a
// criteria record of all ten years and a directory for the files written.
class ExportSetup {
  public:
    static ExportSetup& get(ReferenceFixture& store) {
        static ExportSetup setup(store);
        return setup;
    }

    const ExportSettings& env() const { return env_; }
    std::string output(const char* name) const { return out_.path() + "/" + name; }
    const EntryFilter& everything() const { return everything_; }

  private:
    explicit ExportSetup(ReferenceFixture& store) {
        Settings settings = defaultSettings();
        loadSettings(store.platform().registry(), settings);
        env_ = loadExportSettings(store.platform().registry(), settings);
        everything_.start = referenceFirstDay();
        everything_.end = referenceLastDay();
    }

    TempDir out_;
    ExportSettings env_;
    EntryFilter everything_;
};

template <typename Run>
void measure(benchmark::State& state, Run run) {
    ReferenceFixture* store = fixtureOrSkip(state);
    if (!store) return;
    ExportSetup& setup = ExportSetup::get(*store);
    for (auto _ : state) {
        if (!run(store->entries(), setup)) {
            state.SkipWithError("the export failed");
            break;
        }
    }
}

void BM_ExportCsvAll(benchmark::State& state) {
    measure(state, [](EntryTable& entries, const ExportSetup& s) {
        return ExportCsv(entries, s.output("all.csv"), s.everything(), s.env());
    });
}

void BM_ExportXmlAll(benchmark::State& state) {
    measure(state, [](EntryTable& entries, const ExportSetup& s) {
        return ExportXml(entries, s.output("all.xml"), s.everything(), s.env());
    });
}

void BM_ExportXmlUtf16All(benchmark::State& state) {
    measure(state, [](EntryTable& entries, const ExportSetup& s) {
        ExportSettings env = s.env();
        env.settings.encoding = kEncodingUtf16;
        return ExportXml(entries, s.output("all16.xml"), s.everything(), env);
    });
}

void BM_GroupedReportAll(benchmark::State& state) {
    measure(state, [](EntryTable& entries, const ExportSetup& s) {
        ReportGenerator generator(entries, clientLayout(), s.env(), referenceLastDay());
        return generator.generate(s.output("all.html"), s.everything());
    });
}

#define QB_EXPORT_BENCHMARK(name)       \
    BENCHMARK(name)                     \
        ->Unit(benchmark::kMillisecond) \
        ->Iterations(1)                 \
        ->Repetitions(5)                \
        ->ReportAggregatesOnly(true)    \
        ->UseRealTime()

QB_EXPORT_BENCHMARK(BM_ExportCsvAll);
QB_EXPORT_BENCHMARK(BM_ExportXmlAll);
QB_EXPORT_BENCHMARK(BM_ExportXmlUtf16All);
QB_EXPORT_BENCHMARK(BM_GroupedReportAll);

}  // namespace
}  // namespace qb
