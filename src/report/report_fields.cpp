#include "report/report_fields.h"

#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "entry/rate_rules.h"
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

std::u16string_view yesNo(bool v) {
    return v ? u"Yes" : u"No";
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
    std::u16string text;
    appendReportCell(field, e, env, EntryPictures(env.locale), text);
    return text;
}

void appendReportCell(int field, const TimeEntry& e, const ExportSettings& env,
                      const EntryPictures& pictures, std::u16string& out) {
    switch (field) {
        case 0:
            pictures.appendDate(e, out);
            break;
        case 1:
            out += e.client;
            break;
        case 2:
            out += e.project;
            break;
        case 3:
            out += e.phase;
            break;
        case 4:
            out += e.task;
            break;
        case 5:
            appendHundredths(e.duration, out);
            out += u'h';
            break;
        case 6:
            out += e.currency;
            break;
        case 7:
            out += yesNo(e.billable);
            break;
        case 8:
            out += yesNo(e.paid);
            break;
        case 9:
            pictures.appendTime(e, out);
            break;
        case 10:
            out += e.billTo;
            break;
        case 11:
            out += e.custom1;
            break;
        case 12:
            out += e.custom2;
            break;
        case 13:
            out += e.custom3;
            break;
        case 14:
            out += rateTypeName(e.rateType);
            break;
        case 15:
            appendTwoDecimals(EntryAmount(e, env.settings), out);
            break;
        case 16:
            appendNoteText(e.notes, out);
            break;
        case 17:
            out += rateText(e.rate);
            break;
        default:
            break;
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
