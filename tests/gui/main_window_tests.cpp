#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QTest>
#include <QTreeWidget>

#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/dialogs/filter_dialog.h"
#include "gui/entry_list_widget.h"
#include "gui/main_window.h"
#include "gui/period_header.h"
#include "gui_test_registry.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "store/master_data.h"
#include "store/time_entry.h"

namespace qb {

using namespace guitest;

namespace {

CEOID addOn(AppState& state, int day, const char16_t* client, bool billable) {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 11, day), &e.date);
    e.client = client;
    e.task = u"Work";
    e.duration = 100;
    e.billable = billable;
    addEntry(state.entries(), e);
    return state.entries().currentOid();
}

std::unique_ptr<AppState> makeState() {
    auto state = std::make_unique<AppState>(Platform::inMemory());
    state->open();
    return state;
}

QString label(MainWindow& w) {
    return w.header().findChild<QLabel*>() ? w.header().findChild<QLabel*>()->text() : QString();
}

int rowCount(MainWindow& w) {
    return static_cast<int>(w.entryList().collectIds().size());
}

}  // namespace

class MainWindowTests : public QObject {
    Q_OBJECT
  private slots:
    void init() { qputenv("QUILLARBOR_NOW", "2026-11-21T10:00:00"); }
    void cleanup() { qunsetenv("QUILLARBOR_NOW"); }

    void viewsAndNavigation() {
        auto state = makeState();
        addOn(*state, 16, u"Acme", true);
        addOn(*state, 21, u"Acme", true);
        addOn(*state, 30, u"Beta", false);
        MainWindow w(*state);
        QCOMPARE(label(w), QStringLiteral("Week Of Nov 15, 2026"));
        QCOMPARE(rowCount(w), 2);
        QVERIFY(w.action(kCmdWeek)->isChecked());

        w.runCommand(kCmdMonth);
        QCOMPARE(label(w), QStringLiteral("November 2026"));
        QCOMPARE(rowCount(w), 3);
        QCOMPARE(state->settings().view, 3u);
        emit w.header().nextRequested();
        QCOMPARE(label(w), QStringLiteral("December 2026"));
        QCOMPARE(rowCount(w), 0);
        emit w.header().todayRequested();
        w.runCommand(kCmdDay);
        // The day view opens on the first day of the month shown before.
        QCOMPARE(label(w), QStringLiteral("Sunday, Nov 1, 2026"));

        // A date picked on the calendar.
        emit w.header().calendar()->clicked(QDate(2026, 11, 16));
        QCOMPARE(label(w), QStringLiteral("Monday, Nov 16, 2026"));
        QCOMPARE(rowCount(w), 1);
        QTest::keyClick(&w.header(), Qt::Key_Right);
        QCOMPARE(label(w), QStringLiteral("Tuesday, Nov 17, 2026"));
    }

    void stylesAndGreyItems() {
        auto state = makeState();
        addOn(*state, 17, u"Acme", true);
        MainWindow w(*state);
        auto* arrange = w.findChild<QMenu*>(QStringLiteral("arrangeMenu"));
        QVERIFY(arrange);
        struct Case {
            int command;
            bool customize;
            bool arrangeBy;
        } cases[] = {{kCmdSimpleStyle, false, true},
                     {kCmdTreeStyle, false, false},
                     {kCmdDefaultStyle, true, true}};
        for (const Case& c : cases) {
            w.runCommand(c.command);
            w.updateMenuStates();
            QCOMPARE(w.action(kCmdCustomize)->isEnabled(), c.customize);
            QCOMPARE(arrange->isEnabled(), c.arrangeBy);
            QVERIFY(w.action(c.command)->isChecked());
            QCOMPARE(rowCount(w), 1);
        }
        QVERIFY(qobject_cast<QListWidget*>(w.entryList().view()));
        w.runCommand(kCmdArrangeDefault + 1);
        QCOMPARE(state->settings().sort, 1);
        QVERIFY(w.action(kCmdArrangeDefault + 1)->isChecked());
        QCOMPARE(w.action(kCmdArrangeDefault + 6)->text().remove(QLatin1Char('&')),
                 QStringLiteral("Custom 1"));
    }

    void deleteAsksFirst() {
        auto state = makeState();
        CEOID id = addOn(*state, 17, u"Acme", true);
        MainWindow w(*state);
        w.entryList().select(id);
        Messages messages(QMessageBox::No);
        w.runCommand(kCmdDelete);
        QCOMPARE(messages.last(), QStringLiteral("Are you sure to permanently delete this item?"));
        QCOMPARE(messages.shown.back().defaultButton, QMessageBox::No);
        QCOMPARE(rowCount(w), 1);
        messages.answer(QMessageBox::Yes);
        w.entryList().select(id);
        w.runCommand(kCmdDelete);
        QCOMPARE(rowCount(w), 0);
        QVERIFY(!state->entries().seekOid(id));
    }

    void markAsPaidToggles() {
        auto state = makeState();
        CEOID billable = addOn(*state, 17, u"Acme", true);
        CEOID free = addOn(*state, 18, u"Acme", false);
        MainWindow w(*state);
        auto paid = [&] {
            TimeEntry e;
            state->entries().seekOid(billable);
            readEntry(state->entries(), e);
            return e.paid;
        };
        w.entryList().select(billable);
        w.runCommand(kCmdMarkAsPaid);
        QVERIFY(paid());
        w.entryList().select(billable);
        w.updateMenuStates();
        QVERIFY(w.action(kCmdMarkAsPaid)->isChecked());
        w.runCommand(kCmdMarkAsPaid);
        QVERIFY(!paid());
        w.entryList().select(free);
        w.updateMenuStates();
        QVERIFY2(!w.action(kCmdMarkAsPaid)->isEnabled(), "not for a non-billable entry");
    }

    void filterThroughTheDialog() {
        auto state = makeState();
        addOn(*state, 16, u"Acme", true);
        addOn(*state, 17, u"Beta", true);
        registerMasterData(state->masters(), [] {
            TimeEntry e;
            e.client = u"Beta";
            e.task = u"Work";
            return e;
        }());
        MainWindow w(*state);
        QCOMPARE(rowCount(w), 2);
        whenModal<FilterDialog>([](FilterDialog* d) {
            choose(child<QComboBox>(*d, "client"), QStringLiteral("Beta"));
            pressOk(*d);
        });
        w.runCommand(kCmdFilterCustom);
        QCOMPARE(rowCount(w), 1);
        QCOMPARE(state->filter().client, std::u16string(u"Beta"));
        EntryFilter saved;
        saved.load(state->registry());
        QCOMPARE(saved.client, std::u16string(u"Beta"));
        w.runCommand(kCmdShowAll);
        QCOMPARE(rowCount(w), 2);
    }

    void anotherProcessesChangeShows() {
        auto state = makeState();
        MainWindow w(*state);
        QCOMPARE(rowCount(w), 0);
        addOn(*state, 19, u"Acme", true);
        w.refresh();
        QCOMPARE(rowCount(w), 1);
    }
};

QB_GUI_TEST(MainWindowTests);

}  // namespace qb

#include "main_window_tests.moc"
