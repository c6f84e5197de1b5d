// What the command line does with numbers, dates and texts it cannot take
// as given: it refuses them with a message and exit 2, and changes nothing.
// Numbers it takes keep their value to the hundredth.

#include <filesystem>
#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using InputCli = CliTest;

constexpr const char* kDurationRange = "Duration must be between 0 and 655.35 hours.";
constexpr const char* kRateRange = "Rate must be between 0 and 42,949,672.95.";

const Words kEntry = {"entry", "add", "--client", "Acme", "--task", "Design"};

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST_F(InputCli, TypedHoursAndRatesAreCutInDecimal) {
    struct Case {
        const char* typed;
        const char* stored;
    };
    // Each of these falls just below its value as a binary double.
    const Case cases[] = {
        {"2.30", "230"},    {"8.70", "870"}, {"1.16", "116"},     {"1.239", "123"},
        {"12.999", "1299"}, {"4.35", "435"}, {"655.35", "65535"}, {"0.29", "29"},
    };
    for (const Case& c : cases) {
        const std::string id = addEntry({"--client", "Acme", "--task", "Design", "--duration",
                                         c.typed, "--billable", "--rate", c.typed});
        auto e = shown(id);
        EXPECT_EQ(e["duration"], c.stored) << c.typed;
        EXPECT_EQ(e["rate"], c.stored) << c.typed;
    }
}

TEST_F(InputCli, SavingAgainKeepsWhatWasNotTouched) {
    const std::string id = addEntry({"--client", "Acme", "--task", "Design", "--duration", "0.17",
                                     "--billable", "--rate", "1.15"});
    const std::string copied = ok({"entry", "copy", id, "--until", "2026-11-23"});
    // Granularity turned on afterwards does not round the stored hours up
    // when another field changes.
    setSetting("DefNewStyles", std::to_string(16 | 0x4000));
    setSetting("MinTime", "15");
    ok({"entry", "update", id, "--task", "Review"});
    ok({"entry", "update", id, "--note", "again", "--currency", "EUR"});
    auto e = shown(id);
    EXPECT_EQ(e["task"], "Review");
    EXPECT_EQ(e["duration"], "17");
    EXPECT_EQ(e["rate"], "115");
    // The copy's Duration box starts with the entry's hours: kept too.
    const std::string copy = copied.substr(0, copied.find('\n'));
    EXPECT_EQ(field(copy, "duration"), "17");
    // Hours typed anew go through the rule.
    ok({"entry", "update", id, "--duration", "0.2"});
    EXPECT_EQ(field(id, "duration"), "25");
}

TEST_F(InputCli, NumbersOutOfRangeAreRefusedAndNothingIsSaved) {
    const struct {
        Words fields;
        const char* message;
    } cases[] = {
        {{"--duration", "-1"}, kDurationRange},
        {{"--duration", "-0.01"}, kDurationRange},
        {{"--duration", "655.36"}, kDurationRange},
        {{"--duration", "700"}, kDurationRange},
        {{"--duration", "1", "--billable", "--rate", "-5"}, kRateRange},
        {{"--duration", "1", "--billable", "--rate", "42949672.96"}, kRateRange},
    };
    for (const auto& c : cases) refused(with(kEntry, c.fields), c.message);
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");

    const std::string id = addEntry(
        {"--client", "Acme", "--task", "Design", "--duration", "2", "--billable", "--rate", "50"});
    refused({"entry", "update", id, "--duration", "1000"}, kDurationRange);
    refused({"entry", "update", id, "--rate", "-1"}, kRateRange);
    refused({"entry", "copy", id, "--duration", "-2"}, kDurationRange);
    auto e = shown(id);
    EXPECT_EQ(e["duration"] + " " + e["rate"], "200 5000");
    // With a 15-minute step, 655.35 hours would become 655.50.
    setSetting("DefNewStyles", std::to_string(16 | 0x4000));
    setSetting("MinTime", "15");
    refused(with(kEntry, {"--duration", "655.35"}), kDurationRange);
}

TEST_F(InputCli, BillingOptionsNeedABillableEntry) {
    const Words options[] = {
        {"--rate", "50"},     {"--paid"},           {"--currency", "EUR"},
        {"--bill-to", "Bob"}, {"--rate-type", "3"},
    };
    const std::string id = addEntry({"--client", "Acme", "--task", "Design", "--duration", "1"});
    for (const Words& option : options) {
        for (const Words& args : {with(with(kEntry, {"--duration", "1"}), option),
                                  with(with(kEntry, {"--non-billable"}), option),
                                  with({"entry", "update", id}, option)}) {
            RunResult r = run(args);
            EXPECT_EQ(r.status, 2) << joined(args);
            EXPECT_EQ(r.out, "") << joined(args);
            EXPECT_TRUE(contains(r.err, option[0]) && contains(r.err, "add --billable"))
                << joined(args) << ": " << r.err;
        }
    }
    EXPECT_EQ(field(id, "billable"), "0");
    // With --billable they are taken.
    ok({"entry", "update", id, "--billable", "--rate", "50", "--paid", "--currency", "EUR",
        "--bill-to", "Bob", "--rate-type", "3"});
    auto e = shown(id);
    EXPECT_EQ(e["billable"] + " " + e["paid"] + " " + e["rate"] + " " + e["currency"] + " " +
                  e["billTo"] + " " + e["rateType"],
              "1 1 5000 EUR Bob 3");
    // --unpaid names no box of a non-billable entry's page that matters.
    ok({"entry", "update", id, "--non-billable", "--unpaid"});
}

