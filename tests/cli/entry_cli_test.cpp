// entry add / update / show / delete / toggle-paid, driven through the binary.

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using EntryCli = CliTest;

constexpr const char* kClientBlank =
    "Please enter a client name.  You cannot leave Client field blank.";
constexpr const char* kDurationBlank = "You must enter a duration in hours. (e.g. 1.5, or 0.5)";
constexpr const char* kTaskBlank = "Please enter a task name.  You cannot have a blank Task field.";
constexpr const char* kNumericOnly = "This field accepts numeric values only.";

const Words kMinimal = {"--client", "Acme", "--task", "Design", "--duration", "1.5"};

TEST_F(EntryCli, NewEntryTakesTodayAndTheDefaults) {
    const std::string id = addEntry(kMinimal);
    EXPECT_EQ(ok({"entry", "show", id}), "id\t" + id +
                                             "\n"
                                             "date\t2026-11-21T00:00:00.000\n"
                                             "client\tAcme\n"
                                             "project\t\n"
                                             "phase\t\n"
                                             "task\tDesign\n"
                                             "duration\t150\n"
                                             "billable\t0\n"
                                             "paid\t0\n"
                                             "currency\tUSD\n"
                                             "rate\t0\n"
                                             "rateType\t0\n"
                                             "billTo\t\n"
                                             "custom1\t\n"
                                             "custom2\t\n"
                                             "custom3\t\n"
                                             "note\t\n"
                                             "amount\t0.00\n");
}

TEST_F(EntryCli, EveryFieldIsStoredAndShownInOrder) {
    const std::string id = addEntry(
        {"--date",    "2026-03-04", "--start",    "09:30",   "--client",
         "Acme",      "--project",  "Web",        "--phase", "Build",
         "--task",    "Design",     "--duration", "2.5",     "--billable",
         "--paid",    "--currency", "EUR",        "--rate",  "40",
         "--bill-to", "Bob",        "--custom1",  "c1",      "--custom2",
         "c2",        "--custom3",  "c3",         "--note",  "first line\nsecond\r\nthird"});
    // The start time is marked by seconds = 1.
    EXPECT_EQ(ok({"entry", "show", id}), "id\t" + id +
                                             "\n"
                                             "date\t2026-03-04T09:30:01.000\n"
                                             "client\tAcme\n"
                                             "project\tWeb\n"
                                             "phase\tBuild\n"
                                             "task\tDesign\n"
                                             "duration\t250\n"
                                             "billable\t1\n"
                                             "paid\t1\n"
                                             "currency\tEUR\n"
                                             "rate\t4000\n"
                                             "rateType\t0\n"
                                             "billTo\tBob\n"
                                             "custom1\tc1\n"
                                             "custom2\tc2\n"
                                             "custom3\tc3\n"
                                             "note\tfirst line\\nsecond\\r\\nthird\n"
                                             "amount\t100.00\n");
}

TEST_F(EntryCli, TextBoxesCutAtTheirLengthInCharacters) {
    const auto many = [](std::size_t n, const std::string& unit) {
        std::string text;
        for (std::size_t i = 0; i < n; ++i) text += unit;
        return text;
    };
    const std::string id = addEntry(
        {"--client", many(130, "é"), "--project", many(127, "é"), "--phase", many(128, "é"),
         "--task", many(200, "t"), "--duration", "1", "--billable", "--bill-to", many(70, "é"),
         "--currency", many(20, "€"), "--custom1", many(64, "é"), "--custom2", "Ünïcødé ✓ 😀",
         // A surrogate pair is never split: 62 + 2 units, cut at 63.
         "--custom3", many(62, "c") + "😀"});
    auto e = shown(id);
    EXPECT_EQ(e["client"], many(127, "é"));
    EXPECT_EQ(e["project"], many(127, "é"));
    EXPECT_EQ(e["phase"], many(127, "é"));
    EXPECT_EQ(e["task"], many(127, "t"));
    EXPECT_EQ(e["billTo"], many(64, "é"));
    EXPECT_EQ(e["currency"], many(16, "€"));
    EXPECT_EQ(e["custom1"], many(63, "é"));
    EXPECT_EQ(e["custom2"], "Ünïcødé ✓ 😀");
    EXPECT_EQ(e["custom3"], many(62, "c"));
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\t" + many(127, "é") + "\n");
}

TEST_F(EntryCli, NewEntryDefaultsFollowTheSettings) {
    struct Case {
        const char* flags;
        const char* currency;
        Words extra;
        const char* billable;
        const char* shownCurrency;
    };
    const Case cases[] = {
        {"16", "USD", {}, "0", "USD"},
        {"17", "USD", {}, "1", "USD"},
        {"17", "USD", {"--non-billable"}, "0", "USD"},
        {"16", "USD", {"--billable"}, "1", "USD"},
        // A non-billable entry takes the default currency too.
        {"16", "EUR", {}, "0", "EUR"},
        {"17", "EUR", {"--currency", "CHF"}, "1", "CHF"},
    };
    for (const Case& c : cases) {
        setSetting("DefNewStyles", c.flags);
        setSetting("DefCurr", c.currency);
        const std::string id = addEntry(with(kMinimal, c.extra));
        EXPECT_EQ(field(id, "billable"), c.billable) << c.flags << " " << joined(c.extra);
        EXPECT_EQ(field(id, "currency"), c.shownCurrency) << c.flags << " " << joined(c.extra);
    }
}

