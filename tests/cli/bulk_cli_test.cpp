// Client setup lists and the bulk operations through the binary.

#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

class BulkCli : public CliTest {
  protected:
    std::string file(const std::string& name) const { return files_.file(name); }

  private:
    TempDir files_;
};

constexpr const char* kImportFailed =
    "Unable to import data. Please close some applications and try again.\n";

TEST_F(BulkCli, ImportSkipsBlanksCutsLongLinesAndExportsByteForByte) {
    writeFile(file("clients.txt"), "Acme\r\n\r\n" + std::string(200, 'x') + "\n\nBee");
    ok({"client", "import", "clients", file("clients.txt")});
    EXPECT_EQ(ok({"client", "list"}),
              "clientId\tname\n1\tAcme\n3\tBee\n2\t" + std::string(127, 'x') + "\n");
    // A UTF-16 list of tasks for a project.
    ok({"project", "add", "Acme", "Web"});
    writeFile(file("tasks.txt"), std::string("\xFF\xFE"
                                             "D\0\xE9\0\r\0\n\0B\0",
                                             12));
    ok({"client", "import", "tasks", file("tasks.txt"), "--client", "Acme", "--project", "Web"});
    ok({"client", "export", "tasks", file("ansi.txt"), "--client", "Acme", "--project", "Web"});
    EXPECT_EQ(readFile(file("ansi.txt")), "D\xE9\r\nB");
    ok({"client", "export", "tasks", file("wide.txt"), "--client", "Acme", "--project", "Web",
        "--unicode"});
    EXPECT_EQ(readFile(file("wide.txt")), std::string("\xFF\xFE"
                                                      "D\0\xE9\0\r\0\n\0B\0",
                                                      12));
}

TEST_F(BulkCli, BadListFilesAddNothing) {
    ok({"client", "add", "Acme"});
    writeFile(file("nul.txt"), std::string("\xFF\xFE\0\0A\0", 6));
    writeFile(file("binary.txt"), std::string("\x7F"
                                              "ELF\0\x01\x02",
                                              7));
    writeFile(file("big.txt"), std::string((8 << 20) + 1, 'a'));
    writeFile(file("ro.txt"), "Ro");
    ::chmod(file("ro.txt").c_str(), 0444);
    Words bad = {file("missing.txt"), file("nul.txt"), file("binary.txt"), file("big.txt"),
                 file("ro.txt")};
    if (::geteuid() != 0) {
        writeFile(file("locked.txt"), "Locked");
        ::chmod(file("locked.txt").c_str(), 0200);
        bad.push_back(file("locked.txt"));
    }
    for (const std::string& path : bad) {
        RunResult r = run({"client", "import", "contacts", path, "--client", "Acme"});
        EXPECT_EQ(r.status, 1) << path;
        EXPECT_EQ(r.err, kImportFailed) << path;
        r = run({"droplist", "import", "phase", path});
        EXPECT_EQ(r.status, 1) << path;
        EXPECT_EQ(r.err, kImportFailed) << path;
    }
    EXPECT_EQ(ok({"client", "show", "Acme"}), "client\t1\tAcme\n");
    EXPECT_EQ(ok({"droplist", "list", "phase"}), "");
}

TEST_F(BulkCli, DeletingAClientKeepsItsEntries) {
    std::string id = addEntry({"--client", "Acme", "--task", "T", "--duration", "1"});
    asksFirst({"client", "delete", "Acme"},
              "This will also delete all associated projects, tasks, contacts, and rates. However, "
              "time entries are preserved. Are you sure?");
    ok({"client", "delete", "Acme", "--yes"});
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");
    EXPECT_EQ(field(id, "client"), "Acme");
}

