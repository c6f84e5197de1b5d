// The timer commands, driven through the binary with the clock set to a
// different time for each command, as a script would.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "cli/cli_fixture.h"

extern char** environ;

namespace qb::testing {
namespace {

constexpr const char* kHeader = "timer\tstate\tstart\telapsed\tclient\tproject\ttask\tnote\n";

class TimerCli : public CliTest {
  protected:
    // Runs at 2026-11-21 and the time of day.
    RunResult at(const std::string& time, const Words& args) {
        Words full{"--data", dataDir()};
        full.insert(full.end(), args.begin(), args.end());
        return runQuillarbor(full, {"QUILLARBOR_NOW=2026-11-21T" + time});
    }

    std::string okAt(const std::string& time, const Words& args) {
        RunResult r = at(time, args);
        EXPECT_EQ(r.status, 0) << joined(args) << " at " << time << "\n" << r.err;
        EXPECT_EQ(r.err, "") << joined(args);
        return r.out;
    }

    void refusedAt(const std::string& time, const Words& args, const std::string& message) {
        RunResult r = at(time, args);
        EXPECT_EQ(r.status, 2) << joined(args);
        EXPECT_EQ(r.err, message + "\n") << joined(args);
        EXPECT_EQ(r.out, "") << joined(args);
    }

    // The line of timer n in `timer list` at that time.
    std::string line(const std::string& time, int n) {
        std::string out = okAt(time, {"timer", "list"});
        std::size_t pos = 0;
        for (int i = 0; i < n && pos != std::string::npos; ++i) pos = out.find('\n', pos) + 1;
        return out.substr(pos, out.find('\n', pos) - pos);
    }

