#include "import/import_pipeline.h"

#include <gtest/gtest.h>

#include <libical/ical.h>
#include <algorithm>

#include "entry/note_text.h"
#include "import/ical_export.h"
#include "import/import_test_support.h"
#include "import/samples.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/master_data.h"
#include "store/tables.h"

namespace qb::testing {
namespace {

ImportOptions clientOption(std::u16string client) {
    ImportOptions o;
    o.client = std::move(client);
    return o;
}

class ImportPipelineTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(entries_.open());
        ASSERT_TRUE(masters_.open());
        settings_ = defaultSettings();
    }

    ImportSummary run(ImportFormat format, const std::string& bytes,
                      const ImportOptions& options = {}, bool dryRun = false,
                      std::vector<RowOutcome>* rows = nullptr) {
        ImportTarget target{store_->file(), entries_, masters_, settings_};
        return importFile(format, bytes, options, target, dryRun, [&](const RowOutcome& r) {
            if (rows) rows->push_back(r);
        });
    }

    std::vector<TimeEntry> stored() {
        std::vector<TimeEntry> out;
        for (bool found = entries_.seekFirst(); found; found = entries_.seekNext()) {
            TimeEntry e;
            if (readEntry(entries_, e) != 0) break;
            out.push_back(e);
        }
        return out;
    }

    std::vector<std::u16string> clientNames() {
        std::vector<std::u16string> names;
        for (const ClientRecord& c : allClients(masters_.clients)) names.push_back(c.name);
        std::sort(names.begin(), names.end());
        return names;
    }

    ZoneGuard zone_{"Europe/Berlin"};
    std::unique_ptr<Platform> store_ = Platform::inMemory();
    EntryTable entries_{*store_};
    MasterTables masters_{*store_};
    Settings settings_;
};

TEST_F(ImportPipelineTest, ImportsOnceAndLearnsTheMasterData) {
    ImportSummary first = run(ImportFormat::kTimewarrior, kTimewSample, clientOption(u"Beta"));
    EXPECT_EQ(first.status, ImportStatus::kDone);
    EXPECT_EQ(summaryLine(first), "imported 3, already imported 0, refused 0");
    ImportSummary again = run(ImportFormat::kTimewarrior, kTimewSample, clientOption(u"Other"));
    EXPECT_EQ(summaryLine(again), "imported 0, already imported 3, refused 0");
    const std::vector<TimeEntry> entries = stored();
    ASSERT_EQ(entries.size(), 3u);
    // Beta came from the option; Other's import added nothing.
    EXPECT_EQ(clientNames(), (std::vector<std::u16string>{u"Acme", u"Beta"}));
}

TEST_F(ImportPipelineTest, OneRefusedRowAddsNothing) {
    std::vector<RowOutcome> rows;
    // The third interval has no client and none is given.
    ImportSummary s = run(ImportFormat::kTimewarrior, kTimewSample, {}, false, &rows);
    EXPECT_EQ(s.status, ImportStatus::kRefused);
    EXPECT_EQ(summaryLine(s), "imported 0, already imported 0, refused 1");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2].fate, RowFate::kRefused);
    EXPECT_EQ(rows[2].line, 3u);
    EXPECT_NE(rows[2].reason.find("client"), std::string::npos);
    EXPECT_TRUE(stored().empty());
    EXPECT_TRUE(clientNames().empty());
    // Nothing was remembered either: the fixed file imports in full.
    EXPECT_EQ(run(ImportFormat::kTimewarrior, kTimewSample, clientOption(u"Beta")).imported, 3u);
}

TEST_F(ImportPipelineTest, DryRunChecksEverythingAndWritesNothing) {
    std::vector<RowOutcome> rows;
    ImportSummary s = run(ImportFormat::kToggl, kTogglSample, {}, true, &rows);
    EXPECT_EQ(summaryLine(s), "imported 2, already imported 0, refused 0");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].entry.recordOid, 0u);
    EXPECT_EQ(rows[0].entry.duration, 150);
    EXPECT_TRUE(rows[0].entry.billable);
    EXPECT_EQ(rows[0].entry.rate, 9500u);
    EXPECT_EQ(rows[0].entry.currency, u"EUR");
    EXPECT_TRUE(stored().empty());
    EXPECT_EQ(run(ImportFormat::kToggl, kTogglSample).imported, 2u);
}

TEST_F(ImportPipelineTest, DurationsOutOfRangeAreRefusedNotWrapped) {
    struct Case {
        std::string hours;  // Harvest's decimal hours
        bool accepted;
        std::uint16_t stored;
    } cases[] = {
        {"655.35", true, 65535}, {"655.36", false, 0}, {"-1.5", false, 0},
        {"0.25", true, 25},      {"0", true, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.hours);
        std::vector<RowOutcome> rows;
        run(ImportFormat::kHarvest,
            "Date,Client,Task,Hours\n2024-03-04,Acme,Design," + c.hours + "\n", {}, true, &rows);
        ASSERT_EQ(rows.size(), 1u);
        EXPECT_EQ(rows[0].fate == RowFate::kAdded, c.accepted) << rows[0].reason;
        if (c.accepted) {
            EXPECT_EQ(rows[0].entry.duration, c.stored);
        } else {
            EXPECT_NE(rows[0].reason.find("655.35"), std::string::npos);
        }
    }
    // A span that ends before it starts, and one longer than the field holds.
    std::vector<RowOutcome> rows;
    run(ImportFormat::kTimewarrior,
        "[{\"start\":\"20240304T100000Z\",\"end\":\"20240304T090000Z\",\"tags\":[\"client:A\","
        "\"x\"]},"
        "{\"start\":\"20240101T000000Z\",\"end\":\"20240201T000000Z\",\"tags\":[\"client:A\",\"x\"]"
        "}]",
        {}, true, &rows);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].fate, RowFate::kRefused);
    EXPECT_NE(rows[0].reason.find("-1.00 hours"), std::string::npos) << rows[0].reason;
    EXPECT_EQ(rows[1].fate, RowFate::kRefused);
}

