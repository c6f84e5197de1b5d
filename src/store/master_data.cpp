#include "store/master_data.h"

#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr std::uint32_t kClientIdProp = makePropId(kPropClientId, CEVT_UI4);
constexpr std::uint32_t kTextProp = makePropId(kPropText, CEVT_LPWSTR);
constexpr std::uint32_t kTaskProp = makePropId(kPropTask, CEVT_LPWSTR);
constexpr std::uint32_t kClientNameProp = makePropId(kPropClient, CEVT_LPWSTR);

// Duplicate checks read stored names into 128-character buffers, so only
// the first 127 characters take part.
constexpr std::size_t kCompareLength = 127;

bool sameName(const std::u16string& a, const std::u16string& b) {
    return a.compare(0, kCompareLength, b, 0, kCompareLength) == 0;
}

CEPROPVAL owner(ClientId client) {
    return CEPROPVAL::ui4(kPropClientId, client);
}

const CEPROPVAL* find(const std::vector<CEPROPVAL>& props, std::uint32_t id) {
    for (const CEPROPVAL& p : props) {
        if (p.propid == id) return &p;
    }
    return nullptr;
}

std::u16string textOf(const std::vector<CEPROPVAL>& props, std::uint32_t id) {
    const CEPROPVAL* p = find(props, id);
    return p ? p->str : std::u16string();
}

std::uint64_t numberOf(const std::vector<CEPROPVAL>& props, std::uint32_t id) {
    const CEPROPVAL* p = find(props, id);
    return p ? p->num : 0;
}

// Walks the records of one client in a table sorted by client id.
template <typename Visit>
void forEachOf(PropertyTable& table, ClientId client, Visit visit) {
    CEPROPVAL filter = owner(client);
    std::vector<CEPROPVAL> props;
    for (bool found = table.first(&filter); found; found = table.next()) {
        if (table.readAll(&props) != 0) break;
        CEOID oid = table.currentOid();
        if (!visit(oid, props)) break;
    }
}

RateRecord rateFrom(CEOID oid, const std::vector<CEPROPVAL>& props) {
    RateRecord r;
    r.oid = oid;
    r.clientId = static_cast<ClientId>(numberOf(props, kClientIdProp));
    r.description = textOf(props, makePropId(kPropRateDescription, CEVT_LPWSTR));
    r.rateType = static_cast<std::uint16_t>(numberOf(props, makePropId(kPropListKind, CEVT_UI2)));
    r.rate = static_cast<std::uint32_t>(numberOf(props, makePropId(kPropRate, CEVT_UI4)));
    r.flag = numberOf(props, makePropId(kPropRateFlag, CEVT_BOOL)) == 1;
    return r;
}

std::vector<CEPROPVAL> rateValues(const RateRecord& r) {
    return {CEPROPVAL::ui2(kPropListKind, r.rateType), CEPROPVAL::ui4(kPropRate, r.rate),
            owner(r.clientId), CEPROPVAL::wstr(kPropRateDescription, r.description),
            CEPROPVAL::boolean(kPropRateFlag, r.flag)};
}

RateRecord rateOf(std::uint16_t rateType, double rate, ClientId client,
                  const std::u16string& description, bool flag) {
    return {0, client, description, rateType, storedRate(rate), flag};
}

CEOID addNamed(PropertyTable& table, ClientId client, const std::u16string& name) {
    if (name.empty()) return 0;
    bool present = false;
    forEachOf(table, client, [&](CEOID, const std::vector<CEPROPVAL>& props) {
        present = sameName(textOf(props, kTextProp), name);
        return !present;
    });
    if (present) return 0;
    return table.add({owner(client), CEPROPVAL::wstr(kPropText, name)}) ? table.currentOid() : 0;
}

}  // namespace

// Truncated toward zero; the callers refuse what the field cannot hold, so
// the ends are never reached from what a user typed.
std::uint32_t storedRate(double currencyUnits) {
    const double hundredths = currencyUnits * 100;
    if (!(hundredths > 0)) return 0;
    if (hundredths >= 4294967295.0) return 0xFFFFFFFFu;
    return static_cast<std::uint32_t>(hundredths);
}

