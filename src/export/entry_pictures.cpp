#include "export/entry_pictures.h"

#include "platform/calendar.h"
#include "store/time_entry.h"

namespace qb {

EntryPictures::EntryPictures(const LocaleInfo& locale)
    : date_(locale.shortDate), time_(locale.timeFormat, true) {}

void EntryPictures::appendDate(const TimeEntry& entry, std::u16string& out) const {
    SYSTEMTIME when;
    appendDate(fileTimeToSystemTime(entry.date, &when), when, out);
}

void EntryPictures::appendTime(const TimeEntry& entry, std::u16string& out) const {
    SYSTEMTIME when;
    appendTime(fileTimeToSystemTime(entry.date, &when), when, out);
}

void EntryPictures::appendDate(bool dated, const SYSTEMTIME& when, std::u16string& out) const {
    if (dated) date_.append(when, out);
}

void EntryPictures::appendTime(bool dated, const SYSTEMTIME& when, std::u16string& out) const {
    time_.append(dated ? when : SYSTEMTIME{}, out);
}

}  // namespace qb
