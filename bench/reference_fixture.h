#pragma once

// The reference store in a temporary file, generated once per benchmark
// process: every benchmark of a user's operation measures this store.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "platform/win_types.h"
#include "reference_store.h"

namespace qb {

class Platform;
class EntryTable;
struct MasterTables;

// A fresh directory under the system's temporary directory, removed with
// everything in it when the object goes.
class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    bool ok() const { return !path_.empty(); }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

class ReferenceFixture {
  public:
    static ReferenceFixture& get();

    bool ok() const { return entries_ != nullptr; }
    Platform& platform() { return *platform_; }
    EntryTable& entries() { return *entries_; }
    MasterTables& masters() { return *masters_; }
    const ReferenceSummary& summary() const { return summary_; }
    const std::string& dataDir() const { return dir_.path(); }

  private:
    ReferenceFixture();
    ~ReferenceFixture();

    TempDir dir_;
    std::unique_ptr<Platform> platform_;
    std::unique_ptr<MasterTables> masters_;
    std::unique_ptr<EntryTable> entries_;
    ReferenceSummary summary_;
};

// The fixture, or null after marking the benchmark as skipped.
ReferenceFixture* fixtureOrSkip(benchmark::State& state);

// Local times of a day.
FILETIME at(const SYSTEMTIME& day, int hour, int minute, int second, int millisecond);
FILETIME startOf(const SYSTEMTIME& day);
FILETIME endOf(const SYSTEMTIME& day);
SYSTEMTIME plusDays(const SYSTEMTIME& day, int days);

}  // namespace qb