TEST_F(BulkCli, MarkPaidSkipsNonBillable) {
    std::string billable = addEntry({"--client", "Acme", "--task", "T", "--duration", "1",
                                     "--billable", "--date", "2026-11-02"});
    std::string other = addEntry({"--client", "Acme", "--task", "T", "--duration", "1",
                                  "--non-billable", "--date", "2026-11-03"});
    std::string later = addEntry({"--client", "Acme", "--task", "T", "--duration", "1",
                                  "--billable", "--date", "2026-12-01"});
    ok({"mark-paid", "--from", "2026-11-01", "--to", "2026-11-30"});
    EXPECT_EQ(field(billable, "paid"), "1");
    EXPECT_EQ(field(other, "paid"), "0");
    EXPECT_EQ(field(later, "paid"), "0");
}

TEST_F(BulkCli, ReplaceAsksAndMatchesWholeText) {
    std::string exact = addEntry({"--client", "Acme", "--task", "T", "--duration", "1"});
    std::string lower = addEntry({"--client", "acme", "--task", "T", "--duration", "1"});
    std::string longer = addEntry({"--client", "Acme Inc", "--task", "T", "--duration", "1"});
    asksFirst({"replace", "client", "Acme", "Acme Ltd"},
              "Are you sure to replace the text? Depending of the number of time entries, this "
              "may take several minutes.");
    refused({"replace", "client", "Acme", "", "--yes"}, "");
    ok({"replace", "client", "Acme", "Acme Ltd", "--yes"});
    EXPECT_EQ(field(exact, "client"), "Acme Ltd");
    EXPECT_EQ(field(lower, "client"), "acme");
    EXPECT_EQ(field(longer, "client"), "Acme Inc");
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n3\tAcme Inc\n1\tAcme Ltd\n2\tacme\n");
}

TEST_F(BulkCli, TaskAgainstProjectTask) {
    std::string id =
        addEntry({"--client", "Acme", "--project", "Web", "--task", "Design", "--duration", "1"});
    ok({"task", "add", "Acme", "Design"});
    ok({"replace", "task", "Design", "Draft", "--yes"});
    EXPECT_EQ(field(id, "task"), "Draft");
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\nproject\tWeb\tDesign\ntask\tDraft\n");
    ok({"replace", "project-task", "Design", "Sketch", "--yes"});
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\nproject\tWeb\tSketch\ntask\tDraft\n");
}

TEST_F(BulkCli, CopyPrintsTheNewIds) {
    // 2026-11-17 is a Tuesday; the week starts on Sunday by default.
    std::string id =
        addEntry({"--client", "Acme", "--task", "T", "--duration", "2", "--date", "2026-11-17"});
    std::string out = ok({"entry", "copy", id, "--duration", "1.5"});
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 3);
    std::string last = out.substr(out.rfind('\n', out.size() - 2) + 1);
    last.pop_back();
    EXPECT_EQ(field(last, "date"), "2026-11-20T00:00:00.000");
    EXPECT_EQ(field(last, "duration"), "150");
    out = ok({"entry", "copy", id, "--until", "2026-11-23", "--include-weekend"});
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 6);
    refused({"entry", "copy", id, "--duration", "x"}, "This field accepts numeric values only.");
}

TEST_F(BulkCli, NoteExport) {
    std::string id =
        addEntry({"--client", "Acme", "--task", "T", "--duration", "1", "--note", "Caf\xC3\xA9"});
    ok({"note", "export", id, file("n.txt")});
    EXPECT_EQ(readFile(file("n.txt")), "Caf\xE9");
    ok({"note", "export", id, file("n.rtf"), "--format", "rtf"});
    EXPECT_EQ(readFile(file("n.rtf")),
              "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\uc1\\f0\\fs20 Caf\\u233?}");
    RunResult r = run({"note", "export", id, file("no/dir/n.txt")});
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err,
              "Export note failed. Please make sure there is enough storage space and try again.\n"
              "quillarbor: cannot create " +
                  file("no/dir/n.txt") + ": No such file or directory\n");
}

}  // namespace
}  // namespace qb::testing
