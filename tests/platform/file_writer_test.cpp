#include "platform/file_writer.h"

#include <dirent.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <string>

#include "testing/test_support.h"

namespace qb::testing {
namespace {

std::set<std::string> namesIn(const std::string& dir) {
    std::set<std::string> names;
    DIR* d = ::opendir(dir.c_str());
    while (dirent* e = d ? ::readdir(d) : nullptr) {
        if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0) {
            names.insert(e->d_name);
        }
    }
    if (d) ::closedir(d);
    return names;
}

// Turns the fault off whatever a test leaves behind.
struct FaultGuard {
    ~FaultGuard() { setWriteFault(0, 0); }
};

TEST(FileWriter, NothingCarriesTheNameUntilCommit) {
    TempDir dir;
    const std::string path = dir.file("out.txt");
    writeFile(path, "old");
    FileWriter w(path, 4);
    ASSERT_TRUE(w.open().isOk());
    EXPECT_TRUE(w.write("hello, ").isOk());
    EXPECT_TRUE(w.write("world").isOk());
    EXPECT_EQ(w.size(), 12u);
    EXPECT_EQ(readFile(path), "old");
    EXPECT_EQ(namesIn(dir.path()).size(), 2u);  // the target and the temporary file
    ASSERT_TRUE(w.commit().isOk());
    EXPECT_EQ(readFile(path), "hello, world");
    EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"out.txt"});
}

TEST(FileWriter, DroppedWriterLeavesTheTargetAlone) {
    TempDir dir;
    const std::string path = dir.file("out.txt");
    {
        FileWriter w(path);
        ASSERT_TRUE(w.open().isOk());
        w.write("partial");
    }
    EXPECT_TRUE(namesIn(dir.path()).empty());
}

TEST(FileWriter, CutsAndPatchesWhatWasWritten) {
    TempDir dir;
    const std::string path = dir.file("p");
    FileWriter w(path, 3);
    ASSERT_TRUE(w.open().isOk());
    w.write("abcdefgh");     // "abcdef" reached the file, "gh" is buffered
    w.writeAt(1, "XYZ", 3);  // on disk
    w.writeAt(6, "G", 1);    // in the buffer
    w.truncate(7);
    EXPECT_EQ(w.size(), 7u);
    w.write("!");
    ASSERT_TRUE(w.commit().isOk());
    EXPECT_EQ(readFile(path), "aXYZefG!");

    FileWriter cut(path, 2);
    ASSERT_TRUE(cut.open().isOk());
    cut.write("123456");
    cut.truncate(1);  // below what reached the disk
    cut.write("x");
    ASSERT_TRUE(cut.commit().isOk());
    EXPECT_EQ(readFile(path), "1x");
}

TEST(FileWriter, AScratchFileReadsBackAndLeavesNothingBehind) {
    FaultGuard guard;
    TempDir dir;
    const std::string path = dir.file("target.qrb");
    {
        FileWriter scratch(path, 4);
        ASSERT_TRUE(scratch.openScratch().isOk());
        scratch.write("abcdefghij");  // "abcdefgh" reached the file, "ij" is buffered
        char back[7] = {};
        ASSERT_TRUE(scratch.readAt(5, back, 5).isOk());
        EXPECT_STREQ(back, "fghij");
        scratch.write("k");
        ASSERT_TRUE(scratch.readAt(10, back, 1).isOk());
        EXPECT_EQ(back[0], 'k');
        EXPECT_FALSE(scratch.readAt(8, back, 4).isOk()) << "past what was written";
        EXPECT_TRUE(namesIn(dir.path()).empty());
    }
    EXPECT_TRUE(namesIn(dir.path()).empty());

    // Its writes count like any other and the failure names the target.
    FileWriter scratch(path, 2);
    ASSERT_TRUE(scratch.openScratch().isOk());
    setWriteFault(2, ENOSPC);
    scratch.write("abcdef");
    EXPECT_EQ(scratch.status().message(), "cannot write " + path + ": " + std::strerror(ENOSPC));
}

TEST(FileWriter, FailuresNameTheFile) {
    TempDir dir;
    FileWriter missing(dir.file("no/such/dir.txt"));
    Status s = missing.open();
    EXPECT_FALSE(s.isOk());
    EXPECT_NE(s.message().find(dir.file("no/such/dir.txt")), std::string::npos) << s.message();
    EXPECT_FALSE(missing.write("x").isOk());

    // A device is written in place; a full one fails at the first write out.
    FileWriter full("/dev/full");
    ASSERT_TRUE(full.open().isOk());
    full.write("no space");
    s = full.commit();
    EXPECT_EQ(s.message(), std::string("cannot write /dev/full: ") + std::strerror(ENOSPC));

    FileWriter null("/dev/null");
    ASSERT_TRUE(null.open().isOk());
    null.write("fine");
    EXPECT_TRUE(null.commit().isOk());
}

// The seam the fault-injection loops stand on: every N up to the number of
// writes a run makes fails that run, names the file, and leaves the old file
// as it was with no temporary file beside it.
TEST(FileWriter, NthWriteFailsForEveryN) {
    FaultGuard guard;
    TempDir dir;
    const std::string path = dir.file("target.csv");
    writeFile(path, "before");
    const auto attempt = [&] {
        FileWriter w(path, 5);
        Status s = w.open();
        for (int i = 0; s.isOk() && i < 6; ++i) s = w.write("line\n");
        return s.isOk() ? w.commit() : s;
    };
    for (int error : {ENOSPC, EIO}) {
        setWriteFault(0, 0);
        ASSERT_TRUE(attempt().isOk());
        const std::string whole = readFile(path);
        EXPECT_EQ(whole, "line\nline\nline\nline\nline\nline\n");
        writeFile(path, "before");
        std::uint64_t n = 1;
        for (;; ++n) {
            setWriteFault(n, error);
            const Status s = attempt();
            if (!writeFaultHit()) {
                EXPECT_TRUE(s.isOk());
                break;
            }
            EXPECT_EQ(s.message(), "cannot write " + path + ": " + std::strerror(error)) << n;
            EXPECT_EQ(readFile(path), "before") << n;
            EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"target.csv"}) << n;
        }
        // Six writes of the buffer and the one that puts the file in place.
        EXPECT_EQ(n, 8u);
        EXPECT_EQ(readFile(path), whole);
        writeFile(path, "before");
    }
}

TEST(FileWriter, FaultFromTheEnvironmentReachesTheCommandLine) {
    TempDir dir;
    const std::string data = dir.file("data");
    const std::string csv = dir.file("out.csv");
    RunResult r = runQuillarbor(
        {"--data", data, "export", "csv", csv, "--from", "2026-01-01", "--to", "2026-12-31"},
        {"QUILLARBOR_FAIL_WRITE=1:EIO"});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("cannot write " + csv + ": " + std::strerror(EIO)), std::string::npos)
        << r.err;
    EXPECT_EQ(namesIn(dir.path()), std::set<std::string>{"data"});
    r = runQuillarbor(
        {"--data", data, "export", "csv", csv, "--from", "2026-01-01", "--to", "2026-12-31"});
    EXPECT_EQ(r.status, 0) << r.err;
}

}  // namespace
}  // namespace qb::testing
