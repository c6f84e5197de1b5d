#include "platform/data_file.h"

#include <sqlite3.h>

#include <algorithm>
#include <vector>

#include "platform/block_vfs.h"

namespace qb {
namespace {

// Marks a SQLite file as ours ("QBDF"), so another program's file is refused.
constexpr int kApplicationId = 0x51424446;
constexpr int kSchemaVersion = 1;

constexpr const char* kSchema = R"sql(
CREATE TABLE databases (
    oid   INTEGER PRIMARY KEY,
    name  TEXT NOT NULL UNIQUE,
    type  INTEGER NOT NULL,
    sort1 INTEGER, sort2 INTEGER, sort3 INTEGER, sort4 INTEGER
);
CREATE TABLE records (
    oid   INTEGER PRIMARY KEY,
    db    INTEGER NOT NULL,
    props BLOB NOT NULL,
    k1 BLOB, k2 BLOB, k3 BLOB, k4 BLOB
);
CREATE INDEX records_k1 ON records (db, k1);
CREATE INDEX records_k2 ON records (db, k2) WHERE k2 IS NOT NULL;
CREATE INDEX records_k3 ON records (db, k3) WHERE k3 IS NOT NULL;
CREATE INDEX records_k4 ON records (db, k4) WHERE k4 IS NOT NULL;
CREATE TABLE registry_keys (
    root INTEGER NOT NULL,
    path TEXT NOT NULL COLLATE NOCASE,
    PRIMARY KEY (root, path)
);
CREATE TABLE registry_values (
    root INTEGER NOT NULL,
    path TEXT NOT NULL COLLATE NOCASE,
    name TEXT NOT NULL COLLATE NOCASE,
    type INTEGER NOT NULL,
    data BLOB NOT NULL,
    PRIMARY KEY (root, path, name)
);
)sql";

// A connection is only ever used by the thread that opened it, so SQLite
// need not lock it around every call (a walk makes several a record).
constexpr int kOpenFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;

std::string describe(sqlite3* db, int rc) {
    const char* text = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    return text ? text : sqlite3_errstr(rc);
}

bool exec(sqlite3* db, const char* sql) {
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

// Runs a query answering one integer; false when it fails.
bool queryInt(sqlite3* db, const char* sql, long long* out) {
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) != SQLITE_OK) return false;
    int rc = sqlite3_step(stmt);
    if (rc == SQLITE_ROW) *out = sqlite3_column_int64(stmt, 0);
    sqlite3_finalize(stmt);
    return rc == SQLITE_ROW;
}

}  // namespace

struct DataFile::Readers {
    std::vector<Reader*> list;
};

DataFile::DataFile(sqlite3* db, std::string path)
    : db_(db), path_(std::move(path)), readers_(std::make_unique<Readers>()) {}

DataFile::~DataFile() {
    if (db_) sqlite3_close_v2(db_);
}

Status DataFile::open(const std::string& path, std::unique_ptr<DataFile>* out) {
    sqlite3* db = nullptr;
    int rc = sqlite3_open_v2(path.c_str(), &db, kOpenFlags, blockVfsName());
    if (rc != SQLITE_OK) {
        Status s = Status::ioError("cannot open data file " + path + ": " + describe(db, rc));
        sqlite3_close_v2(db);
        return s;
    }
    std::unique_ptr<DataFile> file(new DataFile(db, path));
    Status s = file->prepareSchema();
    if (!s.isOk()) return s;
    *out = std::move(file);
    return Status::ok();
}

std::unique_ptr<DataFile> DataFile::openInMemory() {
    sqlite3* db = nullptr;
    sqlite3_open_v2(":memory:", &db, kOpenFlags, nullptr);
    std::unique_ptr<DataFile> file(new DataFile(db, ":memory:"));
    file->prepareSchema();
    return file;
}

// Reads before it writes anything, so that a file which is not ours, or is
// damaged, is refused without a byte of it changed.
Status DataFile::prepareSchema() {
    sqlite3_busy_timeout(db_, 5000);
    sqlite3_extended_result_codes(db_, 1);
    long long appId = 0;
    long long tables = 0;
    if (!queryInt(db_, "PRAGMA application_id", &appId) ||
        !queryInt(db_, "SELECT count(*) FROM sqlite_schema", &tables)) {
        return Status::corruption("cannot read data file " + path_ + ": " + describe(db_, 0));
    }
    if (tables > 0 && appId != kApplicationId) {
        return Status::corruption("data file " + path_ +
                                  " is not a Quillarbor data file (another program's database)");
    }
    if (tables > 0) {
        long long version = 0;
        queryInt(db_, "PRAGMA user_version", &version);
        if (version > kSchemaVersion) {
            return Status::corruption("data file " + path_ +
                                      " was written by a newer version of Quillarbor");
        }
    }
    if (path_ != ":memory:" && !exec(db_, "PRAGMA journal_mode=WAL")) {
        return Status::ioError("cannot open data file " + path_ + ": " + describe(db_, 0));
    }
    // Every commit is synced to the disk before it returns, so a save that
    // was reported survives a power cut as well as a killed process. It costs
    // one sync of the log per commit (docs/RELIABILITY.md has the figures);
    // bulk operations commit once, so they pay it once.
    exec(db_, "PRAGMA synchronous=FULL");
    if (tables == 0) {
        std::string sql = std::string("BEGIN IMMEDIATE;") + kSchema +
                          "PRAGMA application_id=" + std::to_string(kApplicationId) +
                          ";PRAGMA user_version=" + std::to_string(kSchemaVersion) + ";COMMIT;";
        if (!exec(db_, sql.c_str())) {
            Status s =
                Status::ioError("cannot create data file " + path_ + ": " + describe(db_, 0));
            exec(db_, "ROLLBACK");
            return s;
        }
    }
    return Status::ok();
}

bool DataFile::beginBatch() {
    if (batchDepth_++ > 0) return true;
    beforeWrite();
    if (exec(db_, "BEGIN IMMEDIATE")) return true;
    batchDepth_ = 0;
    return false;
}

bool DataFile::commitBatch() {
    if (batchDepth_ == 0) return false;
    if (--batchDepth_ > 0) return true;
    beforeWrite();
    if (exec(db_, "COMMIT")) return true;
    exec(db_, "ROLLBACK");
    return false;
}

void DataFile::rollbackBatch() {
    if (batchDepth_ == 0) return;
    batchDepth_ = 0;
    beforeWrite();
    exec(db_, "ROLLBACK");
}

std::uint64_t DataFile::externalChangeCounter() {
    // Inside a read snapshot the counter would not move.
    releaseSnapshots();
    long long value = 0;
    queryInt(db_, "PRAGMA data_version", &value);
    return static_cast<std::uint64_t>(value);
}

void DataFile::beforeWrite() {
    ++writeGeneration_;
    releaseSnapshots();
}

void DataFile::releaseSnapshots() {
    for (Reader* r : readers_->list) r->releaseSnapshot();
}

void DataFile::addReader(Reader* reader) {
    readers_->list.push_back(reader);
}

void DataFile::removeReader(Reader* reader) {
    auto& list = readers_->list;
    list.erase(std::remove(list.begin(), list.end(), reader), list.end());
}

}  // namespace qb
