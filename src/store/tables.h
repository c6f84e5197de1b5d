#pragma once

// The tables of the store, each a property database with its own name,
// type id and sort orders.

#include <memory>
#include <string>
#include <vector>

#include "store/property_table.h"

namespace qb {

class EntryTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;

  protected:
    TableCatalogue catalogue() const override;
};

// Kinds of ListTable records (property 1102).
enum ListKind : std::uint16_t {
    kListCounter = 0,
    kListPhase = 3,
    kListCurrency = 5,
    kListCustom1 = 7,
    kListCustom2 = 8,
    kListCustom3 = 9,
    kListLayout = 10,
};

// Drop-list items, saved report layouts and the client-id counter. Readers
// by kind open it sorted by kind; writers of items sorted by text.
class ListTable : public PropertyTable {
  public:
    enum class Order { kByKind, kByText };
    ListTable(Platform& platform, Order order);

    // Adds a drop-list item unless it is empty or present already; answers
    // the new record's id, or 0.
    CEOID addItem(ListKind kind, const std::u16string& text);
    // The id of the item of that kind and text, or 0.
    CEOID findItem(ListKind kind, const std::u16string& text);
    // The texts of one kind, in table order.
    std::vector<std::u16string> items(ListKind kind);
    bool removeItem(ListKind kind, const std::u16string& text);
    bool removeKind(ListKind kind);

  protected:
    TableCatalogue catalogue() const override;
    std::uint32_t openSortOrder() const override;

  private:
    Order order_;
};

class RateTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;

  protected:
    TableCatalogue catalogue() const override;
};

// Clients by name. Opening it also keeps the client-id counter record.
class ClientTable : public PropertyTable {
  public:
    explicit ClientTable(Platform& platform);
    ~ClientTable() override;
    bool open(std::uint32_t flags = 0) override;
    // Hands out the next client id, keeping the counter's table open for the
    // next one (an import adds thousands).
    ClientId nextClientId();

  protected:
    TableCatalogue catalogue() const override;

  private:
    std::unique_ptr<ListTable> counter_;
};

class ProjectTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;

  protected:
    TableCatalogue catalogue() const override;
};

class TaskTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;

  protected:
    TableCatalogue catalogue() const override;
};

class ContactTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;

  protected:
    TableCatalogue catalogue() const override;
};

// The system's own address book, read only; never created here.
class SystemContactsTable : public PropertyTable {
  public:
    using PropertyTable::PropertyTable;
    bool open(std::uint32_t flags = 0) override;

  protected:
    TableCatalogue catalogue() const override;
};

// Hands out the next client id from the counter record; 0 when there is
// no counter.
ClientId nextClientId(Platform& platform);

// The five master tables, opened together and kept open.
struct MasterTables {
    explicit MasterTables(Platform& platform);
    // Opens clients, projects, tasks, contacts and rates in that order,
    // stopping at the first failure.
    bool open();

    ClientTable clients;
    ProjectTable projects;
    TaskTable tasks;
    ContactTable contacts;
    RateTable rates;
    // The drop lists by text, opened on first use by registerMasterData, so
    // that registering many entries opens it once.
    ListTable lists;
};

}  // namespace qb
