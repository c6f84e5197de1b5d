// The entry editor and the quick summary, driven as a user
// would: type into the boxes, switch pages, press the buttons, read the
// messages and then the store.

#include <QAbstractBarSeries>
#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPieSeries>
#include <QPieSlice>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimeEdit>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <functional>
#include <memory>

#include "entry/duration_rule.h"
#include "entry/entry_form.h"
#include "entry/note_text.h"
#include "entry/rate_rules.h"
#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/entry/entry_editor.h"
#include "gui/entry/set_times_dialog.h"
#include "gui/entry/summary_charts_view.h"
#include "gui/entry/summary_dialog.h"
#include "gui/entry_list_widget.h"
#include "gui/gui_test_registry.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/quick_summary.h"
#include "views/summary_charts.h"

namespace qb {

using namespace guitest;

namespace {

std::unique_ptr<AppState> makeState() {
    auto state = twoClientState();
    if (!state) return nullptr;
    MasterTables& m = state->masters();
    ClientId acme = clientIdOf(m.clients, u"Acme");
    addRate(m.rates, kNormalRate, 50.0, kDefaultRatesClient, u"Standard", false);
    addRate(m.rates, kOvertimeRate, 75.0, acme, u"Late", false);
    return state;
}

// Replaces a box's text as a user would: select all, type.
void type(QWidget& parent, const char* name, const QString& text) {
    QLineEdit* line = nullptr;
    if (auto* box = parent.findChild<QComboBox*>(QString::fromLatin1(name))) {
        line = box->lineEdit();
    } else {
        line = child<QLineEdit>(parent, name);
    }
    QVERIFY2(line, name);
    line->selectAll();
    line->del();
    QTest::keyClicks(line, text);
}

void click(QWidget& parent, const char* name) {
    auto* button = child<QPushButton>(parent, name);
    QVERIFY2(button, name);
    QTest::mouseClick(button, Qt::LeftButton);
}

bool focusIn(QWidget& window, const char* name) {
    QWidget* target = window.findChild<QWidget*>(QString::fromLatin1(name));
    QWidget* focus = window.focusWidget();
    return target && focus && (focus == target || target->isAncestorOf(focus));
}

QStringList itemsOf(QComboBox* box) {
    QStringList items;
    for (int i = 0; i < box->count(); ++i) items << box->itemText(i);
    return items;
}

TimeEntry storedEntry(AppState& state, CEOID id) {
    TimeEntry e;
    if (!state.entries().seekOid(id) || readEntry(state.entries(), e) != 0) return TimeEntry();
    return e;
}

std::size_t entryCount(AppState& state) {
    std::size_t n = 0;
    for (bool more = state.entries().seekFirst(); more; more = state.entries().seekNext()) ++n;
    return n;
}

}  // namespace

class EntryTests : public QObject {
    Q_OBJECT

