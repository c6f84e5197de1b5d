#include "store/time_entry.h"

#include "platform/calendar.h"
#include "platform/record_codec.h"
#include "store/record_props.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr std::uint32_t id(std::uint16_t number, PropType type) {
    return makePropId(number, type);
}

CEPROPVAL textValue(std::uint16_t number, const std::u16string& text) {
    CEPROPVAL v = CEPROPVAL::wstr(number, text);
    return text.empty() ? std::move(v).deleted() : v;
}

// Takes hour, minute and second of an older record's separate start time
// into the entry's date.
void foldOldStartTime(TimeEntry& entry, FILETIME start) {
    SYSTEMTIME day;
    SYSTEMTIME time;
    if (!fileTimeToSystemTime(entry.date, &day) || !fileTimeToSystemTime(start, &time)) return;
    day.wHour = time.wHour;
    day.wMinute = time.wMinute;
    day.wSecond = time.wSecond;
    day.wMilliseconds = 0;
    systemTimeToFileTime(day, &entry.date);
}

// Applies a change to the calendar fields of the entry's date.
template <typename Change>
void changeDate(TimeEntry& entry, Change change) {
    SYSTEMTIME st;
    if (!fileTimeToSystemTime(entry.date, &st)) return;
    change(st);
    FILETIME ft;
    if (systemTimeToFileTime(st, &ft)) entry.date = ft;
}

}  // namespace

void resetEntry(TimeEntry& entry) {
    // Field by field, so that the texts keep their buffers for the next
    // record of a walk. A field added to TimeEntry is reset here too.
    static_assert(sizeof(TimeEntry) == 352, "reset the new field of TimeEntry in resetEntry");
    entry.billable = false;
    entry.paid = false;
    for (std::u16string* text :
         {&entry.client, &entry.project, &entry.phase, &entry.task, &entry.currency, &entry.billTo,
          &entry.custom1, &entry.custom2, &entry.custom3}) {
        text->clear();
    }
    entry.rateType = 0;
    entry.date = 0;
    entry.notes.clear();
    entry.duration = 0;
    entry.rate = 0;
    entry.recordOid = 0;
}

void setNotes(TimeEntry& entry, std::int32_t size, const std::uint8_t* bytes) {
    entry.notes.clear();
    if (size > 0 && bytes) entry.notes.assign(bytes, bytes + size);
}

void setEntryDay(TimeEntry& entry, const SYSTEMTIME& day) {
    changeDate(entry, [&](SYSTEMTIME& st) {
        st.wYear = day.wYear;
        st.wMonth = day.wMonth;
        st.wDayOfWeek = day.wDayOfWeek;
        st.wDay = day.wDay;
    });
}

void setStartTime(TimeEntry& entry, const SYSTEMTIME& time) {
    changeDate(entry, [&](SYSTEMTIME& st) {
        st.wHour = time.wHour;
        st.wMinute = time.wMinute;
        st.wSecond = 1;
        st.wMilliseconds = 0;
    });
}

void clearStartTime(TimeEntry& entry) {
    changeDate(entry, [](SYSTEMTIME& st) {
        st.wHour = 0;
        st.wMinute = 0;
        st.wSecond = 0;
        st.wMilliseconds = 0;
    });
}

bool hasStartTime(const TimeEntry& entry) {
    SYSTEMTIME st;
    return fileTimeToSystemTime(entry.date, &st) && hasStartTime(st);
}

int readEntry(EntryTable& table, TimeEntry& entry, bool* dated) {
    // Read where the record lies, into the entry's own buffers: a walk
    // reads record after record without allocating.
    std::string_view encoded;
    const int rc = table.readEncoded(&encoded);
    if (rc != 0) {
        resetEntry(entry);
        if (dated) *dated = false;
        return rc;
    }
    return decodeEntry(encoded, table.currentOid(), entry, dated);
}

