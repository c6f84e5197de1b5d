#include "platform/chunk_pipe.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace qb {
namespace {

constexpr int kChunks = 4;
constexpr std::size_t kChunkBytes = 128 * 1024;

// Each thread's state has cache lines of its own: the maker writes its chunk
// and place at every item, the caller its place, and lines shared between
// them would travel from core to core at every item.
constexpr std::size_t kLine = 64;

struct alignas(kLine) Chunk {
    struct Item {
        std::uint32_t tag;
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

struct ChunkPipe::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    Chunk chunks[kChunks];
    std::deque<int> full;            // filled chunks, in the order made
    std::atomic<int> fullCount = 0;  // full.size(), for a look without the lock
    std::vector<int> empty;
    bool finished = false;  // the maker has handed over its last chunk
    bool stopping = false;  // the caller wants no more
    bool makerWaits = false;
    bool callerWaits = false;
    std::thread maker;

    // The maker's chunk, -1 before its first item and after each hand-over.
    alignas(kLine) int filling = -1;
    // The caller's place.
    alignas(kLine) int current = -1;
    std::size_t position = 0;

    // An empty chunk for the maker; -1 once the caller has stopped.
    int takeEmpty() {
        std::unique_lock lock(mutex);
        makerWaits = true;
        changed.wait(lock, [this] { return stopping || !empty.empty(); });
        makerWaits = false;
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
                fullCount.store(static_cast<int>(full.size()), std::memory_order_relaxed);
            } else if (chunk >= 0) {
                empty.push_back(chunk);
            }
            finished = last;
            wake = callerWaits;
        }
        if (wake) changed.notify_all();
    }
};

ChunkPipe::ChunkPipe() : shared_(std::make_unique<Shared>()) {
    for (int i = 0; i < kChunks; ++i) {
        shared_->empty.push_back(i);
    }
}

ChunkPipe::~ChunkPipe() {
    Shared& s = *shared_;
    if (!s.maker.joinable()) return;
    {
        std::lock_guard lock(s.mutex);
        s.stopping = true;
    }
    s.changed.notify_all();
    s.maker.join();
}

void ChunkPipe::start(std::function<void(ChunkPipe&)> make) {
    shared_->maker = std::thread([this, make = std::move(make)] {
        make(*this);
        Shared& s = *shared_;
        s.handOver(s.filling, true);
        s.filling = -1;
    });
}

bool ChunkPipe::put(std::uint32_t tag, std::string_view bytes) {
    Shared& s = *shared_;
    if (s.filling < 0 && (s.filling = s.takeEmpty()) < 0) return false;
    Chunk& c = s.chunks[s.filling];
    c.items.push_back({tag, c.bytes.size(), bytes.size()});
    c.bytes.append(bytes);
    if (c.bytes.size() >= kChunkBytes) {
        s.handOver(s.filling, false);
        s.filling = -1;
    }
    return true;
}

bool ChunkPipe::next(std::uint32_t* tag, std::string_view* bytes) {
    Shared& s = *shared_;
    for (;;) {
        if (s.current >= 0) {
            const Chunk& c = s.chunks[s.current];
            if (s.position < c.items.size()) {
                const Chunk::Item& item = c.items[s.position++];
                *tag = item.tag;
                *bytes = std::string_view(c.bytes).substr(item.offset, item.size);
                return true;
            }
            bool wake = false;
            {
                std::lock_guard lock(s.mutex);
                s.chunks[s.current].clear();
                s.empty.push_back(s.current);
                s.current = -1;
                wake = s.makerWaits;
            }
            if (wake) s.changed.notify_all();
        }
        if (!s.maker.joinable()) return false;
        std::unique_lock lock(s.mutex);
        s.callerWaits = true;
        s.changed.wait(lock, [&s] { return s.finished || !s.full.empty(); });
        s.callerWaits = false;
        if (s.full.empty()) return false;
        s.current = s.full.front();
        s.full.pop_front();
        s.fullCount.store(static_cast<int>(s.full.size()), std::memory_order_relaxed);
        s.position = 0;
    }
}

int ChunkPipe::waiting() const {
    return shared_->fullCount.load(std::memory_order_relaxed);
}

}  // namespace qb
