#pragma once

// An entry's date and time as the exports and reports write them: the
// locale's short date and its time without seconds, each picture read once
// for all the entries of a file.

#include <string>

#include "platform/date_format.h"

namespace qb {

struct TimeEntry;

class EntryPictures {
  public:
    explicit EntryPictures(const LocaleInfo& locale);

    // Nothing for a date past the end of the calendar.
    void appendDate(const TimeEntry& entry, std::u16string& out) const;
    // The time of the entry's date, whether or not it records a start time
    // (midnight for a date past the end of the calendar).
    void appendTime(const TimeEntry& entry, std::u16string& out) const;

    // The same from the calendar fields of the entry's date, for a writer
    // that has them already; `dated` false when they could not be made.
    void appendDate(bool dated, const SYSTEMTIME& when, std::u16string& out) const;
    void appendTime(bool dated, const SYSTEMTIME& when, std::u16string& out) const;

  private:
    DatePicture date_;
    TimePicture time_;
};

}  // namespace qb
