#include "export/entry_pictures.h"

#include "platform/calendar.h"
#include "store/time_entry.h"

namespace qb {

EntryPictures::EntryPictures(const LocaleInfo& locale)
    : date_(locale.shortDate), time_(locale.timeFormat, true) {}

void EntryPictures::appendDate(const TimeEntry& entry, std::u16string& out) const {
    SYSTEMTIME day;
    if (fileTimeToSystemTime(entry.date, &day)) date_.append(day, out);
}

void EntryPictures::appendTime(const TimeEntry& entry, std::u16string& out) const {
    SYSTEMTIME time{};
    fileTimeToSystemTime(entry.date, &time);
    time_.append(time, out);
}

}  // namespace qb
