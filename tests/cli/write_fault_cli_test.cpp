// Every file writer of the command line, with its Nth write failing for
// every N of its run (QUILLARBOR_FAIL_WRITE), and on a real full disk: the
// command names the file and exits 1, the file under the chosen name keeps
// what it held before (or stays absent), nothing half-written is left
// beside it, and the store is unchanged.

#include <sys/mount.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "cli/cli_fixture.h"
#include "cli/store_dump.h"

namespace qb::testing {
namespace {

// A small file system that a test mounts: root may, elsewhere the test is
// skipped with the reason.
class FullDisk {
  public:
    FullDisk(const std::string& dir, const char* size) : dir_(dir) {
        std::filesystem::create_directories(dir);
        if (::mount("qbfull", dir.c_str(), "tmpfs", MS_NOSUID | MS_NODEV,
                    (std::string("size=") + size).c_str()) != 0) {
            why_ = std::string("cannot mount a small tmpfs here (") + std::strerror(errno) +
                   "): needs root or CAP_SYS_ADMIN";
        }
    }
    ~FullDisk() {
        if (why_.empty()) ::umount2(dir_.c_str(), MNT_DETACH);
    }
    const std::string& whyNot() const { return why_; }

  private:
    std::string dir_;
    std::string why_;
};

struct Writer {
    const char* what;
    Words args;  // FILE stands for the file written
};

const Writer kWriters[] = {
    {"CSV export", {"export", "csv", "FILE", "--from", "2024-05-01", "--to", "2024-05-31"}},
    {"XML export", {"export", "xml", "FILE", "--from", "2024-05-01", "--to", "2024-05-31"}},
    {"report", {"report", "FILE", "--from", "2024-05-01", "--to", "2024-05-31"}},
    {"backup", {"backup", "create", "FILE"}},
    {"client list export", {"client", "export", "clients", "FILE"}},
    {"task list export", {"client", "export", "tasks", "FILE", "--client", "Acme", "--unicode"}},
    {"note export", {"note", "export", "NOTE", "FILE", "--format", "rtf"}},
    // Last: once it has run to the end, the entries it archived are gone.
    {"archive with delete",
     {"archive", "create", "FILE", "--from", "2024-05-01", "--to", "2024-05-20", "--delete",
      "--yes"}},
};

class WriteFaultCli : public ::testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directories(out());
        fillStore(data());
        noteId_ = firstEntryId();
    }

    std::string data() const { return dir_.file("data"); }
    std::string out() const { return dir_.file("out"); }

    RunResult run(Words args, const std::string& file, Words env = {}) {
        for (std::string& a : args) {
            if (a == "FILE") a = file;
            if (a == "NOTE") a = noteId_;
        }
        Words full{"--data", data()};
        full.insert(full.end(), args.begin(), args.end());
        env.push_back(kPinnedNow);
        return runQuillarbor(full, env);
    }

    // The entry written first, which carries the note: the lowest id listed
    // for its day.
    std::string firstEntryId() {
        RunResult r = runQuillarbor({"--data", data(), "list", "--view", "custom", "--date",
                                     "2024-05-01", "--end", "2024-05-01"});
        unsigned long lowest = ~0ul;
        for (std::size_t line = r.out.find('\n') + 1; line < r.out.size();
             line = r.out.find('\n', line) + 1) {
            lowest = std::min(lowest, std::stoul(r.out.substr(line, r.out.find('\t', line))));
        }
        return std::to_string(lowest);
    }

    // Asserts what a failed writer leaves: exit 1, a message naming the
    // file and the error, the old file untouched and nothing beside it, and
    // the store as it was.
    void leftNothing(const Writer& w, const RunResult& r, const std::string& file,
                     const std::string& oldBytes, const std::string& records, const char* error,
                     const std::string& where) {
        EXPECT_EQ(r.status, 1) << w.what << where << "\n" << r.err;
        EXPECT_NE(r.err.find(file), std::string::npos) << w.what << where << "\n" << r.err;
        EXPECT_NE(r.err.find(error), std::string::npos) << w.what << where << "\n" << r.err;
        EXPECT_EQ(readFile(file), oldBytes) << w.what << where;
        EXPECT_EQ(namesIn(out()), "target") << w.what << where;
        EXPECT_TRUE(checkedRecords(data()) == records) << w.what << where << ": the store changed";
    }

