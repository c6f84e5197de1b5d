// Restores arbitrary bytes as a backup and loads them as an archive, each
// into a fresh temporary store, then reads back everything that was added:
// a damaged file may be refused or partly kept, but never crash the reader
// or leave a store that cannot be walked.

#include <cstddef>
#include <cstdint>

#include "backup/archive_writer.h"
#include "backup/backup_writer.h"
#include "fuzz_support.h"
#include "platform/platform.h"
#include "store/entry_walk.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace {

void readBack(qb::EntryTable& entries, qb::MasterTables& masters) {
    qb::walkEntries(entries, 0, ~0ull, [](const qb::TimeEntry&) { return true; });
    for (const qb::ClientRecord& c : qb::allClients(masters.clients)) {
        qb::projectsOf(masters.projects, c.clientId);
        qb::namesOf(masters.tasks, c.clientId);
        qb::namesOf(masters.contacts, c.clientId);
    }
    qb::allRates(masters.rates);
}

template <typename Load>
void intoFreshStore(const std::string& file, Load load) {
    std::unique_ptr<qb::Platform> platform = qb::Platform::inMemory();
    qb::EntryTable entries(*platform);
    qb::MasterTables masters(*platform);
    if (!entries.open() || !masters.open()) __builtin_trap();
    load(entries, masters, file);
    readBack(entries, masters);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& file = qb::fuzz::scratchFile("restore", data, size);
    intoFreshStore(file, [](qb::EntryTable& e, qb::MasterTables& m, const std::string& f) {
        qb::restoreBackupFile(e, m, f);
    });
    intoFreshStore(file, [](qb::EntryTable& e, qb::MasterTables& m, const std::string& f) {
        qb::loadArchive(e, m, f);
    });
    return 0;
}
