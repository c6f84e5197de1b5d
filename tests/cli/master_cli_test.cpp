// Clients, projects, tasks, contacts, rates and drop lists through the binary:
// what saving entries teaches them, and their own commands.

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using MasterCli = CliTest;

constexpr const char* kBlank = "Please enter some text. Blank is not allowed.";
const std::string kRateHeader = "id\tclientId\tclient\ttype\trate\tdescription\tflag\n";

class MasterCliWithRates : public CliTest {
  protected:
    // rate add; answers the printed id without its LF.
    std::string addRate(const std::string& owner, const std::string& type,
                        const std::string& description, const std::string& rate) {
        Words args{"rate", "add"};
        if (owner.empty()) {
            args.push_back("--default");
        } else {
            args.insert(args.end(), {"--client", owner});
        }
        args.insert(args.end(), {"--type", type, "--description", description, "--rate", rate});
        std::string out = ok(args);
        EXPECT_TRUE(out.size() > 1 && out.find_first_not_of("0123456789") == out.size() - 1) << out;
        if (!out.empty()) out.pop_back();
        return out;
    }
};

// One row of `rate list`.
std::string rateRow(const std::string& id, const std::string& clientId, const std::string& client,
                    const std::string& type, const std::string& rate,
                    const std::string& description) {
    return id + "\t" + clientId + "\t" + client + "\t" + type + "\t" + rate + "\t" + description +
           "\t0\n";
}

TEST_F(MasterCli, SavedEntriesTeachClientsProjectsTasksAndContacts) {
    const Words designForBob = {"--client",   "Acme", "--project",  "Web",       "--task", "Design",
                                "--duration", "1",    "--billable", "--bill-to", "Bob"};
    addEntry(designForBob);
    addEntry({"--client", "Acme", "--task", "Review", "--duration", "1", "--billable"});
    addEntry({"--client", "Acme", "--project", "Web", "--task", "Build", "--duration", "1",
              "--non-billable"});
    addEntry({"--client", "Globex", "--task", "Audit", "--duration", "1"});
    // The same entry again teaches nothing new.
    addEntry(designForBob);

    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\tAcme\n2\tGlobex\n");
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\n"
              "project\tWeb\tDesign\n"
              "project\tWeb\tBuild\n"
              "task\tReview\n"
              "contact\tBob\n");
    EXPECT_EQ(ok({"client", "show", "Globex"}), "client\t2\tGlobex\ntask\tAudit\n");
    refused({"client", "show", "acme"}, "There is no client named \"acme\".");
}

TEST_F(MasterCli, NamesDifferingInCaseAreDifferentClients) {
    addEntry({"--client", "acme", "--task", "Lower", "--duration", "1"});
    addEntry({"--client", "Acme", "--task", "Upper", "--duration", "1"});
    EXPECT_EQ(ok({"client", "show", "acme"}), "client\t1\tacme\ntask\tLower\n");
    EXPECT_EQ(ok({"client", "show", "Acme"}), "client\t2\tAcme\ntask\tUpper\n");
    ok({"client", "add", "ACME"});
    refused({"client", "add", "Acme"}, "A client named \"Acme\" already exists.");
    refused({"client", "add", ""}, kBlank);
    const std::string list = ok({"client", "list"});
    for (const char* row : {"\n1\tacme\n", "\n2\tAcme\n", "\n3\tACME\n"}) {
        EXPECT_NE(list.find(row), std::string::npos) << list;
    }
}

TEST_F(MasterCliWithRates, DeletingAClientCascadesButEntriesKeepItsName) {
    const std::string entry = addEntry({"--client", "Acme", "--project", "Web", "--task", "Design",
                                        "--duration", "1", "--billable", "--bill-to", "Bob"});
    addEntry({"--client", "Acme", "--task", "Review", "--duration", "1"});
    addRate("Acme", "0", "Own", "50");
    const std::string house = addRate("", "0", "House", "40");

    asksFirst({"client", "delete", "Acme"},
              "This will also delete all associated projects, tasks, contacts, and rates. "
              "However, time entries are preserved. Are you sure?");
    EXPECT_EQ(ok({"client", "show", "Acme"}).substr(0, 15), "client\t1\tAcme\np");
    EXPECT_EQ(ok({"client", "delete", "Acme", "--yes"}), "");

    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n");
    EXPECT_EQ(ok({"rate", "list"}),
              kRateHeader + rateRow(house, "0", "(Default Rates)", "0", "40.00", "House"));
    EXPECT_EQ(field(entry, "client"), "Acme");
    EXPECT_EQ(field(entry, "project"), "Web");
    // A client of the same name is a new one: new id, nothing of the old.
    addEntry({"--client", "Acme", "--task", "Fresh", "--duration", "1"});
    EXPECT_EQ(ok({"client", "show", "Acme"}), "client\t2\tAcme\ntask\tFresh\n");
    refused({"client", "delete", "Nobody", "--yes"}, "There is no client named \"Nobody\".");
}

