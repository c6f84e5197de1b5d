#include "gui/undo_commands.h"

#include <QAction>

#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/entry_list_widget.h"
#include "gui/main_window.h"
#include "gui/message_box.h"

namespace qb {
namespace {

const char16_t* stepName(int command) {
    switch (command) {
        case kCmdNew:
            return u"New Entry";
        case kCmdEdit:
        case kCmdEditMenu:
            return u"Edit";
        case kCmdCopy:
            return u"Copy";
        case kCmdMarkAsPaid:
            return u"Mark As Paid";
        case kCmdDelete:
            return u"Delete";
        default:
            return u"Change";
    }
}

}  // namespace

UndoCommands::UndoCommands(MainWindow& window, AppState& state)
    : QObject(&window), window_(window), state_(state) {}

bool UndoCommands::records(int command) {
    switch (command) {
        case kCmdNew:
        case kCmdEdit:
        case kCmdEditMenu:
        case kCmdCopy:
        case kCmdMarkAsPaid:
        case kCmdDelete:
            return true;
        default:
            return false;
    }
}

void UndoCommands::record(int command, const std::function<void()>& run) {
    EntrySnapshot before = takeSnapshot(state_.entries(), window_.entryList().selectedId());
    run();
    history_.push(compareWithSnapshot(state_.entries(), before, stepName(command)));
    updateActions();
}

void UndoCommands::undo() {
    if (history_.canUndo()) finish(history_.undo(state_.entries()));
}

void UndoCommands::redo() {
    if (history_.canRedo()) finish(history_.redo(state_.entries()));
}

void UndoCommands::finish(bool ok) {
    window_.refresh();
    if (!history_.touched().empty()) window_.entryList().select(history_.touched().front());
    if (!ok) {
        warn(&window_, QStringLiteral("The entry was changed or deleted elsewhere, so this "
                                      "change cannot be undone. The undo history is "
                                      "cleared."));
    }
    updateActions();
}

void UndoCommands::updateActions() {
    if (QAction* a = window_.action(kCmdUndo)) {
        a->setEnabled(history_.canUndo());
        a->setText(history_.canUndo() ? QStringLiteral("&Undo ") + toQt(history_.undoName())
                                      : QStringLiteral("&Undo"));
    }
    if (QAction* a = window_.action(kCmdRedo)) {
        a->setEnabled(history_.canRedo());
        a->setText(history_.canRedo() ? QStringLiteral("&Redo ") + toQt(history_.redoName())
                                      : QStringLiteral("&Redo"));
    }
}

UndoCommands* installUndo(MainWindow& window, AppState& state) {
    auto* undo = new UndoCommands(window, state);
    window.setHandler(kCmdUndo, [undo] { undo->undo(); });
    window.setHandler(kCmdRedo, [undo] { undo->redo(); });
    return undo;
}

}  // namespace qb