TEST_F(EntryCli, DurationRuleRoundsUpToTheGranularityThenTruncates) {
    struct Case {
        const char* flags;
        const char* minTime;
        const char* typed;
        const char* stored;
    };
    const Case cases[] = {
        // Granularity on: always up to the next whole step.
        {"16400", "15", "1.1", "125"},
        {"16400", "15", "1.25", "125"},
        {"16400", "15", "0.01", "25"},
        {"16400", "6", "0.05", "10"},
        {"16400", "20", "0.5", "66"},
        // Off: hundredths truncated, never rounded.
        {"16", "15", "1.1", "110"},
        {"16", "15", "1.239", "123"},
        {"16", "15", "0", "0"},
        {"16", "15", "655.35", "65535"},
        // Commas and extra points pass the letter test; parsing stops there.
        {"16", "15", "1,5", "100"},
        {"16", "15", "2.5.1", "250"},
        // The box holds six characters, so the letter never arrives.
        {"16", "15", "1.2345x", "123"},
    };
    for (const Case& c : cases) {
        setSetting("DefNewStyles", c.flags);
        setSetting("MinTime", c.minTime);
        const std::string id = addEntry({"--client", "A", "--task", "T", "--duration", c.typed});
        EXPECT_EQ(field(id, "duration"), c.stored)
            << c.typed << " flags " << c.flags << " minTime " << c.minTime;
    }
}

TEST_F(EntryCli, RefusalsComeInTheEditorsOrderAndStoreNothing) {
    struct Case {
        Words fields;
        const char* message;
    };
    const Case cases[] = {
        {{"--task", "", "--duration", "x"}, kClientBlank},
        {{"--client", "", "--task", "T"}, kClientBlank},
        {{"--client", "A", "--duration", ""}, kDurationBlank},
        {{"--client", "A", "--duration", "1x"}, kTaskBlank},
        {{"--client", "A", "--task", "T", "--duration", "1x"}, kNumericOnly},
        {{"--client", "A", "--task", "T", "--duration", "e1"}, kNumericOnly},
        {{"--client", "A", "--task", "T", "--billable", "--rate", "1e2"}, kNumericOnly},
        {{"--client", "A", "--task", "T", "--duration", "1", "--billable", "--rate", "abc"},
         kNumericOnly},
    };
    for (const Case& c : cases) refused(with({"entry", "add"}, c.fields), c.message);
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");
    EXPECT_EQ(ok({"droplist", "list", "currency"}), "");
}

TEST_F(EntryCli, MalformedOptionsAreUsageErrors) {
    const Words cases[] = {
        {"--date", "2026-02-30"},
        {"--date", "21.11.2026"},
        {"--start", "24:00"},
        {"--start", "9:5"},
        {"--rate-type", "5"},
        {"--rate-type", "x"},
        {"--frob"},
        {"--duration"},
        {"stray"},
    };
    for (const Words& extra : cases) {
        RunResult r = run(with({"entry", "add", "--client", "A", "--task", "T"}, extra));
        EXPECT_EQ(r.status, 2) << joined(extra);
        EXPECT_EQ(r.out, "") << joined(extra);
        EXPECT_NE(r.err.find("Try 'quillarbor entry --help'."), std::string::npos)
            << joined(extra) << ": " << r.err;
    }
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");
}

TEST_F(EntryCli, RateBoxKeepsHundredthsTruncated) {
    struct Case {
        Words fields;
        const char* rate;
        const char* amount;
    };
    const Case cases[] = {
        {{"--billable", "--rate", "0.29"}, "29", "0.58"},
        {{"--billable", "--rate", "12.999"}, "1299", "25.98"},
        {{"--billable", "--rate", "45.5"}, "4550", "91.00"},
        {{"--billable", "--rate", "1,5"}, "100", "2.00"},
        {{"--billable", "--rate", ""}, "0", "0.00"},
    };
    for (const Case& c : cases) {
        const std::string id =
            addEntry(with({"--client", "A", "--task", "T", "--duration", "2"}, c.fields));
        EXPECT_EQ(field(id, "rate"), c.rate) << joined(c.fields);
        EXPECT_EQ(field(id, "amount"), c.amount) << joined(c.fields);
    }
}

TEST_F(EntryCli, NonBillableEntryLeavesTheBillingBoxesOut) {
    const std::string id =
        addEntry({"--client", "A", "--task", "T", "--start", "00:00", "--billable", "--paid",
                  "--rate-type", "3", "--rate", "50", "--bill-to", "X", "--currency", "EUR"});
    ok({"entry", "update", id, "--non-billable"});
    auto e = shown(id);
    // A start of midnight still carries the marker second.
    EXPECT_EQ(e["date"], "2026-11-21T00:00:01.000");
    // Only the flag and the rate change; the rest waits for --billable.
    EXPECT_EQ(e["billable"] + " " + e["paid"] + " " + e["rateType"] + " " + e["rate"] + " " +
                  e["currency"] + " [" + e["billTo"] + "]",
              "0 1 3 0 EUR [X]");
}

