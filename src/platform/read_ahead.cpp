#include "platform/read_ahead.h"

#include <sqlite3.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/data_file.h"
#include "platform/object_store.h"

namespace qb {
namespace {

// Records travel in chunks, so that the two threads meet once per chunk
// rather than once per record, and a thread is woken only when it waits.
// Four chunks of about 128 KiB bound what the reading holds however many
// records there are (a single record larger than a chunk makes its chunk
// larger).
constexpr int kChunks = 4;
constexpr std::size_t kChunkBytes = 128 * 1024;

struct Chunk {
    struct Item {
        CEOID oid;
        std::size_t offset;
        std::size_t size;
    };
    std::string bytes;
    std::vector<Item> items;

    void clear() {
        bytes.clear();
        items.clear();
    }
};

}  // namespace

struct RecordReadAhead::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    Chunk chunks[kChunks];
    std::deque<int> full;  // filled chunks, in record order
    std::vector<int> empty;
    bool finished = false;  // the reader has handed over its last chunk
    bool stopping = false;  // the caller wants no more
    bool readerWaits = false;
    bool callerWaits = false;

    // The reader's own connection, used by the reading thread alone.
    std::unique_ptr<DataFile> file;
    std::unique_ptr<ObjectStore> store;
    std::unique_ptr<Database> database;
    std::thread reader;

    // The caller's place.
    int current = -1;
    std::size_t position = 0;

    // An empty chunk for the reader; -1 once the caller has stopped.
    int takeEmpty() {
        std::unique_lock lock(mutex);
        readerWaits = true;
        changed.wait(lock, [this] { return stopping || !empty.empty(); });
        readerWaits = false;
        if (stopping) return -1;
        const int chunk = empty.back();
        empty.pop_back();
        return chunk;
    }

    void handOver(int chunk, bool last) {
        bool wake = false;
        {
            std::lock_guard lock(mutex);
            if (chunk >= 0 && !chunks[chunk].items.empty()) {
                full.push_back(chunk);
            } else if (chunk >= 0) {
                empty.push_back(chunk);
            }
            finished = last;
            wake = callerWaits;
        }
        if (wake) changed.notify_all();
    }

    void read(CEPROPVAL from, const Wanted& wanted) {
        int chunk = takeEmpty();
        for (CEOID at = chunk < 0 ? 0 : database->seek(CEDB_SEEK_VALUEGREATER, 0, &from); at != 0;
             at = database->seek(CEDB_SEEK_CURRENT, 1)) {
            std::string_view props;
            long error = 0;
            if (database->readEncoded(&props, &error) == 0 || !wanted(props)) break;
            Chunk& c = chunks[chunk];
            c.items.push_back({at, c.bytes.size(), props.size()});
            c.bytes.append(props);
            if (c.bytes.size() >= kChunkBytes) {
                handOver(chunk, false);
                chunk = takeEmpty();
                if (chunk < 0) break;
            }
        }
        // Let go of the snapshot before the caller may write again.
        database.reset();
        handOver(chunk, true);
    }
};

RecordReadAhead::RecordReadAhead() : shared_(std::make_unique<Shared>()) {}

RecordReadAhead::~RecordReadAhead() {
    Shared& s = *shared_;
    if (!s.reader.joinable()) return;
    {
        std::lock_guard lock(s.mutex);
        s.stopping = true;
    }
    s.changed.notify_all();
    s.reader.join();
}

bool RecordReadAhead::start(DataFile& file, CEOID database, std::uint32_t sortProp,
                            const CEPROPVAL& from, Wanted wanted) {
    Shared& s = *shared_;
    if (s.reader.joinable() || file.path().empty() || file.path() == ":memory:" ||
        sqlite3_get_autocommit(file.handle()) == 0) {
        return false;
    }
    if (!DataFile::open(file.path(), &s.file).isOk()) return false;
    s.store = std::make_unique<ObjectStore>(*s.file);
    CEOID oid = database;
    s.database = s.store->openDatabase(&oid, u"", sortProp);
    if (!s.database) return false;
    for (int i = 0; i < kChunks; ++i) s.empty.push_back(i);
    s.reader = std::thread([&s, from, wanted = std::move(wanted)] { s.read(from, wanted); });
    return true;
}

bool RecordReadAhead::next(CEOID* oid, std::string_view* props) {
    Shared& s = *shared_;
    for (;;) {
        if (s.current >= 0) {
            const Chunk& c = s.chunks[s.current];
            if (s.position < c.items.size()) {
                const Chunk::Item& item = c.items[s.position++];
                *oid = item.oid;
                *props = std::string_view(c.bytes).substr(item.offset, item.size);
                return true;
            }
            bool wake = false;
            {
                std::lock_guard lock(s.mutex);
                s.chunks[s.current].clear();
                s.empty.push_back(s.current);
                s.current = -1;
                wake = s.readerWaits;
            }
            if (wake) s.changed.notify_all();
        }
        if (!s.reader.joinable()) return false;
        std::unique_lock lock(s.mutex);
        s.callerWaits = true;
        s.changed.wait(lock, [&s] { return s.finished || !s.full.empty(); });
        s.callerWaits = false;
        if (s.full.empty()) return false;
        s.current = s.full.front();
        s.full.pop_front();
        s.position = 0;
    }
}

}  // namespace qb
