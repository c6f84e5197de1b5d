#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/platform.h"
#include "store/entry_walk.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "testing/test_support.h"

namespace qb {
namespace {

constexpr int kCommitted = 50;

TimeEntry numbered(int n) {
    TimeEntry e;
    e.client = u"Acme";
    e.task = u"Task";
    e.date = 130000000000000000ull + static_cast<FILETIME>(n) * 36000000000ull;
    e.duration = static_cast<std::uint16_t>(n);
    return e;
}

long countEntries(Platform& p) {
    EntryTable table(p);
    if (!table.open()) return -1;
    return walkEntries(table, 0, ~0ull, [](const TimeEntry&) { return true; });
}

// The writer commits kCommitted entries one by one, tells the parent, then
// writes an endless batch until it is killed.
[[noreturn]] void writeUntilKilled(const std::string& dir, int ready) {
    std::unique_ptr<Platform> p;
    if (!Platform::open(dir, &p).isOk()) _exit(3);
    EntryTable table(*p);
    if (!table.open()) _exit(4);
    for (int i = 0; i < kCommitted; ++i) {
        if (!addEntry(table, numbered(i))) _exit(5);
    }
    p->file().beginBatch();
    char byte = 1;
    if (write(ready, &byte, 1) != 1) _exit(6);
    for (int i = kCommitted;; ++i) addEntry(table, numbered(i));
}

TEST(DurabilityTest, KillingAWriterInABatchKeepsEveryCommittedEntry) {
    testing::TempDir dir;
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        close(fds[0]);
        writeUntilKilled(dir.path(), fds[1]);
    }
    close(fds[1]);
    char byte = 0;
    ASSERT_EQ(read(fds[0], &byte, 1), 1);
    usleep(50 * 1000);  // let the batch grow
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    close(fds[0]);
    ASSERT_TRUE(WIFSIGNALED(status));

    std::unique_ptr<Platform> p;
    ASSERT_TRUE(Platform::open(dir.path(), &p).isOk());
    EXPECT_EQ(countEntries(*p), kCommitted);
    EntryTable table(*p);
    ASSERT_TRUE(table.open());
    EXPECT_TRUE(addEntry(table, numbered(1000))) << "the store takes writes again";
}

TEST(DurabilityTest, AnotherConnectionSeesCommittedChanges) {
    testing::TempDir dir;
    std::unique_ptr<Platform> gui, cli;
    ASSERT_TRUE(Platform::open(dir.path(), &gui).isOk());
    ASSERT_TRUE(Platform::open(dir.path(), &cli).isOk());
    EntryTable guiTable(*gui), cliTable(*cli);
    ASSERT_TRUE(guiTable.open());
    ASSERT_TRUE(cliTable.open());
    ASSERT_TRUE(addEntry(guiTable, numbered(1)));
    ASSERT_TRUE(addEntry(guiTable, numbered(2)));
    // The reader stops in the middle of a walk, as a period refresh does.
    ASSERT_TRUE(guiTable.seekFirst());

    std::uint64_t before = gui->file().externalChangeCounter();
    ASSERT_TRUE(addEntry(cliTable, numbered(3)));
    EXPECT_NE(gui->file().externalChangeCounter(), before);
    EXPECT_EQ(countEntries(*gui), 3);
    EXPECT_TRUE(addEntry(guiTable, numbered(4))) << "no old snapshot blocks the write";
    EXPECT_EQ(countEntries(*cli), 4);
}

}  // namespace
}  // namespace qb
