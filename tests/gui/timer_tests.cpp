// The entry timers on the desktop: the timer window beside the main window,
// the panel, the tray menu, changes from another process, the idle
// question and the Options page, driven as a user would with the clock
// pinned by QUILLARBOR_NOW.

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <optional>

#include "entry/entry_timers.h"
#include "entry/note_text.h"
#include "entry/timer_idle.h"
#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/dialogs/options_dialog.h"
#include "gui/entry/entry_editor.h"
#include "gui/entry/entry_work.h"
#include "gui/entry/idle_source.h"
#include "gui/entry/timer_options.h"
#include "gui/entry/timer_panel.h"
#include "gui/entry/timer_tray.h"
#include "gui/entry/timer_work.h"
#include "gui/entry/timers_window.h"
#include "gui/entry_list_widget.h"
#include "gui/main_window.h"
#include "gui_test_registry.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "store/time_entry.h"
#include "testing/test_support.h"

namespace qb {

using namespace guitest;

namespace {

void setNow(const char* time) {
    qputenv("QUILLARBOR_NOW", QByteArray("2026-11-21T") + time);
}

void click(QWidget& parent, const char* name) {
    auto* button = child<QPushButton>(parent, name);
    QVERIFY2(button, name);
    QVERIFY2(button->isEnabled(), name);
    QTest::mouseClick(button, Qt::LeftButton);
}

QString text(QWidget& parent, const char* name) {
    auto* label = child<QLabel>(parent, name);
    return label ? label->text() : QString();
}

QStringList itemsOf(QComboBox* box) {
    QStringList items;
    for (int i = 0; i < box->count(); ++i) items << box->itemText(i);
    return items;
}

// The desktop idle source, answered by the test.
class FakeIdle : public IdleSource {
  public:
    explicit FakeIdle(std::uint32_t* seconds) : seconds_(seconds) {}
    std::optional<std::uint32_t> idleSeconds() override { return *seconds_; }
    QString name() const override { return QStringLiteral("the test"); }

  private:
    std::uint32_t* seconds_;
};

// What another process sees in the data file.
EntryTimers storedTimers(Platform& platform) {
    TimerTable table(platform);
    EntryTimerSet timers;
    if (table.open()) timers.load(table);
    EntryTimers out;
    for (int i = 0; i < kTimerCount; ++i) out[static_cast<std::size_t>(i)] = timers.timer(i);
    return out;
}

}  // namespace

class TimerTests : public QObject {
    Q_OBJECT
  private slots:
    void init() { setNow("09:00:00"); }
    void cleanup() { qunsetenv("QUILLARBOR_NOW"); }

