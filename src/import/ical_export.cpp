#include "import/ical_export.h"

#include "import/ical_api.h"

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
    icaltimetype t = ical().icaltime_null_time();
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

// A TEXT value as RFC 5545 escapes it.
std::string escapedText(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '\\' || c == ',' || c == ';') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c != '\r') {
            out += c;
        }
    }
    return out;
}

// A content line folded after 75 octets, never inside a UTF-8 character.
std::string folded(const std::string& line) {
    std::string out;
    std::size_t width = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(line[i]);
        const bool continuation = (c & 0xC0) == 0x80;
        if (!continuation && width >= 75) {
            out += "\r\n ";
            width = 1;
        }
        out += line[i];
        ++width;
    }
    return out + "\r\n";
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
    if (!loadIcal()) return {};
    icalcomponent* event = ical().icalcomponent_new(ICAL_VEVENT_COMPONENT);
    const std::string uid =
        stringPrintf("%u-%llu@quillarbor", static_cast<unsigned>(entry.recordOid),
                     static_cast<unsigned long long>(entry.date));
    ical().icalcomponent_add_property(event, ical().icalproperty_new_uid(uid.c_str()));
    ical().icalcomponent_add_property(
        event, ical().icalproperty_new_dtstamp(ical().icaltime_from_string(stamp.c_str())));
    const bool timed = hasStartTime(entry);
    const int seconds = entry.duration * 36;
    ical().icalcomponent_add_property(event,
                                      ical().icalproperty_new_dtstart(icalTimeOf(entry, timed)));
    if (timed) {
        ical().icalcomponent_add_property(
            event, ical().icalproperty_new_duration(ical().icaldurationtype_from_int(seconds)));
    } else {
        icaltimetype next = icalTimeOf(entry, false);
        ical().icaltime_adjust(&next, 1, 0, 0, 0);
        ical().icalcomponent_add_property(event, ical().icalproperty_new_dtend(next));
        icalproperty* hours = ical().icalproperty_new_x(
            ical().icaldurationtype_as_ical_string(ical().icaldurationtype_from_int(seconds)));
        ical().icalproperty_set_x_name(hours, "X-QUILLARBOR-DURATION");
        ical().icalcomponent_add_property(event, hours);
    }
    ical().icalcomponent_add_property(
        event, ical().icalproperty_new_summary(utf16ToUtf8(entry.task).c_str()));
    if (!entry.notes.empty()) {
        const std::string note = withoutCr(noteText(entry));
        ical().icalcomponent_add_property(event, ical().icalproperty_new_description(note.c_str()));
    }
    char* text = ical().icalcomponent_as_ical_string_r(event);
    std::string out = text ? text : "";
    ical().icalmemory_free_buffer(text);
    ical().icalcomponent_free(event);
    // libical writes a comma inside a category as it is, which splits the
    // category in two when read back; so the line is written here.
    std::string categories = "CATEGORIES:" + escapedText(utf16ToUtf8(entry.client));
    if (!entry.project.empty()) categories += "," + escapedText(utf16ToUtf8(entry.project));
    const std::size_t end = out.rfind("END:VEVENT");
    if (end != std::string::npos) out.insert(end, folded(categories));
    return out;
}

bool ExportIcal(EntryTable& table, const std::string& fileName, const EntryFilter& filter,
                std::string* error) {
    std::string why;
    if (!loadIcal(&why)) {
        if (error) *error = why;
        return false;
    }
    ExportFile file(fileName);
    if (file.create()) {
        const icaltimetype now = ical().icaltime_from_timet_with_zone(
            std::time(nullptr), 0, ical().icaltimezone_get_utc_timezone());
        const std::string stamp = ical().icaltime_as_ical_string(now);
        // The writer buffers; each event goes to it as it is made.
        file.writeNarrow(icalHeader());
        walkMatching(table, filter,
                     [&](const TimeEntry& e) { return file.writeNarrow(icalEvent(e, stamp)); });
        file.writeNarrow(icalFooter());
        file.finish();
    }
    if (error) *error = file.error();
    return file.ok();
}

}  // namespace qb
