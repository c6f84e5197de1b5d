#include "report/report_generator.h"

#include <string>

#include "export/export_fixture.h"
#include "export/markup_document.h"
#include "report/report_fields.h"

namespace qb::testing {
namespace {

constexpr char kHead[] =
    "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.01 Transitional//EN\" "
    "\"http://www.w3.org/TR/html4/loose.dtd\">\r\n"
    "<html xmlns=\"http://www.w3.org/1999/xhtml\">\r\n"
    "<head>\r\n"
    "<title>Quillarbor Summary Report</title>\r\n"
    "<meta name=\"Generator\" content=\"Quillarbor\" />\r\n"
    "<style type=\"text/css\">table.Data { border : 2px solid Black; border-collapse : "
    "collapse; font-size : 10pt; }\r\nth.Data, td.Data { border : 1px solid black;  }\r\n"
    "</style>\r\n"
    "</head>\r\n"
    "<body>\r\n"
    "<h1>Quillarbor Summary Report</h1>\r\n";

constexpr char kTable[] = "<table border=\"0\" class=\"Data\" cellpadding=\"2\">\r\n";

constexpr char kBuiltInHeaderRow[] =
    "<tr>\r\n"
    "<th class=\"Data\">Entry Date</th>\r\n"
    "<th class=\"Data\">Client</th>\r\n"
    "<th class=\"Data\">Project</th>\r\n"
    "<th class=\"Data\">Phase</th>\r\n"
    "<th class=\"Data\">Task</th>\r\n"
    "<th class=\"Data\">Bill To</th>\r\n"
    "<th class=\"Data\">Start Time</th>\r\n"
    "<th class=\"Data\">Duration</th>\r\n"
    "</tr>\r\n";

constexpr char kTail[] = "</p>\r\n</body>\r\n</html>\r\n";

class ReportTest : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        request.criteria = &criteria;
        request.env = env;
        request.today = makeDate(2004, 4, 5);
    }

    // Beta billable unpaid, Acme non-billable with a rate, Acme billable paid.
    void addThree() {
        TimeEntry beta = entry(entryDate(2004, 3, 1, 9, 0), u"Beta", u"T1", 150);
        bill(beta, 6000);
        beta.project = u"P";
        beta.billTo = u"Bob";
        add(beta);
        TimeEntry acmeFree = entry(entryDate(2004, 3, 2), u"Acme", u"T2", 100);
        acmeFree.rate = 4000;
        add(acmeFree);
        TimeEntry acmePaid = entry(entryDate(2004, 3, 3, 14, 15), u"Acme", u"T3", 50);
        bill(acmePaid, 8000, true);
        add(acmePaid);
        add(entry(entryDate(2004, 4, 1), u"Outside", u"T", 100));
    }

    std::string generate() {
        const std::string path = dir.file("report.html");
        ReportGenerator generator(table, request.layout, request.env, request.today);
        EXPECT_TRUE(generator.generate(path, criteria));
        return readFile(path);
    }

    EntryFilter criteria = marchCriteria();
    ReportRequest request;
};