TEST_F(MasterCli, ProjectRenameAndDeleteCoverEveryPairOfTheClient) {
    const std::string entry =
        addEntry({"--client", "Acme", "--project", "Web", "--task", "Design", "--duration", "1"});
    addEntry({"--client", "Acme", "--project", "Web", "--task", "Build", "--duration", "1"});
    addEntry({"--client", "Acme", "--project", "App", "--task", "Design", "--duration", "1"});
    addEntry({"--client", "Globex", "--project", "Web", "--task", "Design", "--duration", "1"});

    EXPECT_EQ(ok({"project", "rename", "Acme", "Web", "Site"}), "");
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\n"
              "project\tSite\tDesign\n"
              "project\tSite\tBuild\n"
              "project\tApp\tDesign\n");
    EXPECT_EQ(ok({"client", "show", "Globex"}), "client\t2\tGlobex\nproject\tWeb\tDesign\n");
    EXPECT_EQ(field(entry, "project"), "Web");
    refused({"project", "rename", "Acme", "Web", "Other"}, "There is no project \"Web\".");
    refused({"project", "rename", "Acme", "Site", ""}, kBlank);

    asksFirst({"project", "delete", "Acme", "Site"},
              "Are you sure to delete this project and all its tasks?");
    ok({"project", "delete", "Acme", "Site", "--yes"});
    ok({"project", "add", "Acme", "New"});
    refused({"project", "add", "Acme", "New"}, "The project \"New\" already exists.");
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\nproject\tApp\tDesign\nproject\tNew\t\n");
}

TEST_F(MasterCli, TasksAndContactsAddAndDelete) {
    ok({"client", "add", "Acme"});
    struct Step {
        Words args;
        const char* refusal;  // null: succeeds
    };
    const Step steps[] = {
        {{"task", "add", "Acme", "Plan"}, nullptr},
        {{"task", "add", "Acme", "Plan"}, "The task \"Plan\" already exists."},
        {{"task", "add", "Acme", ""}, kBlank},
        {{"task", "add", "Nobody", "Plan"}, "There is no client named \"Nobody\"."},
        {{"task", "add", "Acme", "Sketch", "--project", "Web"}, nullptr},
        {{"task", "add", "Acme", "Draft", "--project", "Web"}, nullptr},
        {{"task", "delete", "Acme", "Draft", "--project", "Web"}, nullptr},
        {{"task", "delete", "Acme", "Draft", "--project", "Web"},
         "There is no task \"Draft\" in project \"Web\"."},
        {{"task", "delete", "Acme", "Plan"}, nullptr},
        {{"task", "delete", "Acme", "Plan"}, "There is no task \"Plan\"."},
        {{"task", "add", "Acme", "Check"}, nullptr},
        {{"contact", "add", "Acme", "Bob"}, nullptr},
        {{"contact", "add", "Acme", "Carol"}, nullptr},
        {{"contact", "add", "Acme", "Bob"}, "The contact \"Bob\" already exists."},
        {{"contact", "add", "Acme", ""}, kBlank},
        {{"contact", "delete", "Acme", "Carol"}, nullptr},
        {{"contact", "delete", "Acme", "Carol"}, "There is no contact \"Carol\"."},
    };
    for (const Step& s : steps) {
        if (s.refusal) {
            refused(s.args, s.refusal);
        } else {
            EXPECT_EQ(ok(s.args), "") << joined(s.args);
        }
    }
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\nproject\tWeb\tSketch\ntask\tCheck\ncontact\tBob\n");
}

TEST_F(MasterCliWithRates, RateDialogChecksAndTruncates) {
    ok({"client", "add", "Acme"});
    const std::string id = addRate("", "0", "Standard", "0.29");
    const std::string empty = addRate("Acme", "1", "Nothing yet", "");
    const std::string expected = kRateHeader +
                                 rateRow(id, "0", "(Default Rates)", "0", "0.28", "Standard") +
                                 rateRow(empty, "1", "Acme", "1", "0.00", "Nothing yet");
    EXPECT_EQ(ok({"rate", "list"}), expected);

    const Words base = {"rate", "add", "--default", "--type", "0"};
    const struct {
        Words args;
        const char* message;
    } refusals[] = {
        {{"--description", "", "--rate", "50"}, "Please enter a description."},
        {{"--rate", "50"}, "Please enter a description."},
        // The description is checked before the rate.
        {{"--description", "", "--rate", "1e2"}, "Please enter a description."},
        {{"--description", "X", "--rate", "1e2"},
         "This is not a valid rate. Rate can have up to 2 decimal places."},
    };
    for (const auto& r : refusals) {
        Words args = base;
        args.insert(args.end(), r.args.begin(), r.args.end());
        refused(args, r.message);
    }
    refused(
        {"rate", "add", "--client", "Nobody", "--type", "0", "--description", "X", "--rate", "1"},
        "There is no client named \"Nobody\".");
    EXPECT_EQ(run({"rate", "add", "--default", "--type", "5", "--description", "X", "--rate", "1"})
                  .status,
              2);
    EXPECT_EQ(ok({"rate", "list"}), expected);

    ok({"rate", "update", id, "--rate", "12.999", "--description", "Senior"});
    refused({"rate", "update", id, "--rate", "1x"},
            "This is not a valid rate. Rate can have up to 2 decimal places.");
    ok({"rate", "delete", empty});
    EXPECT_EQ(ok({"rate", "list"}),
              kRateHeader + rateRow(id, "0", "(Default Rates)", "0", "12.99", "Senior"));
    refused({"rate", "delete", empty}, "There is no rate " + empty + ".");
}

