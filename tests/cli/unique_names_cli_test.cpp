// Names stay unique through the binary: every rename onto a name that is
// taken is refused with exit 2 and changes nothing; Replace merges into the
// record already named so; an archive names each client once.

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using UniqueNamesCli = CliTest;

TEST_F(UniqueNamesCli, RenamesOntoTakenNamesAreRefused) {
    addEntry({"--client", "Acme", "--project", "Web", "--task", "Design", "--duration", "1"});
    addEntry({"--client", "Acme", "--project", "Web", "--task", "Build", "--duration", "1"});
    addEntry({"--client", "Acme", "--project", "Docs", "--task", "Write", "--duration", "1"});
    addEntry({"--client", "Bolt", "--task", "Support", "--duration", "1"});
    ok({"task", "add", "Acme", "Admin"});
    ok({"task", "add", "Acme", "Support"});
    ok({"contact", "add", "Acme", "Alice"});
    ok({"contact", "add", "Acme", "Bob"});
    ok({"droplist", "add", "phase", "Draft"});
    ok({"droplist", "add", "phase", "Final"});
    const std::string acme = ok({"client", "show", "Acme"});
    const std::string phases = ok({"droplist", "list", "phase"});

    const struct {
        Words args;
        std::string message;
    } refusals[] = {
        {{"client", "rename", "Acme", "Bolt"}, "A client named \"Bolt\" already exists."},
        {{"project", "rename", "Acme", "Docs", "Web"}, "The project \"Web\" already exists."},
        {{"task", "rename", "Acme", "Design", "Build", "--project", "Web"},
         "The task \"Build\" already exists."},
        {{"task", "rename", "Acme", "Admin", "Support"}, "The task \"Support\" already exists."},
        {{"contact", "rename", "Acme", "Bob", "Alice"}, "The contact \"Alice\" already exists."},
        {{"droplist", "rename", "phase", "Draft", "Final"}, "\"Final\" is in the list already."},
        {{"task", "rename", "Acme", "Nothing", "Else"}, "There is no task \"Nothing\"."},
        {{"contact", "rename", "Acme", "Carol", "Dan"}, "There is no contact \"Carol\"."},
    };
    for (const auto& r : refusals) refused(r.args, r.message);
    EXPECT_EQ(ok({"client", "show", "Acme"}), acme);
    EXPECT_EQ(ok({"droplist", "list", "phase"}), phases);
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\tAcme\n2\tBolt\n");

    // The same names elsewhere are free: another client's, another case.
    EXPECT_EQ(ok({"task", "rename", "Acme", "Write", "Build", "--project", "Docs"}), "");
    EXPECT_EQ(ok({"task", "rename", "Acme", "Admin", "Design"}), "");
    EXPECT_EQ(ok({"contact", "rename", "Acme", "Bob", "Carol"}), "");
    EXPECT_EQ(ok({"client", "rename", "Bolt", "acme"}), "");
    EXPECT_EQ(ok({"client", "show", "Acme"}),
              "client\t1\tAcme\n"
              "project\tWeb\tDesign\n"
              "project\tWeb\tBuild\n"
              "project\tDocs\tBuild\n"
              "task\tDesign\n"
              "task\tSupport\n"
              "contact\tAlice\n"
              "contact\tCarol\n");
}

TEST_F(UniqueNamesCli, ReplaceMergesIntoTheClientNamedSo) {
    addEntry({"--client", "Acme", "--project", "Web", "--task", "Design", "--duration", "1"});
    addEntry({"--client", "Acme", "--task", "Admin", "--duration", "1", "--billable", "--bill-to",
              "Alice"});
    const std::string moved =
        addEntry({"--client", "Acme", "--project", "App", "--task", "Build", "--duration", "2"});
    addEntry({"--client", "Bolt", "--project", "Web", "--task", "Design", "--duration", "1"});
    ok({"rate", "add", "--client", "Acme", "--type", "1", "--description", "Late", "--rate", "75"});

    ok({"replace", "client", "Acme", "Bolt", "--yes"});
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n2\tBolt\n");
    const std::string bolt = ok({"client", "show", "Bolt"});
    EXPECT_EQ(bolt.substr(0, bolt.find("\nrate")),
              "client\t2\tBolt\n"
              "project\tApp\tBuild\n"
              "project\tWeb\tDesign\n"
              "task\tAdmin\n"
              "contact\tAlice");
    EXPECT_NE(bolt.find("\tLate\t"), std::string::npos);
    EXPECT_EQ(field(moved, "client"), "Bolt");
}

// "client" and "date" name the built-in layouts on the command line: no
// saved layout may take them, in any case, on saving or renaming.
TEST_F(UniqueNamesCli, LayoutsMayNotTakeTheBuiltInsNames) {
    const std::string refusal =
        "\"client\" and \"date\" are the names of the built-in reports. Please choose another "
        "name.";
    for (const char* name : {"client", "Client", "DATE", "date"}) {
        refused({"layout", "save", name, "--from", "date"}, refusal);
    }
    ok({"layout", "save", "Weekly", "--from", "date"});
    refused({"layout", "rename", "Weekly", "cLiEnT"}, refusal);
    refused({"layout", "save", "Weekly", "--from", "client"},
            "The report already exists. Do you want to overwrite it?");
    EXPECT_NE(ok({"layout", "list"}).find("\tWeekly\t"), std::string::npos);
    ok({"layout", "save", "Clients", "--from", "client"});
}

TEST_F(UniqueNamesCli, ArchiveNamesEachClientOnce) {
    addEntry({"--client", "Acme", "--task", "Admin", "--duration", "1"});
    addEntry({"--client", "Bolt", "--task", "Admin", "--duration", "1"});
    TempDir files;
    const std::string twice = files.file("twice.qra");
    const std::string once = files.file("once.qra");
    run({"archive", "create", twice, "--client", "Acme", "--client", "Acme"});
    run({"archive", "create", once, "--client", "Acme"});
    EXPECT_EQ(readFile(twice), readFile(once));
    EXPECT_FALSE(readFile(once).empty());
}

}  // namespace
}  // namespace qb::testing
