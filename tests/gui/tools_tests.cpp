// Backup, archive and the bulk commands, driven from the main window as a
// user would: the file choosers answered, the dialogs filled, the questions
// answered, then the store read back.

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "backup/backup_texts.h"
#include "entry/drop_lists.h"
#include "entry/entry_form.h"
#include "entry/note_export.h"
#include "entry/note_text.h"
#include "entry/replace_text.h"
#include "gui/app_state.h"
#include "gui/clients/file_chooser.h"
#include "gui/commands.h"
#include "gui/entry/entry_editor.h"
#include "gui/entry_list_widget.h"
#include "gui/gui_test_registry.h"
#include "gui/main_window.h"
#include "gui/tools/archive_dialog.h"
#include "gui/tools/copy_dialog.h"
#include "gui/tools/drop_lists_dialog.h"
#include "gui/tools/note_round_trip.h"
#include "gui/tools/progress_dialog.h"
#include "gui/tools/replace_dialog.h"
#include "gui_test_support.h"
#include "platform/calendar.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

using namespace guitest;

namespace {

QString text(std::u16string_view t) {
    return QString::fromUtf16(t.data(), static_cast<qsizetype>(t.size()));
}

std::unique_ptr<AppState> makeState() {
    auto state = std::make_unique<AppState>(Platform::inMemory());
    if (!state->open()) return nullptr;
    state->settings() = defaultSettings();
    addClient(state->masters().clients, u"Acme");
    addClient(state->masters().clients, u"Bolt");
    return state;
}

CEOID addOn(AppState& state, int day, const char16_t* client, const char16_t* task = u"Work") {
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 11, day), &e.date);
    e.client = client;
    e.task = task;
    e.duration = 100;
    addEntry(state.entries(), e);
    return state.entries().currentOid();
}

std::vector<TimeEntry> allEntries(AppState& state) {
    std::vector<TimeEntry> out;
    for (bool more = state.entries().seekFirst(); more; more = state.entries().seekNext()) {
        TimeEntry e;
        if (readEntry(state.entries(), e) == 0) out.push_back(e);
    }
    return out;
}

int countOn(AppState& state, int day) {
    int n = 0;
    for (const TimeEntry& e : allEntries(state)) {
        SYSTEMTIME st{};
        fileTimeToSystemTime(e.date, &st);
        if (st.wMonth == 11 && st.wDay == day) ++n;
    }
    return n;
}

// Answers every file chooser with the next path, and remembers what each
// asked for; no paths left is a Cancel.
class Chooser {
  public:
    Chooser() {
        setFileChooser([this](const FileRequest& r, FileChoice* c) {
            asked.push_back(r);
            if (paths.isEmpty()) return false;
            c->path = paths.takeFirst();
            c->filter = 0;
            return true;
        });
    }
    ~Chooser() { setFileChooser(nullptr); }
    Chooser(const Chooser&) = delete;
    Chooser& operator=(const Chooser&) = delete;

    QStringList paths;
    std::vector<FileRequest> asked;
};

// What the progress dialog showed while the work ran.
struct ProgressSeen {
    ProgressSeen() {
        ProgressDialog::setObserver([this](ProgressDialog& d) {
            lines << d.recordLine()->text();
            barShown = d.bar()->isVisibleTo(&d);
            value = d.bar()->value();
            maximum = d.bar()->maximum();
            modal = d.isModal();
        });
    }
    ~ProgressSeen() { ProgressDialog::setObserver(nullptr); }
    QStringList lines;
    bool barShown = false;
    bool modal = false;
    int value = -1;
    int maximum = -1;
};

// Closes a dialog that a failed step left open, so that exec() returns.
void closeIfOpen(QDialog* d) {
    if (d->isVisible()) d->reject();
}

// The same when the steps return early on a failed check.
struct CloseAtEnd {
    QDialog* dialog;
    ~CloseAtEnd() { closeIfOpen(dialog); }
};

}  // namespace