    // Record, pause and resume from the window and the panel, pick the work
    // in the window, then Task Complete opens the editor with all of it.
    void windowAndPanelRecordPauseAndComplete() {
        auto state = twoClientState();
        QVERIFY(state);
        Messages messages;
        MainWindow window(*state);
        auto* work = window.findChild<EntryWork*>();
        QVERIFY(work);
        TimerPanel& panel = work->timerPanel();
        QVERIFY(child<QWidget>(panel, "noTimer")->isVisibleTo(&panel));
        QVERIFY(!(panel.features() & QDockWidget::DockWidgetClosable));

        window.runCommand(kCmdEntryTimers);
        TimersWindow* timers = work->timersWindow();
        QVERIFY(timers && timers->isVisible());
        QVERIFY(!timers->isModal());
        QVERIFY(!QApplication::activeModalWidget());

        choose(child<QComboBox>(*timers, "client"), QStringLiteral("Acme"));
        QCOMPARE(itemsOf(child<QComboBox>(*timers, "project")), QStringList{"Web"});
        choose(child<QComboBox>(*timers, "project"), QStringLiteral("Web"));
        choose(child<QComboBox>(*timers, "task"), QStringLiteral("Design"));
        click(*timers, "record");
        QCOMPARE(text(*timers, "startValue"), QStringLiteral("9:00 AM"));
        QVERIFY(child<QWidget>(panel, "timerRow1")->isVisibleTo(&panel));
        QVERIFY(!child<QWidget>(panel, "noTimer")->isVisibleTo(&panel));
        QCOMPARE(text(panel, "subject1"), QStringLiteral("Acme"));

        setNow("09:10:00");
        work->timers().tick(timerNow());
        QCOMPARE(text(*timers, "durationValue"), QStringLiteral("00:10:00"));
        QCOMPARE(text(panel, "clock1"), QStringLiteral("00:10:00"));

        click(panel, "pause1");  // from the panel, at one click
        QVERIFY(child<QPushButton>(*timers, "pause")->isChecked());
        setNow("09:30:00");
        work->timers().tick(timerNow());
        QCOMPARE(text(*timers, "durationValue"), QStringLiteral("00:10:00"));
        click(*timers, "pause");
        QVERIFY(!child<QPushButton>(panel, "pause1")->isChecked());
        setNow("09:40:00");
        work->timers().tick(timerNow());
        QCOMPARE(text(panel, "clock1"), QStringLiteral("00:20:00"));
        QTest::keyClicks(child<QPlainTextEdit>(*timers, "noteText"), "Call");

        // What the window holds is in the store before the editor opens.
        bool editorFilled = false;
        whenModal<EntryEditor>([&](EntryEditor* editor) {
            const EntryTimers stored = storedTimers(state->platform());
            QCOMPARE(stored[0].state, TimerState::kComplete);
            QVERIFY(stored[0].client == u"Acme");
            editorFilled =
                child<QComboBox>(*editor, "duration")->currentText() == QStringLiteral("0.33") &&
                child<QComboBox>(*editor, "client")->currentText() == QStringLiteral("Acme") &&
                child<QComboBox>(*editor, "project")->currentText() == QStringLiteral("Web") &&
                child<QComboBox>(*editor, "task")->currentText() == QStringLiteral("Design") &&
                child<QCheckBox>(*editor, "hasStart")->isChecked();
            pressOk(*editor);
        });
        click(*timers, "complete");
        QTRY_VERIFY(work->timers().timer(0).state == TimerState::kIdle);
        QVERIFY(editorFilled);
        QVERIFY(messages.shown.empty());

        const std::vector<CEOID> ids = window.entryList().collectIds();
        QCOMPARE(ids.size(), std::size_t(1));
        TimeEntry saved;
        QVERIFY(state->entries().seekOid(ids[0]) && readEntry(state->entries(), saved) == 0);
        QCOMPARE(saved.duration, std::uint16_t(33));
        QVERIFY(noteText(saved) == u"Call");
        QVERIFY(saved.task == u"Design");
        QCOMPARE(storedTimers(state->platform())[0], EntryTimer());
        QVERIFY(child<QWidget>(panel, "noTimer")->isVisibleTo(&panel));
    }

    // Reset asks first; the note and the boxes follow the selector.
    void resetAsksAndDetailsFollowTheSelector() {
        auto state = twoClientState();
        QVERIFY(state);
        QWidget owner;
        TimerWork work(*state, &owner, nullptr);
        TimersWindow window(*state, work);
        click(window, "record");
        auto* note = child<QPlainTextEdit>(window, "noteText");
        QTest::keyClicks(note, "first");
        auto* selector = child<QComboBox>(window, "timerSelector");
        selector->setCurrentIndex(1);
        QCOMPARE(window.shownTimer(), 1);
        QVERIFY(note->toPlainText().isEmpty());
        QVERIFY(child<QPushButton>(window, "record")->isEnabled());
        QVERIFY(noteText(storedTimers(state->platform())[0].note) == u"first");
        selector->setCurrentIndex(0);
        QCOMPARE(note->toPlainText(), QStringLiteral("first"));

        {
            Messages no(QMessageBox::No);
            click(window, "reset");
            QCOMPARE(no.texts(), QStringList{"Are you sure to reset the timer?"});
            QCOMPARE(no.shown[0].icon, MessageIcon::kQuestion);
            QCOMPARE(no.shown[0].defaultButton, QMessageBox::No);
            QCOMPARE(work.timer(0).state, TimerState::kRecording);
        }
        {
            Messages yes(QMessageBox::Yes);
            click(window, "reset");
            QCOMPARE(work.timer(0).state, TimerState::kIdle);
            QVERIFY(note->toPlainText().isEmpty());
            QCOMPARE(text(window, "startValue"), QStringLiteral("<>"));
            QCOMPARE(text(window, "durationValue"), QStringLiteral("00:00:00"));
            QCOMPARE(storedTimers(state->platform())[0], EntryTimer());
        }
    }

