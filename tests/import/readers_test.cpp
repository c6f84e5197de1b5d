#include "import/readers.h"

#include <gtest/gtest.h>

#include "import/import_test_support.h"
#include "import/samples.h"
#include "platform/text.h"

namespace qb::testing {
namespace {

// What a row must say, in the order the file holds them.
struct Expected {
    std::size_t line;
    std::string client, project, task, note;
    std::string start;  // "YYYY-MM-DD HH:MM", or "YYYY-MM-DD" for a day alone
    long long seconds;  // -1: decimal hours instead
    std::string hours;
};

std::string startOf(const ImportRow& row) {
    char buffer[32];
    if (row.start) {
        std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d %02d:%02d", row.start->wYear,
                      row.start->wMonth, row.start->wDay, row.start->wHour, row.start->wMinute);
    } else {
        std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", row.day.wYear, row.day.wMonth,
                      row.day.wDay);
    }
    return buffer;
}

void expectRows(ImportFormat format, const std::string& bytes,
                const std::vector<Expected>& expected) {
    ZoneGuard zone("Europe/Berlin");
    ReadAll all = readAll(format, bytes);
    ASSERT_TRUE(all.status.ok) << all.status.reason;
    ASSERT_EQ(all.rows.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const ImportRow& r = all.rows[i];
        const Expected& e = expected[i];
        SCOPED_TRACE(std::string(importFormatName(format)) + " row " + std::to_string(i + 1));
        EXPECT_EQ(r.problem, "");
        EXPECT_EQ(r.line, e.line);
        EXPECT_EQ(utf16ToUtf8(r.client), e.client);
        EXPECT_EQ(utf16ToUtf8(r.project), e.project);
        EXPECT_EQ(utf16ToUtf8(r.task), e.task);
        EXPECT_EQ(utf16ToUtf8(r.note), e.note);
        EXPECT_EQ(startOf(r), e.start);
        if (e.seconds >= 0) {
            ASSERT_TRUE(r.seconds.has_value());
            EXPECT_EQ(*r.seconds, e.seconds);
        } else {
            EXPECT_FALSE(r.seconds.has_value());
            EXPECT_EQ(utf16ToUtf8(r.hours), e.hours);
        }
        EXPECT_FALSE(r.identity.empty());
    }
}

TEST(Readers, Timewarrior) {
    expectRows(
        ImportFormat::kTimewarrior, kTimewSample,
        {{1, "Acme", "Web", "coding", "", "2024-03-04 09:00", 5400, ""},
         // The tag that repeats the client says nothing of the task.
         {2, "Acme", "", "pair work review", "late, \"quoted\"", "2024-03-05 23:30", 6300, ""},
         {3, "", "", "Calls", "", "2024-03-06 14:00", 2700, ""}});
}

TEST(Readers, Watson) {
    expectRows(ImportFormat::kWatson, kWatsonSample,
               {{1, "", "Acme site", "design css", "", "2024-03-04 09:00", 5400, ""},
                {2, "", "Acme site", "Acme site", "", "2024-03-05 10:00", 3600, ""}});
}

TEST(Readers, Toggl) {
    expectRows(
        ImportFormat::kToggl, kTogglSample,
        {{2, "Acme", "Web", "Fix header, footer", "", "2024-03-04 09:00", 5400, ""},
         {3, "Acme", "Web", "Deploy", "Release\nnight\r\nops", "2024-03-05 23:30", 4500, ""}});
    ReadAll all = readAll(ImportFormat::kToggl, kTogglSample);
    EXPECT_EQ(all.rows[0].billable, true);
    EXPECT_EQ(utf16ToUtf8(all.rows[0].rate), "95.00");  // 142.50 for 1.5 hours
    EXPECT_EQ(utf16ToUtf8(all.rows[0].currency), "EUR");
    EXPECT_EQ(all.rows[1].billable, false);
}

TEST(Readers, Clockify) {
    expectRows(ImportFormat::kClockify, kClockifySample,
               {{2, "Acme", "Web", "Call with Bob", "", "2021-01-07 13:26", 4620, ""},
                {3, "Acme", "Web", "Writing", "Draft\r\ndocs", "2021-01-06 10:11", 11700, ""}});
    ReadAll all = readAll(ImportFormat::kClockify, kClockifySample);
    EXPECT_EQ(utf16ToUtf8(all.rows[0].rate), "80.00");
    EXPECT_EQ(utf16ToUtf8(all.rows[0].currency), "USD");
}

TEST(Readers, Kimai) {
    expectRows(ImportFormat::kKimai, kKimaiSample,
               {{2, "Acme", "Web", "Design", "Logo; drafts", "2024-03-04 09:00", 5400, ""},
                // Over midnight: the end is on the next day.
                {3, "Acme", "Web", "Ops", "Night move", "2024-03-04 22:00", 10800, ""},
                {4, "Acme", "Web", "Mail", "", "2024-03-05 08:00", 2700, ""}});
    ReadAll all = readAll(ImportFormat::kKimai, kKimaiSample);
    EXPECT_EQ(all.rows[0].billable, true);
    EXPECT_FALSE(all.rows[0].fixedRate);
    EXPECT_EQ(utf16ToUtf8(all.rows[0].rate), "100.00");
    EXPECT_TRUE(all.rows[1].fixedRate);
    EXPECT_EQ(utf16ToUtf8(all.rows[1].rate), "300.00");
    EXPECT_FALSE(all.rows[2].billable.has_value());
}

TEST(Readers, Harvest) {
    expectRows(
        ImportFormat::kHarvest, kHarvestSample,
        {{2, "Acme", "Web", "Design", "First I did this, then that", "2024-03-04", -1, "2.3"},
         {3, "Acme", "", "Support", "", "2024-03-05", -1, "0.25"}});
}

