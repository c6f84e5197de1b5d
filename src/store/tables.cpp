#include "store/tables.h"

#include "platform/platform.h"
#include "store/record_props.h"

namespace qb {
namespace {

TableCatalogue makeCatalogue(const char16_t* name, std::uint32_t typeId,
                             std::vector<std::uint32_t> sorts) {
    return TableCatalogue{name, typeId, std::move(sorts)};
}

constexpr std::uint32_t kNextClientIdProp = makePropId(kPropNextClientId, CEVT_UI4);

CEPROPVAL kindValue(ListKind kind) {
    return CEPROPVAL::ui2(kPropListKind, kind);
}

}  // namespace

TableCatalogue EntryTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Data 1", 79990001, {kDateSort});
}

ListTable::ListTable(Platform& platform, Order order) : PropertyTable(platform), order_(order) {}

TableCatalogue ListTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Data 2", 79990002, {kListKindSort, kTextSort});
}

std::uint32_t ListTable::openSortOrder() const {
    return order_ == Order::kByKind ? kListKindSort : kTextSort;
}

CEOID ListTable::findItem(ListKind kind, const std::u16string& text) {
    if (text.empty()) return 0;
    CEPROPVAL wanted = CEPROPVAL::wstr(kPropText, text);
    if (order_ == Order::kByText) {
        for (bool found = seekEqual(wanted); found; found = seekNextEqual(wanted)) {
            if (readOne(makePropId(kPropListKind, CEVT_UI2)) == kind) return currentOid();
        }
        return 0;
    }
    std::vector<CEPROPVAL> props;
    CEPROPVAL k = kindValue(kind);
    for (bool found = seekEqual(k); found; found = seekNextEqual(k)) {
        if (readAll(&props) != 0) break;
        for (const CEPROPVAL& p : props) {
            if (p.propid == kTextSort && p.str == text) return currentOid();
        }
    }
    return 0;
}

CEOID ListTable::addItem(ListKind kind, const std::u16string& text) {
    if (text.empty() || findItem(kind, text) != 0) return 0;
    return add({kindValue(kind), CEPROPVAL::wstr(kPropText, text)}) ? currentOid() : 0;
}

std::vector<std::u16string> ListTable::items(ListKind kind) {
    std::vector<std::u16string> result;
    std::vector<CEPROPVAL> props;
    if (order_ == Order::kByKind) {
        CEPROPVAL k = kindValue(kind);
        for (bool found = seekEqual(k); found; found = seekNextEqual(k)) {
            if (readAll(&props) != 0) break;
            for (const CEPROPVAL& p : props) {
                if (p.propid == kTextSort) result.push_back(p.str);
            }
        }
        return result;
    }
    for (bool found = seekFirst(); found; found = seekNext()) {
        if (readAll(&props) != 0) break;
        bool ofKind = false;
        const std::u16string* text = nullptr;
        for (const CEPROPVAL& p : props) {
            if (p.propid == kListKindSort && p.num == kind) ofKind = true;
            if (p.propid == kTextSort) text = &p.str;
        }
        if (ofKind && text) result.push_back(*text);
    }
    return result;
}

bool ListTable::removeItem(ListKind kind, const std::u16string& text) {
    CEOID oid = findItem(kind, text);
    return oid != 0 && remove(oid);
}

bool ListTable::removeKind(ListKind kind) {
    if (order_ != Order::kByKind) return false;
    CEPROPVAL k = kindValue(kind);
    while (seekEqual(k)) {
        if (!remove(currentOid())) return false;
    }
    return true;
}

TableCatalogue RateTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Rates", 79990003, {kClientIdSort});
}

TableCatalogue ClientTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Clients", 79990004, {kClientNameSort});
}

TableCatalogue ProjectTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Projects", 79990005, {kClientIdSort});
}

TableCatalogue TaskTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Tasks", 79990006, {kClientIdSort});
}

TableCatalogue ContactTable::catalogue() const {
    return makeCatalogue(u"Quillarbor Contacts", 79990007, {kClientIdSort});
}

// Besides opening, makes sure the client-id counter exists: a new store
// starts at 1, an older one without the record takes the seed it kept in
// the registry.
bool ClientTable::open(std::uint32_t flags) {
    if (!loadName()) return false;
    bool existed = exists(name_);
    if (!existed && !create()) return false;
    {
        ListTable list(platform_, ListTable::Order::kByKind);
        if (list.open()) {
            if (!list.seekEqual(kindValue(kListCounter))) {
                std::uint32_t seed = 1;
                if (existed) {
                    if (auto key =
                            platform_.registry().createKey(RegRoot::HKEY_CURRENT_USER, kAppKey)) {
                        std::uint32_t value = 0;
                        if (key->queryDword("NextClient", &value) == ERROR_SUCCESS) seed = value;
                    }
                }
                list.add({kindValue(kListCounter), CEPROPVAL::ui4(kPropNextClientId, seed)});
            }
        }
    }
    return openRaw(name_, openSortOrder(), flags);
}

namespace {

ClientId takeNextId(ListTable& list) {
    if (!list.seekEqual(kindValue(kListCounter))) return 0;
    auto id = static_cast<ClientId>(list.readOne(kNextClientIdProp));
    if (!list.update({kindValue(kListCounter), CEPROPVAL::ui4(kPropNextClientId, id + 1)})) {
        return 0;
    }
    return id;
}

}  // namespace

ClientId nextClientId(Platform& platform) {
    ListTable list(platform, ListTable::Order::kByKind);
    return list.open() ? takeNextId(list) : 0;
}

ClientTable::ClientTable(Platform& platform) : PropertyTable(platform) {}
ClientTable::~ClientTable() = default;

ClientId ClientTable::nextClientId() {
    if (!counter_) {
        auto list = std::make_unique<ListTable>(platform_, ListTable::Order::kByKind);
        if (!list->open()) return 0;
        counter_ = std::move(list);
    }
    return takeNextId(*counter_);
}

TableCatalogue SystemContactsTable::catalogue() const {
    std::u16string name = u"Contacts Database";
    if (auto key =
            platform_.registry().openKey(RegRoot::HKEY_LOCAL_MACHINE, "Explorer\\Database")) {
        std::u16string stored;
        if (key->queryString("ContactsDatabase", 520, &stored) == ERROR_SUCCESS) name = stored;
    }
    return makeCatalogue(name.c_str(), 24, {kFileAsSort});
}

// The address book is the system's: its absence is not repaired here.
bool SystemContactsTable::open(std::uint32_t flags) {
    if (!loadName()) return false;
    exists(name_);
    return openRaw(name_, openSortOrder(), flags);
}

MasterTables::MasterTables(Platform& platform)
    : clients(platform),
      projects(platform),
      tasks(platform),
      contacts(platform),
      rates(platform),
      lists(platform, ListTable::Order::kByText) {}

bool MasterTables::open() {
    return clients.open() && projects.open() && tasks.open() && contacts.open() && rates.open();
}

}  // namespace qb