    // Another process records, pauses and writes notes; the window, the
    // panel and the tray show it once the main window hears of the change,
    // and what the user is typing is not overwritten.
    void changesFromAnotherProcessShow() {
        testing::TempDir dir;
        std::unique_ptr<Platform> mine;
        std::unique_ptr<Platform> theirs;
        QVERIFY(Platform::open(dir.path(), &mine).isOk());
        QVERIFY(Platform::open(dir.path(), &theirs).isOk());
        AppState state(std::move(mine));
        QVERIFY(state.open());
        Messages messages;
        MainWindow window(state);
        auto* work = window.findChild<EntryWork*>();
        window.runCommand(kCmdEntryTimers);
        TimersWindow* timers = work->timersWindow();

        TimerTable table(*theirs);
        QVERIFY(table.open());
        EntryTimerSet other;
        QCOMPARE(other.update(table, 2,
                              [](EntryTimerSet& t) {
                                  t.timer(2).note = noteBytes(u"from the terminal");
                                  return t.record(2, timerNow());
                              }),
                 EntryTimerSet::Update::kDone);
        emit window.storeChanged();
        TimerPanel& panel = work->timerPanel();
        QVERIFY(child<QWidget>(panel, "timerRow3")->isVisibleTo(&panel));
        QCOMPARE(text(panel, "subject3"), QStringLiteral("from the terminal"));

        timers->showTimer(2);
        QVERIFY(!child<QPushButton>(*timers, "record")->isEnabled());
        QCOMPARE(child<QPlainTextEdit>(*timers, "noteText")->toPlainText(),
                 QStringLiteral("from the terminal"));

        // The user types; the other process changes the note meanwhile.
        auto* note = child<QPlainTextEdit>(*timers, "noteText");
        note->moveCursor(QTextCursor::End);
        QTest::keyClicks(note, "!");
        other.update(table, 2, [](EntryTimerSet& t) {
            t.timer(2).note = noteBytes(u"changed");
            return true;
        });
        emit window.storeChanged();
        QCOMPARE(note->toPlainText(), QStringLiteral("from the terminal!"));

        // The tray's menu offers each timer's buttons by its state.
        TimerTray& tray = work->timerTray();
        tray.rebuildMenu();
        QList<QAction*> entries = tray.menu()->actions();
        QVERIFY(entries.size() >= kTimerCount);
        QMenu* third = entries[2]->menu();
        QVERIFY(third);
        QVERIFY(third->title().startsWith(QStringLiteral("Timer 3: 00:00:00, recording")));
        QList<QAction*> buttons = third->actions();
        QCOMPARE(buttons[0]->text(), QStringLiteral("Record"));
        QVERIFY(!buttons[0]->isEnabled());
        QVERIFY(buttons[1]->isEnabled());
        buttons[1]->trigger();  // Pause, from the tray
        QCOMPARE(storedTimers(*theirs)[2].state, TimerState::kPaused);
        QMenu* first = tray.menu()->actions()[0]->menu();
        first->actions()[0]->trigger();  // Record timer 1
        QCOMPARE(storedTimers(*theirs)[0].state, TimerState::kRecording);

        // Quitting asks nothing and leaves the timers running in the file.
        window.close();
        QVERIFY(messages.shown.empty());
        QCOMPARE(storedTimers(*theirs)[0].state, TimerState::kRecording);
    }

