// Bulk commands killed with SIGKILL in the middle of their work: the store
// must open, pass SQLite's integrity check and hold all of the operation or
// none of it.
//
// The command runs in a forked child through the command line's own entry
// point. A hook on every connection the child opens counts the rows it
// changes in the records table and, at the chosen row, tells the parent and
// waits to be killed; so the kill lands exactly there, whatever the timing.

#include <fcntl.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "backup/backup_writer.h"
#include "cli/cli.h"
#include "cli/cli_fixture.h"
#include "cli/store_dump.h"
#include "platform/platform.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb::testing {
namespace {

// The child's hook: which change to stop at (0: none) and where to say so.
long gStopAt = 0;
long gChanges = 0;
int gReport = -1;

void onChange(void*, int, const char*, const char* table, sqlite3_int64) {
    if (std::string_view(table) != "records" || ++gChanges != gStopAt) return;
    char byte = 'K';
    if (write(gReport, &byte, 1) != 1) _exit(97);
    for (;;) pause();
}

int installHook(sqlite3* db, const char**, const void*) {
    sqlite3_update_hook(db, onChange, nullptr);
    return SQLITE_OK;
}

struct ChildRun {
    bool killed = false;
    int status = -1;   // the exit status when it ran to the end
    long changes = 0;  // rows changed when it ran to the end
};

// Runs `quillarbor ARGS` in a child and kills it at its `stopAt`th change
// of a record (never when 0).
ChildRun runKilledAt(const Words& args, long stopAt) {
    int fds[2];
    EXPECT_EQ(pipe(fds), 0);
    pid_t child = fork();
    if (child == 0) {
        close(fds[0]);
        gStopAt = stopAt;
        gReport = fds[1];
        int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        dup2(null, 2);
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(installHook));
        std::vector<std::string> words{"quillarbor"};
        words.insert(words.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (std::string& w : words) argv.push_back(w.data());
        argv.push_back(nullptr);
        int status = runCommandLine(static_cast<int>(words.size()), argv.data(), nullptr);
        std::string done = "D" + std::to_string(status) + " " + std::to_string(gChanges);
        if (write(fds[1], done.data(), done.size()) != static_cast<ssize_t>(done.size())) _exit(98);
        _exit(0);
    }
    close(fds[1]);
    ChildRun run;
    char buffer[64] = {};
    ssize_t n = read(fds[0], buffer, sizeof buffer - 1);
    if (n == 1 && buffer[0] == 'K') {
        kill(child, SIGKILL);
        run.killed = true;
    } else if (n > 1 && buffer[0] == 'D') {
        std::sscanf(buffer + 1, "%d %ld", &run.status, &run.changes);
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(fds[0]);
    EXPECT_EQ(run.killed, WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
    return run;
}

void copyDir(const std::string& from, const std::string& to) {
    std::filesystem::remove_all(to);
    std::filesystem::copy(from, to, std::filesystem::copy_options::recursive);
}

class KillCli : public ::testing::Test {
  protected:
    void SetUp() override {
        fillStore(pristine());
        std::unique_ptr<Platform> p;
        ASSERT_TRUE(Platform::open(pristine(), &p).isOk());
        EntryTable entries(*p);
        MasterTables masters(*p);
        ASSERT_TRUE(entries.open() && masters.open());
        ASSERT_TRUE(createBackupFile(entries, masters, file("all.qrb")));
    }

    std::string pristine() const { return dir_.file("pristine"); }
    std::string file(const std::string& name) const { return dir_.file(name); }

    // Runs the command to its end on a copy of `start`, then kills it at
    // changes spread over its run (the first, the last and between), each on
    // a fresh copy: every time the store holds what it held before or what
    // the whole run left.
    void killsLeaveAllOrNone(const std::string& start, const Words& command) {
        const std::string data = file("data");
        copyDir(start, data);
        Words args{"--data", data};
        args.insert(args.end(), command.begin(), command.end());
        const std::string before = checkedRecords(data);
        ChildRun whole = runKilledAt(args, 0);
        ASSERT_EQ(whole.status, 0) << joined(command);
        ASSERT_GT(whole.changes, 4) << joined(command);
        const std::string after = checkedRecords(data);
        ASSERT_NE(before, after) << joined(command);

        for (long at :
             {1L, whole.changes / 3, whole.changes / 2, whole.changes - 1, whole.changes}) {
            copyDir(start, data);
            ChildRun killed = runKilledAt(args, at);
            ASSERT_TRUE(killed.killed) << joined(command) << " at change " << at;
            std::string left = checkedRecords(data);
            EXPECT_TRUE(left == before || left == after)
                << joined(command) << " killed at change " << at << " of " << whole.changes
                << " left part of its work";
            // The store takes writes again.
            ChildRun write = runKilledAt({"--data", data, "entry", "add", "--client", "Acme",
                                          "--task", "After", "--duration", "1"},
                                         0);
            EXPECT_EQ(write.status, 0) << joined(command) << " after a kill at change " << at;
        }
    }

  private:
    TempDir dir_;
};

TEST_F(KillCli, MarkPaid) {
    killsLeaveAllOrNone(pristine(), {"mark-paid", "--from", "2024-05-01", "--to", "2024-05-31"});
}

TEST_F(KillCli, ReplaceFieldText) {
    killsLeaveAllOrNone(pristine(), {"replace", "client", "Acme", "Initech", "--yes"});
}

TEST_F(KillCli, ArchiveWithDelete) {
    killsLeaveAllOrNone(pristine(), {"archive", "create", file("may.qra"), "--from", "2024-05-01",
                                     "--to", "2024-05-20", "--delete", "--yes"});
}

TEST_F(KillCli, Import) {
    std::string json = "[\n";
    for (int i = 0; i < kManyEntries; ++i) {
        const std::string day = std::to_string(10 + i % 18);
        json += std::string(i ? ",\n" : "") + "{\"id\":" + std::to_string(i + 1) +
                ",\"start\":\"202406" + day + "T09" + std::to_string(10 + i % 50) +
                "00\",\"end\":\"202406" + day + "T1100" +
                "00\",\"tags\":[\"client:Acme\","
                "\"item " +
                std::to_string(i) + "\"]}";
    }
    writeFile(file("intervals.json"), json + "\n]\n");
    killsLeaveAllOrNone(pristine(), {"import", "timewarrior", file("intervals.json")});
}

TEST_F(KillCli, RestoreIntoAnEmptyStore) {
    // A store as the first command leaves it, before anything was entered.
    const std::string empty = file("empty");
    ASSERT_EQ(runKilledAt({"--data", empty, "client", "list"}, 0).status, 0);
    killsLeaveAllOrNone(empty, {"backup", "restore", file("all.qrb")});
}

}  // namespace
}  // namespace qb::testing
