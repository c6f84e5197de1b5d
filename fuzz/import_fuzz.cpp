// One importer of another tracker's files, fed arbitrary bytes (the build
// makes one target per format, naming it in QB_IMPORT_FORMAT): its reader
// alone, then the whole import into a fresh temporary store. A file that
// imported must import nothing the second time.

#include <cstddef>
#include <cstdint>

#include "app/settings.h"
#include "fuzz_support.h"
#include "import/import_pipeline.h"
#include "import/readers.h"
#include "platform/platform.h"
#include "store/tables.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr qb::ImportFormat kFormat = qb::ImportFormat::QB_IMPORT_FORMAT;
    const std::string_view bytes = qb::fuzz::bytesOf(data, size);
    qb::ImportOptions options;
    qb::readRows(kFormat, bytes, options, [](qb::ImportRow&) { return true; });

    // Options fill what rows leave empty, so that more rows reach the store.
    options.client = u"Client";
    options.task = u"Task";
    std::unique_ptr<qb::Platform> platform = qb::Platform::inMemory();
    qb::EntryTable entries(*platform);
    qb::MasterTables masters(*platform);
    if (!entries.open() || !masters.open()) __builtin_trap();
    qb::Settings settings = qb::defaultSettings();
    qb::ImportTarget target{platform->file(), entries, masters, settings};
    const auto ignore = [](const qb::RowOutcome&) {};
    qb::importFile(kFormat, bytes, options, target, true, ignore);
    qb::ImportSummary first = qb::importFile(kFormat, bytes, options, target, false, ignore);
    if (first.status != qb::ImportStatus::kDone) return 0;
    qb::ImportSummary again = qb::importFile(kFormat, bytes, options, target, false, ignore);
    if (again.status != qb::ImportStatus::kDone || again.imported != 0 ||
        again.already != first.imported + first.already) {
        __builtin_trap();
    }
    return 0;
}