    // The real desktop window and the real command line on one data
    // directory: each sees the timers the other starts and stops, the
    // desktop through its change poll.
    void desktopAndCommandLineShareOneDataDirectory() {
        testing::TempDir dir;
        const std::string data = dir.file("data");
        const auto cli = [&](const std::vector<std::string>& args) {
            std::vector<std::string> full{"--data", data};
            full.insert(full.end(), args.begin(), args.end());
            testing::RunResult r = testing::runQuillarbor(full);
            if (r.status != 0) qWarning("%s", r.err.c_str());
            return r.out;
        };
        cli({"timer", "list"});
        std::unique_ptr<Platform> platform;
        QVERIFY(Platform::open(data, &platform).isOk());
        AppState state(std::move(platform));
        QVERIFY(state.open());
        Messages messages;
        MainWindow window(state);
        auto* work = window.findChild<EntryWork*>();
        TimerPanel& panel = work->timerPanel();

        window.runCommand(kCmdEntryTimers);
        click(*work->timersWindow(), "record");
        QVERIFY(QString::fromStdString(cli({"timer", "list"}))
                    .contains(QStringLiteral("\n1\trecording\t2026-11-21T09:00:00\t00:00:00\t")));

        setNow("09:05:00");
        cli({"timer", "record", "2", "--client", "Bolt"});
        QTRY_VERIFY_WITH_TIMEOUT(child<QWidget>(panel, "timerRow2")->isVisibleTo(&panel), 10000);
        QCOMPARE(text(panel, "subject2"), QStringLiteral("Bolt"));
        cli({"timer", "pause", "1"});
        QTRY_VERIFY_WITH_TIMEOUT(child<QPushButton>(panel, "pause1")->isChecked(), 10000);
        QCOMPARE(text(panel, "clock1"), QStringLiteral("00:05:00"));

        setNow("09:35:00");
        click(panel, "pause2");
        QVERIFY(
            QString::fromStdString(cli({"timer", "list"}))
                .contains(QStringLiteral("\n2\tpaused\t2026-11-21T09:05:00\t00:30:00\tBolt\t")));
        QVERIFY(messages.shown.empty());
    }

    // Away longer than the idle setting while a timer records: on return
    // the question, and each answer does what it says.
    void idleTimeIsAskedAbout() {
        struct Case {
            QMessageBox::StandardButton pressed;
            std::uint32_t shownAfter;  // at 10:31
            TimerState state;
        };
        const Case cases[] = {
            {QMessageBox::Yes, 5460, TimerState::kRecording},        // Keep
            {QMessageBox::No, 5460 - 1800, TimerState::kRecording},  // Discard
            {QMessageBox::Abort, 3600, TimerState::kPaused},         // Discard and Pause
        };
        for (const Case& c : cases) {
            setNow("09:00:00");
            auto state = twoClientState();
            QVERIFY(state);
            QVERIFY(setIdleMinutes(state->registry(), 15));
            std::uint32_t idle = 0;
            QWidget owner;
            TimerWork work(*state, &owner, std::make_unique<FakeIdle>(&idle));
            QVERIFY(work.idleDetected());
            work.record(0);
            Messages answers(c.pressed);
            setNow("10:20:00");
            idle = 20 * 60;  // nothing typed since 10:00
            work.tick(timerNow());
            QVERIFY(answers.shown.empty());
            setNow("10:31:00");
            idle = 60;  // back at 10:30
            work.tick(timerNow());
            QCOMPARE(answers.shown.size(), std::size_t(1));
            const MessageRequest& asked = answers.shown[0];
            QCOMPARE(asked.text, QStringLiteral("You have been away for 30 minutes, since 10:00 "
                                                "AM, while a timer was recording. Keep that time "
                                                "on the timer?"));
            QCOMPARE(asked.buttonTexts.size(), std::size_t(3));
            QCOMPARE(asked.buttonTexts[2].second, QStringLiteral("Discard and Pause"));
            QCOMPARE(work.elapsed(0), c.shownAfter);
            QCOMPARE(work.timer(0).state, c.state);
            QCOMPARE(storedTimers(state->platform())[0], work.timer(0));
            work.tick(timerNow());
            QCOMPARE(answers.shown.size(), std::size_t(1));  // asked once
        }
    }

    // Without an idle source the Options page says so and keeps the setting.
    void optionsPageWithoutIdleSource() {
        auto state = twoClientState();
        QVERIFY(state);
        QVERIFY(setIdleMinutes(state->registry(), 20));
        OptionsDialog dialog(state->settings());
        addTimerPage(dialog, *state);
        auto* tabs = dialog.findChild<QTabWidget*>();
        QCOMPARE(tabs->tabText(tabs->count() - 1), QStringLiteral("Timers"));
        if (desktopIdleSource()) QSKIP("this desktop reports idle time");
        QVERIFY(!child<QCheckBox>(dialog, "idleAsk")->isEnabled());
        QCOMPARE(text(dialog, "idleSource"), idleUnavailableText());
        dialog.accept();
        QCOMPARE(idleMinutes(state->registry()), 20u);
    }
};

QB_GUI_TEST(TimerTests);

}  // namespace qb

#include "timer_tests.moc"
