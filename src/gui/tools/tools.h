#pragma once

// The backup, archive and bulk commands of the main window: Backup and
// Archive, Mark Paid Entries, Replace Field Text, Edit Drop Lists, and on
// the selected entry Copy... and Export Note...

#include <QObject>

namespace qb {

class AppState;
class MainWindow;
struct TimeEntry;

class Tools : public QObject {
    Q_OBJECT
  public:
    Tools(MainWindow& window, AppState& state);

    void createBackup();
    void restoreBackup();
    void createArchive();
    void loadArchive();
    void markPaidEntries();
    void replaceFieldText();
    void editDropLists();
    void copySelected();
    void exportNote();

  private:
    bool readSelected(TimeEntry* entry);

    MainWindow& window_;
    AppState& state_;
};

// Registers the handlers with the main window; the tools live as long as it.
Tools* installTools(MainWindow& window, AppState& state);

}  // namespace qb
