// The desktop's additions around the main window: the totals bar, the
// filter strip, the keyboard, undo and the simple style's headers.

#include <QHeaderView>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>
#include <map>

#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/dialogs/criteria_sheet.h"
#include "gui/entry/entry_editor.h"
#include "gui/entry_list_widget.h"
#include "gui/file_notice.h"
#include "gui/filter_strip.h"
#include "gui/main_window.h"
#include "gui/reports/report_commands.h"
#include "gui/timesheet_window.h"
#include "gui/totals_bar.h"
#include "gui/undo_commands.h"
#include "gui_test_registry.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "store/time_entry.h"
#include "testing/test_support.h"

namespace qb {

using namespace guitest;

namespace {

constexpr const char* kNow = "QUILLARBOR_NOW=2026-11-21T10:00:00";

CEOID addEntryOn(AppState& state, int day, const char16_t* client, bool billable,
                 std::uint16_t duration = 100) {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 11, day, 9, 0, 1), &e.date);
    e.client = client;
    e.project = u"Web";
    e.task = u"Work";
    e.duration = duration;
    e.billable = billable;
    e.currency = u"USD";
    e.rate = 8000;
    e.custom2 = u"kept";
    addEntry(state.entries(), e);
    return state.entries().currentOid();
}

TimeEntry stored(AppState& state, CEOID id) {
    TimeEntry e;
    if (state.entries().seekOid(id)) readEntry(state.entries(), e);
    return e;
}

