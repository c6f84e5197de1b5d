#include "report/group_key.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/settings.h"
#include "export/export_fixture.h"
#include "report/report_layout.h"
#include "store/time_entry.h"

namespace qb::testing {
namespace {

// The headings of the groups the entries fall into, in report order.
std::vector<std::u16string> headings(std::uint32_t groupBy, std::vector<TimeEntry> entries) {
    ExportSettings env;
    env.settings = defaultSettings();
    GroupKey key(groupBy);
    key.sort(entries);
    const EntryPictures pictures(env.locale);
    std::vector<std::u16string> result;
    for (const TimeEntry& e : entries) {
        if (key.startsGroup(key.valueOf(e))) result.push_back(key.heading(e, env, pictures));
    }
    return result;
}

TEST(GroupKey, GroupsAndHeadingsOfEachKind) {
    std::vector<TimeEntry> entries(5);
    const struct {
        FILETIME date;
        const char16_t* client;
        std::uint16_t duration;
        bool billable;
        std::uint16_t rateType;
    } rows[] = {
        {entryDate(2004, 3, 1, 9, 0), u"b", 100, true, 2},
        {entryDate(2004, 3, 1, 17, 30), u"B", 50, false, 0},
        {entryDate(2004, 3, 2), u"b", 100, true, 0},
        {entryDate(2004, 3, 3, 9, 0), u"a", 25, false, 2},
        {entryDate(2004, 3, 3, 9, 0), u"", 25, true, 4},
    };
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i].date = rows[i].date;
        entries[i].client = rows[i].client;
        entries[i].duration = rows[i].duration;
        entries[i].billable = rows[i].billable;
        entries[i].rateType = rows[i].rateType;
    }
    const struct {
        std::uint32_t groupBy;
        std::vector<std::u16string> headings;
    } cases[] = {
        // Days, not instants; date order kept.
        {0x03E90040, {u"Entry Date: 3/1/2004", u"Entry Date: 3/2/2004", u"Entry Date: 3/3/2004"}},
        // Case-sensitive, code-unit order; the empty text is a group too.
        {0x03EA001F, {u"Client: ", u"Client: B", u"Client: a", u"Client: b"}},
        {0x03EE0012, {u"Duration: 0.25h", u"Duration: 0.50h", u"Duration: 1.00h"}},
        {0x03F1000B, {u"Billable/Non-Billable: No", u"Billable/Non-Billable: Yes"}},
        // Midnight for the entry without a start time.
        {0x03F50040, {u"Start Time: 12:00 AM", u"Start Time: 9:00 AM", u"Start Time: 5:30 PM"}},
        {0x03FA0012,
         {u"Rate Type: Normal Rate", u"Rate Type: Weekend Rate", u"Rate Type: Discount Rate"}},
        {kGroupByNothing, {u""}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(headings(c.groupBy, entries), c.headings) << std::hex << c.groupBy;
    }
}

TEST(GroupKey, SortingKeepsDateOrderWithinAGroup) {
    std::vector<TimeEntry> entries(4);
    const char16_t* clients[] = {u"z", u"a", u"z", u"a"};
    for (int i = 0; i < 4; ++i) {
        entries[i].date = entryDate(2004, 3, 1 + i);
        entries[i].client = clients[i];
    }
    GroupKey key(0x03EA001F);
    key.sort(entries);
    std::vector<FILETIME> dates;
    for (const TimeEntry& e : entries) dates.push_back(e.date);
    EXPECT_EQ(dates, (std::vector<FILETIME>{entryDate(2004, 3, 2), entryDate(2004, 3, 4),
                                            entryDate(2004, 3, 1), entryDate(2004, 3, 3)}));
}

}  // namespace
}  // namespace qb::testing
