#pragma once

// A store in memory with entries made field by field, for the exports and
// reports to read.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "app/settings.h"
#include "entry/note_text.h"
#include "export/export_settings.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "testing/test_support.h"
#include "views/entry_filter.h"

namespace qb::testing {

// The date, and when `hour` is not negative a recorded start time (seconds 1).
inline FILETIME entryDate(int y, int m, int d, int hour = -1, int minute = 0) {
    FILETIME ft = 0;
    systemTimeToFileTime(hour < 0 ? makeDate(y, m, d) : makeDate(y, m, d, hour, minute, 1), &ft);
    return ft;
}

inline EntryFilter marchCriteria() {
    EntryFilter f;
    f.start = makeDate(2004, 3, 1);
    f.end = makeDate(2004, 3, 31);
    return f;
}

class StoreTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(table.open());
        env.settings = defaultSettings();
    }

    void add(TimeEntry e) { ASSERT_TRUE(addEntry(table, e)); }

    static TimeEntry entry(FILETIME date, std::u16string client, std::u16string task,
                           std::uint16_t duration) {
        TimeEntry e;
        e.date = date;
        e.client = std::move(client);
        e.task = std::move(task);
        e.duration = duration;
        return e;
    }
    static void bill(TimeEntry& e, std::uint32_t rate, bool paid = false,
                     std::uint16_t rateType = 0) {
        e.billable = true;
        e.rate = rate;
        e.paid = paid;
        e.rateType = rateType;
    }

    std::unique_ptr<Platform> platform = Platform::inMemory();
    EntryTable table{*platform};
    ExportSettings env;
    TempDir dir;
};

}  // namespace qb::testing