class ToolsTests : public QObject {
    Q_OBJECT

  private slots:
    void init() { qputenv("QUILLARBOR_NOW", "2026-11-21T10:00:00"); }
    void cleanup() { qunsetenv("QUILLARBOR_NOW"); }

    void backupThenRestoreThroughTheMenu();
    void archiveOfTheWeekDeletesThenLoadsBack();
    void replaceRefusesAsksThenRenames();
    void copyFillsTheRestOfTheWeek();
    void dropListsEditImportAndDeleteAll();
    void notesGoOutToTheEditorAndComeBack();
};

void ToolsTests::backupThenRestoreThroughTheMenu() {
    auto state = makeState();
    QVERIFY(state);
    addOn(*state, 16, u"Acme");
    addOn(*state, 17, u"Bolt");
    MainWindow w(*state);
    QVERIFY(w.action(kCmdBackupCreate)->isEnabled());
    QTemporaryDir dir;
    Chooser chooser;
    Messages messages;
    ProgressSeen seen;

    // Cancel in the chooser ends silently.
    w.runCommand(kCmdBackupCreate);
    QCOMPARE(chooser.asked.size(), std::size_t(1));
    QVERIFY(chooser.asked[0].save);
    QCOMPARE(chooser.asked[0].filters, QStringList{QStringLiteral("Backup Files (*.qrb)")});
    QCOMPARE(chooser.asked[0].defaultSuffix, QStringLiteral("qrb"));
    QVERIFY(seen.lines.isEmpty() && messages.shown.empty());

    // Two entries and two clients: four steps, counted from 1 twice.
    const QString file = dir.filePath(QStringLiteral("all.qrb"));
    chooser.paths << file;
    w.runCommand(kCmdBackupCreate);
    QVERIFY(QFile::exists(file));
    QVERIFY(messages.shown.empty());
    QVERIFY(seen.modal && seen.barShown);
    QVERIFY(seen.lines.contains(QStringLiteral("Backing up record 1...")));
    QCOMPARE(seen.lines.last(), QStringLiteral("Backing up record 4..."));
    QCOMPARE(seen.value, 4);
    QCOMPARE(seen.maximum, 4);

    // Restore adds, it does not replace: it asks first with the counts, No
    // adds nothing, Yes shows every entry twice and says what it added.
    const QString question = QStringLiteral(
        "Restoring this backup adds 2 entries to the 2 already here. Do you want to continue?");
    chooser.paths << file;
    messages.answer(QMessageBox::No);
    w.runCommand(kCmdBackupRestore);
    QCOMPARE(messages.texts(), QStringList{question});
    QCOMPARE(messages.shown[0].defaultButton, QMessageBox::No);
    QCOMPARE(allEntries(*state).size(), std::size_t(2));
    messages.shown.clear();
    messages.answer(QMessageBox::Yes);
    chooser.paths << file;
    seen.lines.clear();
    w.runCommand(kCmdBackupRestore);
    QVERIFY(!chooser.asked.back().save);
    QCOMPARE(messages.texts(),
             (QStringList{question, QStringLiteral("Restore added 2 entries and 0 clients.")}));
    QCOMPARE(messages.shown[1].icon, MessageIcon::kInformation);
    QVERIFY(!seen.barShown);
    QCOMPARE(allEntries(*state).size(), std::size_t(4));
    QCOMPARE(w.entryList().collectIds().size(), std::size_t(4));
    messages.shown.clear();

    // Failures: a folder that is not there, a file that is no backup.
    chooser.paths << dir.filePath(QStringLiteral("missing/x.qrb"));
    w.runCommand(kCmdBackupCreate);
    QFile junk(dir.filePath(QStringLiteral("junk.qrb")));
    QVERIFY(junk.open(QIODevice::WriteOnly));
    junk.write("not a compound file");
    junk.close();
    chooser.paths << junk.fileName();
    w.runCommand(kCmdBackupRestore);
    QCOMPARE(messages.texts(), (QStringList{text(kBackupFailedText), text(kRestoreFailedText)}));
    for (const MessageRequest& r : messages.shown) QCOMPARE(r.icon, MessageIcon::kStop);
    QCOMPARE(allEntries(*state).size(), std::size_t(4));
}

