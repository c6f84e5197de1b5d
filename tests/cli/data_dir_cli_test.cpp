// Where the data lives, files that are not ours, and the command line's own
// usage: --data, QUILLARBOR_DATA, --help, --version, unknown words.

#include <sqlite3.h>

#include <filesystem>
#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using DataDirCli = CliTest;

bool exists(const std::string& path) {
    std::error_code ec;
    return std::filesystem::exists(path, ec);
}

bool startsWith(const std::string& text, const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

TEST_F(DataDirCli, DataDirectoryIsCreatedOnFirstUse) {
    ASSERT_FALSE(exists(dataDir()));
    const std::string id = addEntry({"--client", "Acme", "--task", "T", "--duration", "1"});
    EXPECT_TRUE(exists(dataFile()));
    EXPECT_EQ(field(id, "client"), "Acme");

    TempDir other;
    const std::string nested = other.file("a/b/c");
    RunResult r = runQuillarbor({"--data=" + nested, "client", "list"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(exists(nested + "/quillarbor.db"));
}

TEST_F(DataDirCli, EnvironmentNamesTheDirectoryWhenDataIsNotGiven) {
    const std::string id = runQuillarbor({"entry", "add", "--client", "Env", "--task", "T"},
                                         {"QUILLARBOR_DATA=" + dataDir(), kPinnedNow})
                               .out;
    ASSERT_FALSE(id.empty());
    EXPECT_TRUE(exists(dataFile()));
    EXPECT_EQ(ok({"client", "list"}), "clientId\tname\n1\tEnv\n");

    // --data wins over the environment.
    TempDir other;
    RunResult r =
        runQuillarbor({"--data", other.path(), "client", "list"}, {"QUILLARBOR_DATA=" + dataDir()});
    EXPECT_EQ(r.out, "clientId\tname\n");

    // Without either, the XDG data home.
    TempDir xdg;
    r = runQuillarbor({"client", "add", "Xdg"},
                      {"QUILLARBOR_DATA=", "XDG_DATA_HOME=" + xdg.path()});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(exists(xdg.file("quillarbor/quillarbor.db")));
}

std::string otherProgramsDatabase(const std::string& path) {
    sqlite3* db = nullptr;
    sqlite3_open(path.c_str(), &db);
    sqlite3_exec(db,
                 "CREATE TABLE notes(id INTEGER PRIMARY KEY, body TEXT);"
                 "INSERT INTO notes(body) VALUES('keep me');",
                 nullptr, nullptr, nullptr);
    sqlite3_close(db);
    return readFile(path);
}

TEST_F(DataDirCli, FileThatIsNotOursIsRefusedUntouched) {
    const struct {
        const char* what;
        std::string (*make)(const std::string& path);
    } files[] = {
        {"garbage",
         [](const std::string& path) {
             std::string bytes;
             for (int i = 0; i < 300; ++i)
                 bytes += "not a database, just text " + std::to_string(i);
             writeFile(path, bytes);
             return bytes;
         }},
        {"another program's database", &otherProgramsDatabase},
    };
    const Words commands[] = {
        {"client", "list"},
        {"entry", "add", "--client", "A", "--task", "T"},
        {"settings", "set", "View", "3"},
    };
    for (const auto& f : files) {
        TempDir dir;
        const std::string path = dir.file("quillarbor.db");
        const std::string bytes = f.make(path);
        ASSERT_FALSE(bytes.empty());
        for (const Words& command : commands) {
            Words args{"--data", dir.path()};
            args.insert(args.end(), command.begin(), command.end());
            RunResult r = runQuillarbor(args);
            EXPECT_EQ(r.status, 1) << f.what << ": " << joined(command);
            EXPECT_EQ(r.out, "") << f.what;
            EXPECT_NE(r.err.find(path), std::string::npos) << f.what << ": " << r.err;
            EXPECT_EQ(readFile(path), bytes) << f.what << ": " << joined(command);
        }
    }
}

TEST_F(DataDirCli, UnknownWordsAreUsageErrors) {
    const Words cases[] = {
        {"frobnicate"},
        {"--frob", "client", "list"},
        {"client", "list", "--frob"},
        {"client", "frob"},
        {"entry"},
        {"entry", "frob", "1"},
    };
    for (const Words& args : cases) {
        RunResult r = run(args);
        EXPECT_EQ(r.status, 2) << joined(args);
        EXPECT_EQ(r.out, "") << joined(args);
        EXPECT_TRUE(startsWith(r.err, "quillarbor: ")) << joined(args) << ": " << r.err;
    }
}

TEST_F(DataDirCli, HelpAndVersionTouchNoData) {
    const struct {
        Words args;
        const char* begins;
    } cases[] = {
        {{"--help"}, "Quillarbor: "},
        {{"--version"}, "quillarbor "},
        {{"entry", "--help"}, "usage: quillarbor entry add"},
        {{"settings", "set", "--help"}, "usage: quillarbor settings list"},
    };
    for (const auto& c : cases) {
        RunResult r = run(c.args);
        EXPECT_EQ(r.status, 0) << joined(c.args);
        EXPECT_EQ(r.err, "") << joined(c.args);
        EXPECT_TRUE(startsWith(r.out, c.begins)) << joined(c.args) << ": " << r.out;
    }
    EXPECT_NE(run({"--help"}).out.find("  entry "), std::string::npos);
    EXPECT_FALSE(exists(dataDir()));
}

}  // namespace
}  // namespace qb::testing