CEOID addClient(ClientTable& table, const std::u16string& name, ClientId* newId) {
    if (name.empty() || table.seekEqual(CEPROPVAL::wstr(kPropClient, name))) return 0;
    ClientId id = table.nextClientId();
    if (id == 0) return 0;
    if (!table.add({owner(id), CEPROPVAL::wstr(kPropClient, name)})) return 0;
    if (newId) *newId = id;
    return table.currentOid();
}

bool renameClient(ClientTable& table, const std::u16string& name) {
    return table.update({CEPROPVAL::wstr(kPropClient, name)});
}

ClientId clientIdOf(ClientTable& table, const std::u16string& name) {
    if (!table.seekEqual(CEPROPVAL::wstr(kPropClient, name))) return kNoClient;
    std::vector<CEPROPVAL> props;
    if (table.readAll(&props) != 0) return kNoClient;
    return static_cast<ClientId>(numberOf(props, kClientIdProp));
}

bool readClient(ClientTable& table, ClientRecord* out) {
    std::vector<CEPROPVAL> props;
    if (table.readAll(&props) != 0) return false;
    out->oid = table.currentOid();
    out->clientId = static_cast<ClientId>(numberOf(props, kClientIdProp));
    out->name = textOf(props, kClientNameProp);
    return true;
}

std::vector<ClientRecord> allClients(ClientTable& table) {
    std::vector<ClientRecord> result;
    for (bool found = table.seekFirst(); found; found = table.seekNext()) {
        ClientRecord r;
        if (!readClient(table, &r)) break;
        result.push_back(std::move(r));
    }
    return result;
}

CEOID addProjectTask(ProjectTable& table, ClientId client, const std::u16string& project,
                     const std::u16string& task) {
    if (project.empty()) return 0;
    bool present = false;
    forEachOf(table, client, [&](CEOID, const std::vector<CEPROPVAL>& props) {
        present =
            sameName(textOf(props, kTextProp), project) && sameName(textOf(props, kTaskProp), task);
        return !present;
    });
    if (present) return 0;
    std::vector<CEPROPVAL> values{owner(client), CEPROPVAL::wstr(kPropText, project)};
    // A pair without a task is a project of its own; an empty task is left out.
    if (!task.empty()) values.push_back(CEPROPVAL::wstr(kPropTask, task));
    return table.add(values) ? table.currentOid() : 0;
}

bool updateProjectTask(ProjectTable& table, ClientId client, const std::u16string& project,
                       const std::u16string& task) {
    CEPROPVAL taskValue = CEPROPVAL::wstr(kPropTask, task);
    if (task.empty()) taskValue = std::move(taskValue).deleted();
    return table.update({owner(client), CEPROPVAL::wstr(kPropText, project), taskValue});
}

bool renameProject(ProjectTable& table, const std::u16string& project) {
    return table.update({CEPROPVAL::wstr(kPropText, project)});
}

bool setProjectTask(ProjectTable& table, const std::u16string& task) {
    CEPROPVAL value = CEPROPVAL::wstr(kPropTask, task);
    if (task.empty()) value = std::move(value).deleted();
    return table.update({value});
}

bool removeProject(ProjectTable& table, ClientId client, const std::u16string& project) {
    std::vector<CEOID> doomed;
    forEachOf(table, client, [&](CEOID oid, const std::vector<CEPROPVAL>& props) {
        if (sameName(textOf(props, kTextProp), project)) doomed.push_back(oid);
        return true;
    });
    bool ok = true;
    for (CEOID oid : doomed) ok = table.remove(oid) && ok;
    return ok;
}

std::vector<ProjectRecord> projectsOf(ProjectTable& table, ClientId client) {
    std::vector<ProjectRecord> result;
    forEachOf(table, client, [&](CEOID oid, const std::vector<CEPROPVAL>& props) {
        result.push_back({oid, client, textOf(props, kTextProp), textOf(props, kTaskProp)});
        return true;
    });
    return result;
}

