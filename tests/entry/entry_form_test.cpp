#include "entry/entry_form.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <tuple>

#include "entry/duration_rule.h"
#include "entry/rate_rules.h"
#include "platform/calendar.h"

namespace qb {
namespace {

// A form that every page accepts.
EntryForm validForm() {
    EntryForm f;
    f.day = makeDate(2024, 5, 10);
    f.client = u"Acme";
    f.project = u"Web";
    f.task = u"Design";
    f.duration = u"1.5";
    f.billable = true;
    f.currency = u"USD";
    f.rate = u"60";
    return f;
}

SYSTEMTIME dateOf(const TimeEntry& e) {
    SYSTEMTIME st;
    EXPECT_TRUE(fileTimeToSystemTime(e.date, &st));
    return st;
}

// The default settings, with granularity of that many minutes (0: off).
Settings steppedBy(std::uint16_t minutes) {
    Settings s = defaultSettings();
    if (minutes) {
        s.optionFlags |= kDurationGranularity;
        s.minTime = minutes;
    }
    return s;
}

struct Applied {
    FormResult result;
    TimeEntry entry;
};

Applied apply(const EntryForm& form, const Settings& settings = defaultSettings(),
              TimeEntry entry = TimeEntry()) {
    FormResult r = applyForm(form, settings, entry);
    return {r, entry};
}

TEST(EntryForm, RefusalsInTheEditorsOrder) {
    struct Case {
        std::u16string client, task, duration, rate;
        FormField field;
        std::u16string_view message;
    };
    const Case cases[] = {
        {u"", u"Design", u"1.5", u"60", FormField::kClient, kClientBlankMessage},
        {u"", u"Design", u"", u"60", FormField::kClient, kClientBlankMessage},
        {u"Acme", u"Design", u"", u"60", FormField::kDuration, kDurationBlankMessage},
        // Leaving General comes before the task check of OK.
        {u"Acme", u"", u"", u"60", FormField::kDuration, kDurationBlankMessage},
        {u"Acme", u"", u"1h", u"60", FormField::kTask, kTaskBlankMessage},
        {u"Acme", u"Design", u"1e2", u"60", FormField::kDuration, kNumericOnlyMessage},
        {u"Acme", u"Design", u"1.5", u"1e2", FormField::kRate, kNumericOnlyMessage},
        {u"Acme", u"Design", u"x", u"x", FormField::kDuration, kNumericOnlyMessage},
        {u"Acme", u"Design", u"1,5", u"+1,5", FormField::kNone, {}},
        {u"Acme", u"Design", u"-1,5", u"+1,5", FormField::kDuration, kDurationRangeMessage},
    };
    for (const Case& c : cases) {
        EntryForm f = validForm();
        f.client = c.client;
        f.task = c.task;
        f.duration = c.duration;
        f.rate = c.rate;
        const FormResult r = apply(f).result;
        const std::string what(c.duration.begin(), c.duration.end());
        EXPECT_EQ(r.ok, c.field == FormField::kNone) << what;
        EXPECT_EQ(r.field, c.field) << what;
        EXPECT_EQ(r.message, c.message) << what;
    }
    EXPECT_EQ(kClientBlankMessage,
              u"Please enter a client name.  You cannot leave Client field blank.");
    EXPECT_EQ(pageOf(FormField::kRate), FormPage::kBilling);
}

TEST(EntryForm, DurationAndRateTexts) {
    struct Case {
        std::u16string duration;
        std::u16string rate;
        std::uint16_t granularityMinutes;  // 0: off
        std::uint16_t storedDuration;
        std::uint32_t storedRate;
    };
    const Case cases[] = {
        {u"1,5", u"60", 0, 100, 6000},  // the comma ends the number
        {u"1.239", u"60", 0, 123, 6000},
        {u"1.1", u"60", 15, 125, 6000},
        {u"1.25", u"60", 15, 125, 6000},
        {u"0.01", u"60", 15, 25, 6000},
        {u"1.5", u"12.999", 0, 150, 1299},  // a third decimal is cut
        {u"1.5", u"0.29", 0, 150, 29},      // in decimal, not through a double
        {u"2.30", u"1.16", 0, 230, 116},
        {u"8.70", u"2.05", 0, 870, 205},
        {u"1.5", u"", 0, 150, 0},
        {u"1.5", u"1,5", 0, 150, 100},
        {u"1.23456789", u"60", 0, 123, 6000},  // the box holds "1.2345"
        {u"655.35", u"42949672.95", 0, 65535, 0xFFFFFFFF},
        {u"1.5", u"42949672.959", 0, 150, 0xFFFFFFFF},
    };
    for (const Case& c : cases) {
        const Settings s = steppedBy(c.granularityMinutes);
        EntryForm f = validForm();
        f.duration = c.duration;
        f.rate = c.rate;
        const Applied a = apply(f, s);
        ASSERT_TRUE(a.result.ok) << std::string(c.duration.begin(), c.duration.end());
        EXPECT_EQ(a.entry.duration, c.storedDuration)
            << std::string(c.duration.begin(), c.duration.end());
        EXPECT_EQ(a.entry.rate, c.storedRate) << std::string(c.rate.begin(), c.rate.end());
    }
}

TEST(EntryForm, RateTypeFromNodeOrFixedCheck) {
    struct Case {
        std::optional<std::uint16_t> node;
        bool fixed;
        std::uint16_t rateType;
    };
    const Case cases[] = {
        {std::nullopt, false, kNormalRate},  {std::nullopt, true, kFixedRate},
        {kWeekendRate, false, kWeekendRate}, {kOvertimeRate, true, kOvertimeRate},
        {kFixedRate, false, kFixedRate},
    };
    for (const Case& c : cases) {
        EntryForm f = validForm();
        f.rateNode = c.node;
        f.fixed = c.fixed;
        EXPECT_EQ(apply(f).entry.rateType, c.rateType);
    }
}

TEST(EntryForm, NonBillableStoresOnlyTheFlagAndAZeroRate) {
    TimeEntry before;
    before.billable = true;
    before.paid = true;
    before.billTo = u"Jane";
    before.currency = u"EUR";
    before.rate = 5000;
    before.rateType = kFixedRate;

    EntryForm f = validForm();
    f.billable = false;
    f.paid = false;
    f.billTo = u"Someone else";
    f.currency = u"GBP";
    f.rate = u"not looked at";
    f.fixed = false;
    const Applied a = apply(f, defaultSettings(), before);
    ASSERT_TRUE(a.result.ok);
    EXPECT_FALSE(a.entry.billable);
    EXPECT_EQ(a.entry.rate, 0u);
    EXPECT_TRUE(a.entry.paid);
    EXPECT_EQ(a.entry.billTo, u"Jane");
    EXPECT_EQ(a.entry.currency, u"EUR");
    EXPECT_EQ(a.entry.rateType, kFixedRate);
}

TEST(EntryForm, TextsAreCutAtTheirBoxLimits) {
    EntryForm f = validForm();
    f.client = std::u16string(127, u'a');
    f.project = std::u16string(128, u'p');
    f.billTo = std::u16string(65, u'b');
    f.currency = std::u16string(17, u'k');
    f.custom3 = std::u16string(70, u'c');
    const Applied a = apply(f);
    ASSERT_TRUE(a.result.ok);
    EXPECT_EQ(a.entry.client.size(), 127u);
    EXPECT_EQ(a.entry.project.size(), 127u);
    EXPECT_EQ(a.entry.billTo.size(), 64u);
    EXPECT_EQ(a.entry.currency.size(), 16u);
    EXPECT_EQ(a.entry.custom3.size(), 63u);

    // Never between the halves of a surrogate pair.
    EXPECT_EQ(limitText(u"ab\U0001F600", 3), u"ab");
    EXPECT_EQ(limitText(u"ab\U0001F600", 4), u"ab\U0001F600");
}

TEST(EntryForm, RefusalKeepsWhatEarlierStepsStored) {
    EntryForm f = validForm();
    f.task.clear();
    f.duration = u"2";
    const Applied a = apply(f);
    ASSERT_FALSE(a.result.ok);
    EXPECT_EQ(a.entry.duration, 200);  // leaving General came first
    EXPECT_EQ(a.entry.client, u"Acme");
    EXPECT_TRUE(a.entry.task.empty());
}

TEST(EntryForm, DayAndStartTime) {
    EntryForm f = validForm();
    f.start = makeDate(2000, 1, 1, 14, 45, 30, 500);
    TimeEntry e = apply(f).entry;
    SYSTEMTIME st = dateOf(e);
    EXPECT_EQ((std::tuple(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond)),
              (std::tuple(2024, 5, 10, 14, 45, 1)));
    EXPECT_TRUE(hasStartTime(e));

    f.start.reset();
    e = apply(f, defaultSettings(), e).entry;
    st = dateOf(e);
    EXPECT_EQ((std::tuple(st.wDay, st.wHour, st.wMinute, st.wSecond)), (std::tuple(10, 0, 0, 0)));
    EXPECT_FALSE(hasStartTime(e));
}

TEST(EntryForm, PrepareNewAndExistingEntries) {
    Settings s = defaultSettings();
    s.defaultCurrency = u"EUR";
    s.optionFlags |= kBillableDefault;
    const SYSTEMTIME today = makeDate(2024, 5, 10, 16, 20, 1);

    TimeEntry fresh = prepareEntry(nullptr, s, today);
    EXPECT_TRUE(fresh.billable);
    EXPECT_EQ(fresh.currency, u"EUR");
    EXPECT_EQ(dateOf(fresh).wDay, 10);
    EXPECT_FALSE(hasStartTime(fresh));

    TimeEntry fromTimer;  // no record yet: the settings win
    fromTimer.billable = false;
    fromTimer.currency = u"GBP";
    fromTimer.duration = 75;
    TimeEntry prepared = prepareEntry(&fromTimer, s, today);
    EXPECT_TRUE(prepared.billable);
    EXPECT_EQ(prepared.currency, u"EUR");
    EXPECT_EQ(prepared.duration, 75);
    EXPECT_EQ(prepared.date, fromTimer.date);  // the passed entry's date is copied too

    s.optionFlags &= ~kBillableDefault;
    EXPECT_FALSE(prepareEntry(nullptr, s, today).billable);

    TimeEntry stored = fromTimer;
    stored.recordOid = 42;
    prepared = prepareEntry(&stored, s, today);
    EXPECT_FALSE(prepared.billable);
    EXPECT_EQ(prepared.currency, u"GBP");
}

TEST(EntryForm, ReopeningAnEntry) {
    struct Case {
        std::uint16_t duration;
        std::uint32_t rate;
        std::uint16_t rateType;
        std::uint16_t durationAfter;
        std::uint32_t rateAfter;
        std::uint16_t rateTypeAfter;
    };
    const Case cases[] = {
        {150, 6000, kNormalRate, 150, 6000, kNormalRate},
        {25, 15000, kFixedRate, 25, 15000, kFixedRate},
        // Values whose two decimals fall just below as doubles.
        {115, 29, kNormalRate, 115, 29, kNormalRate},
        {870, 116, kNormalRate, 870, 116, kNormalRate},
        {65535, 0xFFFFFFFF, kNormalRate, 65535, 0xFFFFFFFF, kNormalRate},
        // Without a matching client rate the custom node keeps only Fixed.
        {150, 6000, kOvertimeRate, 150, 6000, kNormalRate},
    };
    for (const Case& c : cases) {
        TimeEntry e;
        e.date = 0;
        e.client = u"Acme";
        e.task = u"Design";
        e.billable = true;
        e.duration = c.duration;
        e.rate = c.rate;
        e.rateType = c.rateType;
        const EntryForm f = formFromEntry(e);
        const Applied a = apply(f, defaultSettings(), e);
        ASSERT_TRUE(a.result.ok);
        EXPECT_EQ(a.entry.duration, c.durationAfter) << c.duration;
        EXPECT_EQ(a.entry.rate, c.rateAfter) << c.rate;
        EXPECT_EQ(a.entry.rateType, c.rateTypeAfter) << c.rateType;
    }
}

TEST(EntryForm, SavingAgainKeepsUntouchedNumbers) {
    // Stored under other options (or by an older version): a duration that
    // is no whole step of today's granularity, and a rate.
    TimeEntry stored;
    stored.client = u"Acme";
    stored.task = u"Design";
    stored.billable = true;
    stored.duration = 17;
    stored.rate = 4999;
    Settings s = defaultSettings();
    s.optionFlags |= kDurationGranularity;
    s.minTime = 15;
    EntryForm f = formFromEntry(stored);
    Applied a = apply(f, s, stored);
    ASSERT_TRUE(a.result.ok);
    EXPECT_EQ(a.entry.duration, 17);
    EXPECT_EQ(a.entry.rate, 4999u);
    // Hours typed anew go through the rule.
    f.duration = u"0.2";
    EXPECT_EQ(apply(f, s, stored).entry.duration, 25);
    // Only the box that changed is read.
    f = formFromEntry(stored);
    f.rate = u"50";
    a = apply(f, s, stored);
    EXPECT_EQ(a.entry.duration, 17);
    EXPECT_EQ(a.entry.rate, 5000u);
}

TEST(EntryForm, NumbersOutOfRangeAreRefusedNamingTheField) {
    struct Case {
        std::u16string duration;
        std::u16string rate;
        FormField field;
        std::u16string_view message;
    };
    const Case cases[] = {
        {u"-1", u"60", FormField::kDuration, kDurationRangeMessage},
        {u"-0.01", u"60", FormField::kDuration, kDurationRangeMessage},
        {u"655.36", u"60", FormField::kDuration, kDurationRangeMessage},
        {u"999999", u"60", FormField::kDuration, kDurationRangeMessage},
        {u"1.5", u"-5", FormField::kRate, kRateRangeMessage},
        {u"1.5", u"-0.01", FormField::kRate, kRateRangeMessage},
        {u"1.5", u"42949672.96", FormField::kRate, kRateRangeMessage},
        {u"1.5", u"12345678901234.5678", FormField::kRate, kRateRangeMessage},
        // A letter is the first complaint, whatever the number.
        {u"1e9", u"60", FormField::kDuration, kNumericOnlyMessage},
        {u"1.5", u"1e99", FormField::kRate, kNumericOnlyMessage},
    };
    for (const Case& c : cases) {
        EntryForm f = validForm();
        f.duration = c.duration;
        f.rate = c.rate;
        TimeEntry before;
        before.duration = 100;
        before.rate = 2000;
        const Applied a = apply(f, defaultSettings(), before);
        const std::string what(c.duration.begin(), c.duration.end());
        EXPECT_FALSE(a.result.ok) << what;
        EXPECT_EQ(a.result.field, c.field) << what;
        EXPECT_EQ(a.result.message, c.message) << what;
        EXPECT_EQ(a.entry.rate, 2000u) << what;
        if (c.field == FormField::kDuration) {
            EXPECT_EQ(a.entry.duration, 100) << what;
        }
    }
    EXPECT_EQ(kDurationRangeMessage, u"Duration must be between 0 and 655.35 hours.");
    EXPECT_EQ(kRateRangeMessage, u"Rate must be between 0 and 42,949,672.95.");
}

TEST(EntryForm, SetTimesRefusesANegativeSpan) {
    TimeEntry e;
    e.duration = 150;
    const SYSTEMTIME start = makeDate(2024, 5, 10, 10, 30);
    // Same hour, earlier minute: not moved to the next day.
    FormResult r = finishSetTimes(start, makeDate(2024, 5, 10, 10, 5), defaultSettings(), e);
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(r.message, kDurationRangeMessage);
    EXPECT_EQ(e.duration, 150);
    EXPECT_FALSE(hasStartTime(e));

    Settings s = defaultSettings();
    s.optionFlags |= kDurationGranularity;
    s.minTime = 10;
    r = finishSetTimes(start, makeDate(2024, 5, 10, 11, 20), s, e);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(e.duration, 83);  // 50 minutes, five whole steps
    EXPECT_EQ(dateOf(e).wHour, 10);
    EXPECT_TRUE(hasStartTime(e));
}

TEST(EntryForm, SetTimesStartsFromTheTypedDuration) {
    EntryForm f = validForm();
    f.duration.clear();
    TimeEntry e;
    FormResult r = beginSetTimes(f, defaultSettings(), e);
    EXPECT_EQ(r.field, FormField::kDuration);
    EXPECT_EQ(r.message, kDurationBlankMessage);

    struct Case {
        std::u16string duration;
        int endOffset;
    };
    for (const Case& c : {Case{u"0.17", 10}, Case{u"1.17", 70}, Case{u"0.005", 0}}) {
        f.duration = c.duration;
        f.start = makeDate(2024, 5, 10, 9, 30);
        ASSERT_TRUE(beginSetTimes(f, defaultSettings(), e).ok);
        EXPECT_TRUE(hasStartTime(e));
        EXPECT_EQ(endOffsetMinutes(e.duration), c.endOffset);
    }
}

TEST(EntryForm, PreviewShowsWhatOkStores) {
    struct Case {
        std::u16string duration;
        std::uint16_t granularityMinutes;  // 0: off
        std::u16string_view note;
        std::u16string_view message;  // empty: OK accepts the box
    };
    const Case cases[] = {
        {u"1:30", 0, u"Saves 1.00 h", {}},  // the leading number only
        {u"1.239", 0, u"Saves 1.23 h", {}},
        {u"1.1", 15, u"Saves 1.25 h", {}},
        {u"0.67", 20, u"Saves 0.67 h", {}},  // a drop-down item stays as it reads
        {u"655.35", 0, u"Saves 655.35 h", {}},
        {u"", 0, u"Not saved: blank", kDurationBlankMessage},
        {u"1h", 0, u"Not saved: numbers only", kNumericOnlyMessage},
        {u"655.36", 0, u"Not saved: 0 to 655.35 h", kDurationRangeMessage},
        {u"655.2", 30, u"Not saved: 0 to 655.35 h", kDurationRangeMessage},  // rounds up past
        {u"-1", 0, u"Not saved: 0 to 655.35 h", kDurationRangeMessage},
    };
    for (const Case& c : cases) {
        const Settings s = steppedBy(c.granularityMinutes);
        EntryForm f = validForm();
        f.duration = c.duration;
        const FormPreview p = durationPreview(f, s, TimeEntry());
        const std::string label(c.duration.begin(), c.duration.end());
        EXPECT_EQ(p.text, c.note) << label;
        EXPECT_EQ(p.ok, c.message.empty()) << label;
        EXPECT_EQ(p.message, c.message) << label;
        // The note agrees with what OK does with the same box.
        const Applied a = apply(f, s);
        EXPECT_EQ(a.result.ok, p.ok) << label;
        if (a.result.ok) {
            EXPECT_EQ(u"Saves " + durationText(a.entry.duration) + u" h", p.text);
        } else {
            EXPECT_EQ(a.result.message, c.message) << label;
        }
    }

    // A reopened entry's box keeps its hours even off today's steps; a span
    // counted in seconds stands for the box.
    TimeEntry stored;
    stored.duration = 17;
    EXPECT_EQ(durationPreview(formFromEntry(stored), steppedBy(15), stored).text, u"Saves 0.17 h");
    EntryForm span = validForm();
    span.duration.clear();
    span.spanSeconds = 50 * 60;
    EXPECT_EQ(durationPreview(span, defaultSettings(), TimeEntry()).text, u"Saves 0.83 h");
}

TEST(EntryForm, TotalPreviewIsTheAmountOfTheSavedEntry) {
    struct Case {
        std::u16string duration, rate;
        bool billable, fixed;
        std::optional<std::uint16_t> node;
        std::u16string_view total;  // empty: refused with `message`
        std::u16string_view message;
    };
    const Case cases[] = {
        {u"1.5", u"60", true, false, std::nullopt, u"USD90.00", {}},
        {u"1:30", u"60", true, false, std::nullopt, u"USD60.00", {}},
        {u"0.33", u"60", true, false, std::nullopt, u"USD19.80", {}},
        {u"2", u"150", true, true, std::nullopt, u"USD150.00", {}},     // fixed: the whole amount
        {u"2", u"150", true, false, kFixedRate, u"USD150.00", {}},      // a fixed client rate
        {u"2", u"75", true, false, kOvertimeRate, u"USD150.00", {}},    // other types are hourly
        {u"2", u"60", false, false, std::nullopt, u"USD0.00", {}},      // no rate is stored
        {u"2", u"12.999", true, false, std::nullopt, u"USD25.98", {}},  // cut as OK cuts it
        {u"x", u"60", true, false, std::nullopt, {}, kNumericOnlyMessage},
        {u"700", u"60", true, false, std::nullopt, {}, kDurationRangeMessage},
        {u"2", u"6o", true, false, std::nullopt, {}, kNumericOnlyMessage},
        {u"2", u"-5", true, false, std::nullopt, {}, kRateRangeMessage},
    };
    for (const Case& c : cases) {
        EntryForm f = validForm();
        f.duration = c.duration;
        f.rate = c.rate;
        f.billable = c.billable;
        f.fixed = c.fixed;
        f.rateNode = c.node;
        const FormPreview p = totalPreview(f, defaultSettings(), TimeEntry());
        const std::string label(c.duration.begin(), c.duration.end());
        EXPECT_EQ(p.text, c.total) << label;
        EXPECT_EQ(p.ok, c.message.empty()) << label;
        EXPECT_EQ(p.message, c.message) << label;
    }

    // The preview stores nothing: the entry it reads stays as it was.
    TimeEntry stored;
    stored.duration = 100;
    stored.rate = 5000;
    EntryForm f = formFromEntry(stored);
    f.billable = true;
    f.currency = u"EUR";
    f.rate = u"80";
    EXPECT_EQ(totalPreview(f, defaultSettings(), stored).text, u"EUR80.00");
    EXPECT_EQ(stored.rate, 5000u);
}

}  // namespace
}  // namespace qb
