#include "import/ical_export.h"

#include <libical/ical.h>

#include <cstdlib>
#include <ctime>

#include "entry/note_text.h"
#include "export/export_file.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

icaltimetype icalTimeOf(const TimeEntry& entry, bool withTime) {
    SYSTEMTIME st{};
    fileTimeToSystemTime(entry.date, &st);
    icaltimetype t = icaltime_null_time();
    t.year = st.wYear;
    t.month = st.wMonth;
    t.day = st.wDay;
    if (withTime) {
        t.hour = st.wHour;
        t.minute = st.wMinute;
        // The seconds of a stored date only mark that it has a start time.
        t.second = 0;
    } else {
        t.is_date = 1;
    }
    return t;
}

std::string withoutCr(const std::u16string& text) {
    std::u16string out;
    for (char16_t c : text) {
        if (c != u'\r') out += c;
    }
    return utf16ToUtf8(out);
}

}  // namespace

std::string icalHeader() {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Quillarbor//Time entries//EN\r\n"
           "CALSCALE:GREGORIAN\r\n";
}

std::string icalFooter() {
    return "END:VCALENDAR\r\n";
}

std::string icalEvent(const TimeEntry& entry, const std::string& stamp) {
    icalcomponent* event = icalcomponent_new(ICAL_VEVENT_COMPONENT);
    const std::string uid =
        stringPrintf("%u-%llu@quillarbor", static_cast<unsigned>(entry.recordOid),
                     static_cast<unsigned long long>(entry.date));
    icalcomponent_add_property(event, icalproperty_new_uid(uid.c_str()));
    icalcomponent_add_property(event,
                               icalproperty_new_dtstamp(icaltime_from_string(stamp.c_str())));
    const bool timed = hasStartTime(entry);
    const int seconds = entry.duration * 36;
    icalcomponent_add_property(event, icalproperty_new_dtstart(icalTimeOf(entry, timed)));
    if (timed) {
        icalcomponent_add_property(event,
                                   icalproperty_new_duration(icaldurationtype_from_int(seconds)));
    } else {
        icaltimetype next = icalTimeOf(entry, false);
        icaltime_adjust(&next, 1, 0, 0, 0);
        icalcomponent_add_property(event, icalproperty_new_dtend(next));
        icalproperty* hours =
            icalproperty_new_x(icaldurationtype_as_ical_string(icaldurationtype_from_int(seconds)));
        icalproperty_set_x_name(hours, "X-QUILLARBOR-DURATION");
        icalcomponent_add_property(event, hours);
    }
    icalcomponent_add_property(event, icalproperty_new_summary(utf16ToUtf8(entry.task).c_str()));
    if (!entry.notes.empty()) {
        const std::string note = withoutCr(noteText(entry));
        icalcomponent_add_property(event, icalproperty_new_description(note.c_str()));
    }
    icalcomponent_add_property(event,
                               icalproperty_new_categories(utf16ToUtf8(entry.client).c_str()));
    if (!entry.project.empty()) {
        icalcomponent_add_property(event,
                                   icalproperty_new_categories(utf16ToUtf8(entry.project).c_str()));
    }
    char* text = icalcomponent_as_ical_string_r(event);
    std::string out = text ? text : "";
    icalmemory_free_buffer(text);
    icalcomponent_free(event);
    return out;
}

bool ExportIcal(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
                std::string* error) {
    ExportFile file(fileName);
    if (file.create()) {
        const icaltimetype now =
            icaltime_from_timet_with_zone(std::time(nullptr), 0, icaltimezone_get_utc_timezone());
        const std::string stamp = icaltime_as_ical_string(now);
        // The writer buffers; each event goes to it as it is made.
        file.writeNarrow(icalHeader());
        walkMatching(table, filter, [&](const TimeEntry& e) {
            return file.writeNarrow(icalEvent(e, stamp));
        });
        file.writeNarrow(icalFooter());
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
