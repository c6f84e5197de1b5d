#pragma once

// Runs the quillarbor binary on a fresh data directory, as an outside
// check would, with "today" pinned to 2026-11-21.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "testing/test_support.h"

namespace qb::testing {

using Words = std::vector<std::string>;

inline constexpr const char* kPinnedNow = "QUILLARBOR_NOW=2026-11-21T10:00:00";

inline std::string joined(const Words& words) {
    std::string text;
    for (const std::string& w : words) text += (text.empty() ? "" : " ") + w;
    return text;
}

// The words of `base` followed by `more`.
inline Words with(Words base, const Words& more) {
    base.insert(base.end(), more.begin(), more.end());
    return base;
}

class CliTest : public ::testing::Test {
  protected:
    // Not created beforehand: the first command makes it.
    std::string dataDir() const { return dir_.file("data"); }
    std::string dataFile() const { return dataDir() + "/quillarbor.db"; }

    RunResult run(const Words& args, Words env = {}) {
        Words full{"--data", dataDir()};
        full.insert(full.end(), args.begin(), args.end());
        env.push_back(kPinnedNow);
        return runQuillarbor(full, env);
    }

    // A command that must succeed without a word on stderr; answers stdout.
    std::string ok(const Words& args) {
        RunResult r = run(args);
        EXPECT_EQ(r.status, 0) << joined(args) << "\n" << r.err;
        EXPECT_EQ(r.err, "") << joined(args);
        return r.out;
    }

    // A command that the system refuses with exactly this message.
    void refused(const Words& args, const std::string& message) {
        RunResult r = run(args);
        EXPECT_EQ(r.status, 2) << joined(args);
        EXPECT_EQ(r.err, message + "\n") << joined(args);
        EXPECT_EQ(r.out, "") << joined(args);
    }

    // A destructive command run without --yes: exit 2 and the question as
    // the first line on stderr.
    void asksFirst(const Words& args, const std::string& question) {
        RunResult r = run(args);
        EXPECT_EQ(r.status, 2) << joined(args);
        EXPECT_EQ(r.err.substr(0, r.err.find('\n')), question) << joined(args);
        EXPECT_EQ(r.out, "") << joined(args);
    }

    // entry add with the fields; answers the printed id without its LF.
    std::string addEntry(const Words& fields) {
        Words args{"entry", "add"};
        args.insert(args.end(), fields.begin(), fields.end());
        std::string out = ok(args);
        EXPECT_TRUE(out.size() > 1 && out.back() == '\n' &&
                    out.find_first_not_of("0123456789") == out.size() - 1)
            << joined(args) << " printed '" << out << "'";
        if (!out.empty() && out.back() == '\n') out.pop_back();
        return out;
    }

    // The name<TAB>value lines of `entry show`, by name.
    std::map<std::string, std::string> shown(const std::string& id) {
        std::map<std::string, std::string> fields;
        std::string out = ok({"entry", "show", id});
        for (std::size_t pos = 0; pos < out.size();) {
            std::size_t end = out.find('\n', pos);
            if (end == std::string::npos) end = out.size();
            std::string line = out.substr(pos, end - pos);
            std::size_t tab = line.find('\t');
            fields[line.substr(0, tab)] = tab == std::string::npos ? "" : line.substr(tab + 1);
            pos = end + 1;
        }
        return fields;
    }

    std::string field(const std::string& id, const std::string& name) { return shown(id)[name]; }

    void setSetting(const std::string& name, const std::string& value) {
        ok({"settings", "set", name, value});
    }

  private:
    TempDir dir_;
};

}  // namespace qb::testing
