#include "views/entry_filter.h"

#include "platform/calendar.h"
#include "platform/registry.h"
#include "platform/text.h"
#include "store/entry_walk.h"
#include "store/time_entry.h"
#include "views/calendar_helpers.h"

namespace qb {
namespace {

constexpr std::uint32_t kUnpaidBit = 0x01;
constexpr std::uint32_t kPaidBit = 0x04;
constexpr std::uint32_t kNonBillableBit = 0x10;
constexpr std::uint32_t kAllShown = kUnpaidBit | kPaidBit | kNonBillableBit;

// The string criteria kept in the registry, in the order they are written.
struct StoredText {
    const char* value;
    std::u16string EntryFilter::*field;
};
constexpr StoredText kStoredTexts[] = {
    {"fClient", &EntryFilter::client},     {"fProject", &EntryFilter::project},
    {"fPhase", &EntryFilter::phase},       {"fTask", &EntryFilter::task},
    {"fCurrency", &EntryFilter::currency}, {"fBillTo", &EntryFilter::billTo},
};

constexpr const char* kDeletedOnSave[] = {"fClient",   "fProject",  "fPhase", "fCustom1",
                                          "fCustom2",  "fCustom3",  "fFlags", "fBillTo",
                                          "fCurrency", "fRateType", "fTask"};

bool criterionFails(const std::u16string& criterion, const std::u16string& field) {
    return !criterion.empty() && compareStringW(criterion, field, false) != 0;
}

}  // namespace

void EntryFilter::reset() {
    *this = EntryFilter();
}

FILETIME EntryFilter::rangeStart() const {
    SYSTEMTIME s = start;
    clearTime(s);
    FILETIME ft = 0;
    systemTimeToFileTime(s, &ft);
    return ft;
}

FILETIME EntryFilter::rangeEnd() const {
    SYSTEMTIME e = end;
    clearTime(e);
    FILETIME ft = 0;
    if (!systemTimeToFileTime(e, &ft)) return 0;
    return ft + 864000000000ull - 10000000ull;
}

bool EntryFilter::matches(const TimeEntry& e) const {
    if (hasDateRange() && (e.date < rangeStart() || e.date > rangeEnd())) return false;
    return matchesBesidesDates(e);
}

bool EntryFilter::matchesBesidesDates(const TimeEntry& e) const {
    if (criterionFails(client, e.client) || criterionFails(project, e.project) ||
        criterionFails(phase, e.phase) || criterionFails(task, e.task) ||
        criterionFails(billTo, e.billTo) || criterionFails(currency, e.currency) ||
        criterionFails(custom1, e.custom1) || criterionFails(custom2, e.custom2) ||
        criterionFails(custom3, e.custom3)) {
        return false;
    }
    if (!showUnpaid && e.billable && !e.paid) return false;
    if (!showPaid && e.billable && e.paid) return false;
    if (!showNonBillable && !e.billable) return false;
    return rateType == -1 || e.rateType == rateType;
}

void EntryFilter::load(Registry& registry) {
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    if (!key) return;
    std::uint32_t flags = kAllShown;
    key->queryDword("fFlags", &flags);
    showUnpaid = flags & kUnpaidBit;
    showPaid = flags & kPaidBit;
    showNonBillable = flags & kNonBillableBit;
    std::uint32_t type = 0xFFFFFFFF;
    key->queryDword("fRateType", &type);
    rateType = static_cast<std::int32_t>(type);
    for (const StoredText& t : kStoredTexts) {
        std::u16string text;
        if (key->queryString(t.value, 0xFFFFFFFF, &text) == ERROR_SUCCESS) this->*t.field = text;
    }
}

bool EntryFilter::save(Registry& registry) const {
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    if (!key) return false;
    for (const char* name : kDeletedOnSave) key->deleteValue(name);
    bool ok = true;
    for (const StoredText& t : kStoredTexts) {
        const std::u16string& text = this->*t.field;
        if (!text.empty()) ok = key->setString(t.value, text) == ERROR_SUCCESS && ok;
    }
    std::uint32_t flags = (showUnpaid ? kUnpaidBit : 0) | (showPaid ? kPaidBit : 0) |
                          (showNonBillable ? kNonBillableBit : 0);
    ok = key->setDword("fFlags", flags) == ERROR_SUCCESS && ok;
    ok = key->setDword("fRateType", static_cast<std::uint32_t>(rateType)) == ERROR_SUCCESS && ok;
    return ok;
}

EntryFilter unpaidOnlyFilter() {
    EntryFilter f;
    f.showNonBillable = false;
    f.showPaid = false;
    return f;
}

namespace {

// A file's writer that leaves out the entries the filter does not pass.
class MatchingBytes final : public EntryBytes {
  public:
    MatchingBytes(const EntryFilter& filter, std::unique_ptr<EntryBytes> all)
        : filter_(filter), all_(std::move(all)) {}
    void append(const TimeEntry& entry, std::string& out) override {
        if (filter_.matchesBesidesDates(entry)) all_->append(entry, out);
    }

  private:
    const EntryFilter& filter_;
    std::unique_ptr<EntryBytes> all_;
};

// The range of the walk: the filter's dates, or every date.
FILETIME walkStart(const EntryFilter& filter) {
    return filter.hasDateRange() ? filter.rangeStart() : 0;
}
FILETIME walkEnd(const EntryFilter& filter) {
    return filter.hasDateRange() ? filter.rangeEnd() : ~FILETIME{0};
}

}  // namespace

void writeMatching(EntryTable& table, const EntryFilter& filter, const MakeEntryBytes& make,
                   const std::function<bool(std::string_view bytes)>& take) {
    writeEntriesReadingAhead(
        table, walkStart(filter), walkEnd(filter),
        [&filter, &make] { return std::make_unique<MatchingBytes>(filter, make()); }, take);
}

long walkMatching(EntryTable& table, const EntryFilter& filter,
                  const std::function<bool(const TimeEntry&)>& visit) {
    long passed = 0;
    walkEntriesReadingAhead(table, walkStart(filter), walkEnd(filter), [&](const TimeEntry& e) {
        if (!filter.matchesBesidesDates(e)) return true;
        ++passed;
        return visit(e);
    });
    return passed;
}

}  // namespace qb