void ToolsTests::archiveOfTheWeekDeletesThenLoadsBack() {
    auto state = makeState();
    QVERIFY(state);
    addOn(*state, 14, u"Acme");  // the Saturday before the week shown
    addOn(*state, 15, u"Acme");  // its first day
    addOn(*state, 21, u"Bolt");  // its last day
    addOn(*state, 22, u"Bolt");
    MainWindow w(*state);
    QTemporaryDir dir;
    Chooser chooser;
    Messages messages;
    const QString file = dir.filePath(QStringLiteral("week.qra"));
    chooser.paths << file;

    whenModal<ArchiveDialog>([](ArchiveDialog* d) {
        const CloseAtEnd closing{d};
        auto* start = child<QDateEdit>(*d, "start");
        auto* end = child<QDateEdit>(*d, "end");
        auto* clients = child<QListWidget>(*d, "clients");
        QCOMPARE(start->date(), QDate(2026, 11, 15));
        QCOMPARE(end->date(), QDate(2026, 11, 21));
        QCOMPARE(clients->count(), 2);
        QVERIFY(start->isEnabled() && !clients->isEnabled());
        auto* type = child<QComboBox>(*d, "type");
        type->setCurrentIndex(1);
        QVERIFY(!start->isEnabled() && !end->isEnabled() && clients->isEnabled());
        type->setCurrentIndex(0);
        child<QCheckBox>(*d, "deleteWhenArchived")->setChecked(true);
        pressOk(*d);
    });
    // Deleting asks first, with the count; then says what was done.
    messages.answer(QMessageBox::Yes);
    w.runCommand(kCmdArchiveCreate);
    QVERIFY(QFile::exists(file));
    QCOMPARE(chooser.asked.back().filters, QStringList{QStringLiteral("Archive Files (*.qra)")});
    QCOMPARE(messages.texts(),
             (QStringList{QStringLiteral("Archiving deletes 2 entries from this data file once the "
                                         "archive is written. Do you want to continue?"),
                          QStringLiteral("Archived 2 entries and deleted them from this data "
                                         "file.")}));
    QCOMPARE(messages.shown[0].defaultButton, QMessageBox::No);
    messages.shown.clear();

    // Given to Backup > Restore, the archive is recognised and nothing added.
    chooser.paths << file;
    w.runCommand(kCmdBackupRestore);
    QCOMPARE(messages.texts(), QStringList{text(kArchiveGivenToRestoreText)});
    QCOMPARE(allEntries(*state).size(), std::size_t(2));
    messages.shown.clear();
    // Both ends of the range went into the file and out of the store.
    QCOMPARE(countOn(*state, 14) + countOn(*state, 22), 2);
    QCOMPARE(countOn(*state, 15) + countOn(*state, 21), 0);
    QCOMPARE(w.entryList().collectIds().size(), std::size_t(0));

    chooser.paths << file;
    w.runCommand(kCmdArchiveLoad);
    QCOMPARE(countOn(*state, 15) + countOn(*state, 21), 2);
    QCOMPARE(w.entryList().collectIds().size(), std::size_t(2));

    // A client archive cannot be loaded; a file that is none cannot be read.
    const QString clientsFile = dir.filePath(QStringLiteral("clients.qra"));
    chooser.paths << clientsFile << clientsFile;
    whenModal<ArchiveDialog>([](ArchiveDialog* d) {
        const CloseAtEnd closing{d};
        child<QComboBox>(*d, "type")->setCurrentIndex(1);
        child<QListWidget>(*d, "clients")->item(0)->setCheckState(Qt::Checked);
        pressOk(*d);
    });
    w.runCommand(kCmdArchiveCreate);
    w.runCommand(kCmdArchiveLoad);
    chooser.paths << dir.filePath(QStringLiteral("none.qra"));
    w.runCommand(kCmdArchiveLoad);
    QCOMPARE(messages.texts(),
             (QStringList{text(kArchiveRestoredText), QStringLiteral("Archived 1 client."),
                          text(kArchiveDataOnlyText), text(kArchiveTooOldText)}));
    QCOMPARE(messages.shown[0].icon, MessageIcon::kInformation);
    QCOMPARE(messages.shown[1].icon, MessageIcon::kInformation);
    QCOMPARE(messages.shown[2].icon, MessageIcon::kExclamation);
    QCOMPARE(messages.shown[3].icon, MessageIcon::kStop);
    QCOMPARE(allEntries(*state).size(), std::size_t(4));
}