  private slots:
    void editorRefusesInTurnThenSavesWithMasterData();
    void editorListsAndBillingPageFollowTheClient();
    void setTimesProposesAndTakesTheSpan();
    void reopenedEntryKeepsItsHoursAndRate();
    void editorShowsWhatItWillSave();
    void escapeAsksBeforeDiscardingChanges();
    void summaryShowsTheListsRowsAndCharts();
};

void EntryTests::editorRefusesInTurnThenSavesWithMasterData() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    EntryEditor editor(*state, prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9)));
    editor.show();
    QVERIFY(QTest::qWaitForWindowActive(&editor));
    QCOMPARE(editor.windowTitle(), QStringLiteral("Quillarbor"));
    auto* pages = child<QTabWidget>(editor, "pages");
    QStringList tabs;
    for (int i = 0; i < pages->count(); ++i) tabs << pages->tabText(i);
    QCOMPARE(tabs, (QStringList{"General", "Billing", "Custom", "Notes"}));

    // Leaving General without a client is refused, and the page stays.
    pages->setCurrentIndex(1);
    QCOMPARE(pages->currentIndex(), 0);
    QVERIFY(focusIn(editor, "client"));
    type(editor, "client", QStringLiteral("Cobalt"));
    type(editor, "duration", QString());
    pages->setCurrentIndex(2);
    QCOMPARE(pages->currentIndex(), 0);
    QVERIFY(focusIn(editor, "duration"));

    // OK meets the task, then letters in the duration, then in the rate.
    type(editor, "duration", QStringLiteral("1.5"));
    pressOk(editor);
    QVERIFY(focusIn(editor, "task"));
    type(editor, "project", QStringLiteral("Site"));
    type(editor, "task", QStringLiteral("Survey"));
    type(editor, "phase", QStringLiteral("Review"));
    type(editor, "duration", QStringLiteral("1h"));
    pressOk(editor);
    QVERIFY(focusIn(editor, "duration"));
    type(editor, "duration", QStringLiteral("1.5"));
    pages->setCurrentIndex(1);
    QCOMPARE(pages->currentIndex(), 1);
    child<QCheckBox>(editor, "billable")->setChecked(true);
    type(editor, "billTo", QStringLiteral("Carol"));
    type(editor, "rate", QStringLiteral("6o"));
    pages->setCurrentIndex(0);
    pressOk(editor);
    QCOMPARE(pages->currentIndex(), 1);  // the page of the rate box
    QVERIFY(focusIn(editor, "rate"));
    QCOMPARE(messages.texts(),
             (QStringList{QString::fromStdU16String(std::u16string(kClientBlankMessage)),
                          QString::fromStdU16String(std::u16string(kDurationBlankMessage)),
                          QString::fromStdU16String(std::u16string(kTaskBlankMessage)),
                          QString::fromStdU16String(std::u16string(kNumericOnlyMessage)),
                          QString::fromStdU16String(std::u16string(kNumericOnlyMessage))}));
    for (const MessageRequest& r : messages.shown) QCOMPARE(r.icon, MessageIcon::kExclamation);
    QVERIFY(!editor.saved());
    QCOMPARE(entryCount(*state), std::size_t(0));

    type(editor, "rate", QStringLiteral("60"));
    pages->setCurrentIndex(2);
    type(editor, "custom1", QStringLiteral("South"));
    pages->setCurrentIndex(3);
    QTest::keyClicks(child<QPlainTextEdit>(editor, "noteText"), "Met on site");
    pressOk(editor);
    QVERIFY(editor.saved());
    QCOMPARE(messages.shown.size(), std::size_t(5));

    const TimeEntry saved = storedEntry(*state, editor.entry().recordOid);
    QVERIFY(saved.client == u"Cobalt" && saved.project == u"Site" && saved.task == u"Survey");
    QCOMPARE(saved.duration, std::uint16_t(150));
    QVERIFY(saved.billable && saved.billTo == u"Carol" && saved.currency == u"USD");
    QCOMPARE(saved.rate, 6000u);
    QCOMPARE(saved.rateType, std::uint16_t(kNormalRate));
    QVERIFY(saved.custom1 == u"South");
    QVERIFY(noteText(saved) == u"Met on site");
    QVERIFY(!hasStartTime(saved));

    // What the master data learned, committed with the entry.
    MasterTables& m = state->masters();
    const ClientId cobalt = clientIdOf(m.clients, u"Cobalt");
    QVERIFY(cobalt != kNoClient);
    const auto projects = projectsOf(m.projects, cobalt);
    QCOMPARE(projects.size(), std::size_t(1));
    QVERIFY(projects[0].project == u"Site" && projects[0].task == u"Survey");
    QCOMPARE(namesOf(m.contacts, cobalt).size(), std::size_t(1));
    ListTable lists(state->platform(), ListTable::Order::kByKind);
    QVERIFY(lists.open());
    QVERIFY(lists.findItem(kListPhase, u"Review") != 0);
    QVERIFY(lists.findItem(kListCustom1, u"South") != 0);

    // Edited again and saved over the same record.
    EntryEditor again(*state, prepareEntry(&saved, state->settings(), localNow()));
    QCOMPARE(child<QComboBox>(again, "duration")->currentText(), QStringLiteral("1.50"));
    QCOMPARE(child<QLineEdit>(again, "rate")->text(), QStringLiteral("60.00"));
    type(again, "duration", QStringLiteral("2"));
    pressOk(again);
    QVERIFY(again.saved());
    QCOMPARE(again.entry().recordOid, saved.recordOid);
    QCOMPARE(entryCount(*state), std::size_t(1));
    QCOMPARE(storedEntry(*state, saved.recordOid).duration, std::uint16_t(200));
}

