#include "views/entry_rows.h"

#include <cstring>

#include "app/settings.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"
#include "views/calendar_helpers.h"
#include "views/date_texts.h"

namespace qb {

const std::uint32_t kPalette[kPaletteSize] = {
    0xFF000000, 0x0000FF, 0x000080, 0x0080FF, 0x000040, 0xFF0000, 0x800000,
    0xFF00FF,   0xFFAAFF, 0x8080C0, 0x400040, 0x80FFFF, 0xFF8000, 0x804000,
    0x00FF00,   0x008000, 0x408080, 0x808000, 0xF0F000, 0xB9C6F0, 0xFF8080,
    0xC080FF,   0x66CCFF, 0x666699, 0xB4E2FF, 0x33CC66, 0xCCFFCC, 0xCCCCFF};

const std::array<std::u16string_view, kSimpleColumns> kSimpleColumnTitles = {
    u"Entry Date", u"Client",  u"Project",  u"Phase",    u"Task",    u"Duration",
    u"Start Time", u"Bill To", u"Custom 1", u"Custom 2", u"Custom 3"};
const std::array<int, kSimpleColumns> kSimpleColumnWidths = {80, 100, 100, 50, 100, 50,
                                                             65, 80,  70,  70, 70};

namespace {

std::uint32_t word(const std::uint8_t* bytes) {
    std::uint32_t v = 0;
    std::memcpy(&v, bytes, 4);
    return v;
}

void putWord(std::uint8_t* bytes, std::uint32_t v) {
    std::memcpy(bytes, &v, 4);
}

std::u16string hours(std::uint16_t duration) {
    return utf8ToUtf16(stringPrintf("%.2f", duration * 0.01));
}

SYSTEMTIME dateOf(const TimeEntry& entry) {
    SYSTEMTIME st{};
    fileTimeToSystemTime(entry.date, &st);
    return st;
}

}  // namespace

EntryStatus entryStatus(const TimeEntry& entry) {
    if (!entry.billable) return kNonBillable;
    return entry.paid ? kPaid : kUnpaid;
}

ListDisplay listDisplayOf(const Settings& settings) {
    const std::uint8_t* b = settings.viewCustom.data();
    ListDisplay d;
    d.entryTimeMode = word(b);
    d.displayFlags = word(b + 4);
    for (int i = 0; i < 3; ++i) d.colour[i] = word(b + 8 + 4 * i);
    return d;
}

void storeListDisplay(const ListDisplay& display, Settings& settings) {
    std::uint8_t* b = settings.viewCustom.data();
    putWord(b, display.entryTimeMode);
    putWord(b + 4, display.displayFlags);
    for (int i = 0; i < 3; ++i) putWord(b + 8 + 4 * i, display.colour[i]);
}

SYSTEMTIME entryEndTime(const TimeEntry& entry) {
    SYSTEMTIME end = dateOf(entry);
    addMinutes(end, static_cast<int>(entry.duration * 0.01 * 60));
    return end;
}

std::vector<std::u16string> defaultRowLines(const TimeEntry& entry, ViewKind view,
                                            const ListDisplay& display, const LocaleInfo& locale) {
    SYSTEMTIME date = dateOf(entry);
    std::u16string first;
    if (view != kDayView) first = shortDateText(locale, date) + u" ";
    // This style shows a start whenever the seconds are set at all.
    if (date.wSecond != 0) {
        std::u16string start = shortTimeText(locale, date);
        std::u16string end = shortTimeText(locale, entryEndTime(entry));
        switch (display.entryTimeMode) {
            case 1:
                first += hours(entry.duration) + u"h (" + start + u" - " + end + u")";
                break;
            case 2:
                first += start + u" - " + end;
                break;
            default:
                first += hours(entry.duration) + u"h (" + start + u")";
                break;
        }
    } else {
        first += hours(entry.duration) + u"h";
    }
    std::vector<std::u16string> lines{first, entry.task, entry.project};
    if (!entry.phase.empty()) lines[2] += u" (" + entry.phase + u")";
    if (display.showClientName()) lines.push_back(entry.client);
    return lines;
}

std::array<std::u16string, kSimpleColumns> simpleRowCells(const TimeEntry& entry,
                                                          const LocaleInfo& locale) {
    SYSTEMTIME date = dateOf(entry);
    return {shortDateText(locale, date),
            entry.client,
            entry.project,
            entry.phase,
            entry.task,
            hours(entry.duration),
            hasStartTime(entry) ? shortTimeText(locale, date) : std::u16string(),
            entry.billTo,
            entry.custom1,
            entry.custom2,
            entry.custom3};
}

}  // namespace qb