CEOID addTask(TaskTable& table, ClientId client, const std::u16string& task) {
    return addNamed(table, client, task);
}

CEOID addContact(ContactTable& table, ClientId client, const std::u16string& name) {
    return addNamed(table, client, name);
}

std::vector<NamedRecord> namesOf(PropertyTable& table, ClientId client) {
    std::vector<NamedRecord> result;
    forEachOf(table, client, [&](CEOID oid, const std::vector<CEPROPVAL>& props) {
        result.push_back({oid, client, textOf(props, kTextProp)});
        return true;
    });
    return result;
}

bool removeNamed(PropertyTable& table, ClientId client, const std::u16string& name) {
    CEOID doomed = 0;
    forEachOf(table, client, [&](CEOID oid, const std::vector<CEPROPVAL>& props) {
        if (sameName(textOf(props, kTextProp), name)) doomed = oid;
        return doomed == 0;
    });
    return doomed != 0 && table.remove(doomed);
}

CEOID addRate(RateTable& table, std::uint16_t rateType, double rate, ClientId client,
              const std::u16string& description, bool flag) {
    return addRateRecord(table, rateOf(rateType, rate, client, description, flag));
}

bool updateRate(RateTable& table, std::uint16_t rateType, double rate, ClientId client,
                const std::u16string& description, bool flag) {
    return updateRateRecord(table, rateOf(rateType, rate, client, description, flag));
}

CEOID addRateRecord(RateTable& table, const RateRecord& rate) {
    return table.add(rateValues(rate)) ? table.currentOid() : 0;
}

bool updateRateRecord(RateTable& table, const RateRecord& rate) {
    return table.update(rateValues(rate));
}

bool readRate(RateTable& table, RateRecord* out) {
    std::vector<CEPROPVAL> props;
    if (table.readAll(&props) != 0) return false;
    *out = rateFrom(table.currentOid(), props);
    return true;
}

std::vector<RateRecord> ratesOf(RateTable& table, ClientId client) {
    std::vector<RateRecord> result;
    forEachOf(table, client, [&](CEOID oid, const std::vector<CEPROPVAL>& props) {
        result.push_back(rateFrom(oid, props));
        return true;
    });
    return result;
}

std::vector<RateRecord> allRates(RateTable& table) {
    std::vector<RateRecord> result;
    for (bool found = table.seekFirst(); found; found = table.seekNext()) {
        RateRecord r;
        if (!readRate(table, &r)) break;
        result.push_back(std::move(r));
    }
    return result;
}

bool removeClient(MasterTables& tables, const std::vector<CEOID>& clientRecords) {
    bool ok = true;
    for (CEOID record : clientRecords) {
        ClientRecord client;
        if (!tables.clients.seekOid(record) || !readClient(tables.clients, &client)) {
            ok = false;
            continue;
        }
        ok = tables.projects.removeAllFor(client.clientId) && ok;
        ok = tables.tasks.removeAllFor(client.clientId) && ok;
        ok = tables.contacts.removeAllFor(client.clientId) && ok;
        ok = tables.rates.removeAllFor(client.clientId) && ok;
        ok = tables.clients.remove(record) && ok;
    }
    return ok;
}

void registerMasterData(MasterTables& tables, const TimeEntry& entry) {
    ClientId id = 0;
    if (addClient(tables.clients, entry.client, &id) == 0)
        id = clientIdOf(tables.clients, entry.client);
    if (id != 0) {
        if (entry.project.empty()) {
            addTask(tables.tasks, id, entry.task);
        } else {
            addProjectTask(tables.projects, id, entry.project, entry.task);
        }
        addContact(tables.contacts, id, entry.billTo);
    }
    ListTable& list = tables.lists;
    if (!list.isOpen() && !list.open()) return;
    list.addItem(kListPhase, entry.phase);
    list.addItem(kListCurrency, entry.currency);
    list.addItem(kListCustom1, entry.custom1);
    list.addItem(kListCustom2, entry.custom2);
    list.addItem(kListCustom3, entry.custom3);
}

}  // namespace qb
