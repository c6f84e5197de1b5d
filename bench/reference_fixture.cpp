#include "reference_fixture.h"

#include <stdlib.h>

#include <filesystem>

#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/tables.h"

namespace qb {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qb-bench-XXXXXX").string();
    if (mkdtemp(pattern.data())) path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ec;
    if (!path_.empty()) std::filesystem::remove_all(path_, ec);
}

ReferenceFixture& ReferenceFixture::get() {
    static ReferenceFixture fixture;
    return fixture;
}

ReferenceFixture::ReferenceFixture() {
    if (!dir_.ok() || !Platform::open(dir_.path(), &platform_).isOk()) return;
    if (!makeReferenceStore(*platform_, ReferenceOptions(), &summary_)) return;
    masters_ = std::make_unique<MasterTables>(*platform_);
    auto entries = std::make_unique<EntryTable>(*platform_);
    if (masters_->open() && entries->open()) entries_ = std::move(entries);
}

ReferenceFixture::~ReferenceFixture() {
    // The store closes before its directory goes.
    entries_.reset();
    masters_.reset();
    platform_.reset();
}

ReferenceFixture* fixtureOrSkip(benchmark::State& state) {
    ReferenceFixture& f = ReferenceFixture::get();
    if (f.ok()) return &f;
    state.SkipWithError("cannot generate the reference store");
    return nullptr;
}

FILETIME at(const SYSTEMTIME& day, int hour, int minute, int second, int millisecond) {
    FILETIME ft = 0;
    systemTimeToFileTime(
        makeDate(day.wYear, day.wMonth, day.wDay, hour, minute, second, millisecond), &ft);
    return ft;
}

FILETIME startOf(const SYSTEMTIME& day) {
    return at(day, 0, 0, 0, 0);
}

FILETIME endOf(const SYSTEMTIME& day) {
    return at(day, 23, 59, 59, 999);
}

SYSTEMTIME plusDays(const SYSTEMTIME& day, int days) {
    SYSTEMTIME out{};
    fileTimeToSystemTime(startOf(day) + static_cast<FILETIME>(days) * 864'000'000'000ULL, &out);
    return out;
}

}  // namespace qb
