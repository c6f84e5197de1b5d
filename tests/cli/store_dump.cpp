#include "store_dump.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb::testing {

void fillStore(const std::string& dataDir, int count) {
    std::unique_ptr<Platform> p;
    ASSERT_TRUE(Platform::open(dataDir, &p).isOk());
    EntryTable entries(*p);
    MasterTables masters(*p);
    ASSERT_TRUE(entries.open() && masters.open());
    ASSERT_TRUE(p->file().beginBatch());
    for (int i = 0; i < count; ++i) {
        TimeEntry e;
        e.client = i % 3 ? u"Acme" : u"Globex";
        e.task = u"Design";
        e.billable = i % 2 == 0;
        e.duration = 100;
        e.rate = 5000;
        if (i == 0) {
            const std::u16string note = u"Kick-off call";
            const auto* bytes = reinterpret_cast<const std::uint8_t*>(note.data());
            e.notes.assign(bytes, bytes + note.size() * 2);
        }
        systemTimeToFileTime(makeDate(2024, 5, 1 + i % 28, 9, 0, 1), &e.date);
        ASSERT_TRUE(addEntry(entries, e));
        registerMasterData(masters, e);
    }
    ASSERT_TRUE(p->file().commitBatch());
}

std::string checkedRecords(const std::string& dataDir) {
    const std::string path = dataDir + "/" + kDataFileName;
    if (!std::filesystem::exists(path)) return "";
    sqlite3* db = nullptr;
    std::string dump;
    EXPECT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &stmt, nullptr);
    EXPECT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)), "ok");
    sqlite3_finalize(stmt);
    sqlite3_prepare_v2(db, "SELECT oid, db, hex(props) FROM records ORDER BY oid", -1, &stmt,
                       nullptr);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        dump += std::to_string(sqlite3_column_int64(stmt, 0)) + " " +
                std::to_string(sqlite3_column_int64(stmt, 1)) + " " +
                reinterpret_cast<const char*>(sqlite3_column_text(stmt, 2)) + "\n";
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return dump;
}

std::string namesIn(const std::string& dir) {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir)) {
        names.push_back(e.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    std::string joined;
    for (const std::string& n : names) joined += (joined.empty() ? "" : " ") + n;
    return joined;
}

}  // namespace qb::testing
