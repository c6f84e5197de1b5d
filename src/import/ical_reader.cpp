// iCalendar files through libical: each VEVENT is a time record; so is a
// VTODO that carries its own start and duration or due time. Time records
// as KTimeTracker writes them (a VEVENT related to its task's VTODO, with
// the seconds in X-KDE-ktimetracker-duration) read the same way.

#include "import/ical_api.h"

#include <strings.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "import/import_time.h"
#include "import/readers.h"
#include "platform/text.h"

namespace qb {
namespace {

struct ComponentFree {
    void operator()(icalcomponent* c) const { ical().icalcomponent_free(c); }
};
using Component = std::unique_ptr<icalcomponent, ComponentFree>;

// The lines where each VEVENT and VTODO begins, in file order: libical keeps
// the components in that order but not their lines.
std::vector<std::size_t> componentLines(std::string_view bytes) {
    std::vector<std::size_t> lines;
    std::size_t line = 1;
    std::size_t pos = 0;
    while (pos < bytes.size()) {
        std::size_t end = bytes.find('\n', pos);
        if (end == std::string_view::npos) end = bytes.size();
        std::string_view text = bytes.substr(pos, end - pos);
        if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
        if (text == "BEGIN:VEVENT" || text == "BEGIN:VTODO") lines.push_back(line);
        ++line;
        pos = end + 1;
    }
    return lines;
}

bool hasEnd(std::string_view bytes) {
    const std::size_t at = bytes.rfind("END:VCALENDAR");
    return at != std::string_view::npos;
}

std::string xValue(icalcomponent* c, const char* name) {
    for (icalproperty* p = ical().icalcomponent_get_first_property(c, ICAL_X_PROPERTY); p;
         p = ical().icalcomponent_get_next_property(c, ICAL_X_PROPERTY)) {
        const char* n = ical().icalproperty_get_x_name(p);
        if (n && strcasecmp(n, name) == 0) {
            const char* v = ical().icalproperty_get_x(p);
            return v ? v : "";
        }
    }
    return {};
}

SYSTEMTIME makeDateFields(const icaltimetype& t) {
    SYSTEMTIME st{};
    st.wYear = static_cast<std::uint16_t>(t.year);
    st.wMonth = static_cast<std::uint16_t>(t.month);
    st.wDay = static_cast<std::uint16_t>(t.day);
    st.wHour = static_cast<std::uint16_t>(t.is_date ? 0 : t.hour);
    st.wMinute = static_cast<std::uint16_t>(t.is_date ? 0 : t.minute);
    st.wSecond = static_cast<std::uint16_t>(t.is_date ? 0 : t.second);
    return st;
}

bool fromIcalTime(icaltimetype t, Moment* out) {
    if (ical().icaltime_is_null_time(t)) return false;
    if (ical().icaltime_is_utc(t)) return momentFromUnix(ical().icaltime_as_timet(t), out);
    if (t.zone != nullptr && !t.is_date) {
        return momentFromUnix(ical().icaltime_as_timet_with_zone(t, t.zone), out);
    }
    SYSTEMTIME day = makeDateFields(t);
    return combine(day, day, out);
}

std::u16string text(const char* s) {
    return s ? utf8ToUtf16(s) : std::u16string();
}

// Bare LF line ends as the notes of this system keep them: CR LF.
std::u16string withCrLf(const std::u16string& s) {
    std::u16string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == u'\n' && (i == 0 || s[i - 1] != u'\r')) out += u'\r';
        out += s[i];
    }
    return out;
}

