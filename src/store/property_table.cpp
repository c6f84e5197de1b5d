#include "store/property_table.h"

#include "platform/object_store.h"
#include "platform/platform.h"
#include "store/record_props.h"

namespace qb {

PropertyTable::PropertyTable(Platform& platform) : platform_(platform) {}
PropertyTable::~PropertyTable() = default;

bool PropertyTable::loadName() {
    name_ = catalogue().name;
    return !name_.empty();
}

bool PropertyTable::exists(const std::u16string& name) {
    ObjectStore& store = platform_.objects();
    std::vector<CEOID> ids;
    if (!store.findDatabases(0, &ids)) return false;
    for (CEOID id : ids) {
        DatabaseInfo info;
        if (!store.oidGetInfo(id, &info)) continue;
        if (info.name == name) return true;
    }
    return false;
}

bool PropertyTable::create() {
    TableCatalogue c = catalogue();
    DatabaseInfo info;
    info.name = c.name;
    info.type = c.typeId;
    info.sortProps = c.sortOrders;
    databaseOid_ = platform_.objects().createDatabase(info);
    return databaseOid_ != 0;
}

std::uint32_t PropertyTable::openSortOrder() const {
    return catalogue().sortOrders.front();
}

bool PropertyTable::open(std::uint32_t flags) {
    if (!loadName()) return false;
    if (!exists(name_) && !create()) return false;
    return openRaw(name_, openSortOrder(), flags);
}

// The flags are the platform's open flags; this system always passes 0.
bool PropertyTable::openRaw(const std::u16string& name, std::uint32_t sortProp,
                            std::uint32_t /*flags*/) {
    CEOID oid = 0;
    handle_ = platform_.objects().openDatabase(&oid, name, sortProp);
    if (!handle_) return false;
    databaseOid_ = oid;
    return true;
}

void PropertyTable::close() {
    handle_.reset();
    currentOid_ = 0;
}

bool PropertyTable::track(CEOID oid) {
    currentOid_ = oid;
    return oid != 0;
}

bool PropertyTable::seekFirst() {
    return handle_ && track(handle_->seek(CEDB_SEEK_BEGINNING, 0));
}

bool PropertyTable::seekEqual(const CEPROPVAL& value) {
    return handle_ && track(handle_->seek(CEDB_SEEK_VALUEFIRSTEQUAL, 0, &value));
}

bool PropertyTable::seekNextEqual(const CEPROPVAL& value) {
    return handle_ && track(handle_->seek(CEDB_SEEK_VALUENEXTEQUAL, 0, &value));
}

bool PropertyTable::seekNext() {
    return handle_ && track(handle_->seek(CEDB_SEEK_CURRENT, 1));
}

bool PropertyTable::seekOid(CEOID oid) {
    return handle_ && track(handle_->seek(CEDB_SEEK_CEOID, oid));
}

bool PropertyTable::seekAfter(const CEPROPVAL& value) {
    return handle_ && track(handle_->seek(CEDB_SEEK_VALUEGREATER, 0, &value));
}

bool PropertyTable::first(const CEPROPVAL* filter) {
    if (filter) {
        cursorFilter_ = *filter;
        return seekEqual(*filter);
    }
    cursorFilter_.reset();
    return seekFirst();
}

bool PropertyTable::next() {
    return cursorFilter_ ? seekNextEqual(*cursorFilter_) : seekNext();
}

int PropertyTable::readAll(std::vector<CEPROPVAL>* out) {
    if (!handle_) {
        out->clear();
        return -1;
    }
    long error = 0;
    CEOID oid = handle_->readProps(nullptr, out, &error);
    currentOid_ = oid;
    if (oid == 0) return error == ERROR_NO_MORE_ITEMS ? 1 : -1;
    return 0;
}

int PropertyTable::readEncoded(std::string_view* out) {
    if (!handle_) {
        *out = {};
        return -1;
    }
    long error = 0;
    const CEOID oid = handle_->readEncoded(out, &error);
    currentOid_ = oid;
    if (oid == 0) return error == ERROR_NO_MORE_ITEMS ? 1 : -1;
    return 0;
}

std::uint64_t PropertyTable::readOne(std::uint32_t propId) {
    if (!handle_) return 0;
    std::vector<std::uint32_t> which{propId};
    std::vector<CEPROPVAL> values;
    long error = 0;
    CEOID oid = handle_->readProps(&which, &values, &error);
    currentOid_ = oid;
    if (oid == 0 || values.empty() || (values[0].flags & CEDB_PROPNOTFOUND)) return 0;
    return values[0].num;
}

bool PropertyTable::add(const std::vector<CEPROPVAL>& values) {
    return handle_ && track(handle_->writeProps(0, values));
}

bool PropertyTable::addEncoded(std::string_view props) {
    return handle_ && track(handle_->insertEncoded(props));
}

bool PropertyTable::update(const std::vector<CEPROPVAL>& values) {
    if (!handle_ || currentOid_ == 0) return false;
    return track(handle_->writeProps(currentOid_, values));
}

bool PropertyTable::remove(CEOID oid) {
    return handle_ && handle_->deleteRecord(oid);
}

long PropertyTable::recordCount() {
    if (!handle_) return 0;
    const long n = platform_.objects().recordCount(databaseOid_);
    return n < 0 ? 0 : n;
}

bool PropertyTable::removeAllFor(ClientId clientId) {
    CEPROPVAL owner = CEPROPVAL::ui4(kPropClientId, clientId);
    while (seekEqual(owner)) {
        if (!remove(currentOid())) return false;
    }
    return true;
}

}  // namespace qb