void EntryTests::editorListsAndBillingPageFollowTheClient() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    TimeEntry late = prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9));
    late.client = u"Acme";
    late.task = u"Design";
    late.duration = 100;
    late.billable = true;
    late.rate = 7500;
    late.rateType = kOvertimeRate;
    late.recordOid = 0;
    EntryEditor editor(*state, late);

    auto* duration = child<QComboBox>(editor, "duration");
    QCOMPARE(duration->count(), 24);
    QCOMPARE(duration->itemText(0), QStringLiteral("0.50"));
    QCOMPARE(duration->itemText(23), QStringLiteral("12.00"));
    QCOMPARE(child<QComboBox>(editor, "client")->lineEdit()->maxLength(), 127);
    QCOMPARE(duration->lineEdit()->maxLength(), 6);
    QCOMPARE(itemsOf(child<QComboBox>(editor, "project")), QStringList{"Web"});
    child<QComboBox>(editor, "client")->setCurrentText(QStringLiteral("Bolt"));
    QCOMPARE(itemsOf(child<QComboBox>(editor, "project")), QStringList{"App"});
    QCOMPARE(itemsOf(child<QComboBox>(editor, "task")), (QStringList{"Support", "Build"}));
    child<QComboBox>(editor, "project")->setCurrentText(QStringLiteral("App"));
    QCOMPARE(itemsOf(child<QComboBox>(editor, "task")), QStringList{"Build"});
    QCOMPARE(child<QComboBox>(editor, "task")->currentText(), QStringLiteral("Design"));

    // Back to Acme: the tree holds its rates and selects the one the entry
    // was priced at; "Fixed" belongs to the custom rate only.
    child<QComboBox>(editor, "client")->setCurrentText(QStringLiteral("Acme"));
    auto* pages = child<QTabWidget>(editor, "pages");
    pages->setCurrentIndex(1);
    auto* tree = child<QTreeWidget>(editor, "rateTree");
    QCOMPARE(tree->topLevelItemCount(), 3);
    QCOMPARE(tree->currentItem()->text(0), QStringLiteral("Late (75.00)"));
    auto* fixed = child<QCheckBox>(editor, "fixed");
    QVERIFY(!fixed->isEnabled());
    QCOMPARE(itemsOf(child<QComboBox>(editor, "billTo")), QStringList{"Alice"});
    QCOMPARE(child<QLineEdit>(editor, "total")->text(), QStringLiteral("USD75.00"));

    tree->setCurrentItem(tree->topLevelItem(0));
    QVERIFY(fixed->isEnabled());
    type(editor, "rate", QStringLiteral("150"));
    fixed->setChecked(true);
    type(editor, "duration", QStringLiteral("x"));  // not on this page; not read by Calculate
    click(editor, "calculate");
    QCOMPARE(child<QLineEdit>(editor, "total")->text(), QStringLiteral("USD150.00"));
    tree->setCurrentItem(tree->topLevelItem(1)->child(0));
    QCOMPARE(child<QLineEdit>(editor, "rate")->text(), QStringLiteral("50.00"));

    // Not billable: the page's other controls go grey.
    child<QCheckBox>(editor, "billable")->setChecked(false);
    for (const char* name :
         {"paid", "billTo", "rateTree", "currency", "rate", "calculate", "fixed"}) {
        QVERIFY2(!child<QWidget>(editor, name)->isEnabled(), name);
    }
    QVERIFY(messages.shown.empty());

    // An OK that never visits Billing keeps the entry's rate and its type.
    EntryEditor untouched(*state, late);
    type(untouched, "duration", QStringLiteral("3"));
    pressOk(untouched);
    QVERIFY(untouched.saved());
    const TimeEntry saved = storedEntry(*state, untouched.entry().recordOid);
    QCOMPARE(saved.rate, 7500u);
    QCOMPARE(saved.rateType, std::uint16_t(kOvertimeRate));
    QCOMPARE(saved.duration, std::uint16_t(300));
}

