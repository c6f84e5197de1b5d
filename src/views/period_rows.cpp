#include "views/period_rows.h"

#include <algorithm>
#include <iterator>

#include "platform/text.h"
#include "store/entry_walk.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"
#include "views/period_view.h"

namespace qb {
namespace {

const std::u16string* arrangedField(const TimeEntry& e, std::uint16_t key) {
    switch (key) {
        case 1:
            return &e.client;
        case 2:
            return &e.project;
        case 3:
            return &e.phase;
        case 4:
            return &e.task;
        case 5:
            return &e.billTo;
        case 6:
            return &e.custom1;
        case 7:
            return &e.custom2;
        case 8:
            return &e.custom3;
        default:
            return nullptr;
    }
}

// The columns of the simple style and the keys that arrange by them.
constexpr int kColumnKeys[] = {0, 1, 2, 3, 4, -1, -1, 5, 6, 7, 8};

}  // namespace

int simpleColumnArrangeKey(int column) {
    return column >= 0 && column < static_cast<int>(std::size(kColumnKeys)) ? kColumnKeys[column]
                                                                            : -1;
}

int arrangedSimpleColumn(std::uint16_t key) {
    for (int c = 0; c < static_cast<int>(std::size(kColumnKeys)); ++c) {
        if (kColumnKeys[c] == key) return c;
    }
    return -1;
}

int compareForArrange(const TimeEntry& a, const TimeEntry& b, std::uint16_t key) {
    if (const std::u16string* fa = arrangedField(a, key)) {
        int c = compareStringW(*fa, *arrangedField(b, key), false);
        if (c != 0) return c;
    }
    if (a.date != b.date) return a.date < b.date ? -1 : 1;
    return compareStringW(a.task, b.task, false);
}

// The list control sorts by comparisons alone; a stable sort keeps rows
// that compare equal in the order they came.
void arrangeEntries(std::vector<TimeEntry>& entries, std::uint16_t key) {
    std::stable_sort(entries.begin(), entries.end(), [key](const TimeEntry& a, const TimeEntry& b) {
        return compareForArrange(a, b, key) < 0;
    });
}

std::vector<TimeEntry> periodEntries(EntryTable& table, const PeriodView& view,
                                     const EntryFilter& filter) {
    FILETIME start = 0;
    FILETIME end = 0;
    view.bounds(&start, &end);
    std::vector<TimeEntry> rows;
    walkEntries(table, start, end, [&](const TimeEntry& e) {
        if (filter.matches(e)) rows.push_back(e);
        return true;
    });
    return rows;
}

}  // namespace qb
