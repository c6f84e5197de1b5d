#pragma once

// The four period views: the period each holds, its bounds, navigation and
// label. The window that shows a view only draws what these answer.

#include <memory>
#include <string>

#include "platform/date_format.h"
#include "platform/win_types.h"

namespace qb {

enum ViewKind : std::uint32_t { kDayView = 1, kWeekView = 2, kMonthView = 3, kCustomView = 4 };

// "Day", "Week", "Month", "Custom Period".
std::u16string_view viewKindName(ViewKind kind);

class PeriodView {
  public:
    virtual ~PeriodView() = default;
    virtual ViewKind kind() const = 0;

    // The period as the main frame passes it on: its first day and its end.
    virtual void getPeriod(SYSTEMTIME* start, SYSTEMTIME* end) const = 0;
    virtual void setPeriod(const SYSTEMTIME& start, const SYSTEMTIME& end) = 0;
    // The bounds a refresh walks, both included.
    virtual void bounds(FILETIME* start, FILETIME* end) const = 0;

    // Navigation; the custom period does not move.
    virtual void previous() {}
    virtual void next() {}
    virtual void today() {}
    virtual void selectDate(const SYSTEMTIME& date) = 0;
    virtual std::u16string label(const LocaleInfo& locale) const = 0;
    // The held date (the custom view's start).
    virtual SYSTEMTIME currentDate() const = 0;
    // The custom view's end date; others answer their current date.
    virtual SYSTEMTIME endDate() const { return currentDate(); }
    virtual void setEndDate(const SYSTEMTIME&) {}
};

// `mondayFirst` decides the week start of the week view.
std::unique_ptr<PeriodView> makePeriodView(ViewKind kind, bool mondayFirst);

// Today's date at midnight.
SYSTEMTIME todayDate();

}  // namespace qb