TEST_F(ImportPipelineTest, IdenticalRowsInOneFileAreTwoEntries) {
    const std::string line = "2024-03-04,Acme,Design,1.5\n";
    const std::string file = "Date,Client,Task,Hours\n" + line + line;
    EXPECT_EQ(run(ImportFormat::kHarvest, file).imported, 2u);
    // A later export holding one more of them adds just that one.
    EXPECT_EQ(summaryLine(run(ImportFormat::kHarvest, file + line)),
              "imported 1, already imported 2, refused 0");
}

TEST_F(ImportPipelineTest, NamesStayOnOneLine) {
    std::vector<RowOutcome> rows;
    // Toggl's description (the task here) holds a line break.
    run(ImportFormat::kToggl, kTogglSample, {}, true, &rows);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].entry.task, u"Fix header, footer");
    run(ImportFormat::kHarvest,
        "Date,Client,Task,Hours\n2024-03-04,\"Acme\tCo\",\"Line\r\nbreak\",1\n", {}, true, &rows);
    EXPECT_EQ(rows.back().entry.client, u"Acme Co");
    EXPECT_EQ(rows.back().entry.task, u"Line break");
}

TEST_F(ImportPipelineTest, OptionsFillOnlyWhatARowLeavesEmpty) {
    ImportOptions options = clientOption(u"Opt");
    options.project = u"OptP";
    options.task = u"OptT";
    options.billable = true;
    options.rate = u"50";
    options.currency = u"CHF";
    std::vector<RowOutcome> rows;
    run(ImportFormat::kKimai, kKimaiSample, options, true, &rows);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0].entry.client, u"Acme");
    EXPECT_EQ(rows[0].entry.rate, 10000u);  // the row's hourly rate
    EXPECT_EQ(rows[0].entry.rateType, 0);
    EXPECT_EQ(rows[0].entry.currency, u"CHF");
    EXPECT_EQ(rows[1].entry.rateType, 3);  // a fixed rate
    EXPECT_EQ(rows[2].entry.rate, 5000u);  // no rate in the row: --rate
}

// The export's events are valid iCalendar and come back as they went.
TEST_F(ImportPipelineTest, IcalRoundTripKeepsEveryFieldTheFormatCarries) {
    struct Source {
        std::u16string client, project, task, note;
        bool timed;
        std::uint16_t duration;
    } sources[] = {
        {u"Smith, Jones & Co", u"Web; site", u"Design, review", u"Line one\r\nline, two", true,
         115},
        {u"Acme", u"", u"Calls", u"", false, 75},
        {u"Müller", u"Büro", u"Übersicht", u"", true, 65535},
    };
    std::string file = icalHeader();
    for (const Source& s : sources) {
        TimeEntry e;
        e.client = s.client;
        e.project = s.project;
        e.task = s.task;
        e.duration = s.duration;
        setEntryDay(e, makeDate(2024, 10, 27));  // a clock change in Berlin
        if (s.timed) setStartTime(e, makeDate(2024, 10, 27, 1, 30));
        if (!s.note.empty()) e.notes = noteBytes(s.note);
        const std::string event = icalEvent(e, "20240101T000000Z");
        icalcomponent* parsed = icalparser_parse_string(event.c_str());
        ASSERT_NE(parsed, nullptr);
        EXPECT_EQ(icalcomponent_count_errors(parsed), 0) << event;
        icalcomponent_free(parsed);
        file += event;
    }
    file += icalFooter();
    ASSERT_EQ(run(ImportFormat::kIcal, file).imported, 3u);
    const std::vector<TimeEntry> back = stored();
    ASSERT_EQ(back.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const Source& s = sources[i];
        const auto it = std::find_if(back.begin(), back.end(),
                                     [&](const TimeEntry& e) { return e.task == s.task; });
        ASSERT_NE(it, back.end());
        EXPECT_EQ(it->client, s.client);
        EXPECT_EQ(it->project, s.project);
        EXPECT_EQ(it->duration, s.duration);
        EXPECT_EQ(hasStartTime(*it), s.timed);
        EXPECT_EQ(s.note.empty() ? std::u16string() : noteText(*it), s.note);
        SYSTEMTIME st{};
        fileTimeToSystemTime(it->date, &st);
        EXPECT_EQ(st.wDay, 27);
        if (s.timed) {
            EXPECT_EQ(st.wHour * 60 + st.wMinute, 90);
        }
    }
}

}  // namespace
}  // namespace qb::testing