void ToolsTests::replaceRefusesAsksThenRenames() {
    auto state = makeState();
    QVERIFY(state);
    addClient(state->masters().clients, u"acme");
    addClient(state->masters().clients, u"Aardvark");
    addOn(*state, 16, u"Acme");
    addOn(*state, 17, u"acme");
    addOn(*state, 18, u"Acme Inc");
    addOn(*state, 19, u"Acme");
    MainWindow w(*state);
    Messages messages(QMessageBox::No);
    bool asked = false;

    whenModal<ReplaceDialog>([&](ReplaceDialog* d) {
        const CloseAtEnd closing{d};
        auto* type = child<QComboBox>(*d, "type");
        auto* find = child<QComboBox>(*d, "find");
        auto* replacement = child<QLineEdit>(*d, "replacement");
        QCOMPARE(type->count(), kReplaceFieldCount);
        QCOMPARE(type->currentText(), QStringLiteral("Client"));
        QCOMPARE(find->count(), 4);
        QCOMPARE(replacement->maxLength(), 127);

        // The first item cannot be chosen, and a blank replacement is
        // refused; both boxes are blank.
        find->setCurrentIndex(0);
        replacement->setText(QStringLiteral("Acme Ltd"));
        pressOk(*d);
        choose(find, QStringLiteral("acme"));
        find->lineEdit()->selectAll();
        QTest::keyClicks(find->lineEdit(), QStringLiteral("Acme"));  // typed over the item
        replacement->clear();
        pressOk(*d);
        QCOMPARE(messages.texts(), (QStringList{QString(), QString()}));
        QCOMPARE(messages.shown[1].icon, MessageIcon::kExclamation);

        // No to the question returns to the dialog.
        replacement->setText(QStringLiteral("Acme Ltd"));
        QCOMPARE(find->currentText(), QStringLiteral("Acme"));
        pressOk(*d);
        QVERIFY(d->isVisible());
        QCOMPARE(messages.shown.back().icon, MessageIcon::kQuestion);
        QCOMPARE(messages.shown.back().defaultButton, QMessageBox::No);
        QCOMPARE(messages.last(), text(kReplaceQuestion));
        messages.answer(QMessageBox::Yes);
        pressOk(*d);
        asked = true;
        auto* bar = child<QProgressBar>(*d, "progressBar");
        QVERIFY(bar->isVisibleTo(d));
        QCOMPARE(bar->maximum(), 5);
        QCOMPARE(bar->value(), 5);
        QVERIFY(!find->isEnabled() && !type->isEnabled() && !replacement->isEnabled());
    });
    w.runCommand(kCmdReplaceFieldText);
    QVERIFY(asked);
    // The end says what changed.
    QCOMPARE(messages.last(), QStringLiteral("Replace changed 2 entries and 1 name."));
    QCOMPARE(messages.shown.back().icon, MessageIcon::kInformation);
    QStringList clients;
    for (const TimeEntry& e : allEntries(*state)) clients << toQt(e.client);
    QCOMPARE(clients, (QStringList{"Acme Ltd", "acme", "Acme Inc", "Acme Ltd"}));
    QVERIFY(clientIdOf(state->masters().clients, u"Acme Ltd") != kNoClient);
    QCOMPARE(clientIdOf(state->masters().clients, u"Acme"), kNoClient);
}

