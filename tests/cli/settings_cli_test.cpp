// settings list / get / set / unset through the binary.

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

namespace qb::testing {
namespace {

using SettingsCli = CliTest;

const std::string kZeros20 = std::string(40, '0');
const std::string kZeros16 = std::string(32, '0');

TEST_F(SettingsCli, FreshDirectoryListsTheDefaults) {
    EXPECT_EQ(ok({"settings", "list"}),
              "View\t2\n"
              "DefNewStyles\t16\n"
              "FSize\t1\n"
              "MinTime\t15\n"
              "ListStyle\t0\n"
              "ViewCust\t" +
                  kZeros20 +
                  "\n"
                  "Custom1\tCustom 1\n"
                  "Custom2\tCustom 2\n"
                  "Custom3\tCustom 3\n"
                  "DefCurr\tUSD\n"
                  "Encoding\t0\n"
                  "BreakSub\t0\n"
                  "TimeInterval\t3\n"
                  "Sort\t0\n"
                  "DefReport\t\n"
                  "PeriodStart\t" +
                  kZeros16 +
                  "\n"
                  "PeriodEnd\t" +
                  kZeros16 +
                  "\n"
                  "HourSymbol\t1\n");
}

TEST_F(SettingsCli, GetAnswersTheLoadedValue) {
    const struct {
        const char* name;
        std::string value;
    } cases[] = {
        {"View", "2"},     {"MinTime", "15"},       {"DefCurr", "USD"},
        {"DefReport", ""}, {"Custom3", "Custom 3"}, {"PeriodEnd", kZeros16},
    };
    for (const auto& c : cases) EXPECT_EQ(ok({"settings", "get", c.name}), c.value + "\n");
}

TEST_F(SettingsCli, SetValuesReadBackAsTheSettingsLoadThem) {
    const std::string fits(31, 'x');
    const std::string tooLong(32, 'y');
    const struct {
        const char* name;
        std::string typed;
        std::string loaded;
    } cases[] = {
        {"View", "3", "3"},
        {"DefNewStyles", "24593", "24593"},
        // A 16-bit field keeps the low half of the stored DWORD.
        {"FSize", "65538", "2"},
        {"DefCurr", "EUR", "EUR"},
        // 64 bytes hold 31 characters and the NUL.
        {"Custom1", fits, fits},
        {"Custom1", tooLong, "Custom 1"},
        {"Custom1", std::string(40, 'z'), "Custom 1"},
        {"DefCurr", std::string(16, 'E'), "USD"},
        {"Custom2", "Ort", "Ort"},
        // Binary: lowercase hex; a shorter value overwrites its own bytes only.
        {"PeriodStart", "EA070B0006001500", "ea070b0006001500" + std::string(16, '0')},
        {"ViewCust", "0102", "0102" + std::string(36, '0')},
        // Larger than the field: not read, the field keeps what it had.
        {"PeriodEnd", std::string(34, 'a'), kZeros16},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ok({"settings", "set", c.name, c.typed}), "") << c.name;
        EXPECT_EQ(ok({"settings", "get", c.name}), c.loaded + "\n") << c.name << " " << c.typed;
    }
    const std::string list = ok({"settings", "list"});
    EXPECT_NE(list.find("\nCustom2\tOrt\n"), std::string::npos) << list;
    EXPECT_EQ(list.substr(0, 7), "View\t3\n");
}

TEST_F(SettingsCli, UnsetReturnsToTheDefault) {
    ok({"settings", "set", "View", "1"});
    ok({"settings", "set", "DefCurr", "EUR"});
    ok({"settings", "unset", "View"});
    ok({"settings", "unset", "DefCurr"});
    ok({"settings", "unset", "View"});
    EXPECT_EQ(ok({"settings", "get", "View"}), "2\n");
    EXPECT_EQ(ok({"settings", "get", "DefCurr"}), "USD\n");
}

TEST_F(SettingsCli, OtherKeysAndTypesAreRawRegistryValues) {
    ok({"settings", "set", "ClearType", "1", "--key", "Software\\Microsoft\\Shell", "--type",
        "dword"});
    EXPECT_EQ(ok({"settings", "get", "ClearType", "--key", "Software\\Microsoft\\Shell"}), "1\n");
    ok({"settings", "set", "Blob", "00FF", "--type", "binary"});
    EXPECT_EQ(ok({"settings", "get", "Blob"}), "00ff\n");
    // With --key a known name is read raw, not through the settings.
    ok({"settings", "set", "Custom1", std::string(40, 'z')});
    EXPECT_EQ(ok({"settings", "get", "Custom1", "--key", "Software\\Quillarbor"}),
              std::string(40, 'z') + "\n");
}

TEST_F(SettingsCli, BadInputIsUsageAndChangesNothing) {
    const Words cases[] = {
        {"settings", "set", "View", "three"},
        {"settings", "set", "PeriodStart", "xyz"},
        {"settings", "set", "Unknown", "1"},
        {"settings", "set", "View", "1", "--type", "qword"},
        {"settings", "get"},
        {"settings", "frob"},
    };
    for (const Words& args : cases) {
        RunResult r = run(args);
        EXPECT_EQ(r.status, 2) << joined(args);
        EXPECT_EQ(r.out, "") << joined(args);
        EXPECT_NE(r.err, "") << joined(args);
    }
    EXPECT_EQ(ok({"settings", "get", "View"}), "2\n");
}

}  // namespace
}  // namespace qb::testing
