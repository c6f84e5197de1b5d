// export csv|xml, report and layout, driven through the binary.

#include <string>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

class ExportCli : public CliTest {
  protected:
    const Words kNovember{"--from", "2026-11-01", "--to", "2026-11-30"};

    Words with(Words words, const Words& more) {
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    void addNovember() {
        addEntry({"--date", "2026-11-02", "--start", "13:30", "--client", "Acme", "--project",
                  "Web", "--task", "Design", "--duration", "1.5", "--billable", "--rate", "60",
                  "--bill-to", "Ann", "--note", "a\r\nb"});
        addEntry({"--date", "2026-11-03", "--client", "Caf\xC3\xA9", "--task", "Call", "--duration",
                  "0.17", "--billable", "--paid", "--rate", "60", "--rate-type", "1", "--currency",
                  "EUR"});
        addEntry({"--date", "2026-12-01", "--client", "Later", "--task", "T", "--duration", "1"});
    }

    TempDir out;
};

TEST_F(ExportCli, CsvAndXmlFiles) {
    addNovember();
    setSetting("BreakSub", "2");
    const std::string csv = out.file("n.csv");
    EXPECT_EQ(ok(with({"export", "csv", csv}, kNovember)), "");
    EXPECT_EQ(readFile(csv),
              "\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
              "\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\","
              "\"Custom 1\",\"Custom 2\",\"Custom 3\",\"Note\"\r\n"
              "\"11/2/2026\",\"Acme\",\"Web\",\"\",\"Design\",\"1:30 PM\",\"1.50\",\"Y\",\"N\","
              "\"USD\",\"60.00\",\"0\",\"90.00\",\"Ann\",\"\",\"\",\"\",\"a~`b\"\r\n"
              "\"11/3/2026\",\"Caf\xE9\",\"\",\"\",\"Call\",\"\",\"0.17\",\"Y\",\"Y\",\"EUR\","
              "\"60.00\",\"1\",\"10.20\",\"\",\"\",\"\",\"\",\"\"\r\n");

    setSetting("Encoding", "1");
    const std::string xml = out.file("n.xml");
    EXPECT_EQ(ok(with({"export", "xml", xml, "--client", "Acme"}, kNovember)), "");
    EXPECT_EQ(readFile(xml),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
              "<ITEMS>\r\n"
              "<ITEM Billable=\"Y\" Paid=\"N\">\r\n"
              "<DATE>2026-11-02</DATE>\r\n"
              "<CLIENT>Acme</CLIENT>\r\n"
              "<PROJECT>Web</PROJECT>\r\n"
              "<PHASE/>\r\n"
              "<TASK>Design</TASK>\r\n"
              "<START>01:30:00</START>\r\n"
              "<DURATION>1.50</DURATION>\r\n"
              "<CURRENCY>USD</CURRENCY>\r\n"
              "<RATE Type=\"0\">60.00</RATE>\r\n"
              "<AMOUNT>90.00</AMOUNT>\r\n"
              "<BILLTO>Ann</BILLTO>\r\n"
              "<CUSTOM1/>\r\n"
              "<CUSTOM2/>\r\n"
              "<CUSTOM3/>\r\n"
              "<NOTES>a\r\nb</NOTES>\r\n"
              "</ITEM>\r\n"
              "</ITEMS>\r\n");
}

TEST_F(ExportCli, EmptyFlatReportWithTodaysDate) {
    const std::string html = out.file("r.html");
    EXPECT_EQ(
        ok({"report", html, "--from", "2026-10-01", "--to", "2026-10-31", "--layout", "date"}), "");
    std::string header = "<tr>\r\n";
    for (const char* t : {"Entry Date", "Client", "Project", "Phase", "Task", "Bill To",
                          "Start Time", "Duration"}) {
        header += std::string("<th class=\"Data\">") + t + "</th>\r\n";
    }
    header += "</tr>\r\n";
    EXPECT_EQ(readFile(html),
              "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
              "\"http://www.w3.org/TR/html4/loose.dtd\">\r\n"
              "<html xmlns=\"http://www.w3.org/1999/xhtml\">\r\n<head>\r\n"
              "<title>Quillarbor Summary Report</title>\r\n"
              "<meta name=\"Generator\" content=\"Quillarbor\" />\r\n"
              "<style type=\"text/css\">table.Data { border : 2px solid Black; border-collapse "
              ": collapse; font-size : 10pt; }\r\nth.Data, td.Data { border : 1px solid black;  "
              "}\r\n</style>\r\n</head>\r\n<body>\r\n"
              "<h1>Quillarbor Summary Report</h1>\r\n<h2>Date: 10/1/2026</h2>\r\n"
              "<table border=\"0\" class=\"Data\" cellpadding=\"2\">\r\n" +
                  header +
                  "</table>\r\n<p>\r\n"
                  "<span>Total Billable Hours: 0.00h</span>\r\n<br />\r\n"
                  "<span>Total Unpaid Amount: 0.00</span>\r\n<br />\r\n"
                  "<span>Total Paid Amount: 0.00</span>\r\n<br />\r\n"
                  "<span>Total Non-Billable Hours: 0.00h</span>\r\n<br />\r\n"
                  "<span style=\"font-size : xx-small;\">Report Date: 11/21/2026</span>\r\n"
                  "<br />\r\n</p>\r\n</body>\r\n</html>\r\n");
}

TEST_F(ExportCli, SavedLayoutsAndTheDefault) {
    addNovember();
    EXPECT_EQ(ok({"layout", "list"}), "id\tname\tdefault\n");
    const std::string id =
        ok({"layout", "save", "Short", "--from", "date", "--set", "title=Short & sweet", "--set",
            "fieldMask=0x21", "--set", "dateSelection=0"});
    asksFirst({"layout", "save", "Short"},
              "The report already exists. Do you want to overwrite it?");
    EXPECT_EQ(ok({"layout", "save", "Short", "--from", "Short", "--set", "hideReportDate=1",
                  "--overwrite"}),
              id);
    EXPECT_EQ(ok({"layout", "default", "Short"}), "");
    EXPECT_EQ(ok({"settings", "get", "DefReport"}), "Short\n");
    EXPECT_EQ(ok({"layout", "list"}),
              "id\tname\tdefault\n" + id.substr(0, id.size() - 1) + "\tShort\tY\n");

    // The default layout is the report's when --layout is not given.
    const std::string html = out.file("d.html");
    EXPECT_EQ(ok(with({"report", html}, kNovember)), "");
    const std::string page = readFile(html);
    EXPECT_NE(page.find("<title>Short &amp; sweet</title>"), std::string::npos);
    EXPECT_NE(page.find("<h2 />\r\n"), std::string::npos);
    EXPECT_NE(page.find("<tr>\r\n<td class=\"Data\">11/3/2026</td>\r\n"
                        "<td class=\"Data\" align=\"right\">0.17h</td>\r\n</tr>\r\n"),
              std::string::npos);
    EXPECT_EQ(page.find("Report Date"), std::string::npos);

    EXPECT_EQ(ok({"layout", "rename", "Short", "Brief"}), "");
    refused({"layout", "show", "Short"}, "There is no saved report named Short.");
    const std::string shown = ok({"layout", "show", "Brief"});
    EXPECT_NE(shown.find("title\tShort & sweet\ntype\t1\ndateSelection\t0\n"), std::string::npos);
    EXPECT_NE(shown.find("hideReportDate\t1\nfieldOrder\t01234a95bcde678fghijklmnopqrst\n"
                         "fieldMask\t33\n"),
              std::string::npos);
    EXPECT_EQ(ok({"layout", "default", "none"}), "");
    EXPECT_EQ(ok({"settings", "get", "DefReport"}), "\n");
    EXPECT_EQ(ok({"layout", "delete", "Brief"}), "");
    EXPECT_EQ(ok({"layout", "list"}), "id\tname\tdefault\n");
}

TEST_F(ExportCli, FailuresAndBadUsage) {
    addNovember();
    const std::string missing = out.file("missing/x.csv");
    RunResult r = run(with({"export", "csv", missing}, kNovember));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err,
              "Export failed. Please make sure there is enough storage space and try agin.\n"
              "quillarbor: cannot create " +
                  missing + ": No such file or directory\n");
    r = run(with({"export", "xml", "/dev/full"}, kNovember));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err,
              "Export failed. Please make sure there is enough storage space and try agin.\n"
              "quillarbor: cannot write /dev/full: No space left on device\n");
    r = run(with({"report", "/dev/full"}, kNovember));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err,
              "Report generation has failed.\n"
              "quillarbor: cannot write /dev/full: No space left on device\n");

    const Words usage[] = {
        {"export", "csv", out.file("x.csv")},
        {"export", "json", out.file("x.json"), "--from", "2026-11-01", "--to", "2026-11-30"},
        with({"export", "csv"}, kNovember),
        {"report", out.file("x.html"), "--from", "2026-11-31", "--to", "2026-11-30"},
        {"layout", "frobnicate"},
        {"layout", "save"},
    };
    for (const Words& words : usage) EXPECT_EQ(run(words).status, 2) << joined(words);
    refused(with({"report", out.file("x.html"), "--layout", "Nope"}, kNovember),
            "There is no saved report named Nope.");
}

}  // namespace
}  // namespace qb::testing
