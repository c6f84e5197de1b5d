#include "report/report_fields.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "entry/rate_rules.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "store/record_props.h"
#include "store/time_entry.h"

namespace qb {
namespace {

constexpr std::u16string_view kTitles[kReportFieldCount] = {
    u"Entry Date",  u"Client",     u"Project",   u"Phase",
    u"Task",        u"Duration",   u"Currency",  u"Billable/Non-Billable",
    u"Paid/Unpaid", u"Start Time", u"Bill To",   u"Custom 1",
    u"Custom 2",    u"Custom 3",   u"Rate Type", u"Amount",
    u"Notes",       u"Rate"};

// The entry property behind each field; 0 for the computed ones.
constexpr std::uint16_t kProperties[kReportFieldCount] = {kPropDate,     kPropClient,
                                                          kPropProject,  kPropPhase,
                                                          kPropTask,     kPropDuration,
                                                          kPropCurrency, kPropBillable,
                                                          kPropPaid,     kPropOldStartTime,
                                                          kPropBillTo,   kPropCustom1,
                                                          kPropCustom2,  kPropCustom3,
                                                          kPropRateType, 0,
                                                          kPropNotes,    0};

std::u16string ascii(const std::string& s) {
    return std::u16string(s.begin(), s.end());
}
std::u16string yesNo(bool v) {
    return v ? u"Yes" : u"No";
}

SYSTEMTIME calendarOf(const TimeEntry& e) {
    SYSTEMTIME st{};
    fileTimeToSystemTime(e.date, &st);
    return st;
}

}  // namespace

std::u16string reportFieldTitle(int field, const Settings& settings) {
    switch (field) {
        case 11:
            return settings.custom1Caption;
        case 12:
            return settings.custom2Caption;
        case 13:
            return settings.custom3Caption;
        default:
            return field >= 0 && field < kReportFieldCount ? std::u16string(kTitles[field])
                                                           : std::u16string();
    }
}

std::u16string reportCellText(int field, const TimeEntry& e, const ExportSettings& env) {
    switch (field) {
        case 0:
            return getDateFormat(env.locale, DATE_SHORTDATE, calendarOf(e), nullptr);
        case 1:
            return e.client;
        case 2:
            return e.project;
        case 3:
            return e.phase;
        case 4:
            return e.task;
        case 5:
            return ascii(hundredthsText(e.duration)) + u"h";
        case 6:
            return e.currency;
        case 7:
            return yesNo(e.billable);
        case 8:
            return yesNo(e.paid);
        case 9:
            return getTimeFormat(env.locale, TIME_NOSECONDS, calendarOf(e), nullptr);
        case 10:
            return e.billTo;
        case 11:
            return e.custom1;
        case 12:
            return e.custom2;
        case 13:
            return e.custom3;
        case 14:
            return std::u16string(rateTypeName(e.rateType));
        case 15:
            return ascii(stringPrintf("%.02f", EntryAmount(e, env.settings)));
        case 16:
            return e.notesSize() >= 1 ? noteText(e) : std::u16string();
        case 17:
            return rateText(e.rate);
        default:
            return {};
    }
}

bool reportFieldRightAligned(int field) {
    return field == kFieldDuration || field == kFieldAmount || field == kFieldRate;
}

int reportFieldOfProperty(std::uint32_t propId) {
    const std::uint16_t number = propNumber(propId);
    for (int n = 0; n < kReportFieldCount; ++n) {
        if (kProperties[n] != 0 && kProperties[n] == number) return n;
    }
    return -1;
}

}  // namespace qb
