#pragma once

// A fresh in-memory store for each backup test, and the independent dump
// tool that judges the files we write.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/platform.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "testing/test_support.h"

namespace qb::testing {

struct Store {
    Store();
    std::unique_ptr<Platform> platform;
    EntryTable entries;
    MasterTables masters;

    std::vector<TimeEntry> allEntries();
    ClientRecord client(const std::u16string& name);
    ClientId addClientNamed(const std::u16string& name);
};

TimeEntry entryAt(FILETIME date, const std::u16string& client = u"Acme",
                  const std::u16string& note = u"");

struct ToolRun {
    bool ran = false;  // false: the tool cannot run here
    int status = -1;
    std::string out;
    std::string err;
};
// Runs tools/qrb_dump.py on the file.
ToolRun qrbDump(const std::string& path);

// A fixture of the shared folder (testing::sharedDir()).
std::string fixture(const std::string& name);

}  // namespace qb::testing

// Skips the test when the dump tool cannot run on this machine.
#define QB_DUMP_OR_SKIP(var, path)                                            \
    ::qb::testing::ToolRun var = ::qb::testing::qrbDump(path);                \
    if (!var.ran) GTEST_SKIP() << "qrb_dump.py cannot run here: " << var.err; \
    do {                                                                      \
    } while (0)
