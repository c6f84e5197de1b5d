#include "platform/block_read_vfs.h"

#include <sqlite3.h>

#include <cstdlib>
#include <cstring>

namespace qb {
namespace {

// A block is read when a page is asked for near the last page that was not
// in a block: a walk reads forward, a look-up here and there does not and
// reads its page alone. Two blocks, because a walk steps an index and the
// table it points into, two places of the file at once.
constexpr int kBlockBytes = 256 * 1024;
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
    bool database;       // the main database file: the only one read in blocks
    Block blocks[kBlocks];
    int lastUsed;
    sqlite3_int64 lastMiss;
};

sqlite3_vfs* realVfs = nullptr;

BlockFile* self(sqlite3_file* f) {
    return reinterpret_cast<BlockFile*>(f);
}
sqlite3_file* real(sqlite3_file* f) {
    return self(f)->real;
}

// What was read may be stale once anything else happens to the file: a
// write, a lock (in WAL mode each read transaction starts with a lock of the
// shared memory, and another connection may have checkpointed since), so
// every such call forgets the blocks.
void forget(sqlite3_file* f) {
    for (Block& b : self(f)->blocks) b.size = 0;
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
    if (p->database && amount <= kBlockBytes / 4) {
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
    for (Block& b : p->blocks) sqlite3_free(b.data);
    return p->real->pMethods->xClose(p->real);
}
int blockWrite(sqlite3_file* f, const void* data, int amount, sqlite3_int64 offset) {
    forget(f);
    return real(f)->pMethods->xWrite(real(f), data, amount, offset);
}
int blockTruncate(sqlite3_file* f, sqlite3_int64 size) {
    forget(f);
    return real(f)->pMethods->xTruncate(real(f), size);
}
int blockSync(sqlite3_file* f, int flags) {
    return real(f)->pMethods->xSync(real(f), flags);
}
int blockFileSize(sqlite3_file* f, sqlite3_int64* size) {
    return real(f)->pMethods->xFileSize(real(f), size);
}
int blockLock(sqlite3_file* f, int level) {
    forget(f);
    return real(f)->pMethods->xLock(real(f), level);
}
int blockUnlock(sqlite3_file* f, int level) {
    forget(f);
    return real(f)->pMethods->xUnlock(real(f), level);
}
int blockCheckReservedLock(sqlite3_file* f, int* out) {
    return real(f)->pMethods->xCheckReservedLock(real(f), out);
}
int blockFileControl(sqlite3_file* f, int op, void* arg) {
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
    return real(f)->pMethods->xShmLock(real(f), offset, n, flags);
}
void blockShmBarrier(sqlite3_file* f) {
    real(f)->pMethods->xShmBarrier(real(f));
}
int blockShmUnmap(sqlite3_file* f, int deleteFlag) {
    forget(f);
    return real(f)->pMethods->xShmUnmap(real(f), deleteFlag);
}
int blockFetch(sqlite3_file* f, sqlite3_int64 offset, int amount, void** out) {
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
    p->database = (flags & SQLITE_OPEN_MAIN_DB) != 0;
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

const char* blockReadVfsName() {
    static sqlite3_vfs* const vfs = registerVfs();
    return vfs ? vfs->zName : nullptr;
}

}  // namespace qb