    // Completes timer n at that time; answers the new entry's id.
    std::string complete(const std::string& time, int n, const Words& fields = {}) {
        Words args{"timer", "complete", std::to_string(n)};
        args.insert(args.end(), fields.begin(), fields.end());
        std::string out = okAt(time, args);
        if (!out.empty() && out.back() == '\n') out.pop_back();
        return out;
    }
};

TEST_F(TimerCli, AFreshStoreListsFourIdleTimers) {
    EXPECT_EQ(okAt("09:00:00", {"timer", "list"}),
              std::string(kHeader) +
                  "1\tidle\t\t00:00:00\t\t\t\t\n2\tidle\t\t00:00:00\t\t\t\t\n"
                  "3\tidle\t\t00:00:00\t\t\t\t\n4\tidle\t\t00:00:00\t\t\t\t\n");
}

TEST_F(TimerCli, RecordPauseResumeCompleteAtSeveralTimes) {
    okAt("09:00:00", {"timer", "record", "2", "--client", "Acme", "--project", "Web", "--task",
                      "Design", "--note", "first\nsecond"});
    struct Look {
        const char* time;
        const char* expected;
    };
    const Look recording[] = {
        {"09:00:00",
         "2\trecording\t2026-11-21T09:00:00\t00:00:00\tAcme\tWeb\tDesign\tfirst\\nsecond"},
        {"09:20:05",
         "2\trecording\t2026-11-21T09:00:00\t00:20:05\tAcme\tWeb\tDesign\tfirst\\nsecond"},
    };
    for (const Look& l : recording) EXPECT_EQ(line(l.time, 2), l.expected) << l.time;
    okAt("09:20:05", {"timer", "pause", "2"});
    EXPECT_EQ(line("11:00:00", 2),
              "2\tpaused\t2026-11-21T09:00:00\t00:20:05\tAcme\tWeb\tDesign\tfirst\\nsecond");
    okAt("11:00:00", {"timer", "pause", "2"});  // resumes
    EXPECT_EQ(line("11:05:00", 2),
              "2\trecording\t2026-11-21T09:00:00\t00:25:05\tAcme\tWeb\tDesign\tfirst\\nsecond");
    EXPECT_EQ(line("11:05:00", 1), "1\tidle\t\t00:00:00\t\t\t\t");

    const std::string id = complete("11:05:00", 2);
    auto e = shown(id);
    EXPECT_EQ(e["date"], "2026-11-21T09:00:01.000");  // the start, as a start time
    EXPECT_EQ(e["client"], "Acme");
    EXPECT_EQ(e["project"], "Web");
    EXPECT_EQ(e["task"], "Design");
    EXPECT_EQ(e["duration"], "41");  // 25 minutes 5 seconds, truncated
    EXPECT_EQ(e["note"], "first\\nsecond");
    EXPECT_EQ(line("11:06:00", 2), "2\tidle\t\t00:00:00\t\t\t\t");
    // What the master data learned, as from the editor.
    EXPECT_NE(ok({"client", "show", "Acme"}).find("project\tWeb\tDesign"), std::string::npos);
}

TEST_F(TimerCli, GranularityRoundsTheTimerUp) {
    setSetting("DefNewStyles", std::to_string(16 | 0x4000));
    setSetting("MinTime", "15");
    struct Case {
        const char* stop;
        const char* duration;
    };
    const Case cases[] = {
        {"09:20:00", "50"},   // 20 minutes: the next quarter hour
        {"09:30:00", "50"},   // an exact number of steps stays
        {"09:30:01", "75"},   // one second more is another step
        {"09:00:00", "0"},    // no time at all
        {"11:01:00", "225"},  // 2 hours 1 minute
    };
    for (const Case& c : cases) {
        okAt("09:00:00", {"timer", "record", "1", "--client", "Acme", "--task", "Design"});
        EXPECT_EQ(field(complete(c.stop, 1), "duration"), c.duration) << c.stop;
    }
}

TEST_F(TimerCli, FieldsOfEntryAddOverrideTheTimer) {
    okAt("09:00:00",
         {"timer", "record", "3", "--client", "Acme", "--task", "Design", "--note", "timer note"});
    const std::string id =
        complete("10:00:00", 3,
                 {"--client", "Bolt", "--duration", "2.5", "--date", "2026-11-20", "--start",
                  "08:15", "--billable", "--rate", "40"});
    auto e = shown(id);
    EXPECT_EQ(e["client"], "Bolt");
    EXPECT_EQ(e["task"], "Design");
    EXPECT_EQ(e["duration"], "250");
    EXPECT_EQ(e["date"], "2026-11-20T08:15:01.000");
    EXPECT_EQ(e["amount"], "100.00");
    EXPECT_EQ(e["note"], "timer note");
}

TEST_F(TimerCli, ARefusedEntryLeavesTheTimerWithAllItsTime) {
    okAt("09:00:00", {"timer", "record", "1", "--task", "Design"});
    refusedAt("09:30:00", {"timer", "complete", "1"},
              "Please enter a client name.  You cannot leave Client field blank.");
    refusedAt("09:30:00", {"timer", "complete", "1", "--client", "Acme", "--task", ""},
              "Please enter a task name.  You cannot have a blank Task field.");
    refusedAt("09:30:00",
              {"timer", "complete", "1", "--client", "Acme", "--rate", "abc", "--billable"},
              "This field accepts numeric values only.");
    // Still recording, still counting from the first Record.
    EXPECT_EQ(line("10:00:00", 1), "1\trecording\t2026-11-21T09:00:00\t01:00:00\t\t\tDesign\t");
    EXPECT_EQ(ok({"list", "--view", "day"}).find('\n'), ok({"list", "--view", "day"}).size() - 1)
        << "no entry was saved";
    EXPECT_EQ(field(complete("10:00:00", 1, {"--client", "Acme"}), "duration"), "100");
}

TEST_F(TimerCli, BadInputIsRefusedAndLosesNothing) {
    okAt("09:00:00", {"timer", "record", "1", "--client", "Acme"});
    const std::string before = line("09:10:00", 1);
    refusedAt("09:10:00", {"timer", "record", "1"},
              "Timer 1 is recording; Record needs an idle timer.");
    refusedAt("09:10:00", {"timer", "complete", "2"},
              "Timer 2 is idle; Task Complete needs a recording, paused or completed timer.");
    refusedAt("09:10:00", {"timer", "pause", "4"},
              "Timer 4 is idle; Pause needs a recording, paused or completed timer.");
    for (const char* bad : {"0", "5", "x", "-1", "1.5"}) {
        refusedAt("09:10:00", {"timer", "pause", bad},
                  std::string("There is no timer ") + bad + "; the timers are 1 to 4.");
    }
    EXPECT_EQ(line("09:10:00", 1), before);

    for (const Words& usage :
         {Words{"timer"}, Words{"timer", "start", "1"}, Words{"timer", "record"},
          Words{"timer", "list", "1"}, Words{"timer", "record", "2", "--bogus"},
          Words{"timer", "pause", "1", "2"}}) {
        RunResult r = at("09:10:00", usage);
        EXPECT_EQ(r.status, 2) << joined(usage);
        EXPECT_NE(r.err.find("Try 'quillarbor timer --help'."), std::string::npos) << joined(usage);
    }
    EXPECT_EQ(line("09:10:00", 1), before);
}

TEST_F(TimerCli, ResetAsksAndNoteReplaces) {
    okAt("09:00:00", {"timer", "record", "4", "--note", "old"});
    okAt("09:01:00", {"timer", "note", "4", "new\r\nline"});
    EXPECT_EQ(line("09:02:00", 4),
              "4\trecording\t2026-11-21T09:00:00\t00:02:00\t\t\t\tnew\\r\\nline");
    RunResult r = at("09:02:00", {"timer", "reset", "4"});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err, "Are you sure to reset the timer?\n(answer with --yes)\n");
    EXPECT_EQ(line("09:02:00", 4),
              "4\trecording\t2026-11-21T09:00:00\t00:02:00\t\t\t\tnew\\r\\nline");
    okAt("09:03:00", {"timer", "reset", "4", "--yes"});
    EXPECT_EQ(line("09:04:00", 4), "4\tidle\t\t00:00:00\t\t\t\t");
    // An idle timer has no time to lose: no question, even with a note.
    okAt("09:05:00", {"timer", "note", "4", "later"});
    okAt("09:05:00", {"timer", "reset", "4"});
    EXPECT_EQ(line("09:06:00", 4), "4\tidle\t\t00:00:00\t\t\t\t");
}

TEST_F(TimerCli, LongRunsAndClocksSetBack) {
    okAt("09:00:00", {"timer", "record", "1"});
    // A clock set back counts nothing rather than a negative or huge time.
    EXPECT_EQ(line("08:00:00", 1), "1\trecording\t2026-11-21T09:00:00\t00:00:00\t\t\t\t");
    // Days later the hours go on past 24 and 99.
    RunResult r = runQuillarbor({"--data", dataDir(), "timer", "list"},
                                {"QUILLARBOR_NOW=2026-11-25T14:00:00"});
    EXPECT_NE(r.out.find("1\trecording\t2026-11-21T09:00:00\t101:00:00\t"), std::string::npos)
        << r.out;
    okAt("08:00:00", {"timer", "pause", "1"});
    EXPECT_EQ(line("10:00:00", 1), "1\tpaused\t2026-11-21T09:00:00\t00:00:00\t\t\t\t");
}

// A desktop process (the application's main window and timers, without a
// display) on the data directory, its stdout read through a pipe.
class DesktopProcess {
  public:
    DesktopProcess(const std::string& dataDir, const std::string& verb, const std::string& now) {
        int fds[2];
        if (pipe(fds) != 0) return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, fds[1], 1);
        posix_spawn_file_actions_addclose(&actions, fds[0]);
        std::vector<std::string> args{QB_TIMER_APP, dataDir, verb, "1"};
        std::vector<char*> argv;
        for (std::string& a : args) argv.push_back(a.data());
        argv.push_back(nullptr);
        std::vector<std::string> env{"QT_QPA_PLATFORM=offscreen", "QUILLARBOR_NOW=" + now};
        for (char** e = environ; *e; ++e) env.emplace_back(*e);
        std::vector<char*> envp;
        for (std::string& e : env) envp.push_back(e.data());
        envp.push_back(nullptr);
        if (posix_spawn(&pid_, QB_TIMER_APP, &actions, nullptr, argv.data(), envp.data()) != 0) {
            pid_ = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
        close(fds[1]);
        out_ = fds[0];
    }
    ~DesktopProcess() {
        if (pid_ > 0) kill(pid_, SIGKILL);
        wait();
        if (out_ >= 0) close(out_);
    }

