// The entry timers: the clock, the buttons, the store, the entry a timer
// becomes and the idle-time rules.

#include "entry/entry_timers.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <vector>

#include "app/settings.h"
#include "entry/duration_rule.h"
#include "entry/note_text.h"
#include "entry/timer_idle.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "store/time_entry.h"
#include "testing/test_support.h"

namespace qb {
namespace {

constexpr FILETIME kSecond = 10000000;

// 2026-11-21 at the time of day.
FILETIME at(int hour, int minute, int second = 0) {
    FILETIME ft = 0;
    systemTimeToFileTime(makeDate(2026, 11, 21, hour, minute, second), &ft);
    return ft;
}

TEST(EntryTimers, TheClockCountsWallTimeLessPausedTime) {
    enum Step { kRecord, kPause, kComplete, kLook };
    struct Case {
        Step step;
        FILETIME when;
        std::uint32_t shown;
        TimerState state;
    };
    const Case script[] = {
        {kRecord, at(9, 0), 0, TimerState::kRecording},
        {kLook, at(9, 20), 1200, TimerState::kRecording},
        {kPause, at(9, 20), 1200, TimerState::kPaused},
        {kLook, at(10, 0), 1200, TimerState::kPaused},  // paused time does not count
        {kPause, at(10, 0), 1200, TimerState::kRecording},
        {kLook, at(10, 5, 30), 1530, TimerState::kRecording},
        {kLook, at(23, 0), 1200 + 13 * 3600, TimerState::kRecording},  // no process needed
        {kComplete, at(10, 10), 1800, TimerState::kComplete},
        {kLook, at(12, 0), 1800, TimerState::kComplete},
    };
    EntryTimerSet timers;
    for (const Case& c : script) {
        switch (c.step) {
            case kRecord:
                EXPECT_TRUE(timers.record(2, c.when));
                break;
            case kPause:
                EXPECT_TRUE(timers.pause(2, c.when));
                break;
            case kComplete:
                EXPECT_TRUE(timers.complete(2, noteBytes(u"done"), c.when));
                break;
            case kLook:
                break;
        }
        EXPECT_EQ(timers.elapsed(2, c.when), c.shown) << "step at " << c.when;
        EXPECT_EQ(timers.timer(2).state, c.state);
    }
    // Pausing and resuming keep the first start.
    EXPECT_EQ(timers.timer(2).start.wHour, 9);
    EXPECT_EQ(timers.timer(2).start.wMinute, 0);
    EXPECT_EQ(noteText(timers.timer(2).note), u"done");
    for (int other : {0, 1, 3}) EXPECT_EQ(timers.timer(other).state, TimerState::kIdle);
}

TEST(EntryTimers, AClockSetBackNeitherTakesTimeNorWraps) {
    EntryTimer t;
    t.state = TimerState::kRecording;
    t.elapsed = 600;
    t.resumed = at(10, 0);
    EXPECT_EQ(timerElapsed(t, at(9, 0)), 600u) << "a span that runs backwards counts nothing";
    t.elapsed = std::numeric_limits<std::uint32_t>::max() - 10;
    EXPECT_EQ(timerElapsed(t, at(11, 0)), std::numeric_limits<std::uint32_t>::max());

    // With the clock running, a set-back keeps what was counted at the
    // previous tick and counts on from the new time.
    EntryTimerSet timers;
    timers.record(0, at(9, 0));
    std::vector<int> rebased;
    EXPECT_EQ(timers.tick(at(9, 30), &rebased), std::vector<int>{0});
    EXPECT_TRUE(rebased.empty());
    EXPECT_EQ(timers.tick(at(8, 0), &rebased), std::vector<int>{0});
    EXPECT_EQ(rebased, std::vector<int>{0});
    EXPECT_EQ(timers.elapsed(0, at(8, 0)), 1800u);
    EXPECT_EQ(timers.elapsed(0, at(8, 10)), 2400u);

    // A timer that began counting "later" than the first tick (the clock was
    // set back while nothing ran) keeps its time and counts from now.
    EntryTimerSet restarted;
    restarted.timer(1) = timers.timer(0);
    restarted.timer(1).resumed = at(12, 0);
    rebased.clear();
    restarted.tick(at(8, 10), &rebased);
    EXPECT_EQ(rebased, std::vector<int>{1});
    EXPECT_EQ(restarted.elapsed(1, at(8, 20)), 1800u + 600u);
}

TEST(EntryTimers, ButtonsWorkOnlyInTheStatesThatOfferThem) {
    struct Case {
        TimerState state;
        bool record, pause, complete;
    };
    const Case cases[] = {
        {TimerState::kIdle, true, false, false},
        {TimerState::kRecording, false, true, true},
        {TimerState::kPaused, false, true, true},
        {TimerState::kComplete, false, true, true},  // Pause: back to paused
    };
    for (const Case& c : cases) {
        EntryTimer start;
        start.state = c.state;
        start.elapsed = c.state == TimerState::kIdle ? 0 : 300;
        start.resumed = c.state == TimerState::kRecording ? at(9, 0) : 0;
        start.note = noteBytes(u"kept");
        const auto tryButton = [&](auto press, bool offered) {
            EntryTimerSet timers;
            timers.timer(0) = start;
            EXPECT_EQ(press(timers), offered) << static_cast<int>(c.state);
            if (!offered) {
                EXPECT_EQ(timers.timer(0), start) << "a refused button changes nothing";
            }
        };
        tryButton([](EntryTimerSet& t) { return t.record(0, at(10, 0)); }, c.record);
        tryButton([](EntryTimerSet& t) { return t.pause(0, at(10, 0)); }, c.pause);
        tryButton([&](EntryTimerSet& t) { return t.complete(0, start.note, at(10, 0)); },
                  c.complete);
    }
}

TEST(EntryTimers, ResetForgetsEverything) {
    EntryTimerSet timers;
    timers.record(3, at(9, 0));
    timers.timer(3).client = u"Acme";
    timers.timer(3).note = noteBytes(u"x");
    EXPECT_TRUE(timers.anyActive());
    EXPECT_TRUE(timers.anyRecording());
    timers.reset(3);
    EXPECT_EQ(timers.timer(3), EntryTimer());
    EXPECT_FALSE(timers.anyActive());
}

TEST(EntryTimers, ClockTextsAndNames) {
    EXPECT_EQ(timerClockText(3725), u"01:02:05");
    EXPECT_EQ(timerClockText(360000), u"100:00:00");
    EXPECT_EQ(timerClockText(0), u"00:00:00");
    EXPECT_EQ(timerName(3), u"Timer 4");
    EntryTimer t;
    t.note = noteBytes(u"call back\r\nabout the bill");
    EXPECT_EQ(timerSubject(t), u"call back");
    t.client = u"Acme";
    EXPECT_EQ(timerSubject(t), u"Acme");
}

TEST(EntryTimers, ACompletedTimerBecomesANewEntry) {
    Settings settings = defaultSettings();
    EntryTimer timer;
    timer.state = TimerState::kComplete;
    timer.start = makeDate(2026, 11, 20, 14, 35, 12);
    timer.elapsed = 20 * 60;
    timer.note = {'h', 0, 'i', 0};
    timer.client = u"Acme";
    timer.project = u"Web";
    timer.task = u"Design";
    const auto made = [&] {
        TimeEntry e;
        EXPECT_TRUE(entryFromTimer(timer, settings, makeDate(2026, 11, 21), e).ok);
        return e;
    };
    TimeEntry e = made();
    FILETIME expected = 0;
    systemTimeToFileTime(makeDate(2026, 11, 20, 14, 35, 1), &expected);
    EXPECT_EQ(e.date, expected);
    EXPECT_EQ(e.duration, 33);
    EXPECT_EQ(e.currency, u"USD");
    EXPECT_EQ(e.notes, timer.note);
    EXPECT_EQ(e.client, u"Acme");
    EXPECT_EQ(e.project, u"Web");
    EXPECT_EQ(e.task, u"Design");
    EXPECT_EQ(e.recordOid, 0u);
    settings.optionFlags |= kDurationGranularity;
    EXPECT_EQ(made().duration, 50);
    // 50 minutes are five whole 10-minute steps: not rounded up.
    settings.minTime = 10;
    timer.elapsed = 50 * 60;
    EXPECT_EQ(made().duration, 83);
    timer.elapsed = 0;
    EXPECT_EQ(made().duration, 0);
}

TEST(EntryTimers, TimeBeyondTheLongestDurationIsRefusedAndKept) {
    EntryTimer timer;
    timer.state = TimerState::kComplete;
    timer.start = makeDate(2026, 11, 20, 14, 35, 12);
    timer.elapsed = 700 * 3600;
    TimeEntry e;
    e.client = u"untouched";
    const FormResult r = entryFromTimer(timer, defaultSettings(), makeDate(2026, 11, 21), e);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, kDurationRangeMessage);
    EXPECT_EQ(r.field, FormField::kDuration);
    EXPECT_EQ(e.client, u"untouched");
    EXPECT_EQ(timer.elapsed, 700u * 3600);
}

// Two processes on one data directory, each with its own connection.
class StoredTimers : public ::testing::Test {
  protected:
    std::unique_ptr<Platform> open() {
        std::unique_ptr<Platform> p;
        EXPECT_TRUE(Platform::open(dir_.path(), &p).isOk());
        return p;
    }

