#pragma once

// An in-memory store with its tables open, for the client setup and bulk
// operation tests.

#include <gtest/gtest.h>

#include <memory>

#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

class StoreTest : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> platform = Platform::inMemory();
    MasterTables m{*platform};
    EntryTable entries{*platform};

    void SetUp() override { ASSERT_TRUE(m.open() && entries.open()); }

    ClientId client(const std::u16string& name) {
        ClientId id = 0;
        addClient(m.clients, name, &id);
        return id != 0 ? id : clientIdOf(m.clients, name);
    }

    CEOID entry(const std::u16string& client, const std::u16string& task, int day,
                bool billable = true, const std::u16string& project = u"") {
        TimeEntry e;
        e.client = client;
        e.project = project;
        e.task = task;
        e.billable = billable;
        e.duration = 100;
        systemTimeToFileTime(makeDate(2024, 5, day), &e.date);
        EXPECT_TRUE(saveEntry(entries, e));
        return e.recordOid;
    }

    TimeEntry stored(CEOID oid) {
        TimeEntry e;
        EXPECT_TRUE(entries.seekOid(oid) && readEntry(entries, e) == 0);
        return e;
    }
};

}  // namespace qb