void EntryTests::setTimesProposesAndTakesTheSpan() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    EntryEditor editor(*state, prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9)));
    child<QCheckBox>(editor, "hasStart")->setChecked(true);
    child<QTimeEdit>(editor, "start")->setTime(QTime(23, 30));
    type(editor, "duration", QString());
    click(editor, "setTimes");
    QCOMPARE(messages.texts(),
             QStringList{QString::fromStdU16String(std::u16string(kDurationBlankMessage))});

    // 0.17 hours proposes an end ten minutes on; an end past midnight is
    // taken on the next day.
    type(editor, "duration", QStringLiteral("0.17"));
    QTime proposedStart, proposedEnd;
    whenModal<SetTimesDialog>([&](SetTimesDialog* d) {
        proposedStart = d->findChild<QTimeEdit*>(QStringLiteral("startTime"))->time();
        proposedEnd = d->findChild<QTimeEdit*>(QStringLiteral("endTime"))->time();
        d->findChild<QTimeEdit*>(QStringLiteral("endTime"))->setTime(QTime(0, 15));
        pressOk(*d);
    });
    click(editor, "setTimes");
    QCOMPARE(proposedStart, QTime(23, 30));
    QCOMPARE(proposedEnd, QTime(23, 40));
    QCOMPARE(child<QComboBox>(editor, "duration")->currentText(), QStringLiteral("0.75"));
    QCOMPARE(child<QTimeEdit>(editor, "start")->time(), QTime(23, 30));

    type(editor, "client", QStringLiteral("Acme"));
    type(editor, "task", QStringLiteral("Design"));
    pressOk(editor);
    QVERIFY(editor.saved());
    const TimeEntry saved = storedEntry(*state, editor.entry().recordOid);
    QCOMPARE(saved.duration, std::uint16_t(75));
    QVERIFY(hasStartTime(saved));
    SYSTEMTIME st{};
    QVERIFY(fileTimeToSystemTime(saved.date, &st));
    QCOMPARE(int(st.wHour), 23);
    QCOMPARE(int(st.wMinute), 30);
    QCOMPARE(int(st.wDay), 9);
}

void EntryTests::reopenedEntryKeepsItsHoursAndRate() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    // Stored before granularity was turned on, at a rate no node offers and
    // that a double would read back one lower.
    TimeEntry stored = prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9));
    stored.client = u"Acme";
    stored.task = u"Design";
    stored.duration = 17;
    stored.billable = true;
    stored.rate = 29;
    QVERIFY(saveEntry(state->entries(), stored));
    state->settings().optionFlags |= kDurationGranularity;
    state->settings().minTime = 15;

    EntryEditor editor(*state, prepareEntry(&stored, state->settings(), localNow()));
    QCOMPARE(child<QComboBox>(editor, "duration")->currentText(), QStringLiteral("0.17"));
    auto* pages = child<QTabWidget>(editor, "pages");
    pages->setCurrentIndex(1);
    QCOMPARE(child<QLineEdit>(editor, "rate")->text(), QStringLiteral("0.29"));
    pages->setCurrentIndex(0);
    pressOk(editor);
    QVERIFY(editor.saved());
    QVERIFY(messages.shown.empty());
    TimeEntry saved = storedEntry(*state, stored.recordOid);
    QCOMPARE(saved.duration, std::uint16_t(17));
    QCOMPARE(saved.rate, 29u);

    // Hours beyond the field are refused, naming the field and its range;
    // so is a negative span from Set....
    EntryEditor again(*state, prepareEntry(&saved, state->settings(), localNow()));
    type(again, "duration", QStringLiteral("700"));
    pressOk(again);
    QVERIFY(!again.saved());
    QVERIFY(focusIn(again, "duration"));
    type(again, "duration", QStringLiteral("1"));
    child<QCheckBox>(again, "hasStart")->setChecked(true);
    child<QTimeEdit>(again, "start")->setTime(QTime(10, 30));
    whenModal<SetTimesDialog>([&](SetTimesDialog* d) {
        d->findChild<QTimeEdit*>(QStringLiteral("endTime"))->setTime(QTime(10, 5));
        pressOk(*d);
    });
    click(again, "setTimes");
    const QString range = QString::fromStdU16String(std::u16string(kDurationRangeMessage));
    QCOMPARE(messages.texts(), (QStringList{range, range}));
    QCOMPARE(child<QComboBox>(again, "duration")->currentText(), QStringLiteral("1"));
    QCOMPARE(storedEntry(*state, stored.recordOid).duration, std::uint16_t(17));
}

