#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

class Platform;
class Database;

using ClientId = std::uint32_t;

// Where a table lives in the object store: its name, type id and the sort
// orders it is created with.
struct TableCatalogue {
    std::u16string name;
    std::uint32_t typeId = 0;
    std::vector<std::uint32_t> sortOrders;
};

// The common wrapper of one property database. Each seek, read and write
// keeps the identifier it reached in currentOid (0: no current record).
class PropertyTable {
  public:
    explicit PropertyTable(Platform& platform);
    virtual ~PropertyTable();
    PropertyTable(const PropertyTable&) = delete;
    PropertyTable& operator=(const PropertyTable&) = delete;

    // Finds or creates the database, then opens it in the table's sort order.
    virtual bool open(std::uint32_t flags = 0);
    virtual bool create();

    bool loadName();
    bool exists(const std::u16string& name);
    bool openRaw(const std::u16string& name, std::uint32_t sortProp, std::uint32_t flags);
    void close();
    bool isOpen() const { return handle_ != nullptr; }

    bool seekFirst();
    bool seekEqual(const CEPROPVAL& value);
    bool seekNextEqual(const CEPROPVAL& value);
    bool seekNext();
    bool seekOid(CEOID oid);
    // The first record, in sort order, not smaller than the value.
    bool seekAfter(const CEPROPVAL& value);
    // The cursor pair: all records, or those equal to `filter`.
    bool first(const CEPROPVAL* filter);
    bool next();

    // 0 read, 1 end of table, -1 error.
    int readAll(std::vector<CEPROPVAL>* out);
    // The current record's encoded properties, read in place (PropReader);
    // valid until the cursor moves. 0 read, 1 end of table, -1 error.
    int readEncoded(std::string_view* out);
    // One property of the current record; 0 when it cannot be read.
    std::uint64_t readOne(std::uint32_t propId);
    bool add(const std::vector<CEPROPVAL>& values);
    // Adds a record of properties made by Database::encodeNew, on any thread.
    bool addEncoded(std::string_view props);
    bool update(const std::vector<CEPROPVAL>& values);
    bool remove(CEOID oid);
    // Deletes every record whose property 1201 equals the client id.
    bool removeAllFor(ClientId clientId);
    // How many records the table holds (0 when it is not open).
    long recordCount();

    CEOID currentOid() const { return currentOid_; }
    CEOID databaseOid() const { return databaseOid_; }
    const std::u16string& name() const { return name_; }
    Platform& platform() { return platform_; }

  protected:
    virtual TableCatalogue catalogue() const = 0;
    // The sort order the table is opened in.
    virtual std::uint32_t openSortOrder() const;
    bool track(CEOID oid);

    Platform& platform_;
    std::u16string name_;

  private:
    CEOID currentOid_ = 0;
    std::unique_ptr<Database> handle_;
    CEOID databaseOid_ = 0;
    std::optional<CEPROPVAL> cursorFilter_;
};

}  // namespace qb
