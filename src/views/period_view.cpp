#include "views/period_view.h"

#include "platform/calendar.h"
#include "views/calendar_helpers.h"
#include "views/date_texts.h"

namespace qb {
namespace {

constexpr FILETIME kTicksPerSecond = 10000000ull;
constexpr FILETIME kTicksPerDay = 86400ull * kTicksPerSecond;

FILETIME toFileTime(const SYSTEMTIME& st) {
    FILETIME ft = 0;
    systemTimeToFileTime(st, &ft);
    return ft;
}

SYSTEMTIME withDayOfWeek(SYSTEMTIME d) {
    d.wDayOfWeek = static_cast<std::uint16_t>(dayOfWeek(d));
    return d;
}

SYSTEMTIME cleared(SYSTEMTIME d) {
    clearTime(d);
    return withDayOfWeek(d);
}

// The first day of the month after the date's, at midnight, less `seconds`.
SYSTEMTIME monthEnd(SYSTEMTIME date, int seconds) {
    addMonths(date, 1);
    clearTime(date);
    addSeconds(date, -seconds);
    return date;
}

class DayView : public PeriodView {
  public:
    ViewKind kind() const override { return kDayView; }
    void getPeriod(SYSTEMTIME* start, SYSTEMTIME* end) const override {
        *start = date_;
        *end = date_;
        addDays(*end, 1);
        addSeconds(*end, -1);
    }
    void setPeriod(const SYSTEMTIME& start, const SYSTEMTIME&) override { date_ = cleared(start); }
    void bounds(FILETIME* start, FILETIME* end) const override {
        *start = toFileTime(date_);
        *end = *start + kTicksPerDay - kTicksPerSecond;
    }
    void previous() override { addDays(date_, -1); }
    void next() override { addDays(date_, 1); }
    void today() override { date_ = todayDate(); }
    void selectDate(const SYSTEMTIME& d) override { date_ = withDayOfWeek(d); }
    std::u16string label(const LocaleInfo& locale) const override {
        return commonDateText(locale, date_);
    }
    SYSTEMTIME currentDate() const override { return date_; }

  private:
    SYSTEMTIME date_ = todayDate();
};

class WeekView : public PeriodView {
  public:
    explicit WeekView(bool mondayFirst) : mondayFirst_(mondayFirst) { toWeekStart(todayDate()); }
    ViewKind kind() const override { return kWeekView; }
    void getPeriod(SYSTEMTIME* start, SYSTEMTIME* end) const override {
        *start = start_;
        *end = start_;
        addDays(*end, 7);
        addSeconds(*end, -1);
    }
    void setPeriod(const SYSTEMTIME& start, const SYSTEMTIME&) override {
        toWeekStart(cleared(start));
    }
    void bounds(FILETIME* start, FILETIME* end) const override {
        *start = toFileTime(start_);
        *end = *start + 7 * kTicksPerDay - kTicksPerSecond;
    }
    void previous() override { addDays(start_, -7); }
    void next() override { addDays(start_, 7); }
    void today() override { toWeekStart(todayDate()); }
    void selectDate(const SYSTEMTIME& d) override { toWeekStart(withDayOfWeek(d)); }
    std::u16string label(const LocaleInfo& locale) const override {
        return u"Week Of " + dateWithoutWeekdayText(locale, start_);
    }
    SYSTEMTIME currentDate() const override { return start_; }

  private:
    void toWeekStart(SYSTEMTIME d) {
        weekStart(d, mondayFirst_);
        start_ = withDayOfWeek(d);
    }

    bool mondayFirst_;
    SYSTEMTIME start_{};
};

class MonthView : public PeriodView {
  public:
    ViewKind kind() const override { return kMonthView; }
    // A month reports its end one minute short of the next month, while its
    // refresh walks to the last second; both are kept as they are.
    void getPeriod(SYSTEMTIME* start, SYSTEMTIME* end) const override {
        *start = date_;
        *end = monthEnd(date_, 60);
    }
    void setPeriod(const SYSTEMTIME& start, const SYSTEMTIME&) override {
        SYSTEMTIME d = start;
        setDay(d, 1);
        date_ = cleared(d);
    }
    void bounds(FILETIME* start, FILETIME* end) const override {
        *start = toFileTime(date_);
        *end = toFileTime(monthEnd(date_, 1));
    }
    void previous() override { step(-1); }
    void next() override { step(1); }
    void today() override {
        SYSTEMTIME d = todayDate();
        setDay(d, 1);
        date_ = withDayOfWeek(d);
    }
    void selectDate(const SYSTEMTIME& d) override { date_ = cleared(d); }
    std::u16string label(const LocaleInfo& locale) const override {
        return yearMonthText(locale, date_);
    }
    SYSTEMTIME currentDate() const override { return date_; }

  private:
    // Keeps the day of the month where the new month has it, else its last.
    void step(int months) {
        int day = date_.wDay;
        addMonths(date_, months);
        SYSTEMTIME last = monthEnd(date_, 60);
        setDay(date_, day < last.wDay ? day : last.wDay);
    }

    SYSTEMTIME date_ = [] {
        SYSTEMTIME d = todayDate();
        setDay(d, 1);
        return withDayOfWeek(d);
    }();
};

class CustomPeriodView : public PeriodView {
  public:
    ViewKind kind() const override { return kCustomView; }
    void getPeriod(SYSTEMTIME* start, SYSTEMTIME* end) const override {
        *start = start_;
        *end = end_;
    }
    void setPeriod(const SYSTEMTIME& start, const SYSTEMTIME& end) override {
        start_ = cleared(start);
        end_ = cleared(end);
        addDays(end_, 1);
        addSeconds(end_, -1);
    }
    void bounds(FILETIME* start, FILETIME* end) const override {
        *start = toFileTime(start_);
        *end = toFileTime(end_);
    }
    void selectDate(const SYSTEMTIME& d) override { start_ = withDayOfWeek(d); }
    std::u16string label(const LocaleInfo& locale) const override {
        return dateWithoutWeekdayText(locale, start_) + u" - " +
               dateWithoutWeekdayText(locale, end_);
    }
    SYSTEMTIME currentDate() const override { return start_; }
    SYSTEMTIME endDate() const override { return end_; }
    void setEndDate(const SYSTEMTIME& d) override { end_ = withDayOfWeek(d); }

  private:
    SYSTEMTIME start_ = todayDate();
    SYSTEMTIME end_ = todayDate();
};

}  // namespace

std::u16string_view viewKindName(ViewKind kind) {
    switch (kind) {
        case kDayView:
            return u"Day";
        case kWeekView:
            return u"Week";
        case kMonthView:
            return u"Month";
        case kCustomView:
            return u"Custom Period";
    }
    return u"";
}

SYSTEMTIME todayDate() {
    SYSTEMTIME now = localNow();
    clearTime(now);
    return now;
}

std::unique_ptr<PeriodView> makePeriodView(ViewKind kind, bool mondayFirst) {
    switch (kind) {
        case kDayView:
            return std::make_unique<DayView>();
        case kWeekView:
            return std::make_unique<WeekView>(mondayFirst);
        case kMonthView:
            return std::make_unique<MonthView>();
        case kCustomView:
            return std::make_unique<CustomPeriodView>();
    }
    return nullptr;
}

}  // namespace qb