void EntryTests::editorShowsWhatItWillSave() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    EntryEditor editor(*state, prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9)));
    editor.show();
    QVERIFY(QTest::qWaitForWindowActive(&editor));
    auto* note = child<QLabel>(editor, "durationNote");
    auto* total = child<QLineEdit>(editor, "total");
    QCOMPARE(note->text(), QStringLiteral("Saves 0.00 h"));

    // The hours as OK reads them, while the user types.
    const QList<QPair<QString, QString>> typed = {
        {"1:30", "Saves 1.00 h"},
        {"1.239", "Saves 1.23 h"},
        {"", "Not saved: blank"},
        {"1h", "Not saved: numbers only"},
        {"700", "Not saved: 0 to 655.35 h"},
        {"1.5", "Saves 1.50 h"},
    };
    for (const auto& [text, shown] : typed) {
        type(editor, "duration", text);
        QCOMPARE(note->text(), shown);
    }
    type(editor, "duration", QStringLiteral("700"));
    QCOMPARE(note->toolTip(), QString::fromStdU16String(std::u16string(kDurationRangeMessage)));
    type(editor, "duration", QStringLiteral("1.5"));
    QVERIFY(note->toolTip().isEmpty());

    // The Total follows the rate, its type, the currency and the hours.
    type(editor, "client", QStringLiteral("Cobalt"));
    auto* pages = child<QTabWidget>(editor, "pages");
    pages->setCurrentIndex(1);
    QCOMPARE(pages->currentIndex(), 1);
    child<QCheckBox>(editor, "billable")->setChecked(true);
    type(editor, "rate", QStringLiteral("60"));
    QCOMPARE(total->text(), QStringLiteral("USD90.00"));
    type(editor, "currency", QStringLiteral("EUR"));
    QCOMPARE(total->text(), QStringLiteral("EUR90.00"));
    child<QCheckBox>(editor, "fixed")->setChecked(true);
    QCOMPARE(total->text(), QStringLiteral("EUR60.00"));
    child<QCheckBox>(editor, "fixed")->setChecked(false);
    type(editor, "rate", QStringLiteral("6o"));
    QVERIFY(total->text().isEmpty());
    QCOMPARE(total->placeholderText(),
             QString::fromStdU16String(std::u16string(kNumericOnlyMessage)));
    type(editor, "rate", QStringLiteral("80"));
    pages->setCurrentIndex(0);
    type(editor, "duration", QStringLiteral("0:45"));  // read as 0
    QCOMPARE(note->text(), QStringLiteral("Saves 0.00 h"));
    QCOMPARE(total->text(), QStringLiteral("EUR0.00"));
    type(editor, "duration", QStringLiteral("2"));
    QCOMPARE(total->text(), QStringLiteral("EUR160.00"));
    // Calculate still answers the same.
    pages->setCurrentIndex(1);
    total->clear();
    click(editor, "calculate");
    QCOMPARE(total->text(), QStringLiteral("EUR160.00"));
    QVERIFY(messages.shown.empty());

    // And OK stores what was shown.
    type(editor, "task", QStringLiteral("Survey"));
    pressOk(editor);
    QVERIFY(editor.saved());
    const TimeEntry saved = storedEntry(*state, editor.entry().recordOid);
    QCOMPARE(saved.duration, std::uint16_t(200));
    QCOMPARE(saved.rate, 8000u);
}

void EntryTests::escapeAsksBeforeDiscardingChanges() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages(QMessageBox::No);
    auto escape = [](QWidget& editor) {
        QWidget* focus = editor.focusWidget() ? editor.focusWidget() : &editor;
        QTest::keyClick(focus, Qt::Key_Escape);
    };

    // Untouched, it closes at once.
    EntryEditor untouched(*state, prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9)));
    untouched.show();
    QVERIFY(QTest::qWaitForWindowActive(&untouched));
    escape(untouched);
    QVERIFY(!untouched.isVisible());
    QVERIFY(messages.shown.empty());

    EntryEditor editor(*state, prepareEntry(nullptr, state->settings(), makeDate(2026, 3, 9)));
    editor.show();
    QVERIFY(QTest::qWaitForWindowActive(&editor));
    type(editor, "client", QStringLiteral("Acme"));
    type(editor, "duration", QStringLiteral("2"));
    escape(editor);
    QCOMPARE(messages.shown.size(), std::size_t(1));
    const MessageRequest& asked = messages.shown[0];
    QCOMPARE(asked.text, QStringLiteral("Discard the changes to this entry?"));
    QCOMPARE(asked.icon, MessageIcon::kQuestion);
    QCOMPARE(asked.buttons, QMessageBox::Yes | QMessageBox::No);
    QCOMPARE(asked.defaultButton, QMessageBox::No);
    QVERIFY(editor.isVisible());  // No: still editing, with what was typed
    QCOMPARE(child<QComboBox>(editor, "client")->currentText(), QStringLiteral("Acme"));

    // Typed back as it was, it counts as unchanged.
    type(editor, "client", QString());
    type(editor, "duration", QStringLiteral("0.00"));
    escape(editor);
    QVERIFY(!editor.isVisible());
    QCOMPARE(messages.shown.size(), std::size_t(1));

    // Cancel asks too; Yes discards.
    editor.show();
    QVERIFY(QTest::qWaitForWindowActive(&editor));
    type(editor, "task", QStringLiteral("Design"));
    messages.answer(QMessageBox::Yes);
    auto* buttons = editor.findChild<QDialogButtonBox*>();
    QTest::mouseClick(buttons->button(QDialogButtonBox::Cancel), Qt::LeftButton);
    QCOMPARE(messages.shown.size(), std::size_t(2));
    QVERIFY(!editor.isVisible());
    QVERIFY(!editor.saved());
    QCOMPARE(entryCount(*state), std::size_t(0));
}