void ToolsTests::copyFillsTheRestOfTheWeek() {
    auto state = makeState();
    QVERIFY(state);
    const CEOID monday = addOn(*state, 16, u"Acme", u"Design");
    MainWindow w(*state);
    w.entryList().select(monday);
    w.updateMenuStates();
    QVERIFY(w.action(kCmdCopy)->isEnabled());
    Messages messages;

    whenModal<CopyDialog>([&](CopyDialog* d) {
        const CloseAtEnd closing{d};
        QCOMPARE(child<QLabel>(*d, "client")->text(), QStringLiteral("Acme"));
        QCOMPARE(child<QLabel>(*d, "task")->text(), QStringLiteral("Design"));
        auto* duration = child<QComboBox>(*d, "duration");
        QCOMPARE(duration->currentText(), QStringLiteral("1.00"));
        QVERIFY(child<QRadioButton>(*d, "restOfWeek")->isChecked());
        auto* endDate = child<QDateEdit>(*d, "endDate");
        QVERIFY(!endDate->isEnabled());
        child<QRadioButton>(*d, "specificEnd")->setChecked(true);
        QVERIFY(endDate->isEnabled());
        child<QRadioButton>(*d, "restOfWeek")->setChecked(true);

        duration->setEditText(QStringLiteral("2h"));
        pressOk(*d);
        QVERIFY(d->isVisible());
        QCOMPARE(messages.last(), text(kNumericOnlyMessage));
        duration->setEditText(QStringLiteral("2"));
        pressOk(*d);
    });
    w.runCommand(kCmdCopy);
    // Tuesday to Friday; the weekend only when asked.
    for (int day : {17, 18, 19, 20}) QCOMPARE(countOn(*state, day), 1);
    QCOMPARE(countOn(*state, 21), 0);
    for (const TimeEntry& e : allEntries(*state)) {
        QVERIFY(e.task == u"Design");
        if (e.recordOid != monday) QCOMPARE(e.duration, std::uint16_t(200));
    }
    QCOMPARE(w.entryList().collectIds().size(), std::size_t(5));
}

void ToolsTests::dropListsEditImportAndDeleteAll() {
    auto state = makeState();
    QVERIFY(state);
    ListTable lists(state->platform(), ListTable::Order::kByKind);
    QVERIFY(lists.open());
    lists.addItem(kListPhase, u"Draft");
    lists.addItem(kListPhase, u"Final");
    MainWindow w(*state);
    QTemporaryDir dir;
    QFile listFile(dir.filePath(QStringLiteral("phases.txt")));
    QVERIFY(listFile.open(QIODevice::WriteOnly));
    listFile.write("Review\r\nDraft\r\nSign-off\r\n");
    listFile.close();
    Chooser chooser;
    chooser.paths << listFile.fileName();
    Messages messages(QMessageBox::No);

    whenModal<DropListsDialog>([&](DropListsDialog* d) {
        const CloseAtEnd closing{d};
        QCOMPARE(child<QComboBox>(*d, "listType")->currentText(), QStringLiteral("Phase"));
        auto* items = child<QListWidget>(*d, "items");
        auto* remove = child<QPushButton>(*d, "delete");
        auto* all = child<QPushButton>(*d, "deleteAll");
        QCOMPARE(items->count(), 2);
        QVERIFY(!remove->isEnabled() && all->isEnabled());

        // In place, cut to 63; then Delete on the selection.
        items->item(0)->setText(QString(70, QLatin1Char('x')));
        QVERIFY(lists.findItem(kListPhase, std::u16string(63, u'x')) != 0);
        // Onto a text the list holds: refused, said, and the item as stored.
        items->item(0)->setText(QStringLiteral("Final"));
        QTRY_COMPARE(messages.texts(), QStringList{"\"Final\" is in the list already."});
        messages.shown.clear();
        QCOMPARE(items->item(0)->text(), QString(63, QLatin1Char('x')));
        QVERIFY(lists.findItem(kListPhase, std::u16string(63, u'x')) != 0);
        items->setCurrentRow(1);
        QVERIFY(remove->isEnabled());
        remove->click();

        // Import lists the file; the list refuses what it holds.
        whenModal<QDialog>([](QDialog* importing) {
            const CloseAtEnd closing{importing};
            QCOMPARE(child<QListWidget>(*importing, "lines")->count(), 3);
            pressOk(*importing);
        });
        child<QPushButton>(*d, "import")->click();
        QCOMPARE(chooser.asked.back().filters, QStringList{QStringLiteral("List File (*.txt)")});
        QCOMPARE(items->count(), 4);

        // Delete All asks; No keeps the list.
        all->click();
        QCOMPARE(items->count(), 4);
        messages.answer(QMessageBox::Yes);
        all->click();
        QCOMPARE(items->count(), 0);
        QVERIFY(!remove->isEnabled() && !all->isEnabled());
        d->accept();
    });
    w.runCommand(kCmdEditDropLists);
    QCOMPARE(messages.texts(), (QStringList{text(kDeleteListQuestion), text(kDeleteListQuestion)}));
    QCOMPARE(messages.shown[0].icon, MessageIcon::kQuestion);
    QVERIFY(lists.items(kListPhase).empty());
}