    // The first line the process prints (empty when it ends first).
    std::string line() {
        std::string text;
        char c = 0;
        while (out_ >= 0 && read(out_, &c, 1) == 1 && c != '\n') text.push_back(c);
        return text;
    }
    void killHard() {
        if (pid_ > 0) kill(pid_, SIGKILL);
    }
    // Answers how the process ended: the signal's number, or 0 for an exit.
    int wait() {
        int status = 0;
        if (pid_ <= 0 || waitpid(pid_, &status, 0) != pid_) return -1;
        pid_ = -1;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

  private:
    pid_t pid_ = -1;
    int out_ = -1;
};

TEST_F(TimerCli, TimeCountsAcrossAKilledDesktop) {
    okAt("08:00:00", {"timer", "list"});  // makes the data directory
    DesktopProcess desktop(dataDir(), "record", "2026-11-21T09:00:00");
    ASSERT_EQ(desktop.line(), "recording 00:00:00");
    // The command line sees the desktop's timer while the desktop runs.
    EXPECT_EQ(line("09:45:00", 1), "1\trecording\t2026-11-21T09:00:00\t00:45:00\t\t\t\t");
    desktop.killHard();
    ASSERT_EQ(desktop.wait(), SIGKILL);

    // Nothing ran between 09:45 and 11:30; the time counted all the same.
    EXPECT_EQ(line("11:30:00", 1), "1\trecording\t2026-11-21T09:00:00\t02:30:00\t\t\t\t");
    DesktopProcess restarted(dataDir(), "show", "2026-11-21T11:30:00");
    EXPECT_EQ(restarted.line(), "recording 02:30:00");
    EXPECT_EQ(restarted.wait(), 0);
    okAt("11:30:00", {"timer", "pause", "1"});
    EXPECT_EQ(field(complete("12:00:00", 1, {"--client", "Acme", "--task", "Design"}), "duration"),
              "250");
}

}  // namespace
}  // namespace qb::testing
