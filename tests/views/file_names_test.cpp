#include "views/file_names.h"

#include <gtest/gtest.h>

#include "platform/calendar.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

TEST(FileNamesTest, NamesSayPeriodClientAndKind) {
    struct Case {
        SYSTEMTIME start, end;
        std::u16string client;
        std::u16string_view kind, extension;
        std::u16string expected;
    };
    const Case cases[] = {
        {makeDate(2026, 11, 1), makeDate(2026, 11, 30), u"", u"", u"csv",
         u"quillarbor-2026-11.csv"},
        {makeDate(2028, 2, 1), makeDate(2028, 2, 29), u"", u"", u"xml", u"quillarbor-2028-02.xml"},
        {makeDate(2026, 11, 1), makeDate(2026, 11, 29), u"", u"", u"csv",
         u"quillarbor-2026-11-01_2026-11-29.csv"},
        {makeDate(2026, 11, 21), makeDate(2026, 11, 21), u"Acme Corp.", u"report", u"html",
         u"quillarbor-report-acme-corp-2026-11-21.html"},
        {makeDate(2026, 11, 15), makeDate(2026, 12, 14), u"  R&D / Ops", u"", u"csv",
         u"quillarbor-r-d-ops-2026-11-15_2026-12-14.csv"},
        {SYSTEMTIME{}, SYSTEMTIME{}, u"", u"backup", u"", u"quillarbor-backup"},
    };
    for (const Case& c : cases) {
        EntryFilter f;
        f.start = c.start;
        f.end = c.end;
        f.client = c.client;
        EXPECT_EQ(suggestedFileName(c.kind, f, c.extension), c.expected);
    }
}

}  // namespace
}  // namespace qb
