#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/status.h"

struct sqlite3;

namespace qb {

// The one SQLite file that holds the object store and the registry.
// Every write is committed when it returns, unless a batch is open; a batch
// commits many writes at once for speed.
class DataFile {
  public:
    // Opens (creating when absent) the file at `path`. A file that is not a
    // Quillarbor data file is refused and left untouched.
    static Status open(const std::string& path, std::unique_ptr<DataFile>* out);
    // An in-memory file, for tests.
    static std::unique_ptr<DataFile> openInMemory();
    ~DataFile();

    DataFile(const DataFile&) = delete;
    DataFile& operator=(const DataFile&) = delete;

    const std::string& path() const { return path_; }
    sqlite3* handle() const { return db_; }

    bool beginBatch();
    bool commitBatch();
    void rollbackBatch();
    bool inBatch() const { return batchDepth_ > 0; }

    // Grows whenever another connection (another process) commits a change.
    std::uint64_t externalChangeCounter();

    // Called before every write so that no reader holds an old snapshot, and
    // counted so that readers know to look again.
    void beforeWrite();
    std::uint64_t writeGeneration() const { return writeGeneration_; }

    // Lets every registered reader go of its snapshot, so that the next read
    // sees what other connections have committed.
    void releaseSnapshots();

    // Readers that keep a statement running between calls register here so
    // that writes and fresh seeks can let go of their snapshots.
    class Reader {
      public:
        virtual void releaseSnapshot() = 0;

      protected:
        ~Reader() = default;
    };
    void addReader(Reader* reader);
    void removeReader(Reader* reader);

  private:
    DataFile(sqlite3* db, std::string path);
    Status prepareSchema();

    sqlite3* db_ = nullptr;
    std::string path_;
    int batchDepth_ = 0;
    std::uint64_t writeGeneration_ = 0;
    struct Readers;
    std::unique_ptr<Readers> readers_;
};

}  // namespace qb