void readComponent(icalcomponent* c, const std::unordered_map<std::string, std::string>& taskNames,
                   ImportRow& row) {
    const bool kttRecord = !xValue(c, "X-KDE-ktimetracker-duration").empty();
    const char* related = nullptr;
    if (icalproperty* p = ical().icalcomponent_get_first_property(c, ICAL_RELATEDTO_PROPERTY)) {
        related = ical().icalproperty_get_relatedto(p);
    }
    std::vector<std::u16string> categories;
    for (icalproperty* p = ical().icalcomponent_get_first_property(c, ICAL_CATEGORIES_PROPERTY); p;
         p = ical().icalcomponent_get_next_property(c, ICAL_CATEGORIES_PROPERTY)) {
        std::u16string value = text(ical().icalproperty_get_categories(p));
        // KTimeTracker marks its records with its own name, which is no client.
        if ((kttRecord || related) && value == u"KTimeTracker") continue;
        categories.push_back(std::move(value));
    }
    if (!categories.empty()) row.client = categories[0];
    if (categories.size() > 1) row.project = categories[1];
    row.task = text(ical().icalcomponent_get_summary(c));
    if (row.task.empty() && related) {
        auto it = taskNames.find(related);
        if (it != taskNames.end()) row.task = utf8ToUtf16(it->second);
    }
    row.note = withCrLf(text(ical().icalcomponent_get_description(c)));
    if (row.note.empty()) {
        for (icalproperty* p = ical().icalcomponent_get_first_property(c, ICAL_COMMENT_PROPERTY); p;
             p = ical().icalcomponent_get_next_property(c, ICAL_COMMENT_PROPERTY)) {
            if (!row.note.empty()) row.note += u"\r\n";
            row.note += withCrLf(text(ical().icalproperty_get_comment(p)));
        }
    }
    const char* uid = ical().icalcomponent_get_uid(c);
    icalproperty* startProperty = ical().icalcomponent_get_first_property(c, ICAL_DTSTART_PROPERTY);
    const char* startText =
        startProperty ? ical().icalproperty_get_value_as_string(startProperty) : nullptr;
    row.identity = std::string(uid ? uid : "") + '\x1e' + (startText ? startText : "");
    if (!uid) row.identity += '\x1e' + utf16ToUtf8(row.task) + '\x1e' + utf16ToUtf8(row.note);
    if (icalproperty* error = ical().icalcomponent_get_first_property(c, ICAL_XLICERROR_PROPERTY)) {
        const char* message = ical().icalproperty_get_xlicerror(error);
        row.problem =
            std::string("not valid iCalendar: ") + (message ? message : "unreadable property");
        return;
    }
    if (!startProperty) {
        row.problem = "no DTSTART";
        return;
    }
    const icaltimetype start = ical().icalcomponent_get_dtstart(c);
    Moment from;
    if (!fromIcalTime(start, &from)) {
        row.problem = "cannot read DTSTART";
        return;
    }
    row.day = from.local;
    if (!start.is_date) row.start = from.local;
    // Our own export keeps the hours of an entry without a start time here.
    const std::string ownDuration = xValue(c, "X-QUILLARBOR-DURATION");
    if (!ownDuration.empty()) {
        const icaldurationtype d = ical().icaldurationtype_from_string(ownDuration.c_str());
        if (!ical().icaldurationtype_is_bad_duration(d)) {
            row.seconds = ical().icaldurationtype_as_int(d);
            return;
        }
    }
    const std::string kttSeconds = xValue(c, "X-KDE-ktimetracker-duration");
    if (icalproperty* d = ical().icalcomponent_get_first_property(c, ICAL_DURATION_PROPERTY)) {
        row.seconds = ical().icaldurationtype_as_int(ical().icalproperty_get_duration(d));
        return;
    }
    if (!kttSeconds.empty()) {
        char* end = nullptr;
        const long long seconds = std::strtoll(kttSeconds.c_str(), &end, 10);
        if (end && *end == '\0') {
            row.seconds = seconds;
            return;
        }
    }
    const bool isTodo = ical().icalcomponent_isa(c) == ICAL_VTODO_COMPONENT;
    icalproperty* endProperty = ical().icalcomponent_get_first_property(
        c, isTodo ? ICAL_DUE_PROPERTY : ICAL_DTEND_PROPERTY);
    if (!endProperty) {
        row.problem = "neither DTEND nor DURATION";
        return;
    }
    Moment to;
    const icaltimetype end =
        isTodo ? ical().icalcomponent_get_due(c) : ical().icalcomponent_get_dtend(c);
    if (!fromIcalTime(end, &to)) {
        row.problem = isTodo ? "cannot read DUE" : "cannot read DTEND";
        return;
    }
    row.seconds = secondsBetween(from, to);
}

// A VTODO is a time record only when it says when it started and how long
// it took; KTimeTracker's tasks and ordinary to-dos are not.
bool isTimedTodo(icalcomponent* c) {
    return ical().icalcomponent_get_first_property(c, ICAL_DTSTART_PROPERTY) &&
           (ical().icalcomponent_get_first_property(c, ICAL_DURATION_PROPERTY) ||
            ical().icalcomponent_get_first_property(c, ICAL_DUE_PROPERTY)) &&
           xValue(c, "X-KDE-ktimetracker-totalTaskTime").empty();
}

}  // namespace

ReadStatus readIcal(std::string_view bytes, const ImportOptions&, const RowSink& sink) {
    if (bytes.find("BEGIN:VCALENDAR") == std::string_view::npos) {
        return ReadStatus::failure(1, "not an iCalendar file: no BEGIN:VCALENDAR");
    }
    const std::vector<std::size_t> lines = componentLines(bytes);
    if (!hasEnd(bytes)) {
        return ReadStatus::failure(lines.empty() ? 1 : lines.back(),
                                   "the file ends before END:VCALENDAR (cut short?)");
    }
    std::string why;
    if (!loadIcal(&why)) return ReadStatus::failure(0, why);
    const std::string copy(bytes);
    Component calendar(ical().icalparser_parse_string(copy.c_str()));
    if (!calendar) return ReadStatus::failure(1, "not an iCalendar file");
    icalcomponent* root = calendar.get();
    if (ical().icalcomponent_isa(root) != ICAL_VCALENDAR_COMPONENT) {
        root = ical().icalcomponent_get_first_component(root, ICAL_VCALENDAR_COMPONENT);
        if (!root) return ReadStatus::failure(1, "not an iCalendar file: no VCALENDAR");
    }
    std::unordered_map<std::string, std::string> taskNames;
    for (icalcomponent* c = ical().icalcomponent_get_first_component(root, ICAL_VTODO_COMPONENT); c;
         c = ical().icalcomponent_get_next_component(root, ICAL_VTODO_COMPONENT)) {
        const char* uid = ical().icalcomponent_get_uid(c);
        const char* summary = ical().icalcomponent_get_summary(c);
        if (uid && summary) taskNames.emplace(uid, summary);
    }
    std::size_t index = 0;
    for (icalcomponent* c = ical().icalcomponent_get_first_component(root, ICAL_ANY_COMPONENT); c;
         c = ical().icalcomponent_get_next_component(root, ICAL_ANY_COMPONENT)) {
        const icalcomponent_kind kind = ical().icalcomponent_isa(c);
        if (kind != ICAL_VEVENT_COMPONENT && kind != ICAL_VTODO_COMPONENT) continue;
        const std::size_t line = index < lines.size() ? lines[index] : 0;
        ++index;
        if (kind == ICAL_VTODO_COMPONENT && !isTimedTodo(c)) continue;
        ImportRow row;
        row.line = line;
        readComponent(c, taskNames, row);
        if (!sink(row)) break;
    }
    return {};
}

}  // namespace qb
