// Exports and reports of a store in a file share their work between the
// caller's thread and the reading thread. The files must be the very bytes
// the caller alone makes, however the entries divide between the threads:
// here the reading thread makes every other entry, and the caller alone
// makes everything while a batch is open (no second connection can read).

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "app/settings.h"
#include "export/csv_export.h"
#include "export/export_settings.h"
#include "export/xml_export.h"
#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/read_ahead.h"
#include "report/report_generator.h"
#include "report/report_layout.h"
#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "testing/test_support.h"
#include "views/entry_filter.h"

namespace qb::testing {
namespace {

constexpr int kEntries = 2500;
constexpr FILETIME kDay = 864000000000ull;  // in 100 ns ticks

class SharedWorkTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(Platform::open(dir.path(), &platform).isOk());
        table = std::make_unique<EntryTable>(*platform);
        ASSERT_TRUE(table->open());
        env.settings = defaultSettings();
        ASSERT_TRUE(platform->file().beginBatch());
        for (int i = 0; i < kEntries; ++i) ASSERT_TRUE(addEntry(*table, entryNumber(i)));
        ASSERT_TRUE(platform->file().commitBatch());
        criteria.start = makeDate(2024, 1, 1);
        criteria.end = makeDate(2024, 12, 31);
    }

    void TearDown() override { setReadAheadFinishesEveryOther(false); }

    // Clients and projects that come back in no order, texts the writers
    // escape or convert, notes with line breaks; several entries a day,
    // added out of date order.
    static TimeEntry entryNumber(int i) {
        static const std::u16string kClients[] = {u"Acme",     u"Büro Müller", u"Café <&> \"Ltd\"",
                                                  u"日本商事", u"Zeta 😀",      u"Beta"};
        TimeEntry e;
        const int day = (i * 53) % 300;
        SYSTEMTIME when = makeDate(2024, 1, 1, 7 + i % 11, (i % 4) * 15);
        systemTimeToFileTime(when, &e.date);
        e.date += static_cast<FILETIME>(day) * kDay;
        e.client = kClients[(i * 7 + i / 13) % 6];
        e.project = u"Project " + std::u16string(1, static_cast<char16_t>(u'A' + i % 5));
        e.task = i % 3 == 0 ? u"Design & review" : u"Build";
        e.duration = static_cast<std::uint16_t>(25 + (i * 37) % 800);
        e.billable = i % 5 != 0;
        e.paid = e.billable && i % 4 == 0;
        e.rate = static_cast<std::uint32_t>(5000 + (i % 7) * 1250);
        e.rateType = static_cast<std::uint16_t>(i % 5);
        if (i % 6 == 1) e.billTo = u"Ann <ann@example.com>";
        if (i % 4 == 2) {
            const std::string note = "Line one of " + std::to_string(i) + "\r\nline two";
            e.notes.assign(note.begin(), note.end());
        }
        return e;
    }

    // The file `write` makes with the work shared, and made by the caller
    // alone; both must be the same bytes.
    void expectSameFiles(const std::string& name,
                         const std::function<bool(const std::string& path)>& write) {
        setReadAheadFinishesEveryOther(true);
        const std::string shared = dir.file(name + ".shared");
        ASSERT_TRUE(write(shared)) << name;
        setReadAheadFinishesEveryOther(false);
        const std::string alone = dir.file(name + ".alone");
        ASSERT_TRUE(platform->file().beginBatch());
        const bool written = write(alone);
        platform->file().rollbackBatch();
        ASSERT_TRUE(written) << name;
        const std::string bytes = readFile(alone);
        EXPECT_GT(bytes.size(), 100000u) << name;
        EXPECT_TRUE(readFile(shared) == bytes) << name << " differs when the work is shared";
    }

    void expectSameReports(const std::string& name, const ReportLayout& layout) {
        expectSameFiles(name, [&](const std::string& path) {
            ReportGenerator generator(*table, layout, env, makeDate(2025, 1, 2));
            return generator.generate(path, criteria);
        });
    }

    TempDir dir;
    std::unique_ptr<Platform> platform;
    std::unique_ptr<EntryTable> table;
    ExportSettings env;
    EntryFilter criteria;
};

TEST_F(SharedWorkTest, ExportsAreTheCallersBytes) {
    for (const char* codePage : {"CP1252", "UTF-8", "CP932"}) {
        env.codePage = codePage;
        for (std::uint16_t encoding : {std::uint16_t{0}, kEncodingUtf16}) {
            env.settings.encoding = encoding;
            expectSameFiles(std::string("xml-") + codePage, [&](const std::string& path) {
                return ExportXml(*table, path, criteria, env);
            });
        }
        expectSameFiles(std::string("csv-") + codePage, [&](const std::string& path) {
            return ExportCsv(*table, path, criteria, env);
        });
    }
    // Entries the filter leaves out, on either thread.
    criteria.showPaid = false;
    expectSameFiles("csv-unpaid", [&](const std::string& path) {
        return ExportCsv(*table, path, criteria, env);
    });
}

// Groups whose first rows are made on either thread, each with its heading.
TEST_F(SharedWorkTest, ReportsAreTheCallersBytes) {
    expectSameReports("by-client", clientLayout());
    expectSameReports("by-date", dateLayout());
    ReportLayout byProject = clientLayout();
    byProject.setGroupBy(makePropId(kPropProject, CEVT_LPWSTR));
    byProject.setFieldMask(0xFFFFFFFF);
    expectSameReports("by-project", byProject);
    ReportLayout flat = clientLayout();
    flat.setType(kFlatReport);
    expectSameReports("flat", flat);
    env.codePage = "UTF-8";
    ReportLayout ungrouped = clientLayout();
    ungrouped.setGroupBy(0);
    expectSameReports("ungrouped", ungrouped);
}

}  // namespace
}  // namespace qb::testing
