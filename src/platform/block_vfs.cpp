#include "platform/block_vfs.h"

#include <sqlite3.h>

#include <cstring>

namespace qb {
namespace {

// The default VFS reads and writes less than 128 KiB in one call.
constexpr int kBlockBytes = 64 * 1024;
// A block is read when a page is asked for near the last page that was not
// in a block: a walk reads forward, a look-up here and there does not and
// reads its page alone. Two blocks, because a walk steps an index and the
// table it points into, two places of the file at once.
constexpr sqlite3_int64 kNear = 4 * kBlockBytes;
constexpr int kBlocks = 2;

struct Block {
    char* data;
    sqlite3_int64 start;
    int size;  // 0: holds nothing
};

struct BlockFile {
    sqlite3_file base;
    sqlite3_file* real;  // the default VFS's file, in the memory after ours
    bool readInBlocks;   // the database file and its log: read in order when read in bulk
    Block blocks[kBlocks];
    int lastUsed;
    sqlite3_int64 lastMiss;
    Block gathered;  // writes not passed on yet, one run of bytes
    // A database file and its write-ahead log know each other: the log's
    // writes are passed on before anything locks the database's shared
    // memory, whatever the sync setting.
    BlockFile* log;
    BlockFile* logOf;
};

sqlite3_vfs* realVfs = nullptr;

BlockFile* self(sqlite3_file* f) {
    return reinterpret_cast<BlockFile*>(f);
}
sqlite3_file* real(sqlite3_file* f) {
    return self(f)->real;
}

// What was read may be stale once another connection may have written: in
// WAL mode each transaction starts and ends with a lock of the database's
// shared memory, so every lock forgets the blocks of the database and of its
// log (and a truncation forgets the file's). This connection's own writes
// are copied into the blocks they touch.
void forget(sqlite3_file* f) {
    for (Block& b : self(f)->blocks) b.size = 0;
}

// Writes that follow each other in the file (the frames of the log, the
// pages a checkpoint copies, in page order) are gathered into one write of
// up to a block. They reach the file before anything else is done with it:
// a read, a sync, its size, a lock, closing. SQLite counts nothing as stored
// before the sync, so gathering loses nothing it relies on, and other
// connections see no frame before the commit's lock and sync let them.
int passOnWrites(sqlite3_file* f) {
    Block& g = self(f)->gathered;
    if (g.size == 0) return SQLITE_OK;
    const int size = g.size;
    g.size = 0;
    return real(f)->pMethods->xWrite(real(f), g.data, size, g.start);
}

bool fillBlock(BlockFile* p, Block& b, sqlite3_int64 offset) {
    sqlite3_int64 fileSize = 0;
    if (p->real->pMethods->xFileSize(p->real, &fileSize) != SQLITE_OK || offset >= fileSize) {
        return false;
    }
    if (!b.data) b.data = static_cast<char*>(sqlite3_malloc(kBlockBytes));
    if (!b.data) return false;
    const int size =
        static_cast<int>(fileSize - offset < kBlockBytes ? fileSize - offset : kBlockBytes);
    if (p->real->pMethods->xRead(p->real, b.data, size, offset) != SQLITE_OK) return false;
    b.start = offset;
    b.size = size;
    return true;
}

int blockRead(sqlite3_file* f, void* out, int amount, sqlite3_int64 offset) {
    BlockFile* p = self(f);
    const int rc = passOnWrites(f);
    if (rc != SQLITE_OK) return rc;
    if (p->readInBlocks && amount <= kBlockBytes / 4) {
        for (int i = 0; i < kBlocks; ++i) {
            const Block& b = p->blocks[i];
            if (b.size > 0 && offset >= b.start && offset + amount <= b.start + b.size) {
                std::memcpy(out, b.data + (offset - b.start), static_cast<std::size_t>(amount));
                p->lastUsed = i;
                return SQLITE_OK;
            }
        }
        const bool near = offset >= p->lastMiss - kNear && offset <= p->lastMiss + kNear;
        p->lastMiss = offset;
        if (near) {
            const int slot = 1 - p->lastUsed;
            Block& b = p->blocks[slot];
            if (fillBlock(p, b, offset) && offset + amount <= b.start + b.size) {
                std::memcpy(out, b.data, static_cast<std::size_t>(amount));
                p->lastUsed = slot;
                return SQLITE_OK;
            }
            b.size = 0;
        }
    }
    return p->real->pMethods->xRead(p->real, out, amount, offset);
}

int blockClose(sqlite3_file* f) {
    BlockFile* p = self(f);
    const int written = passOnWrites(f);
    for (Block& b : p->blocks) sqlite3_free(b.data);
    sqlite3_free(p->gathered.data);
    if (p->logOf) p->logOf->log = nullptr;
    if (p->log) p->log->logOf = nullptr;
    const int closed = p->real->pMethods->xClose(p->real);
    return written != SQLITE_OK ? written : closed;
}

// This connection's own write keeps what was read in step with the file.
void patchBlocks(sqlite3_file* f, const void* data, int amount, sqlite3_int64 offset) {
    for (Block& b : self(f)->blocks) {
        const sqlite3_int64 from = offset > b.start ? offset : b.start;
        const sqlite3_int64 to =
            offset + amount < b.start + b.size ? offset + amount : b.start + b.size;
        if (b.size > 0 && from < to) {
            std::memcpy(b.data + (from - b.start), static_cast<const char*>(data) + (from - offset),
                        static_cast<std::size_t>(to - from));
        }
    }
}

int blockWrite(sqlite3_file* f, const void* data, int amount, sqlite3_int64 offset) {
    patchBlocks(f, data, amount, offset);
    Block& g = self(f)->gathered;
    if (g.size > 0 && offset == g.start + g.size && g.size + amount <= kBlockBytes) {
        std::memcpy(g.data + g.size, data, static_cast<std::size_t>(amount));
        g.size += amount;
        return SQLITE_OK;
    }
    const int rc = passOnWrites(f);
    if (rc != SQLITE_OK) return rc;
    if (amount < kBlockBytes / 4) {
        if (!g.data) g.data = static_cast<char*>(sqlite3_malloc(kBlockBytes));
        if (g.data) {
            std::memcpy(g.data, data, static_cast<std::size_t>(amount));
            g.start = offset;
            g.size = amount;
            return SQLITE_OK;
        }
    }
    return real(f)->pMethods->xWrite(real(f), data, amount, offset);
}

// The calls below pass the gathered writes on first; those that may follow
// another connection's change forget the blocks read too.
#define QB_PASS_ON_WRITES(f)                      \
    do {                                          \
        const int written = passOnWrites(f);      \
        if (written != SQLITE_OK) return written; \
    } while (false)

int blockTruncate(sqlite3_file* f, sqlite3_int64 size) {
    forget(f);
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xTruncate(real(f), size);
}
int blockSync(sqlite3_file* f, int flags) {
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xSync(real(f), flags);
}
int blockFileSize(sqlite3_file* f, sqlite3_int64* size) {
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xFileSize(real(f), size);
}
int blockLock(sqlite3_file* f, int level) {
    forget(f);
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xLock(real(f), level);
}
int blockUnlock(sqlite3_file* f, int level) {
    forget(f);
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xUnlock(real(f), level);
}
int blockCheckReservedLock(sqlite3_file* f, int* out) {
    return real(f)->pMethods->xCheckReservedLock(real(f), out);
}
int blockFileControl(sqlite3_file* f, int op, void* arg) {
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xFileControl(real(f), op, arg);
}
int blockSectorSize(sqlite3_file* f) {
    return real(f)->pMethods->xSectorSize(real(f));
}
int blockDeviceCharacteristics(sqlite3_file* f) {
    return real(f)->pMethods->xDeviceCharacteristics(real(f));
}
int blockShmMap(sqlite3_file* f, int page, int size, int extend, void volatile** out) {
    return real(f)->pMethods->xShmMap(real(f), page, size, extend, out);
}
int blockShmLock(sqlite3_file* f, int offset, int n, int flags) {
    forget(f);
    QB_PASS_ON_WRITES(f);
    if (BlockFile* log = self(f)->log) {
        forget(&log->base);
        QB_PASS_ON_WRITES(&log->base);
    }
    return real(f)->pMethods->xShmLock(real(f), offset, n, flags);
}
void blockShmBarrier(sqlite3_file* f) {
    real(f)->pMethods->xShmBarrier(real(f));
}
int blockShmUnmap(sqlite3_file* f, int deleteFlag) {
    forget(f);
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xShmUnmap(real(f), deleteFlag);
}
int blockFetch(sqlite3_file* f, sqlite3_int64 offset, int amount, void** out) {
    QB_PASS_ON_WRITES(f);
    return real(f)->pMethods->xFetch(real(f), offset, amount, out);
}
int blockUnfetch(sqlite3_file* f, sqlite3_int64 offset, void* page) {
    return real(f)->pMethods->xUnfetch(real(f), offset, page);
}

sqlite3_io_methods makeMethods(int version) {
    sqlite3_io_methods m{};
    m.iVersion = version;
    m.xClose = blockClose;
    m.xRead = blockRead;
    m.xWrite = blockWrite;
    m.xTruncate = blockTruncate;
    m.xSync = blockSync;
    m.xFileSize = blockFileSize;
    m.xLock = blockLock;
    m.xUnlock = blockUnlock;
    m.xCheckReservedLock = blockCheckReservedLock;
    m.xFileControl = blockFileControl;
    m.xSectorSize = blockSectorSize;
    m.xDeviceCharacteristics = blockDeviceCharacteristics;
    if (version >= 2) {
        m.xShmMap = blockShmMap;
        m.xShmLock = blockShmLock;
        m.xShmBarrier = blockShmBarrier;
        m.xShmUnmap = blockShmUnmap;
    }
    if (version >= 3) {
        m.xFetch = blockFetch;
        m.xUnfetch = blockUnfetch;
    }
    return m;
}

// One table of methods for each version the default VFS's files may have.
const sqlite3_io_methods kMethods[] = {makeMethods(1), makeMethods(2), makeMethods(3)};

int blockOpen(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* f, int flags, int* outFlags) {
    BlockFile* p = self(f);
    std::memset(p, 0, sizeof *p);
    p->real = reinterpret_cast<sqlite3_file*>(p + 1);
    p->lastMiss = -2 * kNear;
    const int rc = realVfs->xOpen(realVfs, name, p->real, flags, outFlags);
    if (rc != SQLITE_OK || !p->real->pMethods) {
        p->base.pMethods = nullptr;
        return rc;
    }
    p->readInBlocks = (flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL)) != 0;
    if ((flags & SQLITE_OPEN_WAL) != 0 && name) {
        // The database's file is ours too: this VFS opened it.
        auto* database = reinterpret_cast<BlockFile*>(sqlite3_database_file_object(name));
        if (database && database->base.pMethods && database->base.pMethods->xRead == blockRead) {
            database->log = p;
            p->logOf = database;
        }
    }
    int version = p->real->pMethods->iVersion;
    version = version < 1 ? 1 : version > 3 ? 3 : version;
    p->base.pMethods = &kMethods[version - 1];
    return SQLITE_OK;
}

sqlite3_vfs* registerVfs() {
    realVfs = sqlite3_vfs_find(nullptr);
    if (!realVfs) return nullptr;
    static sqlite3_vfs vfs;
    vfs = *realVfs;
    vfs.pNext = nullptr;
    vfs.zName = "quillarbor-blocks";
    vfs.szOsFile = static_cast<int>(sizeof(BlockFile)) + realVfs->szOsFile;
    vfs.xOpen = blockOpen;
    return sqlite3_vfs_register(&vfs, 0) == SQLITE_OK ? &vfs : nullptr;
}

}  // namespace

const char* blockVfsName() {
    static sqlite3_vfs* const vfs = registerVfs();
    return vfs ? vfs->zName : nullptr;
}

}  // namespace qb
