#include "views/entry_preview.h"

#include <gtest/gtest.h>

#include <map>

#include "app/settings.h"
#include "entry/note_text.h"
#include "platform/calendar.h"
#include "store/time_entry.h"
#include "views/filter_choices.h"

namespace qb {
namespace {

std::map<std::u16string, std::u16string> byLabel(const std::vector<PreviewField>& fields) {
    std::map<std::u16string, std::u16string> m;
    for (const PreviewField& f : fields) m[f.label] = f.value;
    return m;
}

TEST(EntryPreview, EveryFieldInTheUsersFormats) {
    Settings settings = defaultSettings();
    settings.custom2Caption = u"Ticket";
    settings.optionFlags |= kPreciseCalculation;
    TimeEntry e;
    setEntryDay(e, makeDate(2026, 11, 21));
    setStartTime(e, makeDate(2026, 11, 21, 9, 30));
    e.duration = 17;  // 10 minutes with precise calculation
    e.rate = 6000;
    e.billable = true;
    e.currency = u"EUR";
    e.client = u"Acme";
    e.custom2 = u"T-7";
    e.notes = noteBytes(u"Call back\r\nTuesday");
    const std::vector<PreviewField> fields = entryPreviewFields(e, settings, LocaleInfo());
    EXPECT_EQ(fields.front().label, u"Date:");
    EXPECT_EQ(fields.back().label, u"Note:");
    auto m = byLabel(fields);
    EXPECT_EQ(m[u"Date:"], u"11/21/2026");
    EXPECT_EQ(m[u"Start:"], u"9:30 AM");
    EXPECT_EQ(m[u"Duration:"], u"0.17");
    EXPECT_EQ(m[u"Total:"], u"EUR 10.00");
    EXPECT_EQ(m[u"Rate:"], u"60.00");
    EXPECT_EQ(m[u"Rate Type:"], u"Normal Rate");
    EXPECT_EQ(m[u"Billable:"], u"Yes");
    EXPECT_EQ(m[u"Paid:"], u"No");
    EXPECT_EQ(m[u"Ticket:"], u"T-7");
    EXPECT_EQ(m[u"Note:"], u"Call back\r\nTuesday");

    // No start time, no currency: the fixed rate is the whole amount.
    clearStartTime(e);
    e.currency.clear();
    e.rateType = 3;
    e.rate = 15000;
    m = byLabel(entryPreviewFields(e, settings, LocaleInfo()));
    EXPECT_EQ(m[u"Start:"], u"");
    EXPECT_EQ(m[u"Total:"], u"150.00");
    EXPECT_EQ(m[u"Rate Type:"], u"Fixed Rate");
}

TEST(FilterChoices, SortedIgnoringCaseWithoutRepeatsOrBlanks) {
    std::vector<std::u16string> items = {u"beta", u"Alpha", u"",     u"alpha",
                                         u"Beta", u"beta",  u"Gamma"};
    sortChoices(items);
    EXPECT_EQ(items, (std::vector<std::u16string>{u"Alpha", u"alpha", u"Beta", u"beta", u"Gamma"}));
}

}  // namespace
}  // namespace qb
