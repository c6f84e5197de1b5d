#include "store/entry_save.h"

#include <gtest/gtest.h>

#include "platform/data_file.h"
#include "platform/platform.h"
#include "store/master_data.h"
#include "store/tables.h"

namespace qb {
namespace {

TimeEntry cobaltEntry() {
    TimeEntry e;
    e.client = u"Cobalt";
    e.task = u"Survey";
    e.billTo = u"Carol";
    e.duration = 150;
    return e;
}

TEST(EntrySave, EntryAndMasterDataCommitTogetherOrNotAtAll) {
    auto platform = Platform::inMemory();
    EntryTable entries(*platform);
    MasterTables masters(*platform);
    ASSERT_TRUE(entries.open() && masters.open());

    TimeEntry e = cobaltEntry();
    ASSERT_EQ(saveEditedEntry(platform->file(), entries, masters, e), EntrySave::kSaved);
    EXPECT_NE(e.recordOid, 0u);
    EXPECT_FALSE(platform->file().inBatch());
    const ClientId cobalt = clientIdOf(masters.clients, u"Cobalt");
    ASSERT_NE(cobalt, kNoClient);
    EXPECT_EQ(namesOf(masters.tasks, cobalt).size(), 1u);
    EXPECT_EQ(namesOf(masters.contacts, cobalt).size(), 1u);

    // Saved again: the same record, nothing learned twice.
    const CEOID id = e.recordOid;
    e.duration = 200;
    ASSERT_EQ(saveEditedEntry(platform->file(), entries, masters, e), EntrySave::kSaved);
    EXPECT_EQ(e.recordOid, id);
    TimeEntry read;
    ASSERT_TRUE(entries.seekOid(id));
    ASSERT_EQ(readEntry(entries, read), 0);
    EXPECT_EQ(read.duration, 200);
    EXPECT_EQ(namesOf(masters.tasks, cobalt).size(), 1u);
}

TEST(EntrySave, AFailedWriteLeavesNoMasterDataAndNoStaleId) {
    auto platform = Platform::inMemory();
    EntryTable closed(*platform);  // never opened: every write fails
    MasterTables masters(*platform);
    ASSERT_TRUE(masters.open());

    TimeEntry e = cobaltEntry();
    EXPECT_EQ(saveEditedEntry(platform->file(), closed, masters, e), EntrySave::kNotSaved);
    EXPECT_EQ(e.recordOid, 0u);
    EXPECT_FALSE(platform->file().inBatch());
    EXPECT_EQ(clientIdOf(masters.clients, u"Cobalt"), kNoClient);
}

}  // namespace
}  // namespace qb