    testing::TempDir dir_;
};

TEST_F(StoredTimers, EveryFieldComesBackAndMissingSlotsAreIdle) {
    auto desktop = open();
    TimerTable table(*desktop);
    ASSERT_TRUE(table.open());
    EntryTimerSet timers;
    ASSERT_TRUE(timers.load(table));
    for (int i = 0; i < EntryTimerSet::kCount; ++i) EXPECT_EQ(timers.timer(i), EntryTimer());

    EntryTimer paused;
    paused.state = TimerState::kPaused;
    paused.start = makeDate(2026, 11, 21, 9, 15, 7, 250);
    paused.elapsed = 4321;
    paused.note = noteBytes(u"line 1\r\nline 2");
    paused.client = u"Acme";
    paused.project = u"Web";
    paused.task = u"Design";
    EntryTimer recording;
    recording.state = TimerState::kRecording;
    recording.start = makeDate(2026, 11, 21, 10, 0);
    recording.resumed = at(10, 30);
    recording.elapsed = 60;
    ASSERT_EQ(timers.update(table, 1,
                            [&](EntryTimerSet& t) {
                                t.timer(1) = paused;
                                return true;
                            }),
              EntryTimerSet::Update::kDone);
    ASSERT_EQ(timers.update(table, 3,
                            [&](EntryTimerSet& t) {
                                t.timer(3) = recording;
                                return true;
                            }),
              EntryTimerSet::Update::kDone);

    auto cli = open();
    TimerTable other(*cli);
    ASSERT_TRUE(other.open());
    EntryTimerSet seen;
    ASSERT_TRUE(seen.load(other));
    EXPECT_EQ(seen.timer(0), EntryTimer());
    EXPECT_EQ(seen.timer(1), paused);
    EXPECT_EQ(seen.timer(2), EntryTimer());
    EXPECT_EQ(seen.timer(3), recording);
    EXPECT_EQ(seen.elapsed(3, at(11, 0)), 60u + 1800u);
}

TEST_F(StoredTimers, AChangeStartsFromWhatIsStoredNotFromAnOldCopy) {
    auto desktop = open();
    auto cli = open();
    TimerTable desktopTable(*desktop);
    TimerTable cliTable(*cli);
    ASSERT_TRUE(desktopTable.open());
    ASSERT_TRUE(cliTable.open());
    EntryTimerSet desktopTimers;
    desktopTimers.load(desktopTable);

    // The command line starts timer 1 while the desktop holds its old copy.
    EntryTimerSet cliTimers;
    ASSERT_EQ(cliTimers.update(cliTable, 0, [](EntryTimerSet& t) { return t.record(0, at(9, 0)); }),
              EntryTimerSet::Update::kDone);

    // The desktop's Record on timer 1 is refused on the stored state...
    EXPECT_EQ(desktopTimers.update(desktopTable, 0,
                                   [](EntryTimerSet& t) { return t.record(0, at(9, 5)); }),
              EntryTimerSet::Update::kRefused);
    EXPECT_EQ(desktopTimers.timer(0).state, TimerState::kRecording);
    // ...and its change of timer 2 keeps timer 1 as the command line left it.
    EXPECT_EQ(desktopTimers.update(desktopTable, 1,
                                   [](EntryTimerSet& t) { return t.record(1, at(9, 6)); }),
              EntryTimerSet::Update::kDone);
    cliTimers.load(cliTable);
    EXPECT_EQ(cliTimers.timer(0).start.wMinute, 0);
    EXPECT_EQ(cliTimers.timer(1).start.wMinute, 6);
}

TEST(IdleTime, TheSettingDefaultsToTenMinutesAndMayBeOff) {
    auto platform = Platform::inMemory();
    Registry& registry = platform->registry();
    EXPECT_EQ(idleMinutes(registry), 10u);
    ASSERT_TRUE(setIdleMinutes(registry, 0));
    EXPECT_EQ(idleMinutes(registry), 0u);
    ASSERT_TRUE(setIdleMinutes(registry, 25));
    EXPECT_EQ(idleMinutes(registry), 25u);
    ASSERT_TRUE(setIdleMinutes(registry, 999999));
    EXPECT_EQ(idleMinutes(registry), kMostIdleMinutes);
}

TEST(IdleTime, TheQuestionComesOnReturnFromALongEnoughAbsence) {
    struct Sample {
        FILETIME now;
        std::uint32_t idle;
        bool recording;
        std::optional<IdleSpan> asked;
    };
    struct Case {
        const char* what;
        std::uint32_t limit;
        std::vector<Sample> samples;
    };
    const Case cases[] = {
        {"away 16 minutes while recording",
         10,
         {{at(10, 0), 0, true, std::nullopt},
          {at(10, 9, 59), 599, true, std::nullopt},
          {at(10, 15), 900, true, std::nullopt},
          {at(10, 16), 960, true, std::nullopt},
          {at(10, 16, 30), 5, true, IdleSpan{at(10, 0), at(10, 16, 25)}},
          {at(10, 17), 35, true, std::nullopt}}},
        {"the timer was paused from elsewhere meanwhile: still asked, nothing to take",
         10,
         {{at(10, 15), 900, true, std::nullopt},
          {at(10, 16), 0, false, IdleSpan{at(10, 0), at(10, 16)}}}},
        {"no timer recording when the limit was reached",
         10,
         {{at(10, 15), 900, false, std::nullopt}, {at(10, 16), 0, true, std::nullopt}}},
        {"back before the limit",
         10,
         {{at(10, 9), 540, true, std::nullopt}, {at(10, 10), 1, true, std::nullopt}}},
        {"off", 0, {{at(10, 15), 900, true, std::nullopt}, {at(10, 16), 0, true, std::nullopt}}},
    };
    for (const Case& c : cases) {
        IdleWatch watch;
        for (const Sample& s : c.samples) {
            const std::optional<IdleSpan> asked = watch.sample(s.now, s.idle, c.limit, s.recording);
            ASSERT_EQ(asked.has_value(), s.asked.has_value()) << c.what << " at " << s.now;
            if (asked) {
                EXPECT_EQ(asked->from, s.asked->from) << c.what;
                EXPECT_EQ(asked->to, s.asked->to) << c.what;
            }
        }
    }
}

TEST(IdleTime, TheAnswerTakesOnlyTimeTheTimerCounted) {
    const IdleSpan away{at(10, 0), at(10, 30)};
    const FILETIME now = at(10, 31);
    struct Case {
        const char* what;
        EntryTimer timer;
        IdleAnswer answer;
        bool changed;
        std::uint32_t shownNow;
        TimerState state;
    };
    EntryTimer sinceNine;
    sinceNine.state = TimerState::kRecording;
    sinceNine.resumed = at(9, 0);
    EntryTimer resumedMidway = sinceNine;
    resumedMidway.elapsed = 600;
    resumedMidway.resumed = at(10, 20);
    EntryTimer paused;
    paused.state = TimerState::kPaused;
    paused.elapsed = 3000;
    const Case cases[] = {
        {"keep", sinceNine, IdleAnswer::kKeep, false, 5460, TimerState::kRecording},
        {"discard", sinceNine, IdleAnswer::kDiscard, true, 5460 - 1800, TimerState::kRecording},
        {"discard and pause: all since leaving", sinceNine, IdleAnswer::kDiscardAndPause, true,
         3600, TimerState::kPaused},
        {"resumed during the absence: only the counted part", resumedMidway, IdleAnswer::kDiscard,
         true, 600 + 60, TimerState::kRecording},
        {"a paused timer is left alone", paused, IdleAnswer::kDiscard, false, 3000,
         TimerState::kPaused},
    };
    for (const Case& c : cases) {
        EntryTimer t = c.timer;
        EXPECT_EQ(applyIdleAnswer(t, away, c.answer, now), c.changed) << c.what;
        EXPECT_EQ(timerElapsed(t, now), c.shownNow) << c.what;
        EXPECT_EQ(t.state, c.state) << c.what;
    }
    // A discarded absence does not stop the clock afterwards.
    EntryTimer t = sinceNine;
    applyIdleAnswer(t, away, IdleAnswer::kDiscard, now);
    EXPECT_EQ(timerElapsed(t, at(10, 41)), 3660u + 600u);
    EXPECT_EQ(idleSecondsCounted(sinceNine, away, now), 1800u);
    EXPECT_EQ(idleSecondsCounted(paused, away, now), 0u);
    EXPECT_EQ(idleQuestion(away, u"10:00 AM"),
              u"You have been away for 30 minutes, since 10:00 AM, while a timer was "
              u"recording. Keep that time on the timer?");
}

}  // namespace
}  // namespace qb