std::vector<std::string> cli(const std::string& dir, std::vector<std::string> args) {
    args.insert(args.begin(), {"--data", dir});
    testing::RunResult r = testing::runQuillarbor(args, {kNow});
    std::vector<std::string> lines;
    std::size_t at = 0;
    while (at < r.out.size()) {
        std::size_t end = r.out.find('\n', at);
        if (end == std::string::npos) end = r.out.size();
        lines.push_back(r.out.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

std::vector<std::string> cells(const std::string& line) {
    std::vector<std::string> out;
    std::size_t at = 0;
    for (;;) {
        std::size_t tab = line.find('\t', at);
        out.push_back(line.substr(at, tab - at));
        if (tab == std::string::npos) return out;
        at = tab + 1;
    }
}

void addByCli(const std::string& dir, const char* day, const char* client, const char* duration,
              const char* currency, bool billable, bool paid = false) {
    std::vector<std::string> args = {
        "entry",      "add",    "--date", day,          "--client",
        client,       "--task", "Build",  "--duration", duration,
        "--currency", currency, "--rate", "75.50",      billable ? "--billable" : "--non-billable"};
    if (paid) args.push_back("--paid");
    cli(dir, args);
}

}  // namespace

class DesktopTests : public QObject {
    Q_OBJECT
  private slots:
    void init() { qputenv("QUILLARBOR_NOW", "2026-11-21T10:00:00"); }
    void cleanup() { qunsetenv("QUILLARBOR_NOW"); }

    // The bar adds up what `list` prints and agrees with `summary`, and
    // follows a change the command line makes while the window is open.
    void totalsBarMatchesTheCommandLine() {
        testing::TempDir dir;
        addByCli(dir.path(), "2026-11-03", "Acme", "2:30", "USD", true);
        addByCli(dir.path(), "2026-11-04", "Acme", "1.25", "USD", true, true);
        addByCli(dir.path(), "2026-11-05", "Bolt", "3", "EUR", true);
        addByCli(dir.path(), "2026-11-06", "Bolt", "0.75", "EUR", false);
        std::unique_ptr<Platform> platform;
        QVERIFY(Platform::open(dir.path(), &platform).isOk());
        AppState state(std::move(platform));
        QVERIFY(state.open());
        MainWindow w(state);
        w.runCommand(kCmdMonth);

        // Sums of the `list` columns, billable amounts per currency.
        std::vector<std::string> list = cli(dir.path(), {"list", "--view", "month"});
        QVERIFY(list.size() > 1);
        std::vector<std::string> header = cells(list[0]);
        auto column = [&header](const char* name) {
            return static_cast<std::size_t>(std::find(header.begin(), header.end(), name) -
                                            header.begin());
        };
        double hours = 0;
        std::map<std::string, std::pair<double, double>> byCurrency;  // unpaid, total
        for (std::size_t i = 1; i < list.size(); ++i) {
            std::vector<std::string> c = cells(list[i]);
            hours += std::stod(c[column("duration")]);
            if (c[column("billable")] != "Y") continue;
            double amount = std::stod(c[column("amount")]);
            auto& slot = byCurrency[c[column("currency")]];
            slot.second += amount;
            if (c[column("paid")] == "N") slot.first += amount;
        }
        TotalsBar& bar = w.totalsBar();
        QCOMPARE(bar.value(QStringLiteral("Entries")), QString::number(list.size() - 1));
        QCOMPARE(bar.value(QStringLiteral("Hours")), QString::asprintf("%.2f", hours));
        for (const std::string& line : cli(dir.path(), {"summary", "--view", "month"})) {
            std::vector<std::string> c = cells(line);
            if (c[0] == "Hours:")
                QCOMPARE(bar.value(QStringLiteral("Hours")), QString::fromStdString(c[1]));
        }
        QCOMPARE(bar.value(QStringLiteral("Amount")),
                 QString::asprintf("EUR %.2f \u00b7 USD %.2f", byCurrency["EUR"].second,
                                   byCurrency["USD"].second));
        QCOMPARE(bar.value(QStringLiteral("Unpaid")),
                 QString::asprintf("EUR %.2f \u00b7 USD %.2f", byCurrency["EUR"].first,
                                   byCurrency["USD"].first));

        addByCli(dir.path(), "2026-11-07", "Acme", "1", "USD", true);
        w.pollForChanges();
        QCOMPARE(bar.value(QStringLiteral("Entries")), QString::number(list.size()));
        QCOMPARE(bar.value(QStringLiteral("Amount")),
                 QString::asprintf("EUR %.2f \u00b7 USD %.2f", byCurrency["EUR"].second,
                                   byCurrency["USD"].second + 75.5));
    }

    void filterStripSaysWhatIsHidden() {
        auto state = twoClientState();
        addEntryOn(*state, 17, u"Acme", true);
        addEntryOn(*state, 18, u"Acme", false);
        MainWindow w(*state);
        QCOMPARE(w.filterStrip().description(), QString());
        QVERIFY(w.action(kCmdShowAll)->isChecked());
        w.runCommand(kCmdShowUnpaid);
        QCOMPARE(w.filterStrip().description(), QStringLiteral("unpaid only"));
        QVERIFY(w.action(kCmdShowUnpaid)->isChecked());
        QCOMPARE(w.totalsBar().value(QStringLiteral("Entries")), QStringLiteral("1"));
        state->filter().client = u"Acme";
        w.refresh();
        w.updateMenuStates();
        QCOMPARE(w.filterStrip().description(), QStringLiteral("Client: Acme \u00b7 unpaid only"));
        QVERIFY(w.action(kCmdFilterCustom)->isChecked());
        QTest::mouseClick(w.filterStrip().showAllButton(), Qt::LeftButton);
        QCOMPARE(w.filterStrip().description(), QString());
        QVERIFY(w.action(kCmdShowAll)->isChecked());
        QCOMPARE(w.totalsBar().value(QStringLiteral("Entries")), QStringLiteral("2"));
    }

    void keysMoveThroughViewsAndPeriods() {
        auto state = twoClientState();
        MainWindow w(*state);
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        auto label = [&w] { return toQt(w.periodView().label(LocaleInfo())); };
        QTest::keyClick(&w, Qt::Key_3, Qt::ControlModifier);
        QCOMPARE(label(), QStringLiteral("November 2026"));
        QTest::keyClick(&w, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(label(), QStringLiteral("December 2026"));
        QTest::keyClick(&w, Qt::Key_PageUp, Qt::ControlModifier);
        QTest::keyClick(&w, Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(label(), QStringLiteral("October 2026"));
        QTest::keyClick(&w, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(label(), QStringLiteral("November 2026"));
        QTest::keyClick(&w, Qt::Key_1, Qt::ControlModifier);
        QVERIFY(w.action(kCmdDay)->isChecked());
        QTest::keyClick(&w, Qt::Key_2, Qt::ControlModifier);
        QVERIFY(w.action(kCmdWeek)->isChecked());

        // Every item of every menu can be reached by its underlined letter,
        // and no two items of one menu share one.
        std::vector<QMenu*> menus;
        for (QAction* top : w.menuBar()->actions()) menus.push_back(top->menu());
        for (std::size_t i = 0; i < menus.size(); ++i) {
            for (QAction* a : menus[i]->actions()) {
                if (a->menu()) menus.push_back(a->menu());
            }
        }
        for (QMenu* menu : menus) {
            w.updateMenuStates();
            emit menu->aboutToShow();
            QSet<QChar> keys;
            for (QAction* a : menu->actions()) {
                if (a->isSeparator()) continue;
                QString text = a->text();
                qsizetype amp = text.indexOf(QLatin1Char('&'));
                QVERIFY2(amp >= 0 && amp + 1 < text.size(), qPrintable(text));
                QChar key = text[amp + 1].toLower();
                QVERIFY2(!keys.contains(key), qPrintable(text));
                keys.insert(key);
            }
        }
    }

    void undoBringsBackADeletedEntryAndRedoes() {
        auto state = twoClientState();
        CEOID id = addEntryOn(*state, 17, u"Acme", true, 250);
        MainWindow w(*state);
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QVERIFY(!w.action(kCmdUndo)->isEnabled());
        w.entryList().select(id);
        Messages messages(QMessageBox::Yes);
        QTest::keyClick(w.entryList().view(), Qt::Key_Delete);
        QCOMPARE(messages.last(), QStringLiteral("Are you sure to permanently delete this item?"));
        QVERIFY(w.entryList().collectIds().empty());
        QCOMPARE(w.action(kCmdUndo)->text(), QStringLiteral("&Undo Delete"));

        QTest::keyClick(&w, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(w.entryList().collectIds().size(), std::size_t(1));
        CEOID back = w.entryList().collectIds()[0];
        QCOMPARE(w.entryList().selectedId(), back);
        TimeEntry e = stored(*state, back);
        QCOMPARE(e.duration, std::uint16_t(250));
        QVERIFY(e.custom2 == u"kept");
        QVERIFY(e.billable && hasStartTime(e));
        QCOMPARE(w.totalsBar().value(QStringLiteral("Hours")), QStringLiteral("2.50"));

        QTest::keyClick(&w, Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(w.entryList().collectIds().empty());
        QTest::keyClick(&w, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(w.entryList().collectIds().size(), std::size_t(1));
    }

    void undoMarkAsPaid() {
        auto state = twoClientState();
        CEOID id = addEntryOn(*state, 17, u"Acme", true);
        MainWindow w(*state);
        w.entryList().select(id);
        w.runCommand(kCmdMarkAsPaid);
        QVERIFY(stored(*state, id).paid);
        QCOMPARE(w.totalsBar().value(QStringLiteral("Unpaid")), QStringLiteral("USD 0.00"));
        w.runCommand(kCmdUndo);
        QVERIFY(!stored(*state, id).paid);
        QCOMPARE(w.totalsBar().value(QStringLiteral("Unpaid")), QStringLiteral("USD 80.00"));
        w.runCommand(kCmdRedo);
        QVERIFY(stored(*state, id).paid);
    }

    void simpleHeadersArrangeAndUseCaptions() {
        auto state = twoClientState();
        state->settings().custom1Caption = u"Ticket";
        addEntryOn(*state, 17, u"Bolt", true);
        addEntryOn(*state, 18, u"Acme", true);
        MainWindow w(*state);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        w.runCommand(kCmdSimpleStyle);
        auto* table = qobject_cast<QTreeWidget*>(w.entryList().view());
        QVERIFY(table);
        QCOMPARE(table->headerItem()->text(8), QStringLiteral("Ticket"));
        QHeaderView* header = table->header();
        auto clickColumn = [header](int column) {
            int x = header->sectionViewportPosition(column) + header->sectionSize(column) / 2;
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, 5));
        };
        clickColumn(1);
        QCOMPARE(state->settings().sort, std::uint16_t(1));
        QVERIFY(w.action(kCmdArrangeDefault + 1)->isChecked());
        QCOMPARE(table->topLevelItem(0)->text(1), QStringLiteral("Acme"));
        clickColumn(5);  // Duration has no key: nothing changes
        QCOMPARE(state->settings().sort, std::uint16_t(1));
        clickColumn(0);
        QCOMPARE(state->settings().sort, std::uint16_t(0));
        QCOMPARE(table->topLevelItem(0)->text(1), QStringLiteral("Bolt"));
    }

    // A month's export suggests its name, names its purpose in the criteria
    // sheet's title, and says where the file went.
    void exportsSayWhereTheFileWent() {
        auto state = twoClientState();
        addEntryOn(*state, 17, u"Acme", true);
        MainWindow w(*state);
        w.runCommand(kCmdMonth);
        QTemporaryDir dir;
        SaveFileRequest asked;
        setSaveFileChooser([&](QWidget*, const SaveFileRequest& r) {
            asked = r;
            return dir.filePath(r.suggestedName);
        });
        QString title;
        whenModal<CriteriaSheet>([&title](CriteriaSheet* sheet) {
            title = sheet->windowTitle();
            pressOk(*sheet);
        });
        QCOMPARE(w.fileNotice().text(), QString());
        w.runCommand(kCmdExportCsv);
        setSaveFileChooser(nullptr);
        QCOMPARE(title, QStringLiteral("Export CSV - Quillarbor"));
        QCOMPARE(asked.suggestedName, QStringLiteral("quillarbor-2026-11.csv"));
        const QString file = dir.filePath(QStringLiteral("quillarbor-2026-11.csv"));
        QVERIFY(QFileInfo::exists(file));
        QVERIFY(w.fileNotice().text().contains(QDir::toNativeSeparators(file)));
        QVERIFY(w.fileNotice().text().startsWith(QStringLiteral("CSV export saved to")));
        std::vector<QUrl> opened;
        setUrlOpener([&opened](const QUrl& u) { opened.push_back(u); });
        QTest::mouseClick(w.fileNotice().openButton(), Qt::LeftButton);
        QTest::mouseClick(w.fileNotice().openFolderButton(), Qt::LeftButton);
        setUrlOpener(nullptr);
        QCOMPARE(opened.size(), std::size_t(2));
        QCOMPARE(opened[0], QUrl::fromLocalFile(file));
        QCOMPARE(opened[1], QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
        // The next save dialog starts in that folder.
        QCOMPARE(suggestedSavePath(QStringLiteral("x.csv")),
                 QFileInfo(file).absolutePath() + QStringLiteral("/x.csv"));
    }

    // The timesheet's cells and totals agree with the list, follow the
    // period, and a double-click on a cell opens its entry.
    void timesheetFollowsThePeriod() {
        auto state = twoClientState();
        addEntryOn(*state, 16, u"Acme", true, 150);
        addEntryOn(*state, 16, u"Acme", true, 25);
        CEOID single = addEntryOn(*state, 18, u"Bolt", false, 75);
        addEntryOn(*state, 30, u"Bolt", true, 100);
        MainWindow w(*state);
        w.runCommand(kCmdTimesheet);
        auto* sheet = w.findChild<TimesheetWindow*>();
        QVERIFY(sheet && sheet->isVisible());
        QTableWidget* t = sheet->table();
        QCOMPARE(t->columnCount(), 3 + 7 + 1);
        QCOMPARE(t->horizontalHeaderItem(3)->text(), QStringLiteral("Sun 15"));
        QCOMPARE(t->rowCount(), 3);
        QCOMPARE(t->item(0, 4)->text(), QStringLiteral("1.75"));
        QCOMPARE(t->item(1, 6)->text(), QStringLiteral("0.75"));
        QCOMPARE(t->item(2, 10)->text(), QStringLiteral("2.50"));
        QCOMPARE(t->item(2, 10)->text(), w.totalsBar().value(QStringLiteral("Hours")));

        w.runCommand(kCmdMonth);
        QCOMPARE(t->columnCount(), 3 + 30 + 1);
        QCOMPARE(t->item(t->rowCount() - 1, 33)->text(), QStringLiteral("3.50"));

        bool opened = false;
        whenModal<EntryEditor>([&opened](EntryEditor* editor) {
            opened = true;
            editor->reject();
        });
        int bolt = t->item(0, 0)->text() == QStringLiteral("Acme") ? 1 : 0;
        QCOMPARE(sheet->cellEntries(bolt, 3 + 17), std::vector<CEOID>{single});
        sheet->openCell(bolt, 3 + 17);
        QVERIFY(opened);
        QCOMPARE(w.entryList().selectedId(), single);
    }

    void windowRemembersItsSize() {
        auto state = twoClientState();
        {
            MainWindow w(*state);
            w.show();
            QVERIFY(QTest::qWaitForWindowExposed(&w));
            w.resize(700, 500);
            w.close();
        }
        MainWindow again(*state);
        QCOMPARE(again.size(), QSize(700, 500));
    }

    void defaultStyleHasNoHorizontalScrolling() {
        auto state = twoClientState();
        addEntryOn(*state, 17, u"Acme", true);
        MainWindow w(*state);
        auto* list = qobject_cast<QListWidget*>(w.entryList().view());
        QVERIFY(list);
        QCOMPARE(list->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    }
};

QB_GUI_TEST(DesktopTests);

}  // namespace qb

#include "desktop_tests.moc"
