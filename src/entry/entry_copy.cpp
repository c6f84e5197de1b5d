#include "entry/entry_copy.h"

#include "entry/duration_rule.h"
#include "entry/number_text.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "store/master_data.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr FILETIME kTicksPerDay = 864000000000ull;

FILETIME midnight(const SYSTEMTIME& day) {
    FILETIME ft = 0;
    systemTimeToFileTime(makeDate(day.wYear, day.wMonth, day.wDay), &ft);
    return ft;
}

SYSTEMTIME dayAt(FILETIME ft) {
    SYSTEMTIME st{};
    fileTimeToSystemTime(ft, &st);
    return st;
}

// The last day of the week holding `day`, as the week view bounds it.
FILETIME weekEnd(const SYSTEMTIME& day, const Settings& settings) {
    SYSTEMTIME st = dayAt(midnight(day));
    int w = st.wDayOfWeek;
    int offset = (settings.optionFlags & kWeekStartsMonday) ? (w == 0 ? 6 : w - 1) : w;
    return midnight(day) + static_cast<FILETIME>(6 - offset) * kTicksPerDay;
}

}  // namespace

std::vector<SYSTEMTIME> copyDays(const SYSTEMTIME& entryDay, const CopyRequest& request,
                                 const Settings& settings) {
    std::vector<SYSTEMTIME> days;
    const FILETIME first = midnight(entryDay);
    if (first == 0) return days;
    const FILETIME last = request.until ? midnight(*request.until) : weekEnd(entryDay, settings);
    for (FILETIME t = first + kTicksPerDay; last != 0 && t <= last; t += kTicksPerDay) {
        SYSTEMTIME st = dayAt(t);
        bool weekend = st.wDayOfWeek == 0 || st.wDayOfWeek == 6;
        if (!weekend || request.includeWeekend) days.push_back(st);
    }
    return days;
}

CopyResult copyEntry(DataFile& file, EntryTable& entries, MasterTables& masters,
                     const TimeEntry& source, const CopyRequest& request,
                     const Settings& settings) {
    CopyResult result;
    std::u16string box = limitText(request.duration, kDurationLimit);
    if (box.empty()) {
        result.check = {false, kDurationBlankMessage, FormField::kDuration};
        return result;
    }
    if (holdsLetter(box)) {
        result.check = {false, kNumericOnlyMessage, FormField::kDuration};
        return result;
    }
    // The box starts with the entry's duration; left so, the copies keep it.
    std::uint16_t duration = source.duration;
    if (box != durationText(source.duration)) {
        const std::optional<std::uint16_t> typed = durationFromText(box, settings);
        if (!typed) {
            result.check = {false, kDurationRangeMessage, FormField::kDuration};
            return result;
        }
        duration = *typed;
    }
    const SYSTEMTIME sourceDay = dayAt(source.date);
    const FILETIME timeOfDay = source.date - midnight(sourceDay);
    if (!file.beginBatch()) return result;
    std::vector<CEOID> created;
    for (const SYSTEMTIME& day : copyDays(sourceDay, request, settings)) {
        TimeEntry copy = source;
        copy.recordOid = 0;
        copy.date = midnight(day) + timeOfDay;
        copy.duration = duration;
        if (!saveEntry(entries, copy)) {
            file.rollbackBatch();
            return result;
        }
        registerMasterData(masters, copy);
        created.push_back(copy.recordOid);
    }
    if (!file.commitBatch()) return result;
    result.ok = true;
    result.created = std::move(created);
    return result;
}

}  // namespace qb
