#include "entry/replace_text.h"

#include <algorithm>

#include "entry/client_migration.h"
#include "entry/entry_form.h"
#include "entry/mark_paid.h"
#include "platform/data_file.h"
#include "store/master_data.h"
#include "store/record_props.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr std::u16string_view kFieldTexts[kReplaceFieldCount] = {
    u"Client",  u"Project",  u"Phase",    u"Task",     u"Currency",
    u"Bill To", u"Custom 1", u"Custom 2", u"Custom 3", u"Project-Task"};

bool isListField(ReplaceField field, ListKind* kind) {
    switch (field) {
        case ReplaceField::kPhase:
            *kind = kListPhase;
            return true;
        case ReplaceField::kCurrency:
            *kind = kListCurrency;
            return true;
        case ReplaceField::kCustom1:
            *kind = kListCustom1;
            return true;
        case ReplaceField::kCustom2:
            *kind = kListCustom2;
            return true;
        case ReplaceField::kCustom3:
            *kind = kListCustom3;
            return true;
        default:
            return false;
    }
}

std::u16string* entryField(TimeEntry& e, ReplaceField field) {
    switch (field) {
        case ReplaceField::kClient:
            return &e.client;
        case ReplaceField::kProject:
            return &e.project;
        case ReplaceField::kPhase:
            return &e.phase;
        case ReplaceField::kTask:
        case ReplaceField::kProjectTask:
            return &e.task;
        case ReplaceField::kCurrency:
            return &e.currency;
        case ReplaceField::kBillTo:
            return &e.billTo;
        case ReplaceField::kCustom1:
            return &e.custom1;
        case ReplaceField::kCustom2:
            return &e.custom2;
        case ReplaceField::kCustom3:
            return &e.custom3;
    }
    return &e.client;
}

// The table and string property a master field lives in.
PropertyTable* masterTable(MasterTables& tables, ReplaceField field, std::uint16_t* prop) {
    *prop = kPropText;
    switch (field) {
        case ReplaceField::kProject:
            return &tables.projects;
        case ReplaceField::kProjectTask:
            *prop = kPropTask;
            return &tables.projects;
        case ReplaceField::kTask:
            return &tables.tasks;
        case ReplaceField::kBillTo:
            return &tables.contacts;
        default:
            return nullptr;
    }
}

std::u16string stringProp(const std::vector<CEPROPVAL>& props, std::uint16_t prop) {
    const std::uint32_t id = makePropId(prop, CEVT_LPWSTR);
    for (const CEPROPVAL& p : props) {
        if (p.propid == id) return p.str;
    }
    return {};
}

// A master record as Replace sees it: its owner and its one or two texts.
struct MasterKey {
    CEOID oid = 0;
    ClientId client = 0;
    std::u16string text;
    std::u16string task;
    bool operator==(const MasterKey& o) const {
        return client == o.client && text == o.text && task == o.task;
    }
};

// Every record of the table whose property equals `find` takes the
// replacement; one that would then repeat a record of the same client
// (the same name, or the same project/task pair) goes instead.
bool renameRecords(PropertyTable& table, std::uint16_t prop, const std::u16string& find,
                   const std::u16string& replacement, ReplaceResult* result) {
    std::vector<MasterKey> keys;
    std::vector<CEPROPVAL> props;
    for (bool found = table.seekFirst(); found; found = table.seekNext()) {
        if (table.readAll(&props) != 0) break;
        MasterKey k;
        k.oid = table.currentOid();
        for (const CEPROPVAL& p : props) {
            if (p.propid == makePropId(kPropClientId, CEVT_UI4))
                k.client = static_cast<ClientId>(p.num);
        }
        k.text = stringProp(props, kPropText);
        k.task = stringProp(props, kPropTask);
        keys.push_back(std::move(k));
    }
    for (MasterKey& hit : keys) {
        std::u16string& field = prop == kPropTask ? hit.task : hit.text;
        if (hit.oid == 0 || field != find) continue;
        field = replacement;
        const bool repeat = std::any_of(keys.begin(), keys.end(), [&](const MasterKey& k) {
            return k.oid != 0 && k.oid != hit.oid && k == hit;
        });
        if (repeat) {
            if (!table.remove(hit.oid)) return false;
            hit.oid = 0;
            ++result->masterMerged;
        } else {
            if (!table.seekOid(hit.oid) || !table.update({CEPROPVAL::wstr(prop, replacement)})) {
                return false;
            }
            ++result->masterRenamed;
        }
    }
    return true;
}

