#include "import/csv_reader.h"

#include <gtest/gtest.h>

namespace qb {
namespace {

struct Record {
    std::vector<std::string> fields;
    std::size_t line;
};

std::vector<Record> records(std::string_view bytes, char delimiter = 0) {
    CsvReader reader(bytes, delimiter);
    std::vector<Record> out;
    Record r;
    while (reader.next(&r.fields, &r.line)) out.push_back(r);
    return out;
}

TEST(CsvReader, QuotingAndLineNumbers) {
    const auto r = records("a,b,c\r\n\"x, y\",\"say \"\"hi\"\"\",\"two\nlines\"\r\nlast,,\n");
    ASSERT_EQ(r.size(), 3u);
    EXPECT_EQ(r[1].fields, (std::vector<std::string>{"x, y", "say \"hi\"", "two\nlines"}));
    EXPECT_EQ(r[1].line, 2u);
    // The record after a quoted line break starts one line further down.
    EXPECT_EQ(r[2].line, 4u);
    EXPECT_EQ(r[2].fields, (std::vector<std::string>{"last", "", ""}));
}

TEST(CsvReader, DelimiterAndMark) {
    struct Case {
        std::string bytes;
        char delimiter;
        std::vector<std::string> second;
    } cases[] = {
        {"\xEF\xBB\xBF"
         "Date;Hours\n2024-01-02;1,5\n",
         ';',
         {"2024-01-02", "1,5"}},
        {"Date,Hours\n2024-01-02,\"1,5\"\n", ',', {"2024-01-02", "1,5"}},
        {"a\tb\n\"x\ty\"\tz\n", '\t', {"x\ty", "z"}},
        // A delimiter inside a quoted header does not count.
        {"\"a;b\",c,d\n1,2,3\n", ',', {"1", "2", "3"}},
    };
    for (const Case& c : cases) {
        CsvReader reader(c.bytes);
        EXPECT_EQ(reader.delimiter(), c.delimiter) << c.bytes;
        std::vector<std::string> fields;
        std::size_t line = 0;
        ASSERT_TRUE(reader.next(&fields, &line));
        ASSERT_TRUE(reader.next(&fields, &line));
        EXPECT_EQ(fields, c.second) << c.bytes;
    }
}

TEST(CsvReader, OpenQuoteAtTheEndIsReported) {
    CsvReader reader("a,b\n1,\"never closed\n");
    std::vector<std::string> fields;
    std::size_t line = 0;
    ASSERT_TRUE(reader.next(&fields, &line));
    EXPECT_FALSE(reader.unterminated());
    ASSERT_TRUE(reader.next(&fields, &line));
    EXPECT_TRUE(reader.unterminated());
}

TEST(CsvReader, ColumnsAreFoundIgnoringCaseAndBlanks) {
    const std::vector<std::string> header{" Start Date", "end date ", "Tags"};
    EXPECT_EQ(columnOf(header, {"start date"}), 0);
    EXPECT_EQ(columnOf(header, {"Stop date", "End date"}), 1);
    EXPECT_EQ(columnOf(header, {"Task"}), -1);
}

}  // namespace
}  // namespace qb
