// Backup and restore of the reference store, as the user waits for them:
// the backup of every entry and client to a file, and the restore of that
// file into a store on disk that has nothing in it yet.

#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <filesystem>
#include <memory>
#include <string>

#include "backup/backup_writer.h"
#include "platform/platform.h"
#include "reference_fixture.h"
#include "reference_store.h"
#include "store/tables.h"

namespace qb {
namespace {

// An opened store with its tables.
struct OpenStore {
    std::unique_ptr<Platform> platform;
    std::unique_ptr<EntryTable> entries;
    std::unique_ptr<MasterTables> masters;

    bool open(const std::string& dir) {
        if (!Platform::open(dir, &platform).isOk()) return false;
        entries = std::make_unique<EntryTable>(*platform);
        masters = std::make_unique<MasterTables>(*platform);
        return entries->open() && masters->open();
    }
    ~OpenStore() {
        entries.reset();
        masters.reset();
        platform.reset();
    }
};

// The backup of the reference store, made once per process.
class BackupFixture {
  public:
    static BackupFixture& get() {
        static BackupFixture fixture;
        return fixture;
    }
    bool ok() const { return ok_; }
    ReferenceFixture& store() { return ReferenceFixture::get(); }
    std::string backupFile() const { return file("reference.qrb"); }
    std::string file(const std::string& name) const { return files_.path() + "/" + name; }

  private:
    BackupFixture() {
        ReferenceFixture& f = ReferenceFixture::get();
        ok_ = f.ok() && files_.ok() && createBackupFile(f.entries(), f.masters(), backupFile());
    }

    TempDir files_;
    bool ok_ = false;
};

void reportPeakMemory(benchmark::State& state) {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_rss_mb"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void BM_BackupReferenceStore(benchmark::State& state) {
    BackupFixture& f = BackupFixture::get();
    if (!f.ok()) {
        state.SkipWithError("cannot make the reference store or its backup");
        return;
    }
    for (auto _ : state) {
        if (!createBackupFile(f.store().entries(), f.store().masters(), f.file("b.qrb"))) {
            state.SkipWithError("backup failed");
            break;
        }
    }
    reportPeakMemory(state);
}
BENCHMARK(BM_BackupReferenceStore)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

void BM_RestoreIntoEmptyStore(benchmark::State& state) {
    BackupFixture& f = BackupFixture::get();
    if (!f.ok()) {
        state.SkipWithError("cannot make the reference store or its backup");
        return;
    }
    for (auto _ : state) {
        state.PauseTiming();
        auto dir = std::make_unique<TempDir>();
        auto target = std::make_unique<OpenStore>();
        if (!dir->ok() || !target->open(dir->path())) {
            state.SkipWithError("cannot open an empty store");
            break;
        }
        state.ResumeTiming();
        int result = restoreBackupFile(*target->entries, *target->masters, f.backupFile());
        state.PauseTiming();
        target.reset();
        dir.reset();
        state.ResumeTiming();
        if (result != kRestoreDone) {
            state.SkipWithError("restore failed");
            break;
        }
    }
    reportPeakMemory(state);
}
BENCHMARK(BM_RestoreIntoEmptyStore)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true)
    ->UseRealTime();

}  // namespace
}  // namespace qb