TEST_F(ReportTest, GroupedByClient) {
    addThree();
    request.layout = clientLayout();
    const std::string blank = "<td class=\"Data\"> </td>\r\n";
    const std::string empty = "<td class=\"Data\" />\r\n";
    EXPECT_EQ(generate(),
              std::string(kHead) + "<h2>From 3/1/2004 To 3/31/2004</h2>\r\n" +
                  "<h3>Client: Acme</h3>\r\n" + kTable + kBuiltInHeaderRow +
                  "<tr>\r\n<td class=\"Data\">3/2/2004</td>\r\n<td class=\"Data\">Acme</td>\r\n" +
                  empty + empty + "<td class=\"Data\">T2</td>\r\n" + empty +
                  "<td class=\"Data\">12:00 AM</td>\r\n"
                  "<td class=\"Data\" align=\"right\">1.00h</td>\r\n</tr>\r\n"
                  "<tr>\r\n<td class=\"Data\">3/3/2004</td>\r\n<td class=\"Data\">Acme</td>\r\n" +
                  empty + empty + "<td class=\"Data\">T3</td>\r\n" + empty +
                  "<td class=\"Data\">2:15 PM</td>\r\n"
                  "<td class=\"Data\" align=\"right\">0.50h</td>\r\n</tr>\r\n"
                  "<tr>\r\n<td class=\"Data\">Total</td>\r\n" +
                  blank + blank + blank + blank + blank + blank +
                  "<td class=\"Data\" align=\"right\">1.50h</td>\r\n</tr>\r\n"
                  "</table>\r\n"
                  "<h3>Client: Beta</h3>\r\n" +
                  kTable + kBuiltInHeaderRow +
                  "<tr>\r\n<td class=\"Data\">3/1/2004</td>\r\n<td class=\"Data\">Beta</td>\r\n"
                  "<td class=\"Data\">P</td>\r\n" +
                  empty +
                  "<td class=\"Data\">T1</td>\r\n<td class=\"Data\">Bob</td>\r\n"
                  "<td class=\"Data\">9:00 AM</td>\r\n"
                  "<td class=\"Data\" align=\"right\">1.50h</td>\r\n</tr>\r\n"
                  "<tr>\r\n<td class=\"Data\">Total</td>\r\n" +
                  blank + blank + blank + blank + blank + blank +
                  "<td class=\"Data\" align=\"right\">1.50h</td>\r\n</tr>\r\n"
                  "</table>\r\n"
                  "<p>\r\n"
                  "<span>Total Billable Hours: 2.00h</span>\r\n<br />\r\n"
                  "<span>Total Unpaid Amount: 90.00</span>\r\n<br />\r\n"
                  "<span>Total Paid Amount: 40.00</span>\r\n<br />\r\n"
                  "<span>Total Non-Billable Hours: 1.00h</span>\r\n<br />\r\n"
                  "<span style=\"font-size : xx-small;\">Report Date: 4/5/2004</span>\r\n"
                  "<br />\r\n" +
                  kTail);
}

// Group amounts count every entry; the footer's amounts only billable ones.
TEST_F(ReportTest, GroupAmountsWithRulesAndHiddenLines) {
    addThree();
    ReportLayout layout = clientLayout();
    layout.setDateSelection(kStartDateOnly);
    layout.setGroupRule(1);
    layout.setFieldOrder(u"0f512346789abcdegh");
    layout.setFieldMask(1u << 0 | 1u << 15 | 1u << 5);
    layout.setFooterHidden(FooterLine::kBillableHours, 1);
    layout.setFooterHidden(FooterLine::kReportDate, 1);
    request.layout = layout;
    const std::string header =
        "<tr>\r\n<th class=\"Data\">Entry Date</th>\r\n<th class=\"Data\">Amount</th>\r\n"
        "<th class=\"Data\">Duration</th>\r\n</tr>\r\n";
    const auto row = [](const char* date, const char* amount, const char* hours) {
        return std::string("<tr>\r\n<td class=\"Data\">") + date +
               "</td>\r\n<td class=\"Data\" align=\"right\">" + amount +
               "</td>\r\n<td class=\"Data\" align=\"right\">" + hours + "</td>\r\n</tr>\r\n";
    };
    EXPECT_EQ(generate(), std::string(kHead) + "<h2>Date: 3/1/2004</h2>\r\n" + "<hr />\r\n" +
                              kTable + header + row("3/2/2004", "40.00", "1.00h") +
                              row("3/3/2004", "40.00", "0.50h") + row("Total", "80.00", "1.50h") +
                              "</table>\r\n<hr />\r\n" + kTable + header +
                              row("3/1/2004", "90.00", "1.50h") + row("Total", "90.00", "1.50h") +
                              "</table>\r\n"
                              "<p>\r\n"
                              "<span>Total Unpaid Amount: 90.00</span>\r\n<br />\r\n"
                              "<span>Total Paid Amount: 40.00</span>\r\n<br />\r\n"
                              "<span>Total Non-Billable Hours: 1.00h</span>\r\n<br />\r\n" +
                              kTail);
}

