#pragma once

// Client master data: clients and what hangs off them. Entries name their
// client, project, task and bill-to contact by text; master records point to
// their client by ClientId.

#include <cstdint>
#include <string>
#include <vector>

#include "store/property_table.h"

namespace qb {

class ClientTable;
class ProjectTable;
class TaskTable;
class ContactTable;
class RateTable;
struct MasterTables;
struct TimeEntry;

inline constexpr ClientId kNoClient = 0xFFFFFFFF;
inline constexpr ClientId kDefaultRatesClient = 0;

struct ClientRecord {
    CEOID oid = 0;
    ClientId clientId = 0;
    std::u16string name;
};

struct ProjectRecord {
    CEOID oid = 0;
    ClientId clientId = 0;
    std::u16string project;
    std::u16string task;
};

// A task outside any project, or a contact: an owner and a name.
struct NamedRecord {
    CEOID oid = 0;
    ClientId clientId = 0;
    std::u16string name;
};
using TaskRecord = NamedRecord;
using ContactRecord = NamedRecord;

struct RateRecord {
    CEOID oid = 0;
    ClientId clientId = 0;
    std::u16string description;
    std::uint16_t rateType = 0;
    std::uint32_t rate = 0;  // hundredths of a currency unit
    bool flag = false;
};

// Clients. addClient answers the new record's id (0: refused) and hands the
// new ClientId out through `newId`.
CEOID addClient(ClientTable& table, const std::u16string& name, ClientId* newId = nullptr);
bool renameClient(ClientTable& table, const std::u16string& name);
ClientId clientIdOf(ClientTable& table, const std::u16string& name);
// Reads the client table's current record.
bool readClient(ClientTable& table, ClientRecord* out);
std::vector<ClientRecord> allClients(ClientTable& table);

// Project/task pairs.
CEOID addProjectTask(ProjectTable& table, ClientId client, const std::u16string& project,
                     const std::u16string& task);
bool updateProjectTask(ProjectTable& table, ClientId client, const std::u16string& project,
                       const std::u16string& task);
bool renameProject(ProjectTable& table, const std::u16string& project);
bool setProjectTask(ProjectTable& table, const std::u16string& task);
bool removeProject(ProjectTable& table, ClientId client, const std::u16string& project);
std::vector<ProjectRecord> projectsOf(ProjectTable& table, ClientId client);

// Tasks outside projects, and contacts.
CEOID addTask(TaskTable& table, ClientId client, const std::u16string& task);
CEOID addContact(ContactTable& table, ClientId client, const std::u16string& name);
std::vector<NamedRecord> namesOf(PropertyTable& table, ClientId client);
// Removes the named task or contact of the client.
bool removeNamed(PropertyTable& table, ClientId client, const std::u16string& name);

// Rates; the rate arrives in currency units and is stored as hundredths,
// truncated.
CEOID addRate(RateTable& table, std::uint16_t rateType, double rate, ClientId client,
              const std::u16string& description, bool flag);
bool updateRate(RateTable& table, std::uint16_t rateType, double rate, ClientId client,
                const std::u16string& description, bool flag);
// The same with the rate already in stored hundredths, written as it is
// (the record's oid is not looked at; update rewrites the current record).
CEOID addRateRecord(RateTable& table, const RateRecord& rate);
bool updateRateRecord(RateTable& table, const RateRecord& rate);
bool readRate(RateTable& table, RateRecord* out);
std::vector<RateRecord> ratesOf(RateTable& table, ClientId client);
std::vector<RateRecord> allRates(RateTable& table);
// Currency units to hundredths, truncated toward zero (0.29 is 28): the
// rate table's own rule. Below 0 is 0; beyond the field, its largest value.
std::uint32_t storedRate(double currencyUnits);

// Deletes each client with its projects, tasks, contacts and rates; time
// entries keep the client's name.
bool removeClient(MasterTables& tables, const std::vector<CEOID>& clientRecords);

// What the master data learns when an entry is saved.
void registerMasterData(MasterTables& tables, const TimeEntry& entry);

}  // namespace qb
