#pragma once

// The criteria that choose entries: the current view filter, and the
// private record of the criteria sheet that exports, reports and bulk
// operations use. One matching rule serves both.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/win_types.h"
#include "store/entry_walk.h"

namespace qb {

class Registry;
class EntryTable;
struct TimeEntry;

struct EntryFilter {
    SYSTEMTIME start{};  // month 0: no date range
    SYSTEMTIME end{};    // last day, included whole
    std::u16string client;
    std::u16string project;
    std::u16string phase;
    std::u16string task;
    std::u16string billTo;
    std::u16string currency;
    bool showPaid = true;
    bool showNonBillable = true;
    bool showUnpaid = true;
    std::int32_t rateType = -1;  // -1: any
    std::u16string custom1;
    std::u16string custom2;
    std::u16string custom3;

    void reset();
    bool matches(const TimeEntry& entry) const;
    // The same leaving the date range out, for walks already bounded by it.
    bool matchesBesidesDates(const TimeEntry& entry) const;
    bool hasDateRange() const { return start.wMonth != 0; }
    // The date range as file times: start 00:00:00 to end 23:59:59.
    FILETIME rangeStart() const;
    FILETIME rangeEnd() const;

    // The view filter's registry values; custom criteria and dates are
    // deliberately not kept.
    void load(Registry& registry);
    bool save(Registry& registry) const;
};

// The view filter after "Show Unpaid Only".
EntryFilter unpaidOnlyFilter();

// Walks the entries of the filter's date range that pass it, in date order.
long walkMatching(EntryTable& table, const EntryFilter& filter,
                  const std::function<bool(const TimeEntry&)>& visit);

// The same walk for a file of the entries that pass: the bytes `make`'s
// writers make of them go to `take` as writeEntriesReadingAhead hands them.
void writeMatching(EntryTable& table, const EntryFilter& filter, const MakeEntryBytes& make,
                   const std::function<bool(std::string_view bytes)>& take);

}  // namespace qb
