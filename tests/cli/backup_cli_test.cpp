#include <gtest/gtest.h>

#include <filesystem>

#include "cli_fixture.h"

namespace qb::testing {
namespace {

class BackupCliTest : public CliTest {
  protected:
    std::string listed() { return ok({"list", "--view", "month", "--date", "2026-11-01"}); }
    std::string fixturePath(const std::string& name) {
        std::filesystem::path shared = sharedDir();
        // Without QB_SHARED the folder is found beside the source tree.
        if (!std::filesystem::exists(shared / "fixtures")) {
            shared = std::filesystem::path(__FILE__).parent_path() / "../../../shared";
        }
        return (shared / "fixtures/compound" / name).lexically_normal().string();
    }
    TempDir files_;
};

TEST_F(BackupCliTest, BackupThenRestoreIntoAnotherDataDirectory) {
    addEntry({"--date", "2026-11-03", "--start", "09:15", "--client", "Acme", "--task", "Design",
              "--duration", "1.5", "--note", "first"});
    addEntry({"--date", "2026-11-30", "--client", "Beta", "--task", "Calls"});
    std::string file = files_.file("all.qrb");
    EXPECT_EQ(ok({"backup", "create", file}), "");
    std::string before = listed();

    RunResult restored =
        runQuillarbor({"--data", files_.file("other"), "backup", "restore", file}, {kPinnedNow});
    EXPECT_EQ(restored.status, 0) << restored.err;
    EXPECT_EQ(restored.err, "");
    RunResult again = runQuillarbor(
        {"--data", files_.file("other"), "list", "--view", "month", "--date", "2026-11-01"},
        {kPinnedNow});
    // Restored entries are new records: compare everything after the id.
    auto withoutIds = [](std::string text) {
        std::string out;
        for (std::size_t pos = 0; pos < text.size();) {
            std::size_t end = text.find('\n', pos);
            out += text.substr(text.find('\t', pos), end - text.find('\t', pos)) + "\n";
            pos = end + 1;
        }
        return out;
    };
    EXPECT_EQ(withoutIds(again.out), withoutIds(before));
    EXPECT_NE(ok({"client", "list"}).find("Beta"), std::string::npos);
}

TEST_F(BackupCliTest, MessagesAndStatusesOfRefusedFiles) {
    writeFile(files_.file("garbage.qrb"), std::string(1000, 'x'));
    struct Case {
        Words args;
        int status;
        std::string out, err;
    } cases[] = {
        {{"backup", "restore", files_.file("garbage.qrb")},
         1,
         "",
         "Restore has failed. Please select a different backup and try again.\n"},
        {{"backup", "restore", fixturePath("bad/bad-version.qrb")},
         1,
         "",
         "This backup file is not supported and cannot be used to restore data. Please select a "
         "different backup file.\n"},
        {{"archive", "load", fixturePath("archive-clients.qra")},
         1,
         "",
         "Only Archive file with data can be restored.\n"},
        {{"archive", "load", files_.file("garbage.qrb")},
         1,
         "",
         "Archive file cannot be loaded. The file may be created by Quillarbor prior to version "
         "2.3.\n"},
        {{"archive", "load", fixturePath("archive-entries.qra")},
         0,
         "Archive file has been restored.\n",
         ""},
        {{"backup", "create", "/nonexistent/dir/b.qrb"},
         1,
         "",
         "Backup has failed. Please make sure you have enough space on the storage device.\n"
         "quillarbor: cannot create /nonexistent/dir/b.qrb: No such file or directory\n"},
        {{"archive", "create", "/nonexistent/dir/a.qra", "--from", "2026-11-01", "--to",
          "2026-11-30"},
         1,
         "",
         "Archive operation has failed. Please make sure you have enough space on storage device "
         "and try again.\n"
         "quillarbor: cannot create /nonexistent/dir/a.qra: No such file or directory\n"},
    };
    for (const Case& c : cases) {
        RunResult r = run(c.args);
        EXPECT_EQ(r.status, c.status) << joined(c.args);
        EXPECT_EQ(r.out, c.out) << joined(c.args);
        EXPECT_EQ(r.err, c.err) << joined(c.args);
    }
}

TEST_F(BackupCliTest, ArchiveWithDeleteMovesTheRangeOut) {
    addEntry({"--date", "2026-11-02", "--client", "Acme", "--task", "A"});
    addEntry({"--date", "2026-11-05", "--client", "Acme", "--task", "B"});
    addEntry({"--date", "2026-11-06", "--client", "Acme", "--task", "C"});
    const std::string before = listed();
    std::string file = files_.file("week.qra");
    const Words archive{"archive",    "create", file,         "--from",
                        "2026-11-02", "--to",   "2026-11-05", "--delete"};
    asksFirst(archive,
              "Archiving deletes 2 entries from this data file once the archive is written. Do you "
              "want to continue?");
    EXPECT_EQ(listed(), before);
    Words confirmed = archive;
    confirmed.push_back("--yes");
    EXPECT_EQ(ok(confirmed), "Archived 2 entries and deleted them from this data file.\n");
    std::string left = listed();
    EXPECT_EQ(std::count(left.begin(), left.end(), '\n'), 2) << left;  // header and C
    EXPECT_EQ(ok({"archive", "load", file}), "Archive file has been restored.\n");
    left = listed();
    EXPECT_EQ(std::count(left.begin(), left.end(), '\n'), 4) << left;

    RunResult r = run({"archive", "create", file, "--client", "Nobody"});
    EXPECT_EQ(r.status, 2);
    r = run({"archive", "create", file, "--from", "2026-11-02"});
    EXPECT_EQ(r.status, 2);
}

}  // namespace
}  // namespace qb::testing
