#include "entry/replace_text.h"

#include <algorithm>

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

// Every record of the table whose property equals `find`, rewritten.
bool renameRecords(PropertyTable& table, std::uint16_t prop, const std::u16string& find,
                   const std::u16string& replacement, long* renamed) {
    std::vector<CEOID> hits;
    std::vector<CEPROPVAL> props;
    for (bool found = table.seekFirst(); found; found = table.seekNext()) {
        if (table.readAll(&props) != 0) break;
        if (stringProp(props, prop) == find) hits.push_back(table.currentOid());
    }
    for (CEOID oid : hits) {
        if (!table.seekOid(oid) || !table.update({CEPROPVAL::wstr(prop, replacement)})) {
            return false;
        }
        ++*renamed;
    }
    return true;
}

bool renameMaster(MasterTables& tables, ReplaceField field, const std::u16string& find,
                  const std::u16string& replacement, long* renamed) {
    ListKind kind;
    if (isListField(field, &kind)) {
        ListTable list(tables.clients.platform(), ListTable::Order::kByKind);
        if (!list.open()) return false;
        CEOID oid = list.findItem(kind, find);
        if (oid == 0) return true;
        if (!list.seekOid(oid) || !list.update({CEPROPVAL::wstr(kPropText, replacement)})) {
            return false;
        }
        ++*renamed;
        return true;
    }
    if (field == ReplaceField::kClient) {
        if (!tables.clients.seekEqual(CEPROPVAL::wstr(kPropClient, find))) return true;
        if (!renameClient(tables.clients, replacement)) return false;
        ++*renamed;
        return true;
    }
    std::uint16_t prop = 0;
    PropertyTable* table = masterTable(tables, field, &prop);
    return table && renameRecords(*table, prop, find, replacement, renamed);
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
    if (!renameMaster(tables, field, find, with, &result.masterRenamed)) {
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
    if (!ok) {
        file.rollbackBatch();
        return result;
    }
    result.ok = file.commitBatch();
    return result;
}

}  // namespace qb