namespace {

QStringList tableRows(QTableWidget* t) {
    QStringList cells;
    for (int r = 0; r < t->rowCount(); ++r) {
        cells << QStringLiteral("%1|%2|%3")
                     .arg(t->item(r, 0)->text(), t->item(r, 1)->text(), t->item(r, 2)->text());
    }
    return cells;
}

QList<qreal> barValues(QChart* chart, int set = 0) {
    const QList<QAbstractSeries*> series = chart->series();
    if (series.size() != 1) return {};
    auto* bars = qobject_cast<QAbstractBarSeries*>(series[0]);
    if (!bars || bars->count() <= set) return {};
    QList<qreal> values;
    QBarSet* s = bars->barSets()[set];
    for (int i = 0; i < s->count(); ++i) values << s->at(i);
    return values;
}

QStringList categoriesOf(QChart* chart) {
    for (QAbstractAxis* axis : chart->axes()) {
        if (auto* c = qobject_cast<QBarCategoryAxis*>(axis)) return c->categories();
    }
    return {};
}

QList<qreal> hoursOf(const std::vector<ChartBar>& bars, bool topFirst) {
    QList<qreal> values;
    for (const ChartBar& b : bars) values << static_cast<double>(b.hours) / 100.0;
    if (topFirst) std::reverse(values.begin(), values.end());
    return values;
}

}  // namespace