int decodeEntry(std::string_view encoded, CEOID oid, TimeEntry& entry, bool* dated) {
    resetEntry(entry);
    if (dated) *dated = false;
    entry.recordOid = oid;
    PropReader reader(encoded);
    PropView p;
    while (reader.next(p)) {
        switch (p.propid) {
            case id(kPropDate, CEVT_FILETIME):
                entry.date = p.num;
                if (dated) *dated = true;
                break;
            case id(kPropClient, CEVT_LPWSTR):
                assignText(p.bytes, entry.client);
                break;
            case id(kPropProject, CEVT_LPWSTR):
                assignText(p.bytes, entry.project);
                break;
            case id(kPropPhase, CEVT_LPWSTR):
                assignText(p.bytes, entry.phase);
                break;
            case id(kPropTask, CEVT_LPWSTR):
                assignText(p.bytes, entry.task);
                break;
            case id(kPropCurrency, CEVT_LPWSTR):
                assignText(p.bytes, entry.currency);
                break;
            case id(kPropBillTo, CEVT_LPWSTR):
                assignText(p.bytes, entry.billTo);
                break;
            case id(kPropCustom1, CEVT_LPWSTR):
                assignText(p.bytes, entry.custom1);
                break;
            case id(kPropCustom2, CEVT_LPWSTR):
                assignText(p.bytes, entry.custom2);
                break;
            case id(kPropCustom3, CEVT_LPWSTR):
                assignText(p.bytes, entry.custom3);
                break;
            case id(kPropDuration, CEVT_UI2):
                entry.duration = static_cast<std::uint16_t>(p.num);
                break;
            case id(kPropRateType, CEVT_UI2):
                entry.rateType = static_cast<std::uint16_t>(p.num);
                break;
            case id(kPropRate, CEVT_UI4):
                entry.rate = static_cast<std::uint32_t>(p.num);
                break;
            case id(kPropBillable, CEVT_BOOL):
                entry.billable = p.num == 1;
                break;
            case id(kPropPaid, CEVT_BOOL):
                entry.paid = p.num == 1;
                break;
            case id(kPropNotes, CEVT_BLOB):
                setNotes(entry, static_cast<std::int32_t>(p.bytes.size()),
                         reinterpret_cast<const std::uint8_t*>(p.bytes.data()));
                break;
            case id(kPropOldStartTime, CEVT_FILETIME):
                foldOldStartTime(entry, p.num);
                break;
            default:
                break;
        }
    }
    if (reader.failed()) {
        // A damaged record reads as nothing, as the table's readers see it.
        resetEntry(entry);
        entry.recordOid = 0;
        if (dated) *dated = false;
        return -1;
    }
    return 0;
}

std::vector<CEPROPVAL> entryAddValues(const TimeEntry& e) {
    std::vector<CEPROPVAL> v;
    v.reserve(16);
    auto optionalText = [&v](std::uint16_t number, const std::u16string& text) {
        if (!text.empty()) v.push_back(CEPROPVAL::wstr(number, text));
    };
    v.push_back(CEPROPVAL::fileTime(kPropDate, e.date));
    v.push_back(CEPROPVAL::wstr(kPropClient, e.client));
    optionalText(kPropProject, e.project);
    optionalText(kPropPhase, e.phase);
    v.push_back(CEPROPVAL::wstr(kPropTask, e.task));
    v.push_back(CEPROPVAL::ui2(kPropDuration, e.duration));
    v.push_back(CEPROPVAL::boolean(kPropBillable, e.billable));
    optionalText(kPropCurrency, e.currency);
    v.push_back(CEPROPVAL::ui4(kPropRate, e.rate));
    v.push_back(CEPROPVAL::boolean(kPropPaid, e.paid));
    if (!e.notes.empty()) v.push_back(CEPROPVAL::blobOf(kPropNotes, e.notes));
    optionalText(kPropBillTo, e.billTo);
    optionalText(kPropCustom1, e.custom1);
    optionalText(kPropCustom2, e.custom2);
    optionalText(kPropCustom3, e.custom3);
    v.push_back(CEPROPVAL::ui2(kPropRateType, e.rateType));
    return v;
}

std::vector<CEPROPVAL> entryUpdateValues(const TimeEntry& e) {
    CEPROPVAL notes = CEPROPVAL::blobOf(kPropNotes, e.notes);
    if (e.notes.empty()) notes = std::move(notes).deleted();
    return {CEPROPVAL::fileTime(kPropDate, e.date),
            CEPROPVAL::wstr(kPropClient, e.client),
            textValue(kPropProject, e.project),
            textValue(kPropPhase, e.phase),
            CEPROPVAL::wstr(kPropTask, e.task),
            CEPROPVAL::ui2(kPropDuration, e.duration),
            CEPROPVAL::boolean(kPropBillable, e.billable),
            textValue(kPropCurrency, e.currency),
            CEPROPVAL::ui4(kPropRate, e.rate),
            CEPROPVAL::boolean(kPropPaid, e.paid),
            notes,
            CEPROPVAL::fileTime(kPropOldStartTime, 0).deleted(),
            textValue(kPropBillTo, e.billTo),
            textValue(kPropCustom1, e.custom1),
            textValue(kPropCustom2, e.custom2),
            textValue(kPropCustom3, e.custom3),
            CEPROPVAL::ui2(kPropRateType, e.rateType)};
}

bool addEntry(EntryTable& table, const TimeEntry& entry) {
    return table.add(entryAddValues(entry));
}

bool updateEntry(EntryTable& table, const TimeEntry& entry) {
    return table.update(entryUpdateValues(entry));
}

bool saveEntry(EntryTable& table, TimeEntry& entry) {
    if (entry.recordOid != 0) {
        return table.seekOid(entry.recordOid) && updateEntry(table, entry);
    }
    if (!addEntry(table, entry)) return false;
    entry.recordOid = table.currentOid();
    return true;
}

}  // namespace qb