TEST_F(ReportTest, EmptyFlatReport) {
    request.layout = dateLayout();
    EXPECT_EQ(generate(), std::string(kHead) + "<h2>Date: 3/1/2004</h2>\r\n" + kTable +
                              kBuiltInHeaderRow +
                              "</table>\r\n"
                              "<p>\r\n"
                              "<span>Total Billable Hours: 0.00h</span>\r\n<br />\r\n"
                              "<span>Total Unpaid Amount: 0.00</span>\r\n<br />\r\n"
                              "<span>Total Paid Amount: 0.00</span>\r\n<br />\r\n"
                              "<span>Total Non-Billable Hours: 0.00h</span>\r\n<br />\r\n"
                              "<span style=\"font-size : xx-small;\">Report Date: 4/5/2004</span>"
                              "\r\n<br />\r\n" +
                              kTail);
}

TEST_F(ReportTest, FlatReportWithHiddenDurationStillCountsHours) {
    addThree();
    ReportLayout layout = dateLayout();
    layout.setDateSelection(kNoDates);
    layout.setFieldMask(layout.fieldMask() & ~(1u << kFieldDuration));
    for (int line = 0; line < kFooterLineCount; ++line) {
        layout.setFooterHidden(static_cast<FooterLine>(line), 1);
    }
    layout.setFooterHidden(FooterLine::kBillableHours, 0);
    request.layout = layout;
    const std::string html = generate();
    EXPECT_EQ(html.find("Duration"), std::string::npos);
    EXPECT_NE(html.find("<h1>Quillarbor Summary Report</h1>\r\n<h2 />\r\n"), std::string::npos);
    // Three rows in date order, then the total row with only its first cell.
    EXPECT_LT(html.find("3/1/2004"), html.find("3/2/2004"));
    EXPECT_LT(html.find("3/2/2004"), html.find("3/3/2004"));
    std::string total = "<tr>\r\n<td class=\"Data\">Total</td>\r\n";
    for (int i = 0; i < 6; ++i) total += "<td class=\"Data\"> </td>\r\n";
    EXPECT_NE(html.find(total + "</tr>\r\n</table>\r\n"), std::string::npos);
    EXPECT_NE(html.find("<p>\r\n<span>Total Billable Hours: 2.00h</span>\r\n<br />\r\n</p>"),
              std::string::npos);
}

TEST_F(ReportTest, CellsOfEveryField) {
    TimeEntry e = entry(entryDate(2004, 3, 1, 13, 5), u"C", u"T", 125);
    bill(e, 4000, true, 3);
    e.currency = u"USD";
    e.custom2 = u"c2";
    e.notes = noteBytes(u"n1\r\nn2");
    env.settings.custom2Caption = u"Ref";
    const struct {
        int field;
        std::u16string title;
        std::u16string cell;
    } cases[] = {
        {0, u"Entry Date", u"3/1/2004"},
        {5, u"Duration", u"1.25h"},
        {6, u"Currency", u"USD"},
        {7, u"Billable/Non-Billable", u"Yes"},
        {8, u"Paid/Unpaid", u"Yes"},
        {9, u"Start Time", u"1:05 PM"},
        {12, u"Ref", u"c2"},
        {14, u"Rate Type", u"Fixed Rate"},
        {15, u"Amount", u"40.00"},
        {16, u"Notes", u"n1\r\nn2"},
        {17, u"Rate", u"40.00"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(reportFieldTitle(c.field, env.settings), c.title) << c.field;
        EXPECT_EQ(reportCellText(c.field, e, env), c.cell) << c.field;
    }
}

TEST_F(ReportTest, WriteFailureFails) {
    ReportGenerator generator(table, clientLayout(), env, request.today);
    EXPECT_FALSE(generator.generate("/dev/full", criteria));
    EXPECT_FALSE(generator.generate(dir.file("no/such.html"), criteria));
}

}  // namespace
}  // namespace qb::testing