TEST_F(EntryCli, AmountFollowsRateTypeAndPreciseMinutes) {
    struct Case {
        const char* flags;
        const char* rateType;
        const char* rate;
        const char* duration;
        const char* amount;
    };
    const Case cases[] = {
        // Fixed: the rate is the whole amount.
        {"16", "3", "150", "8", "150.00"},
        {"16", "3", "150", "0.25", "150.00"},
        // Discount and overtime are plain hourly rates.
        {"16", "4", "60", "2", "120.00"},
        {"16", "1", "60", "2", "120.00"},
        {"16", "0", "60", "0.17", "10.20"},
        {"8208", "0", "60", "0.17", "10.00"},
        {"8208", "0", "60", "0.33", "20.00"},
        {"8208", "0", "60", "0.67", "40.00"},
        // Exact double comparison: an hour or more never matches.
        {"8208", "0", "60", "1.17", "70.20"},
        {"8208", "0", "60", "0.5", "30.00"},
    };
    for (const Case& c : cases) {
        setSetting("DefNewStyles", c.flags);
        const std::string id =
            addEntry({"--client", "A", "--task", "T", "--billable", "--rate-type", c.rateType,
                      "--rate", c.rate, "--duration", c.duration});
        EXPECT_EQ(field(id, "rateType"), c.rateType);
        EXPECT_EQ(field(id, "amount"), c.amount) << "flags " << c.flags << " type " << c.rateType
                                                 << " " << c.rate << " x " << c.duration;
    }
}

TEST_F(EntryCli, UpdateChangesOnlyWhatIsGiven) {
    const std::string id = addEntry({"--client", "Acme", "--project", "Web", "--task", "Design",
                                     "--duration", "1", "--start", "09:30", "--billable", "--rate",
                                     "50", "--rate-type", "3", "--bill-to", "Bob", "--note", "hi"});
    EXPECT_EQ(ok({"entry", "update", id, "--no-start", "--duration", "2"}), id + "\n");
    auto e = shown(id);
    EXPECT_EQ(e["date"], "2026-11-21T00:00:00.000");
    EXPECT_EQ(e["duration"], "200");
    EXPECT_EQ(e["client"] + "/" + e["project"] + "/" + e["task"], "Acme/Web/Design");
    EXPECT_EQ(e["billable"] + " " + e["rate"] + " " + e["rateType"] + " " + e["billTo"],
              "1 5000 3 Bob");
    EXPECT_EQ(e["note"], "hi");
    EXPECT_EQ(e["amount"], "50.00");

    // The billable default applies to new entries only.
    setSetting("DefNewStyles", "17");
    ok({"entry", "update", id, "--date", "2026-11-02", "--start", "14:05", "--non-billable"});
    ok({"entry", "update", id, "--project", "", "--note", ""});
    e = shown(id);
    EXPECT_EQ(e["date"], "2026-11-02T14:05:01.000");
    EXPECT_EQ(e["billable"] + " " + e["rate"] + " " + e["billTo"], "0 0 Bob");
    EXPECT_EQ(e["project"] + "|" + e["note"], "|");
    EXPECT_EQ(e["amount"], "0.00");

    const auto before = shown(id);
    refused({"entry", "update", id, "--client", ""}, kClientBlank);
    refused({"entry", "update", id, "--duration", "two"}, kNumericOnly);
    EXPECT_EQ(shown(id), before);
    refused({"entry", "update", "999999", "--duration", "1"}, "There is no entry 999999.");
}

TEST_F(EntryCli, DeleteNeedsYes) {
    const std::string id = addEntry(kMinimal);
    asksFirst({"entry", "delete", id}, "Are you sure to permanently delete this item?");
    EXPECT_EQ(field(id, "client"), "Acme");
    EXPECT_EQ(ok({"entry", "delete", id, "--yes"}), "");
    refused({"entry", "show", id}, "There is no entry " + id + ".");
    refused({"entry", "delete", id, "--yes"}, "There is no entry " + id + ".");
}

TEST_F(EntryCli, TogglePaidFlipsABillableEntryOnly) {
    const std::string billable = addEntry(with(kMinimal, {"--billable", "--rate", "10"}));
    EXPECT_EQ(ok({"entry", "toggle-paid", billable}), "");
    EXPECT_EQ(field(billable, "paid"), "1");
    ok({"entry", "toggle-paid", billable});
    EXPECT_EQ(field(billable, "paid"), "0");

    const std::string plain = addEntry(kMinimal);
    RunResult r = run({"entry", "toggle-paid", plain});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err, "");
    EXPECT_EQ(field(plain, "paid"), "0");
}

}  // namespace
}  // namespace qb::testing
