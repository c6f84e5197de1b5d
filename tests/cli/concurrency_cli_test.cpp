// Several command-line writers at once on one data directory, with a
// reader polling for changes beside them as the desktop window does: no
// entry is lost, no command fails on a locked store, the counts add up.

#include <sys/wait.h>
#include <unistd.h>

#include <memory>

#include "cli/cli_fixture.h"
#include "cli/store_dump.h"
#include "platform/platform.h"
#include "store/entry_walk.h"
#include "store/tables.h"

namespace qb::testing {
namespace {

constexpr int kWriters = 4;
constexpr int kAddsEach = 15;

long countEntries(Platform& p) {
    EntryTable table(p);
    if (!table.open()) return -1;
    return walkEntries(table, 0, ~0ull, [](const TimeEntry&) { return true; });
}

// Exit status of a child: 0 when every command succeeded without a word
// about a locked store.
[[noreturn]] void runAll(const std::vector<Words>& commands) {
    for (const Words& c : commands) {
        RunResult r = runQuillarbor(c);
        if (r.status != 0 || r.err.find("locked") != std::string::npos) _exit(1);
    }
    _exit(0);
}

TEST(ConcurrencyCli, WritersAtOnceLoseNothing) {
    TempDir dir;
    const std::string data = dir.file("data");
    fillStore(data, 200);
    std::vector<pid_t> children;
    for (int w = 0; w < kWriters; ++w) {
        std::vector<Words> adds;
        for (int i = 0; i < kAddsEach; ++i) {
            adds.push_back({"--data", data, "entry", "add", "--date", "2024-06-01", "--client",
                            "Writer " + std::to_string(w), "--task", "T", "--duration", "1"});
        }
        pid_t pid = fork();
        if (pid == 0) runAll(adds);
        children.push_back(pid);
    }
    // Bulk writers beside them.
    std::vector<Words> bulk;
    for (int i = 0; i < 4; ++i) {
        bulk.push_back({"--data", data, "mark-paid", "--from", "2024-05-01", "--to", "2024-06-30"});
        bulk.push_back({"--data", data, "replace", "custom1", "", "x", "--yes"});
        bulk.push_back({"--data", data, "backup", "create", dir.file("b.qrb")});
    }
    pid_t pid = fork();
    if (pid == 0) runAll(bulk);
    children.push_back(pid);

    // The poller: the change counter and a walk, as the window refreshes.
    std::unique_ptr<Platform> p;
    ASSERT_TRUE(Platform::open(data, &p).isOk());
    long seen = 0;
    for (int round = 0; round < 200; ++round) {
        p->file().externalChangeCounter();
        long n = countEntries(*p);
        EXPECT_GE(n, seen) << "entries went missing";
        seen = n;
    }
    for (pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a command failed";
    }
    EXPECT_EQ(countEntries(*p), 200 + kWriters * kAddsEach);
    checkedRecords(data);
}

}  // namespace
}  // namespace qb::testing
