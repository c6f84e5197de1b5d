// What a user waits for when exporting: the CSV and XML exports and a
// grouped report of every entry of the reference store (100,000 entries).

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/settings.h"
#include "export/csv_export.h"
#include "export/export_settings.h"
#include "export/xml_export.h"
#include "platform/platform.h"
#include "reference_store.h"
#include "report/report_generator.h"
#include "store/tables.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

// The reference store in a temporary directory, made once per process, and
// the file every export writes.
class ExportFixture {
  public:
    static ExportFixture& get() {
        static ExportFixture fixture;
        return fixture;
    }

    bool ok() const { return entries_ != nullptr; }
    EntryTable& entries() { return *entries_; }
    const ExportSettings& env() const { return env_; }
    std::string output(const char* name) const { return dir_ + "/" + name; }

    // Every entry of the store.
    EntryFilter everything() const {
        EntryFilter f;
        f.start = referenceFirstDay();
        f.end = referenceLastDay();
        return f;
    }

  private:
    ExportFixture() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "qb-export-bench-XXXXXX").string();
        if (!mkdtemp(pattern.data())) return;
        dir_ = pattern;
        if (!Platform::open(dir_, &platform_).isOk()) return;
        if (!makeReferenceStore(*platform_, ReferenceOptions())) return;
        Settings settings = defaultSettings();
        loadSettings(platform_->registry(), settings);
        env_ = loadExportSettings(platform_->registry(), settings);
        auto entries = std::make_unique<EntryTable>(*platform_);
        if (entries->open()) entries_ = std::move(entries);
    }
    ~ExportFixture() {
        entries_.reset();
        platform_.reset();
        std::error_code ec;
        if (!dir_.empty()) std::filesystem::remove_all(dir_, ec);
    }

    std::string dir_;
    std::unique_ptr<Platform> platform_;
    std::unique_ptr<EntryTable> entries_;
    ExportSettings env_;
};

template <typename Run>
void measure(benchmark::State& state, Run run) {
    ExportFixture& f = ExportFixture::get();
    if (!f.ok()) {
        state.SkipWithError("cannot generate the reference store");
        return;
    }
    for (auto _ : state) {
        if (!run(f)) {
            state.SkipWithError("the export failed");
            break;
        }
    }
}

void BM_ExportCsvAll(benchmark::State& state) {
    measure(state, [](ExportFixture& f) {
        return ExportCsv(f.entries(), f.output("all.csv"), f.everything(), f.env());
    });
}

void BM_ExportXmlAll(benchmark::State& state) {
    measure(state, [](ExportFixture& f) {
        return ExportXml(f.entries(), f.output("all.xml"), f.everything(), f.env());
    });
}

void BM_ExportXmlUtf16All(benchmark::State& state) {
    measure(state, [](ExportFixture& f) {
        ExportSettings env = f.env();
        env.settings.encoding = kEncodingUtf16;
        return ExportXml(f.entries(), f.output("all16.xml"), f.everything(), env);
    });
}

void BM_GroupedReportAll(benchmark::State& state) {
    measure(state, [](ExportFixture& f) {
        ReportGenerator generator(f.entries(), clientLayout(), f.env(), referenceLastDay());
        return generator.generate(f.output("all.html"), f.everything());
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
