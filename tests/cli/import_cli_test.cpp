// The import command and `export ical` driven as an outside check would:
// real `timew` output, damaged files, a second import, a round trip.

#include <sys/wait.h>
#include <cstdlib>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

const Words kMarch{"list", "--view", "custom", "--date", "2024-03-01", "--end", "2024-03-31"};

class ImportCliTest : public CliTest {
  protected:
    RunResult importFile(const std::string& format, const std::string& bytes, Words extra = {}) {
        const std::string path = files_.file("in." + format);
        writeFile(path, bytes);
        Words args{"import", format, path};
        args.insert(args.end(), extra.begin(), extra.end());
        return run(args, {"TZ=Europe/Berlin"});
    }
    std::string listed() { return ok(kMarch); }

    TempDir files_;
};

// Intervals made by the real timew, in its own database, exported and
// imported: tags, an annotation, several days, one over midnight.
TEST_F(ImportCliTest, RealTimewarriorExport) {
    if (std::system("command -v timew >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "timew is not installed";
    const std::string db = files_.file("timewdb");
    const std::string timew = "TZ=Europe/Berlin TIMEWARRIORDB=" + db + " timew :yes ";
    const std::string steps[] = {
        "mkdir -p " + db + " >/dev/null",
        timew +
            "track 2024-03-04T09:00 - 2024-03-04T10:30 client:Acme project:Web coding >/dev/null",
        timew +
            "track 2024-03-05T23:30 - 2024-03-06T01:15 client:Acme review 'pair work' >/dev/null",
        timew + "annotate @1 'late night, with \"quotes\"' >/dev/null",
        timew + "track 2024-03-07T14:00 - 2024-03-07T14:45 client:Beta task:Calls phone >/dev/null",
        timew + "export > " + files_.file("export.json"),
    };
    for (const std::string& step : steps) {
        ASSERT_EQ(std::system((step + " 2>/dev/null </dev/null").c_str()) & 0xff00, 0) << step;
    }
    const std::string exported = readFile(files_.file("export.json"));
    RunResult first = importFile("timewarrior", exported);
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_EQ(first.out, "imported 3, already imported 0, refused 0\n");
    const std::string list = listed();
    EXPECT_NE(list.find("\t2024-03-04\t09:00\tAcme\tWeb\t\tcoding\t1.50\t"), std::string::npos)
        << list;
    EXPECT_NE(list.find("\t2024-03-05\t23:30\tAcme\t\t\tpair work review\t1.75\t"),
              std::string::npos)
        << list;
    EXPECT_NE(list.find("\t2024-03-07\t14:00\tBeta\t\t\tCalls\t0.75\t"), std::string::npos) << list;
    RunResult again = importFile("timewarrior", exported);
    EXPECT_EQ(again.out, "imported 0, already imported 3, refused 0\n");
    EXPECT_EQ(listed(), list);
}

TEST_F(ImportCliTest, DryRunPrintsTheRowsAsListDoesAndWritesNothing) {
    const std::string harvest =
        "Date,Client,Project,Task,Notes,Hours\n"
        "2024-03-04,Acme,Web,Design,\"a, b\",2.5\n";
    RunResult r = importFile("harvest", harvest, {"--dry-run", "--billable", "--rate", "80"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out,
              "id\tdate\tstart\tclient\tproject\tphase\ttask\tduration\tbillable\tpaid\tcurrency\t"
              "rate\trateType\tamount\tbillTo\tcustom1\tcustom2\tcustom3\n"
              "\t2024-03-04\t\tAcme\tWeb\t\tDesign\t2.50\tY\tN\tUSD\t80.00\t0\t200.00\t\t\t\t\n"
              "imported 1, already imported 0, refused 0\n");
    EXPECT_EQ(listed().find("Acme"), std::string::npos);
}

// Bad input: the file, the line or record and the reason; exit 2; nothing
// of the file added, not even the good rows before the bad one.
TEST_F(ImportCliTest, BadFilesAreRefusedWhole) {
    const std::string good = "2024-03-04,Acme,Web,Design,,1\n";
    struct Case {
        std::string format, bytes, where, reason;
    } cases[] = {
        {"toggl", "[{\"start\":\"20240304T080000Z\"}]", "line 1",
         "not a Toggl Track detailed CSV export"},
        {"timewarrior", "Date,Client\n2024-03-04,Acme\n", "", "not a `timew export` file"},
        {"timewarrior", "[{\"start\":\"20240304T080000Z\",\"end\":\"2024030", "record 1",
         "ends inside"},
        {"harvest",
         "Date,Client,Project,Task,Notes,Hours\n" + good + "2024-02-30,Acme,Web,Design,,1\n",
         "line 3", "impossible or unreadable date '2024-02-30'"},
        {"harvest",
         "Date,Client,Project,Task,Notes,Hours\n" + good + "2024-03-05,Acme,Web,Design,,-2\n",
         "line 3", "655.35"},
        {"harvest",
         "Date,Client,Project,Task,Notes,Hours\n" + good + "2024-03-05,Acme,Web,Design,,700\n",
         "line 3", "655.35"},
        {"ical", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:20240304T0800", "line 2",
         "END:VCALENDAR"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.format + ": " + c.bytes);
        RunResult r = importFile(c.format, c.bytes, {"--client", "X", "--task", "T"});
        EXPECT_EQ(r.status, 2);
        const std::string prefix =
            files_.file("in." + c.format) + ": " + (c.where.empty() ? "" : c.where + ": ");
        EXPECT_EQ(r.err.rfind(prefix, 0), 0u) << r.err;
        EXPECT_NE(r.err.find(c.reason), std::string::npos) << r.err;
        EXPECT_NE(r.out.find("imported 0, already imported 0, refused 1"), std::string::npos)
            << r.out;
    }
    EXPECT_EQ(listed().find("Acme"), std::string::npos);
    RunResult usage = run({"import", "excel", files_.file("in.harvest")});
    EXPECT_EQ(usage.status, 2);
}

TEST_F(ImportCliTest, ExportIcalRoundTrip) {
    addEntry({"--date", "2024-03-04", "--start", "09:15", "--client", "Smith, Jones", "--project",
              "Web", "--task", "Design", "--duration", "1.75", "--note", "first line\nsecond"});
    addEntry({"--date", "2024-03-05", "--client", "Acme", "--task", "Calls", "--duration", "0.5"});
    const std::string file = files_.file("out.ics");
    ok({"export", "ical", file, "--from", "2024-03-01", "--to", "2024-03-31"});
    const std::string ics = readFile(file);
    EXPECT_EQ(ics.rfind("BEGIN:VCALENDAR\r\n", 0), 0u);
    EXPECT_NE(ics.find("CATEGORIES:Smith\\, Jones,Web\r\n"), std::string::npos) << ics;
    EXPECT_NE(ics.find("SUMMARY:Design\r\n"), std::string::npos);
    EXPECT_NE(ics.find("DTSTART:20240304T091500\r\n"), std::string::npos);
    EXPECT_NE(ics.find("DURATION:PT1H45M\r\n"), std::string::npos);
    EXPECT_NE(ics.find("DTSTART;VALUE=DATE:20240305\r\n"), std::string::npos);

    const std::string before = listed();
    // Into a second data directory: the same rows, ids aside.
    RunResult r =
        runQuillarbor({"--data", files_.file("other"), "import", "ical", file}, {"TZ=UTC"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "imported 2, already imported 0, refused 0\n");
    Words listOther{"--data", files_.file("other")};
    listOther.insert(listOther.end(), kMarch.begin(), kMarch.end());
    RunResult after = runQuillarbor(listOther);
    auto withoutIds = [](const std::string& listing) {
        std::string out;
        for (std::size_t pos = 0; pos < listing.size();) {
            std::size_t end = listing.find('\n', pos);
            std::string line = listing.substr(pos, end - pos);
            out += line.substr(line.find('\t')) + "\n";
            pos = end + 1;
        }
        return out;
    };
    EXPECT_EQ(withoutIds(after.out), withoutIds(before));
}

}  // namespace
}  // namespace qb::testing
