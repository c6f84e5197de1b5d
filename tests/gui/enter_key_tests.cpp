// Enter in an editable drop-down keeps the text the box shows and confirms
// the dialog as OK does: the entry editor's boxes, and the Copy and Replace
// dialogs. Qt's defaults would complete a typed prefix to the first item
// that starts with it, or swap a text for an item equal to it ignoring case.

#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <memory>

#include "entry/entry_copy.h"
#include "entry/entry_form.h"
#include "entry/replace_text.h"
#include "gui/app_state.h"
#include "gui/entry/entry_editor.h"
#include "gui/gui_test_registry.h"
#include "gui/tools/copy_dialog.h"
#include "gui/tools/replace_dialog.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "store/entry_save.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

using namespace guitest;

namespace {

// 10-minute steps, so that the Duration list holds 0.17, 0.33, 0.50, ...,
// and no rounding, so that a typed duration is stored as typed.
std::unique_ptr<AppState> makeState() {
    auto state = twoClientState();
    if (!state) return nullptr;
    state->settings().timeInterval = 0;
    state->settings().minTime = 0;
    addProjectTask(state->masters().projects, clientIdOf(state->masters().clients, u"Acme"), u"Web",
                   u"Deploy");
    return state;
}

// An entry as it was saved earlier: texts that differ from the list's items
// only in case, and a duration between two items.
TimeEntry openedEntry(AppState& state) {
    TimeEntry e = prepareEntry(nullptr, state.settings(), makeDate(2026, 3, 9));
    e.client = u"acme";
    e.project = u"web";
    e.task = u"design";
    e.duration = 140;
    e.recordOid = 0;
    return e;
}

// Focus in the box, optionally the text typed over it, then Enter.
void enterIn(QComboBox* box, const QString* typed) {
    box->setFocus();
    if (typed) {
        box->lineEdit()->selectAll();
        box->lineEdit()->del();
        QTest::keyClicks(box->lineEdit(), *typed);
    }
    QTest::keyClick(box->lineEdit(), Qt::Key_Return);
}

TimeEntry stored(AppState& state, CEOID id) {
    TimeEntry e;
    if (!state.entries().seekOid(id) || readEntry(state.entries(), e) != 0) return TimeEntry();
    return e;
}

}  // namespace

class EnterKeyTests : public QObject {
    Q_OBJECT

  private slots:
    void editorKeepsTheTextShown_data();
    void editorKeepsTheTextShown();
    void copyDurationKeepsTheTypedHours();
    void replaceFindKeepsTheTypedText();
};

void EnterKeyTests::editorKeepsTheTextShown_data() {
    QTest::addColumn<QString>("box");
    QTest::addColumn<bool>("typing");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("client");
    QTest::addColumn<QString>("task");
    QTest::addColumn<int>("duration");

    // As opened: the saved texts stay, though the lists hold "Acme",
    // "Design" and a 1.33 item.
    QTest::newRow("client as opened") << "client" << false << ""
                                      << "acme"
                                      << "design" << 140;
    QTest::newRow("task as opened") << "task" << false << ""
                                    << "acme"
                                    << "design" << 140;
    QTest::newRow("duration as opened") << "duration" << false << ""
                                        << "acme"
                                        << "design" << 140;
    QTest::newRow("project as opened") << "project" << false << ""
                                       << "acme"
                                       << "design" << 140;
    // Typed: a prefix of an item stays a prefix.
    QTest::newRow("client prefix") << "client" << true << "Ac"
                                   << "Ac"
                                   << "design" << 140;
    QTest::newRow("client other case") << "client" << true << "BOLT"
                                       << "BOLT"
                                       << "design" << 140;
    QTest::newRow("task prefix") << "task" << true << "De"
                                 << "acme"
                                 << "De" << 140;
    QTest::newRow("duration prefix") << "duration" << true << "0.3"
                                     << "acme"
                                     << "design" << 30;
    QTest::newRow("duration whole") << "duration" << true << "1"
                                    << "acme"
                                    << "design" << 100;
}

void EnterKeyTests::editorKeepsTheTextShown() {
    QFETCH(QString, box);
    QFETCH(bool, typing);
    QFETCH(QString, typed);
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    EntryEditor editor(*state, openedEntry(*state));
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    auto* target = child<QComboBox>(editor, box.toLatin1().constData());
    QVERIFY(target);

    enterIn(target, typing ? &typed : nullptr);

    // Enter is OK: the dialog closed with the entry saved as shown.
    QVERIFY(messages.shown.empty());
    QVERIFY(editor.saved());
    QVERIFY(!editor.isVisible());
    const TimeEntry saved = stored(*state, editor.entry().recordOid);
    QFETCH(QString, client);
    QFETCH(QString, task);
    QFETCH(int, duration);
    QCOMPARE(QString::fromStdU16String(saved.client), client);
    QCOMPARE(QString::fromStdU16String(saved.task), task);
    QCOMPARE(QString::fromStdU16String(saved.project), QStringLiteral("web"));
    QCOMPARE(int(saved.duration), duration);
}

void EnterKeyTests::copyDurationKeepsTheTypedHours() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages;
    TimeEntry e = openedEntry(*state);
    e.client = u"Acme";
    e.task = u"Design";
    QVERIFY(saveEditedEntry(state->platform().file(), state->entries(), state->masters(), e) ==
            EntrySave::kSaved);
    CopyDialog dialog(*state, e);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto* duration = child<QComboBox>(dialog, "duration");
    const QString typed = QStringLiteral("0.3");
    enterIn(duration, &typed);

    QVERIFY(messages.shown.empty());
    QVERIFY(!dialog.isVisible());
    QVERIFY(!dialog.created().empty());
    for (CEOID id : dialog.created()) QCOMPARE(int(stored(*state, id).duration), 30);
}

void EnterKeyTests::replaceFindKeepsTheTypedText() {
    auto state = makeState();
    QVERIFY(state);
    Messages messages(QMessageBox::No);
    ReplaceDialog dialog(*state);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto* find = child<QComboBox>(dialog, "find");
    child<QLineEdit>(dialog, "replacement")->setText(QStringLiteral("Zed"));
    const QString typed = QStringLiteral("Bo");
    enterIn(find, &typed);

    // Enter went to OK, which asks; the text is still what was typed.
    QCOMPARE(messages.last(), QString::fromStdU16String(std::u16string(kReplaceQuestion)));
    QCOMPARE(find->currentText(), typed);
    QVERIFY(dialog.isVisible());
}

QB_GUI_TEST(EnterKeyTests);

}  // namespace qb

#include "enter_key_tests.moc"