TEST_F(MasterCliWithRates, RatesOutOfRangeAreRefusedAndUntouchedRatesKept) {
    const std::string id = addRate("", "0", "Standard", "1.16");  // the table keeps 1.15
    const std::string kRange = "Rate must be between 0 and 42,949,672.95.";
    for (const char* rate : {"-5", "-0.01", "42949672.96", "99999999999"}) {
        refused({"rate", "add", "--default", "--type", "0", "--description", "X", "--rate", rate},
                kRange);
        refused({"rate", "update", id, "--rate", rate}, kRange);
    }
    // Changing the type and the description again and again keeps the rate.
    for (const char* description : {"Senior", "Junior", "Lead"}) {
        ok({"rate", "update", id, "--description", description, "--type", "1"});
    }
    const std::string top = addRate("", "0", "Top", "42949672.95");
    EXPECT_EQ(ok({"rate", "list"}),
              kRateHeader + rateRow(top, "0", "(Default Rates)", "0", "42949672.95", "Top") +
                  rateRow(id, "0", "(Default Rates)", "1", "1.15", "Lead"));
}

TEST_F(MasterCliWithRates, RateListGroupsDefaultsFirstThenSortsByTypeAndDescription) {
    ok({"client", "add", "Zeta"});
    ok({"client", "add", "Acme"});
    const std::string late = addRate("Zeta", "1", "Late", "90");
    const std::string b = addRate("Acme", "1", "B", "80");
    const std::string weekend = addRate("", "2", "Weekend", "70");
    const std::string zed = addRate("Acme", "0", "Zed", "60");
    const std::string standard = addRate("", "0", "Std", "50");
    const std::string alpha = addRate("Acme", "0", "Alpha", "40");
    EXPECT_EQ(ok({"rate", "list"}),
              kRateHeader + rateRow(standard, "0", "(Default Rates)", "0", "50.00", "Std") +
                  rateRow(weekend, "0", "(Default Rates)", "2", "70.00", "Weekend") +
                  rateRow(alpha, "2", "Acme", "0", "40.00", "Alpha") +
                  rateRow(zed, "2", "Acme", "0", "60.00", "Zed") +
                  rateRow(b, "2", "Acme", "1", "80.00", "B") +
                  rateRow(late, "1", "Zeta", "1", "90.00", "Late"));
}

TEST_F(MasterCli, DropListsAddDeleteAndClear) {
    const struct {
        Words args;
        const char* refusal;
    } steps[] = {
        {{"droplist", "add", "phase", "Design"}, nullptr},
        {{"droplist", "add", "phase", "Build"}, nullptr},
        {{"droplist", "add", "phase", "Test"}, nullptr},
        {{"droplist", "add", "phase", "Design"}, "\"Design\" is in the list already."},
        {{"droplist", "add", "phase", ""}, kBlank},
        {{"droplist", "add", "custom2", "Design"}, nullptr},
        {{"droplist", "delete", "phase", "Build"}, nullptr},
        {{"droplist", "delete", "phase", "Build"}, "\"Build\" is not in the list."},
    };
    for (const auto& s : steps) {
        if (s.refusal) {
            refused(s.args, s.refusal);
        } else {
            EXPECT_EQ(ok(s.args), "") << joined(s.args);
        }
    }
    EXPECT_EQ(ok({"droplist", "list", "phase"}), "Design\nTest\n");
    asksFirst({"droplist", "clear", "phase"}, "Are you to delete the entire list?");
    EXPECT_EQ(ok({"droplist", "list", "phase"}), "Design\nTest\n");
    ok({"droplist", "clear", "phase", "--yes"});
    EXPECT_EQ(ok({"droplist", "list", "phase"}), "");
    EXPECT_EQ(ok({"droplist", "list", "custom2"}), "Design\n");
    EXPECT_EQ(run({"droplist", "list", "colour"}).status, 2);
}

TEST_F(MasterCli, SavedEntriesFillTheDropLists) {
    addEntry({"--client", "A", "--task", "T", "--phase", "Build", "--billable", "--currency", "EUR",
              "--custom1", "same", "--custom2", "same", "--custom3", "third"});
    // Not billable: the entry keeps its currency, the default one.
    addEntry({"--client", "A", "--task", "T", "--phase", "Build", "--custom1", "other"});
    const struct {
        const char* list;
        const char* items;
    } lists[] = {
        {"phase", "Build\n"},  {"currency", "EUR\nUSD\n"}, {"custom1", "same\nother\n"},
        {"custom2", "same\n"}, {"custom3", "third\n"},
    };
    for (const auto& l : lists) EXPECT_EQ(ok({"droplist", "list", l.list}), l.items) << l.list;
}

}  // namespace
}  // namespace qb::testing