void ToolsTests::notesGoOutToTheEditorAndComeBack() {
    auto state = makeState();
    QVERIFY(state);
    QString opened;
    setDocumentOpener([&](const QUrl& url) {
        opened = url.toLocalFile();
        QFile f(opened);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
        f.write("Line one\nLine two\n");
        return true;
    });
    Messages messages;
    EntryEditor editor(*state, prepareEntry(nullptr, state->settings(), makeDate(2026, 11, 16)));
    auto* note = child<QPlainTextEdit>(editor, "noteText");
    note->setPlainText(QStringLiteral("Before"));
    child<QPushButton>(editor, "editInWord")->click();
    QCOMPARE(note->toPlainText(), QStringLiteral("Line one\nLine two\n"));
    QCOMPARE(messages.last(), text(kEditInWordPrompt));
    QVERIFY(!opened.isEmpty() && !QFile::exists(opened));

    // Cancel keeps the note as it was, and the file goes too.
    messages.answer(QMessageBox::Cancel);
    child<QPushButton>(editor, "editInWord")->click();
    QCOMPARE(note->toPlainText(), QStringLiteral("Line one\nLine two\n"));
    QVERIFY(!QFile::exists(opened));
    setDocumentOpener(nullptr);

    // Export Note... writes the chosen format; a file that cannot be
    // written is the system's own message.
    TimeEntry e;
    systemTimeToFileTime(makeDate(2026, 11, 16), &e.date);
    e.client = u"Acme";
    e.task = u"Work";
    e.notes = noteBytes(u"Caf\u00e9");
    addEntry(state->entries(), e);
    const CEOID id = state->entries().currentOid();
    MainWindow w(*state);
    w.entryList().select(id);
    QTemporaryDir dir;
    Chooser chooser;
    chooser.paths << dir.filePath(QStringLiteral("note")) << dir.filePath("missing/note.rtf");
    w.runCommand(kCmdExportNote);
    w.runCommand(kCmdExportNote);
    QFile rtf(dir.filePath(QStringLiteral("note.rtf")));
    QVERIFY(rtf.open(QIODevice::ReadOnly));
    const QByteArray bytes = rtf.readAll();
    QVERIFY(bytes.startsWith("{\\rtf1") && bytes.contains("Caf\\u233?"));
    QCOMPARE(messages.last(), text(kExportNoteFailedMessage));
    QCOMPARE(messages.shown.back().icon, MessageIcon::kStop);
}

QB_GUI_TEST(ToolsTests);

}  // namespace qb

#include "tools_tests.moc"
