#pragma once

// File > Import...: another tracker's file into this store. The dialog
// guesses the format from the file's content (the user may change it),
// previews every row as the core's dry run sees it (what will be added,
// what was imported before, what will be refused and why), lets the user
// fill a missing client, project or task for all rows, and imports with a
// progress dialog. Every rule is the core's (import/import_pipeline.h).

#include <QDialog>
#include <string>

#include "import/import_pipeline.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace qb {

class AppState;
class MainWindow;

class TrackerImportDialog : public QDialog {
    Q_OBJECT
  public:
    TrackerImportDialog(AppState& state, const QString& path, std::string bytes,
                        QWidget* parent = nullptr);

    // The last dry run's counts, and after Import the import's.
    const ImportSummary& summary() const { return summary_; }
    bool imported() const { return imported_; }

    // Rows shown in the table at most; the counts cover every row.
    static constexpr int kPreviewRows = 2000;

  private:
    void preview();
    void runImport();
    ImportOptions options() const;
    ImportFormat format() const;

    AppState& state_;
    QString path_;
    std::string bytes_;
    QComboBox* format_;
    QLineEdit* client_;
    QLineEdit* project_;
    QLineEdit* task_;
    QTableWidget* table_;
    QLabel* counts_;
    QPushButton* import_;
    ImportSummary summary_;
    bool imported_ = false;
};

// Asks for the file, runs the dialog and tells what was imported.
void importFromTracker(MainWindow& window, AppState& state);
// Registers File > Import... with the main window.
void installTrackerImport(MainWindow& window, AppState& state);

}  // namespace qb
