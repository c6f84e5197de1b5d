// Destructive work asks first, with the counts, and every bulk change says
// what it did: restore, archive, Mark Paid and Replace through the binary.

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

class AsksAndReportsCli : public CliTest {
  protected:
    std::string listed() { return ok({"list", "--view", "month", "--date", "2026-11-01"}); }
    std::size_t rows() {
        const std::string text = listed();
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) - 1;
    }
    TempDir files;
};

TEST_F(AsksAndReportsCli, RestoreAsksWithTheCountsAndSaysWhatItAdded) {
    addEntry({"--date", "2026-11-03", "--client", "Acme", "--task", "Design", "--duration", "1"});
    addEntry({"--date", "2026-11-04", "--client", "Beta", "--task", "Calls", "--duration", "1"});
    const std::string backup = files.file("all.qrb");
    ok({"backup", "create", backup});

    asksFirst({"backup", "restore", backup},
              "Restoring this backup adds 2 entries to the 2 already here. Do you want to "
              "continue?");
    EXPECT_EQ(rows(), 2u);
    EXPECT_EQ(ok({"backup", "restore", backup, "--yes"}),
              "Restore added 2 entries and 0 clients.\n");
    EXPECT_EQ(rows(), 4u);

    // Into an empty store: no question.
    RunResult fresh =
        runQuillarbor({"--data", files.file("fresh"), "backup", "restore", backup}, {kPinnedNow});
    EXPECT_EQ(fresh.status, 0) << fresh.err;
    EXPECT_EQ(fresh.out, "Restore added 2 entries and 2 clients.\n");
    EXPECT_EQ(fresh.err, "");
}

TEST_F(AsksAndReportsCli, ADateRangeArchiveIsNotRestored) {
    addEntry({"--date", "2026-11-03", "--client", "Acme", "--task", "Design", "--duration", "1"});
    const std::string archive = files.file("week.qra");
    EXPECT_EQ(ok({"archive", "create", archive, "--from", "2026-11-01", "--to", "2026-11-07"}),
              "Archived 1 entry.\n");
    const std::string before = listed();
    for (const Words& yes : {Words{}, Words{"--yes"}}) {
        Words args{"backup", "restore", archive};
        args.insert(args.end(), yes.begin(), yes.end());
        RunResult r = run(args);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err,
                  "This file is an archive of time entries, not a backup. Please load it with "
                  "Archive > Load.\n");
        EXPECT_EQ(r.out, "");
    }
    EXPECT_EQ(listed(), before);
}

TEST_F(AsksAndReportsCli, ArchivesOfClientsAskBeforeDeletingAndCount) {
    addEntry({"--date", "2026-11-03", "--client", "Acme", "--task", "Design", "--duration", "1"});
    addEntry({"--date", "2026-11-04", "--client", "Beta", "--task", "Calls", "--duration", "1"});
    const std::string archive = files.file("clients.qra");
    const Words create{"archive",  "create", archive,    "--client", "Acme",
                       "--client", "Beta",   "--client", "Acme",     "--delete"};
    asksFirst(create,
              "Archiving deletes 2 clients with their projects, tasks, contacts and rates from "
              "this data file once the archive is written. Time entries are preserved. Do you "
              "want to continue?");
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\tAcme\n2\tBeta\n");
    Words confirmed = create;
    confirmed.push_back("--yes");
    EXPECT_EQ(ok(confirmed), "Archived 2 clients and deleted them from this data file.\n");
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");
    EXPECT_EQ(rows(), 2u);
}

TEST_F(AsksAndReportsCli, MarkPaidAndReplaceSayWhatTheyChanged) {
    addEntry({"--date", "2026-11-03", "--client", "Acme", "--task", "Design", "--billable"});
    addEntry({"--date", "2026-11-04", "--client", "Acme", "--task", "Design", "--billable"});
    addEntry({"--date", "2026-11-05", "--client", "Beta", "--task", "Calls"});
    EXPECT_EQ(ok({"mark-paid", "--from", "2026-11-01", "--to", "2026-11-30"}),
              "Marked 2 entries as paid.\n");
    EXPECT_EQ(ok({"mark-paid", "--from", "2026-11-01", "--to", "2026-11-30"}),
              "Marked 0 entries as paid.\n");
    EXPECT_EQ(ok({"replace", "task", "Calls", "Phone", "--yes"}),
              "Replace changed 1 entry and 1 name.\n");
    EXPECT_EQ(ok({"replace", "client", "Beta", "Acme", "--yes"}),
              "Replace changed 1 entry and 2 names (1 merged into the one already there).\n");
}

}  // namespace
}  // namespace qb::testing
