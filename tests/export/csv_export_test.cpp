#include "export/csv_export.h"

#include <string>

#include "export/export_fixture.h"

namespace qb::testing {
namespace {

using CsvExport = StoreTest;

constexpr char kHeader[] =
    "\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\",\"Billable\","
    "\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\",\"Custom 1\","
    "\"Custom 2\",\"Custom 3\",\"Note\"\r\n";

TEST_F(CsvExport, WholeFile) {
    env.settings.custom1Caption = u"PO";
    env.settings.breakSub = 3;

    TimeEntry before = entry(entryDate(2004, 2, 29, 23, 0), u"Early", u"T", 100);
    add(before);
    TimeEntry quoted = entry(entryDate(2004, 3, 1, 13, 30), u"Acme \"Big\"", u"Design", 150);
    bill(quoted, 6000);
    quoted.project = u"Web";
    quoted.currency = u"USD";
    quoted.billTo = u"Ann";
    quoted.custom1 = u"PO-1, urgent";
    quoted.notes = noteBytes(u"a\r\nb");
    add(quoted);
    TimeEntry ansi = entry(entryDate(2004, 3, 2), u"Caf\u00e9", u"Call", 17);
    bill(ansi, 6000, true, 1);
    ansi.project = u"\u03a9";  // not in the code page
    ansi.currency = u"EUR";
    add(ansi);
    TimeEntry nonBillable = entry(entryDate(2004, 3, 3), u"Acme", u"Admin", 100);
    nonBillable.rate = 4500;
    nonBillable.rateType = 2;
    nonBillable.currency = u"USD";
    add(nonBillable);
    TimeEntry noRate = entry(entryDate(2004, 3, 31, 23, 59), u"Beta", u"T", 200);
    bill(noRate, 0);
    add(noRate);
    add(entry(entryDate(2004, 4, 1), u"Late", u"T", 100));

    const std::string path = dir.file("out.csv");
    ASSERT_TRUE(ExportCsv(table, path, marchCriteria(), env));
    EXPECT_EQ(readFile(path),
              "\"Date\",\"Client\",\"Project\",\"Phase\",\"Task\",\"Start\",\"Duration(h)\","
              "\"Billable\",\"Paid\",\"Currency\",\"Rate\",\"Rate Type\",\"Amount\",\"Bill To\","
              "\"PO\",\"Custom 2\",\"Custom 3\",\"Note\"\r\n"
              "\"3/1/2004\",\"Acme \"Big\"\",\"Web\",\"\",\"Design\",\"1:30 PM\",\"1.50\",\"Y\","
              "\"N\",\"USD\",\"60.00\",\"0\",\"90.00\",\"Ann\",\"PO-1, urgent\",\"\",\"\","
              "\"a|b\"\r\n"
              "\"3/2/2004\",\"Caf\xE9\",\"?\",\"\",\"Call\",\"\",\"0.17\",\"Y\",\"Y\",\"EUR\","
              "\"60.00\",\"1\",\"10.20\",\"\",\"\",\"\",\"\",\"\"\r\n"
              "\"3/3/2004\",\"Acme\",\"\",\"\",\"Admin\",\"\",\"1.00\",\"N\",\"N\",\"USD\","
              "\"45.00\",\"\",\"\",\"\",\"\",\"\",\"\",\"\"\r\n"
              "\"3/31/2004\",\"Beta\",\"\",\"\",\"T\",\"11:59 PM\",\"2.00\",\"Y\",\"N\",\"\",\"\","
              "\"0\",\"0.00\",\"\",\"\",\"\",\"\",\"\"\r\n");
}

TEST_F(CsvExport, EmptyPeriodIsTheHeaderAlone) {
    add(entry(entryDate(2004, 4, 1), u"Late", u"T", 100));
    const std::string path = dir.file("empty.csv");
    ASSERT_TRUE(ExportCsv(table, path, marchCriteria(), env));
    EXPECT_EQ(readFile(path), kHeader);
}

TEST_F(CsvExport, EachLineBreakSubstitute) {
    const struct {
        std::uint16_t breakSub;
        const char* note;
    } cases[] = {
        {0, "x y\nz "},
        {1, "x  y\nz  "},
        {2, "x~`y\nz~`"},
        {3, "x|y\nz|"},
    };
    TimeEntry e = entry(entryDate(2004, 3, 1), u"C", u"T", 100);
    e.notes = noteBytes(u"x\r\ny\nz\r\n");  // a lone LF is no line break here
    for (const auto& c : cases) {
        env.settings.breakSub = c.breakSub;
        EXPECT_EQ(
            csvLine(e, env),
            u"\"3/1/2004\",\"C\",\"\",\"\",\"T\",\"\",\"1.00\",\"N\",\"N\",\"\",\"\",\"\",\"\","
            u"\"\",\"\",\"\",\"\",\"" +
                std::u16string(c.note, c.note + std::char_traits<char>::length(c.note)) + u"\"\r\n")
            << "BreakSub " << c.breakSub;
    }
}

TEST_F(CsvExport, SixthOfAnHourAmounts) {
    const struct {
        std::uint16_t duration;
        bool precise;
        std::u16string amount;
    } cases[] = {
        {17, true, u"10.00"},   {17, false, u"10.20"}, {117, true, u"70.20"},
        {117, false, u"70.20"}, {83, true, u"49.80"},  {83, false, u"49.80"},
    };
    for (const auto& c : cases) {
        TimeEntry e = entry(entryDate(2004, 3, 1), u"C", u"T", c.duration);
        bill(e, 6000);
        env.settings.optionFlags = c.precise ? kPreciseCalculation : 0;
        const std::u16string line = csvLine(e, env);
        EXPECT_NE(line.find(u",\"0\",\"" + c.amount + u"\","), std::u16string::npos)
            << c.duration << (c.precise ? " precise" : "");
    }
}

TEST_F(CsvExport, FailsWhenTheFileCannotBeCreatedOrWritten) {
    add(entry(entryDate(2004, 3, 1), u"C", u"T", 100));
    EXPECT_FALSE(ExportCsv(table, dir.file("missing/out.csv"), marchCriteria(), env));
    EXPECT_FALSE(ExportCsv(table, "/dev/full", marchCriteria(), env));
}

}  // namespace
}  // namespace qb::testing
