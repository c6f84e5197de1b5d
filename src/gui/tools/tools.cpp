#include "gui/tools/tools.h"

#include <QFileInfo>

#include "backup/archive_writer.h"
#include "backup/backup_layout.h"
#include "backup/backup_texts.h"
#include "backup/backup_writer.h"
#include "entry/done_texts.h"
#include "entry/mark_paid.h"
#include "entry/note_export.h"
#include "entry/note_text.h"
#include "gui/app_state.h"
#include "gui/clients/file_chooser.h"
#include "gui/commands.h"
#include "gui/dialogs/criteria_sheet.h"
#include "gui/entry_list_widget.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "gui/tools/archive_dialog.h"
#include "gui/tools/copy_dialog.h"
#include "gui/tools/drop_lists_dialog.h"
#include "gui/tools/progress_dialog.h"
#include "gui/tools/replace_dialog.h"
#include "gui/tools/tool_support.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/text.h"
#include "store/tables.h"
#include "store/time_entry.h"
#include "views/file_names.h"

namespace qb {
namespace {

// The formats "Export Note..." offers, in the order of its filter; the
// device's own word-processor formats have no reader here.
constexpr std::u16string_view kNoteFilter =
    u"Rich Text Files (*.rtf)|*.rtf|Text Files (*.txt)|*.txt|Unicode Text Files (*.txt)|*.txt|";
constexpr NoteFormat kNoteFormats[] = {NoteFormat::kRtf, NoteFormat::kText, NoteFormat::kUnicode};
constexpr const char* kNoteExtensions[] = {"rtf", "txt", "txt"};

FileRequest fileRequest(bool save, std::u16string_view filter, std::u16string_view extension,
                        const std::u16string& suggested = {}) {
    return {save, QString(), nameFilters(filter), qtText(extension), toQt(suggested)};
}

// Backups are named by the day they are made.
std::u16string backupName() {
    EntryFilter today;
    today.start = today.end = localNow();
    return suggestedFileName(u"backup", today, kBackupExtension);
}

// Archives by the range they hold; an archive of clients by the day.
std::u16string archiveName(const ArchiveDialog& dialog) {
    EntryFilter range;
    if (dialog.type() == ArchiveType::kDateRange) {
        fileTimeToSystemTime(dialog.rangeStart(), &range.start);
        fileTimeToSystemTime(dialog.rangeEnd(), &range.end);
    } else {
        range.start = range.end = localNow();
    }
    return suggestedFileName(u"archive", range, kArchiveExtension);
}

void tell(QWidget* parent, const FeatureMessage& message) {
    if (message.text.empty()) return;
    MessageIcon icon = MessageIcon::kStop;
    if (message.icon == FeatureIcon::kInformation) icon = MessageIcon::kInformation;
    if (message.icon == FeatureIcon::kExclamation) icon = MessageIcon::kExclamation;
    showMessage(parent, {qtText(message.text), icon, QMessageBox::Ok, QMessageBox::Ok});
}

// What a finished bulk change did, with its counts.
void inform(QWidget* parent, const std::u16string& text) {
    showMessage(parent,
                {qtText(text), MessageIcon::kInformation, QMessageBox::Ok, QMessageBox::Ok});
}

}  // namespace

Tools::Tools(MainWindow& window, AppState& state)
    : QObject(&window), window_(window), state_(state) {}

void Tools::createBackup() {
    FileChoice file;
    if (!chooseFile(&window_, fileRequest(true, kBackupFilterText, kBackupExtension, backupName()),
                    &file)) {
        return;
    }
    ProgressDialog dialog(kBackupProgressText, true, &window_);
    const int ok = dialog.run([&](BackupProgress* progress) {
        return createBackupFile(state_.entries(), state_.masters(), localPath(file.path), progress)
                   ? 1
                   : 0;
    });
    if (!ok) {
        fail(&window_, qtText(kBackupFailedText));
        return;
    }
    window_.announceFile(tr("Backup"), file.path);
}

void Tools::restoreBackup() {
    FileChoice file;
    if (!chooseFile(&window_, fileRequest(false, kBackupFilterText, kBackupExtension), &file)) {
        return;
    }
    // What the file holds is known before anything is added: a date-range
    // archive belongs to Archive > Load, and adding to entries already here
    // asks first.
    const std::string path = localPath(file.path);
    const long present = storedEntryCount(state_.entries());
    const long clients = storedClientCount(state_.masters());
    // The file's counts matter only to the question asked before adding to
    // entries already here.
    BackupContents contents;
    int result = inspectBackupFile(path, &contents, nullptr, present > 0);
    if (result != kRestoreDone) {
        tell(&window_, restoreMessage(result));
        return;
    }
    if (contents.kind == kKindEntryArchive) {
        warn(&window_, qtText(kArchiveGivenToRestoreText));
        return;
    }
    if (present > 0 && !confirm(&window_, qtText(restoreQuestion(contents.entries, present)),
                                MessageIcon::kQuestion)) {
        return;
    }
    ProgressDialog dialog(kRestoreProgressText, false, &window_);
    result = dialog.run([&](BackupProgress*) {
        return restoreBackupFile(state_.entries(), state_.masters(), path);
    });
    window_.refresh();
    if (result != kRestoreDone) {
        tell(&window_, restoreMessage(result));
        return;
    }
    inform(&window_, restoreDoneText(storedEntryCount(state_.entries()) - present,
                                     storedClientCount(state_.masters()) - clients));
}

void Tools::createArchive() {
    SYSTEMTIME start{};
    SYSTEMTIME end{};
    window_.periodView().getPeriod(&start, &end);
    ArchiveDialog dialog(state_, start, end, &window_);
    if (dialog.exec() != QDialog::Accepted) return;
    FileChoice file;
    if (!chooseFile(&window_,
                    fileRequest(true, kArchiveFilterText, kArchiveExtension, archiveName(dialog)),
                    &file)) {
        return;
    }
    const int type = static_cast<int>(dialog.type());
    const bool deleting = dialog.deleteWhenArchived();
    const long count = archiveCount(state_.entries(), dialog.type(), dialog.rangeStart(),
                                    dialog.rangeEnd(), dialog.checkedClients());
    if (deleting && !confirm(&window_, qtText(archiveDeleteQuestion(type, count)))) return;
    bool ok = false;
    {
        WaitCursor wait;
        ok = qb::createArchive(state_.entries(), state_.masters(), dialog.type(),
                               dialog.rangeStart(), dialog.rangeEnd(), dialog.checkedClients(),
                               deleting, localPath(file.path));
        window_.refresh();
    }
    if (!ok) {
        fail(&window_, qtText(kArchiveFailedText));
        return;
    }
    window_.announceFile(tr("Archive"), file.path);
    inform(&window_, archiveDoneText(type, count, deleting));
}

void Tools::loadArchive() {
    FileChoice file;
    if (!chooseFile(&window_, fileRequest(false, kArchiveFilterText, kArchiveExtension), &file)) {
        return;
    }
    int result = kRestoreFailed;
    {
        WaitCursor wait;
        result = qb::loadArchive(state_.entries(), state_.masters(), localPath(file.path));
        window_.refresh();
    }
    tell(&window_, loadArchiveMessage(result));
}

// OK of the criteria sheet is the confirmation: no question.
void Tools::markPaidEntries() {
    EntryFilter preset;
    window_.periodView().getPeriod(&preset.start, &preset.end);
    CriteriaSheet sheet(state_, preset, &window_);
    sheet.setPurpose(tr("Mark Paid Entries"));
    if (sheet.exec() != QDialog::Accepted) return;
    const EntryFilter criteria = sheet.criteria();
    DataFile& file = state_.platform().file();
    MarkPaidResult r;
    {
        WaitCursor wait;
        r = qb::markPaidEntries(file, state_.entries(), criteria.rangeStart(), criteria.rangeEnd(),
                                [&](const TimeEntry& e) { return criteria.matches(e); });
        window_.refresh();
    }
    if (!r.ok) {
        fail(&window_, QStringLiteral("The entries could not be marked paid in %1.")
                           .arg(QString::fromStdString(file.path())));
        return;
    }
    inform(&window_, markPaidDoneText(r.marked));
}

void Tools::replaceFieldText() {
    ReplaceDialog dialog(state_, &window_);
    if (dialog.exec() == QDialog::Accepted) window_.refresh();
}

void Tools::editDropLists() {
    DropListsDialog dialog(state_, &window_);
    dialog.exec();
}

void Tools::copySelected() {
    TimeEntry entry;
    if (!readSelected(&entry)) return;
    CopyDialog dialog(state_, entry, &window_);
    if (dialog.exec() == QDialog::Accepted) window_.refresh();
}

void Tools::exportNote() {
    TimeEntry entry;
    if (!readSelected(&entry)) return;
    FileRequest request = fileRequest(true, kNoteFilter, u"rtf");
    FileChoice file;
    if (!chooseFile(&window_, request, &file)) return;
    const int chosen = file.filter >= 0 && file.filter < 3 ? file.filter : 0;
    QString path = file.path;
    if (QFileInfo(path).suffix().isEmpty()) {
        path += QLatin1Char('.') + QLatin1String(kNoteExtensions[chosen]);
    }
    if (!qb::exportNote(localPath(path), noteText(entry), kNoteFormats[chosen],
                        ansiCodePage(state_.registry()))) {
        fail(&window_, qtText(kExportNoteFailedMessage));
    }
}

bool Tools::readSelected(TimeEntry* entry) {
    const CEOID id = window_.entryList().selectedId();
    return id != 0 && state_.entries().seekOid(id) && readEntry(state_.entries(), *entry) == 0;
}

Tools* installTools(MainWindow& window, AppState& state) {
    auto* tools = new Tools(window, state);
    window.setHandler(kCmdBackupCreate, [tools] { tools->createBackup(); });
    window.setHandler(kCmdBackupRestore, [tools] { tools->restoreBackup(); });
    window.setHandler(kCmdArchiveCreate, [tools] { tools->createArchive(); });
    window.setHandler(kCmdArchiveLoad, [tools] { tools->loadArchive(); });
    window.setHandler(kCmdMarkPaidEntries, [tools] { tools->markPaidEntries(); });
    window.setHandler(kCmdReplaceFieldText, [tools] { tools->replaceFieldText(); });
    window.setHandler(kCmdEditDropLists, [tools] { tools->editDropLists(); });
    window.setHandler(kCmdCopy, [tools] { tools->copySelected(); });
    window.setHandler(kCmdExportNote, [tools] { tools->exportNote(); });
    return tools;
}

}  // namespace qb
