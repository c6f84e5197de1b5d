// Feeds arbitrary bytes to the property decoder, and as the stored record
// of an entry, a client and a rate, to the table readers: a damaged data
// file may hold any bytes there. A list that decodes must encode back to the
// same bytes.

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz_support.h"
#include "platform/platform.h"
#include "platform/record_codec.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace {

struct Store {
    Store() : platform(qb::Platform::inMemory()), entries(*platform), masters(*platform) {
        if (!entries.open() || !masters.open()) __builtin_trap();
        qb::TimeEntry entry;
        entry.client = u"Client";
        entry.task = u"Task";
        if (!qb::addEntry(entries, entry)) __builtin_trap();
        if (qb::addClient(masters.clients, u"Client") == 0) __builtin_trap();
        if (qb::addRate(masters.rates, 0, 10.0, 1, u"Normal", false) == 0) __builtin_trap();
        if (sqlite3_prepare_v2(platform->file().handle(), "UPDATE records SET props = ?", -1,
                               &overwrite, nullptr) != SQLITE_OK) {
            __builtin_trap();
        }
    }
    ~Store() { sqlite3_finalize(overwrite); }

    // Every record of the store gets the bytes as its properties.
    void overwriteAll(std::string_view bytes) {
        platform->file().beforeWrite();
        sqlite3_bind_blob(overwrite, 1, bytes.data(), static_cast<int>(bytes.size()),
                          SQLITE_TRANSIENT);
        if (sqlite3_step(overwrite) != SQLITE_DONE) __builtin_trap();
        sqlite3_reset(overwrite);
    }

    std::unique_ptr<qb::Platform> platform;
    qb::EntryTable entries;
    qb::MasterTables masters;
    sqlite3_stmt* overwrite = nullptr;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes = qb::fuzz::bytesOf(data, size);
    std::vector<qb::CEPROPVAL> props;
    if (qb::decodeProps(bytes, &props)) {
        if (qb::encodeProps(props) != bytes) __builtin_trap();
        for (const qb::CEPROPVAL& p : props) qb::recordSortKey(props, p.propid);
    }

    static Store store;
    store.overwriteAll(bytes);
    qb::TimeEntry entry;
    if (store.entries.seekFirst()) qb::readEntry(store.entries, entry);
    qb::allClients(store.masters.clients);
    qb::allRates(store.masters.rates);
    return 0;
}
