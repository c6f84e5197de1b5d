#pragma once

#include <QObject>
#include <functional>

#include "entry/entry_undo.h"

namespace qb {

class AppState;
class MainWindow;

// Edit > Undo and Redo of the main window's changes to entries. The window
// runs each entry command through record(), which takes a snapshot before
// and keeps what the command changed as one step.
class UndoCommands : public QObject {
    Q_OBJECT
  public:
    UndoCommands(MainWindow& window, AppState& state);

    // True for the commands whose changes can be undone.
    static bool records(int command);
    void record(int command, const std::function<void()>& run);
    void undo();
    void redo();
    EntryUndo& history() { return history_; }
    // Updates the Undo and Redo items' texts and grey states.
    void updateActions();

  private:
    void finish(bool ok);

    MainWindow& window_;
    AppState& state_;
    EntryUndo history_;
};

UndoCommands* installUndo(MainWindow& window, AppState& state);

}  // namespace qb
