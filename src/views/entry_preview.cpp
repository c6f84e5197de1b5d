#include "views/entry_preview.h"

#include "app/settings.h"
#include "entry/entry_amount.h"
#include "entry/note_text.h"
#include "entry/rate_rules.h"
#include "platform/calendar.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "store/time_entry.h"
#include "views/date_texts.h"

namespace qb {
namespace {

std::u16string yesNo(bool on) {
    return on ? u"Yes" : u"No";
}

std::u16string printed(const char* format, double value) {
    return utf8ToUtf16(stringPrintf(format, value));
}

// As the tree list shows an amount: the currency in front when there is one.
std::u16string amountText(const TimeEntry& entry, const Settings& settings) {
    const double amount = EntryAmount(entry, settings);
    if (entry.currency.empty()) return printed("%.02f", amount);
    return utf8ToUtf16(stringPrintf("%s %.02f", utf16ToUtf8(entry.currency).c_str(), amount));
}

}  // namespace

std::vector<PreviewField> entryPreviewFields(const TimeEntry& entry, const Settings& settings,
                                             const LocaleInfo& locale) {
    SYSTEMTIME date;
    fileTimeToSystemTime(entry.date, &date);
    return {
        {u"Date:", shortDateText(locale, date)},
        {u"Start:", hasStartTime(entry) ? shortTimeText(locale, date) : std::u16string()},
        {u"Duration:", printed("%.2f", entry.duration * 0.01)},
        {u"Client:", entry.client},
        {u"Project:", entry.project},
        {u"Phase:", entry.phase},
        {u"Task:", entry.task},
        {u"Billable:", yesNo(entry.billable)},
        {u"Paid:", yesNo(entry.paid)},
        {u"Bill To:", entry.billTo},
        {u"Currency:", entry.currency},
        {u"Rate Type:", std::u16string(rateTypeName(entry.rateType))},
        {u"Rate:", rateText(entry.rate)},
        {u"Total:", amountText(entry, settings)},
        {settings.custom1Caption + u":", entry.custom1},
        {settings.custom2Caption + u":", entry.custom2},
        {settings.custom3Caption + u":", entry.custom3},
        {u"Note:", noteText(entry)},
    };
}

}  // namespace qb
