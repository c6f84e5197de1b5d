#include "platform/read_ahead.h"

#include <sqlite3.h>

#include <atomic>

#include "platform/chunk_pipe.h"
#include "platform/data_file.h"
#include "platform/object_store.h"

namespace qb {
namespace {

// 32 pages: enough for the cursors of the date index and of the records
// table, each as deep as a store of any size makes them.
constexpr const char* kSmallPageCache = "PRAGMA cache_size=32";

// The caller has fallen behind when this many chunks wait for it.
constexpr int kCallerBehind = 1;

std::atomic<bool> finishesEveryOther = false;

// The reading thread: hands over the records, or what `finish` makes of
// them when the caller has fallen behind.
void readRecords(Database& records, const CEPROPVAL& from, const RecordReadAhead::Wanted& wanted,
                 const RecordReadAhead::Finish& finish, ChunkPipe& pipe) {
    std::string made;
    const bool everyOther = finishesEveryOther.load();
    std::uint64_t count = 0;
    for (CEOID at = records.seek(CEDB_SEEK_VALUEGREATER, 0, &from); at != 0;
         at = records.seek(CEDB_SEEK_CURRENT, 1)) {
        std::string_view props;
        long error = 0;
        if (records.readEncoded(&props, &error) == 0 || !wanted(props)) break;
        const bool share = everyOther ? ++count % 2 == 0 : pipe.waiting() >= kCallerBehind;
        if (finish && share) {
            made.clear();
            if (finish(at, props, &made)) {
                if (!made.empty() && !pipe.put(RecordReadAhead::kFinished, made)) break;
                continue;
            }
        }
        if (!pipe.put(at, props)) break;
    }
}

}  // namespace

struct RecordReadAhead::Shared {
    // The reader's own connection, used by the reading thread alone; the
    // pipe is declared last so that its thread stops before they go.
    std::unique_ptr<DataFile> file;
    std::unique_ptr<ObjectStore> store;
    std::unique_ptr<Database> database;
    ChunkPipe pipe;
};

RecordReadAhead::RecordReadAhead() : shared_(std::make_unique<Shared>()) {}

RecordReadAhead::~RecordReadAhead() = default;

bool RecordReadAhead::start(DataFile& file, CEOID database, std::uint32_t sortProp,
                            const CEPROPVAL& from, Wanted wanted, Finish finish) {
    Shared& s = *shared_;
    if (s.database || file.path().empty() || file.path() == ":memory:" ||
        sqlite3_get_autocommit(file.handle()) == 0) {
        return false;
    }
    if (!DataFile::open(file.path(), &s.file).isOk()) return false;
    // The walk reads the leaves of the index and of the table forward, each
    // once (the file's blocks are kept below SQLite): a page cache of the
    // default 2 MB would only fill fresh memory, page fault by page fault.
    sqlite3_exec(s.file->handle(), kSmallPageCache, nullptr, nullptr, nullptr);
    s.store = std::make_unique<ObjectStore>(*s.file);
    CEOID oid = database;
    s.database = s.store->openDatabase(&oid, u"", sortProp);
    if (!s.database) return false;
    s.pipe.start(
        [&s, from, wanted = std::move(wanted), finish = std::move(finish)](ChunkPipe& pipe) {
            readRecords(*s.database, from, wanted, finish, pipe);
            // Let go of the snapshot before the caller may write again.
            s.database.reset();
        });
    return true;
}

bool RecordReadAhead::next(CEOID* oid, std::string_view* props) {
    std::uint32_t tag = 0;
    if (!shared_->pipe.next(&tag, props)) return false;
    *oid = tag;
    return true;
}

void setReadAheadFinishesEveryOther(bool on) {
    finishesEveryOther = on;
}

}  // namespace qb
