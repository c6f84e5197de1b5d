#include <algorithm>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

class ViewsCli : public CliTest {
  protected:
    // Three entries in the week of 2026-11-15 and one the week after.
    void addWeek() {
        design =
            addEntry({"--client", "Acme", "--project", "Web", "--phase", "Build", "--task",
                      "Design", "--duration", "1.99", "--start", "10:00", "--date", "2026-11-17"});
        support =
            addEntry({"--client", "Acme", "--task", "Support", "--duration", "2", "--billable",
                      "--rate", "90", "--currency", "EUR", "--date", "2026-11-18"});
        beta = addEntry({"--client", "Beta", "--project", "X", "--task", "Y", "--duration", "0.5",
                         "--start", "00:00", "--date", "2026-11-15"});
        addEntry(
            {"--client", "Acme", "--task", "Later", "--duration", "1", "--date", "2026-11-22"});
    }

    std::string design, support, beta;
};

TEST_F(ViewsCli, PeriodsOfEveryKind) {
    struct Case {
        Words args;
        std::string line;
    } cases[] = {
        {{"--view", "day"}, "Saturday, Nov 21, 2026\t2026-11-21T00:00:00\t2026-11-21T23:59:59"},
        {{}, "Week Of Nov 15, 2026\t2026-11-15T00:00:00\t2026-11-21T23:59:59"},
        {{"--view", "month", "--date", "2026-01-31", "--select", "2026-01-31", "--move",
          "next,next"},
         "March 2026\t2026-03-28T00:00:00\t2026-03-31T23:59:00"},
        {{"--view", "custom", "--date", "2026-12-24", "--end", "2026-12-01"},
         "Dec 24, 2026 - Dec 1, 2026\t2026-12-24T00:00:00\t2026-12-01T23:59:59"},
        {{"--view", "week", "--move", "previous,today,next"},
         "Week Of Nov 22, 2026\t2026-11-22T00:00:00\t2026-11-28T23:59:59"},
    };
    for (const Case& c : cases) {
        Words args{"period"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        EXPECT_EQ(ok(args), c.line + "\n") << joined(args);
    }
    setSetting("DefNewStyles", std::to_string(16 | 8));
    EXPECT_EQ(ok({"period"}), "Week Of Nov 16, 2026\t2026-11-16T00:00:00\t2026-11-22T23:59:59\n");
    RunResult bad = run({"period", "--view", "year"});
    EXPECT_EQ(bad.status, 2);
}

TEST_F(ViewsCli, ListColumnsAndStyles) {
    addWeek();
    EXPECT_EQ(ok({"list"}),
              "id\tdate\tstart\tclient\tproject\tphase\ttask\tduration\tbillable\tpaid\tcurrency\t"
              "rate\trateType\tamount\tbillTo\tcustom1\tcustom2\tcustom3\n" +
                  beta +
                  "\t2026-11-15\t00:00\tBeta\tX\t\tY\t0.50\tN\tN\tUSD\t0.00\t0\t0.00\t\t\t\t\n" +
                  design +
                  "\t2026-11-17\t10:00\tAcme\tWeb\tBuild\tDesign\t1.99\tN\tN\tUSD\t0.00\t0\t0."
                  "00\t\t\t\t\n" +
                  support +
                  "\t2026-11-18\t\tAcme\t\t\tSupport\t2.00\tY\tN\tEUR\t90.00\t0\t180.00\t\t\t\t\n");
    EXPECT_EQ(ok({"list", "--rows", "default"}),
              "11/15/2026 0.50h (12:00 AM)\tY\tX\n"
              "11/17/2026 1.99h (10:00 AM)\tDesign\tWeb (Build)\n"
              "11/18/2026 2.00h\tSupport\t\n");
    EXPECT_EQ(ok({"list", "--view", "day", "--date", "2026-11-18", "--rows", "simple"}),
              "11/18/2026\tAcme\t\t\tSupport\t2.00\t\t\t\t\t\n");
    EXPECT_EQ(
        ok({"list", "--rows", "tree"}),
        "11/15/2026\n  Beta\n    X\n      Y\n        0.50 (12:00 AM)\n"
        "11/17/2026\n  Acme\n    Web\n      Build\n        Design\n          1.99 (10:00 AM)\n"
        "11/18/2026\n  Acme\n    Support\n      2.00\n      EUR 180.00\n");
    setSetting("Sort", "1");
    std::string arranged = ok({"list", "--rows", "simple"});
    EXPECT_EQ(arranged.substr(0, arranged.find('\n')),
              "11/17/2026\tAcme\tWeb\tBuild\tDesign\t1.99\t10:00 AM\t\t\t\t");
}

TEST_F(ViewsCli, TheFilterChoosesTheListedEntries) {
    addWeek();
    EXPECT_EQ(ok({"filter", "set", "--client", "Acme", "--no-non-billable"}), "");
    std::string shown = ok({"filter", "show"});
    EXPECT_EQ(shown,
              "client\tAcme\nproject\t\nphase\t\ntask\t\nbillTo\t\ncurrency\t\ncustom1\t\n"
              "custom2\t\ncustom3\t\nshowUnpaid\t1\nshowPaid\t1\nshowNonBillable\t0\n"
              "rateType\t-1\n");
    EXPECT_EQ(ok({"list", "--rows", "simple"}), "11/18/2026\tAcme\t\t\tSupport\t2.00\t\t\t\t\t\n");
    ok({"filter", "unpaid"});
    EXPECT_NE(ok({"filter", "show"}).find("showPaid\t0\nshowNonBillable\t0\n"), std::string::npos);
    ok({"filter", "reset"});
    EXPECT_EQ(ok({"list", "--rows", "simple"}).size(), ok({"list", "--rows", "simple"}).size());
    std::string all = ok({"list", "--rows", "simple"});
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 3);
}

TEST_F(ViewsCli, SummaryOfTheWeek) {
    addWeek();
    EXPECT_EQ(ok({"summary"}),
              "Period Type:\tWeek\t\n"
              "Period:\t11/15/2026\t\n"
              "Number of Items:\t3\t\n"
              "\t\t\n"
              "Total:\t\t\n"
              "Billable Hours:\t2.00h\t44.5%\n"
              "Non Billable Hours:\t2.49h\t55.5%\n"
              "Hours:\t4.49\t\n"
              "\t\t\n"
              "Total:\t\t\n"
              "Unpaid Amount:\t180.00\t\n"
              "Paid Amount:\t0.00\t\n"
              "Amount:\t180.00\t\n"
              "\t\t\n"
              "Total:\t\t\n"
              "\t2.00h\t44.5%\n"
              "Web\t1.99h\t44.3%\n"
              "X\t0.50h\t11.1%\n");
}

}  // namespace
}  // namespace qb::testing