    TempDir dir_;
    std::string noteId_;
};

TEST_F(WriteFaultCli, EveryWriteOfEveryWriterMayFail) {
    const std::string file = out() + "/target";
    const std::string oldBytes = "what the user had before\n";
    for (const Writer& w : kWriters) {
        const std::string records = checkedRecords(data());
        std::uint64_t n = 1;
        for (;; ++n) {
            ASSERT_LT(n, 5000u) << w.what << " never finished";
            writeFile(file, oldBytes);
            const bool full = n % 2 == 1;
            const std::string fault = std::to_string(n) + (full ? ":ENOSPC" : ":EIO");
            RunResult r = run(w.args, file, {"QUILLARBOR_FAIL_WRITE=" + fault});
            if (r.status == 0) break;  // the run has fewer writes than n
            leftNothing(w, r, file, oldBytes, records,
                        full ? "No space left on device" : "Input/output error",
                        " with write " + fault + " failing");
            if (::testing::Test::HasFailure()) return;
        }
        EXPECT_GT(n, 1u) << w.what << " wrote nothing";
        // The run that no fault reached wrote the whole file.
        const std::string written = readFile(file);
        EXPECT_EQ(namesIn(out()), "target") << w.what;
        std::filesystem::remove(file);
        ASSERT_EQ(run(w.args, file).status, 0) << w.what;
        if (std::string(w.what) != "archive with delete") {
            EXPECT_EQ(readFile(file), written) << w.what;
        }
        std::filesystem::remove(file);
    }
}

TEST_F(WriteFaultCli, AFullDiskFailsEveryWriterCleanly) {
    FullDisk disk(out(), "96k");
    if (!disk.whyNot().empty()) GTEST_SKIP() << disk.whyNot();
    const std::string file = out() + "/target";
    const std::string oldBytes = "what the user had before\n";
    for (const Writer& w : kWriters) {
        const std::string records = checkedRecords(data());
        writeFile(file, oldBytes);
        RunResult r = run(w.args, file);
        if (std::string(w.what).find("list export") != std::string::npos ||
            std::string(w.what) == "note export") {
            // Small enough to fit: it must then be whole.
            EXPECT_EQ(r.status, 0) << w.what << "\n" << r.err;
            continue;
        }
        leftNothing(w, r, file, oldBytes, records, "No space left on device", " on a full disk");
    }
}

// The store itself on a full disk: a restore that does not fit fails with
// exit 1 and a message, and the store keeps what it held.
TEST_F(WriteFaultCli, ARestoreThatDoesNotFitLeavesTheStoreAsItWas) {
    const std::string backup = out() + "/all.qrb";
    ASSERT_EQ(run({"backup", "create", "FILE"}, backup).status, 0);
    const std::string small = dir_.file("small");
    FullDisk disk(small, "1m");
    if (!disk.whyNot().empty()) GTEST_SKIP() << disk.whyNot();
    ASSERT_EQ(runQuillarbor({"--data", small, "client", "add", "Before"}).status, 0);
    // All but a little of the room goes to another file.
    struct statvfs room {};
    ASSERT_EQ(::statvfs(small.c_str(), &room), 0);
    const std::size_t left = 48 * 1024;
    writeFile(small + "/filler", std::string(room.f_bavail * room.f_bsize - left, 'x'));
    const std::string records = checkedRecords(small);
    RunResult r = runQuillarbor({"--data", small, "backup", "restore", backup});
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_NE(r.err, "");
    EXPECT_TRUE(checkedRecords(small) == records) << "the store changed";
    EXPECT_EQ(runQuillarbor({"--data", small, "client", "list"}).out,
              "clientId\tname\n1\tBefore\n");
}

}  // namespace
}  // namespace qb::testing
