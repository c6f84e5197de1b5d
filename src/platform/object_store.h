#pragma once

// The object store of the handheld platform: property databases whose
// records are sets of typed properties, kept in sort orders and reached by
// seeking. Each open database handle has its own sort order and cursor.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

class DataFile;
class Database;

// Seek kinds of Database::seek.
enum SeekKind : std::uint32_t {
    CEDB_SEEK_CEOID = 0x1,
    CEDB_SEEK_BEGINNING = 0x2,
    CEDB_SEEK_CURRENT = 0x8,
    CEDB_SEEK_VALUEFIRSTEQUAL = 0x20,
    CEDB_SEEK_VALUEGREATER = 0x40,
    CEDB_SEEK_VALUENEXTEQUAL = 0x80,
};

// Why the last read failed.
enum ReadError : long {
    kReadOk = 0,
    ERROR_INVALID_DATA = 13,
    ERROR_NO_MORE_ITEMS = 259,
};

// Flag of a listed property that the record does not hold.
constexpr std::uint16_t CEDB_PROPNOTFOUND = 0x400;

constexpr std::size_t kMaxSortOrders = 4;
constexpr std::size_t kMaxDatabaseName = 31;

struct DatabaseInfo {
    std::u16string name;
    std::uint32_t type = 0;
    // Property ids of the sort orders, in declaration order.
    std::vector<std::uint32_t> sortProps;
};

class ObjectStore {
  public:
    explicit ObjectStore(DataFile& file);

    // Identifiers of every database of the given type (0: any type).
    bool findDatabases(std::uint32_t type, std::vector<CEOID>* out);
    bool oidGetInfo(CEOID database, DatabaseInfo* out);
    // Answers the new database's identifier, or 0 (bad info, name taken).
    CEOID createDatabase(const DatabaseInfo& info);
    // Opens the database `*oid`, or when that is 0 the one named `name`,
    // sorted by `sortProp` (0: its first sort order). Null on failure.
    std::unique_ptr<Database> openDatabase(CEOID* oid, const std::u16string& name,
                                           std::uint32_t sortProp);
    bool deleteDatabase(CEOID database);
    // How many records the database holds; -1 when it cannot be read.
    long recordCount(CEOID database);

    DataFile& file() { return file_; }

  private:
    DataFile& file_;
};

// An open database: a sort order and a cursor over its records.
class Database {
  public:
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Moves the cursor; answers the record reached, or 0 when none (the
    // cursor then stands on no record). `value` is the record id for
    // CEDB_SEEK_CEOID, the count for CEDB_SEEK_BEGINNING and
    // CEDB_SEEK_CURRENT; `prop` the value for the value seeks.
    CEOID seek(SeekKind kind, std::uint32_t value, const CEPROPVAL* prop = nullptr);
    // Reads every property of the current record (or only `which`, in that
    // order, absent ones flagged CEDB_PROPNOTFOUND). Answers the record's
    // id, or 0 with `error` set.
    CEOID readProps(const std::vector<std::uint32_t>* which, std::vector<CEPROPVAL>* out,
                    long* error);
    // The current record's encoded properties (see PropReader), valid until
    // the cursor moves or the store is written. Answers as readProps.
    CEOID readEncoded(std::string_view* out, long* error);
    // Writes a new record (`oid` 0) or updates one; values flagged
    // CEDB_PROPDELETE remove the property. The record written becomes the
    // current one. Answers the record's id, or 0.
    CEOID writeProps(CEOID oid, const std::vector<CEPROPVAL>& values);
    // The encoded properties writeProps stores for a new record of `values`.
    // Needs no store: another thread may make them for insertEncoded.
    static std::string encodeNew(const std::vector<CEPROPVAL>& values);
    // Writes a new record of properties made by encodeNew, as writeProps
    // writes it from the values.
    CEOID insertEncoded(std::string_view props);
    bool deleteRecord(CEOID oid);

    CEOID databaseOid() const;
    std::uint32_t sortProp() const;

  private:
    friend class ObjectStore;
    struct Impl;
    explicit Database(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace qb