// A client renamed onto another client's name becomes that client: its
// projects, tasks, contacts and rates move over, without repeats.
bool renameClientText(MasterTables& tables, const std::u16string& find,
                      const std::u16string& replacement, ReplaceResult* result) {
    ClientRecord from;
    if (!tables.clients.seekEqual(CEPROPVAL::wstr(kPropClient, find)) ||
        !readClient(tables.clients, &from)) {
        return true;
    }
    const ClientId into = clientIdOf(tables.clients, replacement);
    if (into == kNoClient) {
        if (!tables.clients.seekOid(from.oid) || !renameClient(tables.clients, replacement)) {
            return false;
        }
        ++result->masterRenamed;
        return true;
    }
    if (into == from.clientId) return true;
    MigrationResult moved;
    if (!mergeClientRecords(tables, from.clientId, into, &moved) ||
        !tables.clients.remove(from.oid)) {
        return false;
    }
    result->masterMerged += 1 + static_cast<long>(moved.merged);
    result->masterRenamed += static_cast<long>(moved.moved);
    return true;
}

bool renameMaster(MasterTables& tables, ReplaceField field, const std::u16string& find,
                  const std::u16string& replacement, ReplaceResult* result) {
    if (find == replacement) return true;
    ListKind kind;
    if (isListField(field, &kind)) {
        ListTable list(tables.clients.platform(), ListTable::Order::kByKind);
        if (!list.open()) return false;
        CEOID oid = list.findItem(kind, find);
        if (oid == 0) return true;
        if (list.findItem(kind, replacement) != 0) {
            if (!list.remove(oid)) return false;
            ++result->masterMerged;
            return true;
        }
        if (!list.seekOid(oid) || !list.update({CEPROPVAL::wstr(kPropText, replacement)})) {
            return false;
        }
        ++result->masterRenamed;
        return true;
    }
    if (field == ReplaceField::kClient) return renameClientText(tables, find, replacement, result);
    std::uint16_t prop = 0;
    PropertyTable* table = masterTable(tables, field, &prop);
    return table && renameRecords(*table, prop, find, replacement, result);
}

long countEntries(EntryTable& entries) {
    long count = 0;
    for (bool found = entries.seekFirst(); found; found = entries.seekNext()) ++count;
    return count;
}

}  // namespace

std::u16string_view replaceFieldText(ReplaceField field) {
    return kFieldTexts[static_cast<int>(field)];
}

ReplaceCheck checkReplace(int findIndex, std::u16string_view replacement) {
    if (findIndex == 0) return ReplaceCheck::kFirstFindItem;
    if (replacement.empty()) return ReplaceCheck::kEmptyReplacement;
    return ReplaceCheck::kOk;
}

std::vector<std::u16string> findChoices(MasterTables& tables, ReplaceField field) {
    std::vector<std::u16string> texts;
    auto keep = [&](const std::u16string& t) {
        if (!t.empty() && std::find(texts.begin(), texts.end(), t) == texts.end()) {
            texts.push_back(t);
        }
    };
    ListKind kind;
    if (isListField(field, &kind)) {
        ListTable list(tables.clients.platform(), ListTable::Order::kByKind);
        if (list.open()) {
            for (const std::u16string& item : list.items(kind)) keep(item);
        }
        return texts;
    }
    if (field == ReplaceField::kClient) {
        for (const ClientRecord& c : allClients(tables.clients)) keep(c.name);
        return texts;
    }
    std::uint16_t prop = 0;
    PropertyTable* table = masterTable(tables, field, &prop);
    std::vector<CEPROPVAL> props;
    for (bool found = table->seekFirst(); found; found = table->seekNext()) {
        if (table->readAll(&props) != 0) break;
        keep(stringProp(props, prop));
    }
    return texts;
}

ReplaceResult replaceFieldText(DataFile& file, EntryTable& entries, MasterTables& tables,
                               ReplaceField field, const std::u16string& find,
                               const std::u16string& replacement, ReplaceProgress* progress) {
    ReplaceResult result;
    const std::u16string with = limitText(replacement, kReplacementLimit);
    if (progress) progress->setRange(countEntries(entries) + 1);
    if (!file.beginBatch()) return result;
    if (!renameMaster(tables, field, find, with, &result)) {
        file.rollbackBatch();
        return ReplaceResult();
    }
    if (progress) progress->step();
    // One transaction: a crash leaves the whole replacement or none of it.
    bool ok = true;
    TimeEntry entry;
    for (bool found = entries.seekFirst(); found && ok; found = entries.seekNext()) {
        if (readEntry(entries, entry) != 0) break;
        std::u16string* text = entryField(entry, field);
        if (*text == find) {
            *text = with;
            ok = updateEntry(entries, entry);
            if (ok) ++result.entriesChanged;
        }
        if (progress) progress->step();
    }
    if (!ok || !file.commitBatch()) {
        file.rollbackBatch();
        return ReplaceResult();
    }
    result.ok = true;
    return result;
}

}  // namespace qb
