#include "platform/object_store.h"

#include <sqlite3.h>

#include <functional>
#include <string>

#include "platform/data_file.h"
#include "platform/record_codec.h"
#include "platform/text.h"

namespace qb {
namespace {

const char* const kKeyColumns[kMaxSortOrders] = {"k1", "k2", "k3", "k4"};

sqlite3_stmt* prepare(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v3(db, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
    return stmt;
}

std::string columnString(sqlite3_stmt* stmt, int col) {
    const void* p = sqlite3_column_blob(stmt, col);
    int n = sqlite3_column_bytes(stmt, col);
    return p ? std::string(static_cast<const char*>(p), n) : std::string();
}

std::string_view columnView(sqlite3_stmt* stmt, int col) {
    const void* p = sqlite3_column_blob(stmt, col);
    const int n = sqlite3_column_bytes(stmt, col);
    return p ? std::string_view(static_cast<const char*>(p), static_cast<std::size_t>(n))
             : std::string_view();
}

// The same into a string kept across rows, so that a walk reuses its buffer.
void assignColumn(sqlite3_stmt* stmt, int col, std::string* out) {
    const void* p = sqlite3_column_blob(stmt, col);
    const int n = sqlite3_column_bytes(stmt, col);
    if (p) {
        out->assign(static_cast<const char*>(p), static_cast<std::size_t>(n));
    } else {
        out->clear();
    }
}

void bindString(sqlite3_stmt* stmt, int i, const std::string& s) {
    sqlite3_bind_blob(stmt, i, s.data(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
}

// Binds bytes that outlive the statement's one step, without a copy.
void bindBorrowed(sqlite3_stmt* stmt, int i, const std::string& s) {
    sqlite3_bind_blob(stmt, i, s.data(), static_cast<int>(s.size()), SQLITE_STATIC);
}

// The declared sort orders of a database, read from its row.
bool loadInfo(sqlite3* db, CEOID oid, DatabaseInfo* out) {
    sqlite3_stmt* q = prepare(db,
                              "SELECT name, type, sort1, sort2, sort3, sort4 FROM databases "
                              "WHERE oid=?");
    if (!q) return false;
    sqlite3_bind_int64(q, 1, oid);
    bool found = sqlite3_step(q) == SQLITE_ROW;
    if (found) {
        out->name = utf8ToUtf16(reinterpret_cast<const char*>(sqlite3_column_text(q, 0)));
        out->type = static_cast<std::uint32_t>(sqlite3_column_int64(q, 1));
        out->sortProps.clear();
        for (int i = 0; i < 4; ++i) {
            if (sqlite3_column_type(q, 2 + i) == SQLITE_NULL) break;
            out->sortProps.push_back(static_cast<std::uint32_t>(sqlite3_column_int64(q, 2 + i)));
        }
    }
    sqlite3_finalize(q);
    return found;
}

}  // namespace

ObjectStore::ObjectStore(DataFile& file) : file_(file) {}

bool ObjectStore::findDatabases(std::uint32_t type, std::vector<CEOID>* out) {
    out->clear();
    sqlite3_stmt* q =
        prepare(file_.handle(), "SELECT oid FROM databases WHERE ?1 = 0 OR type = ?1 ORDER BY oid");
    if (!q) return false;
    sqlite3_bind_int64(q, 1, type);
    int rc;
    while ((rc = sqlite3_step(q)) == SQLITE_ROW) {
        out->push_back(static_cast<CEOID>(sqlite3_column_int64(q, 0)));
    }
    sqlite3_finalize(q);
    return rc == SQLITE_DONE;
}

bool ObjectStore::oidGetInfo(CEOID database, DatabaseInfo* out) {
    return loadInfo(file_.handle(), database, out);
}

CEOID ObjectStore::createDatabase(const DatabaseInfo& info) {
    if (info.name.empty() || info.name.size() > kMaxDatabaseName ||
        info.sortProps.size() > kMaxSortOrders) {
        return 0;
    }
    file_.beforeWrite();
    sqlite3_stmt* q = prepare(file_.handle(),
                              "INSERT INTO databases (name, type, sort1, sort2, sort3, sort4) "
                              "VALUES (?, ?, ?, ?, ?, ?)");
    if (!q) return 0;
    std::string name = utf16ToUtf8(info.name);
    sqlite3_bind_text(q, 1, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int64(q, 2, info.type);
    for (std::size_t i = 0; i < info.sortProps.size(); ++i) {
        sqlite3_bind_int64(q, static_cast<int>(3 + i), info.sortProps[i]);
    }
    CEOID oid = 0;
    if (sqlite3_step(q) == SQLITE_DONE) {
        oid = static_cast<CEOID>(sqlite3_last_insert_rowid(file_.handle()));
    }
    sqlite3_finalize(q);
    return oid;
}

long ObjectStore::recordCount(CEOID database) {
    // Counted in the first sort order's index, which every record is in:
    // the records themselves are not read.
    sqlite3_stmt* q = prepare(file_.handle(), "SELECT count(*) FROM records WHERE db=?");
    if (!q) return -1;
    file_.releaseSnapshots();
    sqlite3_bind_int64(q, 1, database);
    const long n =
        sqlite3_step(q) == SQLITE_ROW ? static_cast<long>(sqlite3_column_int64(q, 0)) : -1;
    sqlite3_finalize(q);
    return n;
}

bool ObjectStore::deleteDatabase(CEOID database) {
    file_.beforeWrite();
    sqlite3* db = file_.handle();
    sqlite3_stmt* q = prepare(db, "DELETE FROM records WHERE db=?");
    sqlite3_bind_int64(q, 1, database);
    bool ok = sqlite3_step(q) == SQLITE_DONE;
    sqlite3_finalize(q);
    q = prepare(db, "DELETE FROM databases WHERE oid=?");
    sqlite3_bind_int64(q, 1, database);
    ok = sqlite3_step(q) == SQLITE_DONE && ok && sqlite3_changes(db) > 0;
    sqlite3_finalize(q);
    return ok;
}

// The cursor keeps a scan statement running between seeks so that walking
// forward costs one step; any write lets go of it (its snapshot would block
// the write) and the next move starts a new scan from the remembered place.
// A record the scan stands on is read where SQLite holds it; its key and
// properties are copied only when the scan lets go while standing there.
struct Database::Impl final : DataFile::Reader {
    using SortKeyOf = std::function<std::string(std::uint32_t sortProp)>;

    DataFile& file;
    CEOID dbOid = 0;
    DatabaseInfo info;
    int sortIndex = 0;
    std::uint32_t sortProp = 0;

    bool hasCurrent = false;
    CEOID currentOid = 0;
    bool inScan = false;  // the current record is the scan's row
    std::string currentKey;
    std::string currentProps;
    std::uint64_t currentGeneration = 0;

    sqlite3_stmt* scan = nullptr;  // rows with key >= ?2, in sort order
    bool scanRunning = false;
    std::uint64_t scanGeneration = 0;
    sqlite3_stmt* byOid = nullptr;
    sqlite3_stmt* insert = nullptr;
    sqlite3_stmt* update = nullptr;
    sqlite3_stmt* remove = nullptr;

    explicit Impl(DataFile& f) : file(f) { file.addReader(this); }
    ~Impl() {
        file.removeReader(this);
        for (sqlite3_stmt* s : {scan, byOid, insert, update, remove}) sqlite3_finalize(s);
    }

    void releaseSnapshot() override {
        if (inScan) {
            assignColumn(scan, 1, &currentKey);
            assignColumn(scan, 2, &currentProps);
            inScan = false;
        }
        if (scanRunning) sqlite3_reset(scan);
        scanRunning = false;
    }

    std::string_view key() const { return inScan ? columnView(scan, 1) : currentKey; }
    std::string_view props() const { return inScan ? columnView(scan, 2) : currentProps; }

    bool prepareStatements() {
        sqlite3* db = file.handle();
        std::string k = kKeyColumns[sortIndex];
        scan = prepare(db, "SELECT oid, " + k + ", props FROM records WHERE db=?1 AND " + k +
                               " >= ?2 ORDER BY " + k + ", oid");
        byOid = prepare(db, "SELECT " + k + ", props FROM records WHERE oid=?1 AND db=?2");
        // A write changes one row, so a failing constraint has nothing of
        // the statement's to undo: OR FAIL spares SQLite a statement journal.
        insert = prepare(db,
                         "INSERT OR FAIL INTO records (db, props, k1, k2, k3, k4) "
                         "VALUES (?, ?, ?, ?, ?, ?)");
        update = prepare(db,
                         "UPDATE OR FAIL records SET props=?2, k1=?3, k2=?4, k3=?5, k4=?6 "
                         "WHERE oid=?1 AND db=?7");
        remove = prepare(db, "DELETE FROM records WHERE oid=? AND db=?");
        return scan && byOid && insert && update && remove;
    }

    void clearCurrent() {
        hasCurrent = false;
        currentOid = 0;
        inScan = false;
        currentKey.clear();
        currentProps.clear();
    }

    void takeScanRow() {
        hasCurrent = true;
        currentOid = static_cast<CEOID>(sqlite3_column_int64(scan, 0));
        inScan = true;
        currentGeneration = file.writeGeneration();
    }

    // Starts a scan at the first record whose key is not smaller than `key`.
    // A statement of another handle would hold the connection's snapshot,
    // so all of them let go first and the scan sees the latest commits.
    bool startScan(const std::string& key) {
        file.releaseSnapshots();
        sqlite3_bind_int64(scan, 1, dbOid);
        bindString(scan, 2, key);
        scanRunning = true;
        scanGeneration = file.writeGeneration();
        return stepScan();
    }

    bool stepScan() {
        inScan = false;  // the step leaves the row
        if (sqlite3_step(scan) == SQLITE_ROW) {
            takeScanRow();
            return true;
        }
        releaseSnapshot();
        clearCurrent();
        return false;
    }

    // One record forward from the current one.
    bool stepForward() {
        if (!hasCurrent) return false;
        if (scanRunning && scanGeneration == file.writeGeneration()) return stepScan();
        const std::string fromKey(key());
        CEOID fromOid = currentOid;
        if (!startScan(fromKey)) return false;
        while (key() == fromKey && currentOid <= fromOid) {
            if (!stepScan()) return false;
        }
        return true;
    }

    bool seekOid(CEOID oid) {
        file.releaseSnapshots();
        sqlite3_bind_int64(byOid, 1, oid);
        sqlite3_bind_int64(byOid, 2, dbOid);
        bool found = sqlite3_step(byOid) == SQLITE_ROW;
        if (found) {
            hasCurrent = true;
            currentOid = oid;
            assignColumn(byOid, 0, &currentKey);
            assignColumn(byOid, 1, &currentProps);
            currentGeneration = file.writeGeneration();
        } else {
            clearCurrent();
        }
        sqlite3_reset(byOid);
        return found;
    }

    // Binds the record's keys, kept in writeKeys until the write's step is done.
    void bindKeys(sqlite3_stmt* stmt, int first, const SortKeyOf& keyOf) {
        for (std::size_t i = 0; i < kMaxSortOrders; ++i) {
            int col = first + static_cast<int>(i);
            if (i < info.sortProps.size()) {
                writeKeys[i] = keyOf(info.sortProps[i]);
                bindBorrowed(stmt, col, writeKeys[i]);
            } else if (i == 0) {
                writeKeys[i].clear();  // no sort order: record order
                bindBorrowed(stmt, col, writeKeys[i]);
            } else {
                sqlite3_bind_null(stmt, col);
            }
        }
    }

    // Writes a new record (`oid` 0) or a record's new properties, which
    // then becomes the current record.
    CEOID write(CEOID oid, std::string bytes, const SortKeyOf& keyOf) {
        file.beforeWrite();
        sqlite3_stmt* stmt = oid == 0 ? insert : update;
        if (oid == 0) {
            sqlite3_bind_int64(stmt, 1, dbOid);
            bindBorrowed(stmt, 2, bytes);
            bindKeys(stmt, 3, keyOf);
        } else {
            sqlite3_bind_int64(stmt, 1, oid);
            bindBorrowed(stmt, 2, bytes);
            bindKeys(stmt, 3, keyOf);
            sqlite3_bind_int64(stmt, 7, dbOid);
        }
        bool ok = sqlite3_step(stmt) == SQLITE_DONE;
        sqlite3_reset(stmt);
        sqlite3_clear_bindings(stmt);  // the borrowed bytes go with this call
        if (!ok) return 0;
        if (oid == 0) oid = static_cast<CEOID>(sqlite3_last_insert_rowid(file.handle()));
        hasCurrent = true;
        currentOid = oid;
        inScan = false;
        currentKey = info.sortProps.empty() ? std::string() : keptKey(keyOf);
        currentProps = std::move(bytes);
        currentGeneration = file.writeGeneration();
        return oid;
    }
    std::string writeKeys[kMaxSortOrders];

    // The key of the open sort order of the record just written: bound
    // already when the order is one of the database's.
    std::string keptKey(const SortKeyOf& keyOf) const {
        for (std::size_t i = 0; i < info.sortProps.size() && i < kMaxSortOrders; ++i) {
            if (info.sortProps[i] == sortProp) return writeKeys[i];
        }
        return keyOf(sortProp);
    }
};

Database::Database(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
Database::~Database() = default;

std::unique_ptr<Database> ObjectStore::openDatabase(CEOID* oid, const std::u16string& name,
                                                    std::uint32_t sortProp) {
    sqlite3* db = file_.handle();
    CEOID found = oid ? *oid : 0;
    if (found == 0) {
        sqlite3_stmt* q = prepare(db, "SELECT oid FROM databases WHERE name=?");
        if (!q) return nullptr;
        std::string utf8 = utf16ToUtf8(name);
        sqlite3_bind_text(q, 1, utf8.c_str(), -1, SQLITE_TRANSIENT);
        if (sqlite3_step(q) == SQLITE_ROW) found = static_cast<CEOID>(sqlite3_column_int64(q, 0));
        sqlite3_finalize(q);
    }
    auto impl = std::make_unique<Database::Impl>(file_);
    if (found == 0 || !loadInfo(db, found, &impl->info)) return nullptr;
    impl->dbOid = found;
    if (sortProp != 0) {
        bool declared = false;
        for (std::size_t i = 0; i < impl->info.sortProps.size(); ++i) {
            if (impl->info.sortProps[i] == sortProp) {
                impl->sortIndex = static_cast<int>(i);
                declared = true;
                break;
            }
        }
        if (!declared) return nullptr;
    }
    impl->sortProp = impl->info.sortProps.empty() ? 0 : impl->info.sortProps[impl->sortIndex];
    if (!impl->prepareStatements()) return nullptr;
    if (oid) *oid = found;
    return std::unique_ptr<Database>(new Database(std::move(impl)));
}

CEOID Database::databaseOid() const {
    return impl_->dbOid;
}
std::uint32_t Database::sortProp() const {
    return impl_->sortProp;
}

CEOID Database::seek(SeekKind kind, std::uint32_t value, const CEPROPVAL* prop) {
    Impl& d = *impl_;
    switch (kind) {
        case CEDB_SEEK_CEOID:
            return d.seekOid(value) ? d.currentOid : 0;
        case CEDB_SEEK_BEGINNING: {
            if (!d.startScan(std::string())) return 0;
            for (std::uint32_t i = 0; i < value; ++i) {
                if (!d.stepForward()) return 0;
            }
            return d.currentOid;
        }
        case CEDB_SEEK_CURRENT: {
            for (std::uint32_t i = 0; i < value; ++i) {
                if (!d.stepForward()) return 0;
            }
            return d.hasCurrent ? d.currentOid : 0;
        }
        case CEDB_SEEK_VALUEFIRSTEQUAL:
        case CEDB_SEEK_VALUEGREATER: {
            if (!prop || prop->propid != d.sortProp) {
                d.releaseSnapshot();
                d.clearCurrent();
                return 0;
            }
            std::string key = sortKeyOf(*prop);
            if (!d.startScan(key)) return 0;
            if (kind == CEDB_SEEK_VALUEFIRSTEQUAL && d.key() != key) {
                d.releaseSnapshot();
                d.clearCurrent();
                return 0;
            }
            return d.currentOid;
        }
        case CEDB_SEEK_VALUENEXTEQUAL: {
            if (!prop || prop->propid != d.sortProp || !d.hasCurrent) {
                d.releaseSnapshot();
                d.clearCurrent();
                return 0;
            }
            std::string key = sortKeyOf(*prop);
            // Records equal to the value follow each other in sort order, so
            // the next equal record is either the next record or one found
            // from the start of the equal run.
            if (d.key() < key) {
                if (!d.startScan(key) || d.key() != key) {
                    d.releaseSnapshot();
                    d.clearCurrent();
                    return 0;
                }
                return d.currentOid;
            }
            if (!d.stepForward() || d.key() != key) {
                d.releaseSnapshot();
                d.clearCurrent();
                return 0;
            }
            return d.currentOid;
        }
    }
    return 0;
}

CEOID Database::readEncoded(std::string_view* out, long* error) {
    Impl& d = *impl_;
    long ignored = 0;
    long& err = error ? *error : ignored;
    *out = {};
    if (!d.hasCurrent) {
        err = ERROR_NO_MORE_ITEMS;
        return 0;
    }
    if (d.currentGeneration != d.file.writeGeneration()) {
        // Written since we stood here: read the record as it is now.
        if (!d.seekOid(d.currentOid)) {
            err = ERROR_NO_MORE_ITEMS;
            return 0;
        }
    }
    *out = d.props();
    err = kReadOk;
    return d.currentOid;
}

CEOID Database::readProps(const std::vector<std::uint32_t>* which, std::vector<CEPROPVAL>* out,
                          long* error) {
    Impl& d = *impl_;
    long ignored = 0;
    long& err = error ? *error : ignored;
    std::string_view encoded;
    if (readEncoded(&encoded, &err) == 0) {
        out->clear();
        return 0;
    }
    // A whole record is decoded straight into the caller's values, whose
    // buffers a walk keeps from record to record.
    std::vector<CEPROPVAL> chosen;
    std::vector<CEPROPVAL>& all = which ? chosen : *out;
    if (!decodeProps(encoded, &all)) {
        out->clear();
        err = ERROR_INVALID_DATA;
        return 0;
    }
    if (which) {
        out->clear();
        for (std::uint32_t id : *which) {
            CEPROPVAL v;
            v.propid = id;
            v.flags = CEDB_PROPNOTFOUND;
            for (CEPROPVAL& p : all) {
                if (p.propid == id) {
                    v = p;
                    break;
                }
            }
            out->push_back(std::move(v));
        }
    }
    err = kReadOk;
    return d.currentOid;
}

namespace {

// The properties of a record after `values` are written to it: a value
// replaces the property of its id or is added after the others, and one
// flagged CEDB_PROPDELETE removes it.
void mergeValues(const std::vector<CEPROPVAL>& values, std::vector<CEPROPVAL>& props) {
    for (const CEPROPVAL& v : values) {
        auto it = props.begin();
        while (it != props.end() && it->propid != v.propid) ++it;
        if (v.flags & CEDB_PROPDELETE) {
            if (it != props.end()) props.erase(it);
        } else if (it != props.end()) {
            *it = v;
            it->flags = 0;
        } else {
            props.push_back(v);
            props.back().flags = 0;
        }
    }
}

}  // namespace

std::string Database::encodeNew(const std::vector<CEPROPVAL>& values) {
    std::vector<CEPROPVAL> props;
    mergeValues(values, props);
    return encodeProps(props);
}

CEOID Database::writeProps(CEOID oid, const std::vector<CEPROPVAL>& values) {
    Impl& d = *impl_;
    std::vector<CEPROPVAL> props;
    if (oid != 0) {
        sqlite3_bind_int64(d.byOid, 1, oid);
        sqlite3_bind_int64(d.byOid, 2, d.dbOid);
        bool found = sqlite3_step(d.byOid) == SQLITE_ROW;
        std::string bytes = found ? columnString(d.byOid, 1) : std::string();
        sqlite3_reset(d.byOid);
        if (!found || !decodeProps(bytes, &props)) return 0;
    }
    mergeValues(values, props);
    return d.write(oid, encodeProps(props),
                   [&props](std::uint32_t sortProp) { return recordSortKey(props, sortProp); });
}

CEOID Database::insertEncoded(std::string_view props) {
    return impl_->write(0, std::string(props), [props](std::uint32_t sortProp) {
        return encodedSortKey(props, sortProp);
    });
}

bool Database::deleteRecord(CEOID oid) {
    Impl& d = *impl_;
    d.file.beforeWrite();
    sqlite3_bind_int64(d.remove, 1, oid);
    sqlite3_bind_int64(d.remove, 2, d.dbOid);
    bool ok = sqlite3_step(d.remove) == SQLITE_DONE;
    sqlite3_reset(d.remove);
    return ok && sqlite3_changes(d.file.handle()) > 0;
}

}  // namespace qb
