#pragma once

// The main window's exports and reports: "CSV...", "XML...", "Report..."
// and the report designer, and the "Export" page of the options.

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <functional>

#include "report/saved_layouts.h"

class QWidget;

namespace qb {

class AppState;
struct EntryFilter;
class MainWindow;
class OptionsDialog;
class ReportDesigner;

// What the save dialog is asked for; `filter` as QFileDialog takes it.
struct SaveFileRequest {
    QString filter;
    QString defaultSuffix;
    QString suggestedName = {};  // from the criteria, e.g. "quillarbor-2026-11.csv"
};

// Answers the chosen file name, empty for Cancel. Tests answer it here
// instead of a dialog; null restores the dialog.
using SaveFileChooser = std::function<QString(QWidget* parent, const SaveFileRequest&)>;
void setSaveFileChooser(SaveFileChooser chooser);
QString chooseSaveFile(QWidget* parent, const SaveFileRequest& request);

// Shows a written report. Tests receive the address here instead of the
// desktop's viewer; null restores the viewer.
using ReportOpener = std::function<bool(const QUrl&)>;
void setReportOpener(ReportOpener opener);

class ReportCommands : public QObject {
    Q_OBJECT
  public:
    ReportCommands(MainWindow& window, AppState& state);

    void exportCsv();
    void exportXml();
    void exportIcal();
    // The report of the default layout.
    void report();
    // The report of `layout`, from the criteria sheet on.
    void report(const ReportLayout& layout, QWidget* parent);
    // Opens the designer, or brings the open one to the front.
    ReportDesigner* openDesigner();

  private:
    enum class Format { kCsv, kXml, kIcal };
    void exportTo(Format format);
    // The criteria sheet preset with the view's period; false on Cancel.
    bool askCriteria(QWidget* parent, EntryFilter* criteria, const QString& purpose);

    MainWindow& window_;
    AppState& state_;
    QPointer<ReportDesigner> designer_;
};

// Adds the "Export" page to the options dialog.
void addExportPage(OptionsDialog& dialog, const Settings& settings);

// Registers the commands with the main window; they live as long as it.
ReportCommands* installReports(MainWindow& window, AppState& state);

}  // namespace qb