TEST_F(InputCli, ControlCharactersAreRefusedOutsideNotes) {
    const std::string id = addEntry({"--client", "Acme", "--task", "Design", "--duration", "1"});
    const std::string cases[] = {"A\tB", "A\nB", "A\rB", "\x01", "A\x7f", "A\xc2\x85"};
    for (const std::string& text : cases) {
        for (const Words& args : {
                 with(kEntry, {"--project", text}),
                 with(kEntry, {"--duration", "1", "--custom2", text}),
                 Words{"entry", "update", id, "--client", text},
                 Words{"entry", "update", id, "--billable", "--bill-to", text},
                 Words{"client", "add", text},
                 Words{"rate", "add", "--default", "--type", "0", "--description", text},
                 Words{"droplist", "add", "phase", text},
             }) {
            RunResult r = run(args);
            EXPECT_EQ(r.status, 2) << joined(args);
            EXPECT_TRUE(contains(r.err, "control character")) << joined(args) << ": " << r.err;
        }
    }
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\tAcme\n");
    EXPECT_EQ(ok({"rate", "list"}), "id\tclientId\tclient\ttype\trate\tdescription\tflag\n");
    // A note may hold line breaks and tabs.
    ok({"entry", "update", id, "--note", "one\ttwo\r\nthree"});
    EXPECT_EQ(field(id, "note"), "one\ttwo\\r\\nthree");
}

TEST_F(InputCli, ImpossibleDatesAreNamed) {
    const struct {
        Words args;
        const char* says;
    } cases[] = {
        {with(kEntry, {"--date", "2024-02-30"}), "2024-02-30 does not exist (2024-02 has 29 days)"},
        {with(kEntry, {"--date", "2023-02-29"}), "2023-02-29 does not exist (2023-02 has 28 days)"},
        {with(kEntry, {"--date", "2024-04-31"}), "2024-04-31 does not exist (2024-04 has 30 days)"},
        {with(kEntry, {"--date", "2024-13-01"}), "2024-13-01 does not exist (a month is 01 to 12)"},
        {with(kEntry, {"--date", "2024-01-00"}), "2024-01-00 does not exist"},
        {with(kEntry, {"--date", "1600-12-31"}), "does not exist (dates run from 1601 to 30827)"},
        {with(kEntry, {"--date", "24-2-3"}), "--date takes a date as YYYY-MM-DD"},
        {{"list", "--view", "day", "--date", "2025-02-29"}, "--date: the date 2025-02-29"},
        {{"export", "csv", "x.csv", "--from", "2024-02-30", "--to", "2024-03-01"},
         "--from: the date 2024-02-30 does not exist"},
        {{"export", "csv", "x.csv", "--from", "2024-02-01", "--to", "2024-02-31"},
         "--to: the date 2024-02-31 does not exist"},
    };
    for (const auto& c : cases) {
        RunResult r = run(c.args);
        EXPECT_EQ(r.status, 2) << joined(c.args);
        EXPECT_TRUE(contains(r.err, c.says)) << joined(c.args) << ": " << r.err;
    }
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");
}

TEST_F(InputCli, DataNeedsADirectory) {
    // Every place an empty name could fall back to.
    TempDir home;
    const Words env = {"HOME=" + home.path(), "XDG_DATA_HOME=" + home.file("xdg"),
                       "QUILLARBOR_DATA=" + home.file("env")};
    const Words cases[] = {
        {"--data", "", "client", "add", "Acme"},
        {"--data=", "client", "add", "Acme"},
        {"--data"},
        {"client", "list", "--data"},
    };
    for (const Words& args : cases) {
        RunResult r = runQuillarbor(args, env);
        EXPECT_EQ(r.status, 2) << joined(args);
        EXPECT_EQ(r.out, "") << joined(args);
        EXPECT_TRUE(contains(r.err, "--data")) << joined(args) << ": " << r.err;
    }
    EXPECT_TRUE(contains(runQuillarbor({"--data"}, env).err, "--data needs a directory"));
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

}  // namespace
}  // namespace qb::testing