void EntryTests::summaryShowsTheListsRowsAndCharts() {
    auto state = makeState();
    QVERIFY(state);
    MainWindow window(*state);
    window.show();
    SYSTEMTIME start{}, end{};
    window.periodView().getPeriod(&start, &end);
    auto addOne = [&](const char16_t* client, const char16_t* project, std::uint16_t duration,
                      bool billable, bool paid, const char16_t* currency) {
        TimeEntry e = prepareEntry(nullptr, state->settings(), start);
        e.client = client;
        e.project = project;
        e.task = u"Design";
        e.duration = duration;
        e.billable = billable;
        e.paid = paid;
        e.rate = 6000;
        e.currency = currency;
        QVERIFY(saveEntry(state->entries(), e));
    };
    addOne(u"Acme", u"Web", 150, true, false, u"USD");
    addOne(u"Acme", u"WEB", 50, true, true, u"EUR");
    addOne(u"Bolt", u"Ops", 200, false, false, u"USD");
    window.refresh();

    // It opens beside the window, which stays usable.
    window.runCommand(kCmdQuickSummary);
    auto* summary = window.findChild<SummaryDialog*>();
    QVERIFY(summary);
    QVERIFY(summary->isVisible());
    QVERIFY(!summary->isModal());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QCOMPARE(summary->windowTitle(), QStringLiteral("Quick Summary"));

    // The rows as the summary lists them: amounts of all
    // currencies together there, and only there.
    const QStringList cells = tableRows(summary->table());
    QCOMPARE(cells.size(), 17);
    QCOMPARE(cells[0], QStringLiteral("Period Type:|Week|"));
    QCOMPARE(cells[2], QStringLiteral("Number of Items:|3|"));
    QCOMPARE(cells[5], QStringLiteral("Billable Hours:|2.00h|50.0%"));
    QCOMPARE(cells[6], QStringLiteral("Non Billable Hours:|2.00h|50.0%"));
    QCOMPARE(cells[10], QStringLiteral("Unpaid Amount:|90.00|"));
    QCOMPARE(cells[11], QStringLiteral("Paid Amount:|30.00|"));
    QCOMPARE(cells[15], QStringLiteral("Ops|2.00h|50.0%"));
    QCOMPARE(cells[16], QStringLiteral("Web|2.00h|50.0%"));
    QList<Qt::Alignment> alignment;
    for (int c = 0; c < 3; ++c) {
        alignment << (Qt::Alignment(summary->table()->item(5, c)->textAlignment()) &
                      Qt::AlignHorizontal_Mask);
    }
    QCOMPARE(alignment, (QList<Qt::Alignment>{Qt::AlignLeft, Qt::AlignRight, Qt::AlignRight}));

    // The charts draw the core's figures of the same rows.
    FILETIME lo = 0, hi = 0;
    window.periodView().bounds(&lo, &hi);
    SYSTEMTIME first{}, last{};
    fileTimeToSystemTime(lo, &first);
    fileTimeToSystemTime(hi, &last);
    const SummaryCharts core = summaryCharts(state->entries(), window.entryList().collectIds(),
                                             first, last, state->settings());
    SummaryChartsView* charts = summary->charts();
    QCOMPARE(barValues(charts->chart("projects")), hoursOf(core.projects, true));
    // Lying bars count from the bottom: the first of the core's bars is on top.
    QCOMPARE(categoriesOf(charts->chart("projects")), (QStringList{"Web", "Ops"}));
    QCOMPARE(barValues(charts->chart("clients")), hoursOf(core.clients, true));
    QCOMPARE(barValues(charts->chart("clients")), (QList<qreal>{2.0, 2.0}));
    QCOMPARE(barValues(charts->chart("days")), hoursOf(core.days, false));
    QCOMPARE(barValues(charts->chart("days")).size(), 7);
    auto* pie = qobject_cast<QPieSeries*>(charts->chart("billable")->series().value(0));
    QVERIFY(pie);
    QCOMPARE(pie->count(), 2);
    QCOMPARE(pie->slices()[0]->value(), 2.0);
    QCOMPARE(pie->slices()[1]->value(), 2.0);
    QVERIFY(pie->slices()[0]->label().startsWith(QStringLiteral("Billable\n2.00 h")));
    // Paid and unpaid apart for each currency, never added across them.
    QCOMPARE(categoriesOf(charts->chart("amounts")), (QStringList{"USD 90.00", "EUR 30.00"}));
    QCOMPARE(barValues(charts->chart("amounts"), 0), (QList<qreal>{0.0, 30.0}));
    QCOMPARE(barValues(charts->chart("amounts"), 1), (QList<qreal>{90.0, 0.0}));

    // It follows the window to the next period, and opening it again
    // brings the same window forward.
    window.runCommand(kCmdNextPeriod);
    QCOMPARE(tableRows(summary->table())[2], QStringLiteral("Number of Items:|0|"));
    QVERIFY(barValues(charts->chart("projects")).isEmpty());
    window.runCommand(kCmdPreviousPeriod);
    summary->close();
    window.runCommand(kCmdNextPeriod);
    window.runCommand(kCmdQuickSummary);
    QCOMPARE(window.findChildren<SummaryDialog*>().size(), 1);
    QCOMPARE(tableRows(summary->table())[2], QStringLiteral("Number of Items:|0|"));
    summary->close();

    // No rows, no hours: the shares say so rather than print a division.
    SummaryDialog empty(*state);
    SummaryPeriod none;
    none.kind = kDayView;
    none.start = none.end = none.firstDay = none.lastDay = start;
    empty.showPeriod(none);
    QTableWidget* t = empty.table();
    QCOMPARE(t->item(2, 1)->text(), QStringLiteral("0"));
    QCOMPARE(t->item(5, 2)->text(), QString::fromStdU16String(std::u16string(kUndefinedShare)));
    QCOMPARE(t->item(6, 2)->text(), QString::fromStdU16String(std::u16string(kUndefinedShare)));
    QCOMPARE(empty.charts()->chart("billable")->series().value(0)->type(),
             QAbstractSeries::SeriesTypePie);
}

QB_GUI_TEST(EntryTests);

}  // namespace qb

#include "entry_tests.moc"