TEST(Readers, Hamster) {
    expectRows(
        ImportFormat::kHamster, kHamsterSample,
        {{2, "Acme", "", "Coding", "parser work\r\ncpp, tests", "2024-03-04 09:00", 4500, ""},
         {3, "Acme", "", "Reading", "two\nlines", "2024-03-04 23:00", 5400, ""}});
}

TEST(Readers, Ical) {
    expectRows(ImportFormat::kIcal, kIcalSample,
               {{4, "Acme", "Web", "Design review", "Agenda, notes\r\nand a second line",
                 "2024-03-04 09:00", 5400, ""},
                {13, "Beta", "", "Standup", "", "2024-03-05 09:00", 2700, ""},
                // KTimeTracker's record: the task's name, no client.
                {27, "", "", "Invoicing", "", "2024-03-06 11:00", 3600, ""}});
}

// `watson log --json` objects, and a to-do that records its own time.
TEST(Readers, OtherShapesOfTheSameFormats) {
    expectRows(ImportFormat::kWatson,
               "[{\"id\":\"ab12\",\"project\":\"Web\",\"start\":\"2024-03-04T09:00:00+01:00\","
               "\"stop\":\"2024-03-04T10:00:00+01:00\",\"tags\":[\"css\"]}]",
               {{1, "", "Web", "css", "", "2024-03-04 09:00", 3600, ""}});
    expectRows(
        ImportFormat::kIcal,
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VTODO\r\nUID:t1\r\nDTSTART:20240304T090000\r\n"
        "DUE:20240304T093000\r\nSUMMARY:Filing\r\nCATEGORIES:Acme\r\nEND:VTODO\r\n"
        "BEGIN:VTODO\r\nUID:t2\r\nSUMMARY:No times\r\nEND:VTODO\r\nEND:VCALENDAR\r\n",
        {{3, "Acme", "", "Filing", "", "2024-03-04 09:00", 1800, ""}});
}

TEST(Readers, EachSampleIsRecognised) {
    const std::pair<ImportFormat, const std::string*> samples[] = {
        {ImportFormat::kTimewarrior, &kTimewSample}, {ImportFormat::kWatson, &kWatsonSample},
        {ImportFormat::kToggl, &kTogglSample},       {ImportFormat::kClockify, &kClockifySample},
        {ImportFormat::kKimai, &kKimaiSample},       {ImportFormat::kHarvest, &kHarvestSample},
        {ImportFormat::kHamster, &kHamsterSample},   {ImportFormat::kIcal, &kIcalSample},
    };
    for (const auto& [format, bytes] : samples) {
        EXPECT_EQ(guessImportFormat(*bytes), format) << importFormatName(format);
        // And every other reader refuses it as a whole, naming where.
        for (const auto& [other, unused] : samples) {
            if (other == format) continue;
            ReadAll all = readAll(other, *bytes);
            const bool rowsRefused = !all.rows.empty() && !all.rows[0].problem.empty();
            EXPECT_TRUE(!all.status.ok || rowsRefused)
                << importFormatName(format) << " read as " << importFormatName(other);
        }
    }
    EXPECT_FALSE(guessImportFormat("just some text\n").has_value());
}

// Damaged files: the reason names what is wrong and where.
TEST(Readers, DamagedFiles) {
    struct Case {
        ImportFormat format;
        std::string bytes;
        std::size_t line;  // of the file's failure, or of the first row's problem
        std::string reason;
    } cases[] = {
        {ImportFormat::kTimewarrior, kTimewSample.substr(0, 150), 2,
         "the file ends inside this record"},
        {ImportFormat::kTimewarrior, "{\"a\":1}", 0, "holds no JSON array"},
        {ImportFormat::kTimewarrior,
         "[{\"start\":\"20240230T080000Z\",\"end\":\"20240301T080000Z\"}]", 1,
         "cannot read the start"},
        {ImportFormat::kTimewarrior, "[{\"start\":\"20240301T080000Z\",\"tags\":[\"x\"]}]", 1,
         "still open"},
        {ImportFormat::kWatson, "[[1709539200, \"soon\", \"p\", \"id\", [], 1]]", 1, "stop"},
        {ImportFormat::kToggl, kTogglSample.substr(0, kTogglSample.find("Release") + 3), 3,
         "ends inside a quoted field"},
        {ImportFormat::kToggl,
         "Client,Project,Description,Start date,Start time,Duration\n"
         "Acme,Web,x,2024-02-30,09:00:00,01:00:00\n",
         2, "impossible or unreadable date"},
        {ImportFormat::kHarvest, "Date,Client,Task,Hours\n2024-03-04,Acme,Design\n", 2,
         "cut short"},
        {ImportFormat::kHarvest, "Date,Client,Project\n2024-03-04,Acme,Web\n", 1,
         "no column 'Task'"},
        {ImportFormat::kIcal, kIcalSample.substr(0, 300), 13, "END:VCALENDAR"},
        {ImportFormat::kIcal,
         "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nSUMMARY:x\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n", 2,
         "no DTSTART"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        ReadAll all = readAll(c.format, c.bytes);
        if (all.status.ok) {
            ASSERT_FALSE(all.rows.empty());
            EXPECT_EQ(all.rows[0].line, c.line);
            EXPECT_NE(all.rows[0].problem.find(c.reason), std::string::npos) << all.rows[0].problem;
        } else {
            EXPECT_EQ(all.status.line, c.line);
            EXPECT_NE(all.status.reason.find(c.reason), std::string::npos) << all.status.reason;
        }
    }
}

}  // namespace
}  // namespace qb::testing
