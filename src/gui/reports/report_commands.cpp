#include "gui/reports/report_commands.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "export/csv_export.h"
#include "export/export_settings.h"
#include "export/xml_export.h"
#include "gui/app_state.h"
#include "gui/commands.h"
#include "gui/dialogs/criteria_sheet.h"
#include "gui/file_notice.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "gui/reports/report_designer.h"
#include "import/ical_export.h"
#include "platform/calendar.h"
#include "report/report_generator.h"
#include "views/file_names.h"

namespace qb {
namespace {

const QString kExportFailed =
    QStringLiteral("Export failed. Please make sure there is enough storage space and try agin.");

SaveFileChooser& chooserHook() {
    static SaveFileChooser h;
    return h;
}

ReportOpener& openerHook() {
    static ReportOpener h;
    return h;
}

// The wait cursor for as long as the core works, whichever way it returns.
class WaitCursor {
  public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

std::string localFileName(const QString& name) {
    return QFile::encodeName(name).toStdString();
}

}  // namespace

void setSaveFileChooser(SaveFileChooser chooser) {
    chooserHook() = std::move(chooser);
}

QString chooseSaveFile(QWidget* parent, const SaveFileRequest& request) {
    QString name;
    if (chooserHook()) {
        name = chooserHook()(parent, request);
    } else {
        QFileDialog dialog(parent, QStringLiteral("Save As"), QString(), request.filter);
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setDefaultSuffix(request.defaultSuffix);
        dialog.selectFile(suggestedSavePath(request.suggestedName));
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
        name = dialog.selectedFiles().constFirst();
        rememberSaveFolder(name);
    }
    // A name typed without an extension gets the format's own, also where
    // the platform's dialog ignores the default suffix.
    if (!name.isEmpty() && QFileInfo(name).suffix().isEmpty()) {
        name += QLatin1Char('.') + request.defaultSuffix;
    }
    return name;
}

void setReportOpener(ReportOpener opener) {
    openerHook() = std::move(opener);
}

ReportCommands::ReportCommands(MainWindow& window, AppState& state)
    : QObject(&window), window_(window), state_(state) {}

bool ReportCommands::askCriteria(QWidget* parent, EntryFilter* criteria, const QString& purpose) {
    EntryFilter preset;
    window_.periodView().getPeriod(&preset.start, &preset.end);
    CriteriaSheet sheet(state_, preset, parent);
    sheet.setPurpose(purpose);
    if (sheet.exec() != QDialog::Accepted) return false;
    *criteria = sheet.criteria();
    return true;
}

void ReportCommands::exportCsv() {
    exportTo(Format::kCsv);
}

void ReportCommands::exportXml() {
    exportTo(Format::kXml);
}

void ReportCommands::exportIcal() {
    exportTo(Format::kIcal);
}

void ReportCommands::exportTo(Format format) {
    struct Kind {
        QString title, filter, suffix, done;
    };
    const Kind kinds[] = {
        {tr("Export CSV"), QStringLiteral("CSV Files (*.csv)"), QStringLiteral("csv"),
         tr("CSV export")},
        {tr("Export XML"), QStringLiteral("XML Files (*.xml)"), QStringLiteral("xml"),
         tr("XML export")},
        {tr("Export iCalendar"), QStringLiteral("iCalendar Files (*.ics)"), QStringLiteral("ics"),
         tr("iCalendar export")},
    };
    const Kind& kind = kinds[static_cast<int>(format)];
    EntryFilter criteria;
    if (!askCriteria(&window_, &criteria, kind.title)) return;
    const QString suffix = kind.suffix;
    const SaveFileRequest request{kind.filter, suffix,
                                  toQt(suggestedFileName(u"", criteria, fromQt(suffix)))};
    const QString file = chooseSaveFile(&window_, request);
    if (file.isEmpty()) return;
    window_.repaint();
    bool ok = false;
    {
        WaitCursor wait;
        const ExportSettings env = loadExportSettings(state_.registry(), state_.settings());
        if (format == Format::kCsv) {
            ok = ExportCsv(state_.entries(), localFileName(file), criteria, env);
        } else if (format == Format::kXml) {
            ok = ExportXml(state_.entries(), localFileName(file), criteria, env);
        } else {
            ok = ExportIcal(state_.entries(), localFileName(file), criteria);
        }
    }
    if (!ok) {
        fail(&window_, kExportFailed);
        return;
    }
    window_.announceFile(kind.done, file);
}

void ReportCommands::report() {
    report(defaultLayout(state_.platform(), state_.settings()).layout, &window_);
}

void ReportCommands::report(const ReportLayout& layout, QWidget* parent) {
    EntryFilter criteria;
    if (!askCriteria(parent, &criteria, tr("Report"))) return;
    const QString file =
        chooseSaveFile(parent, {QStringLiteral("HTML Files (*.html)"), QStringLiteral("html"),
                                toQt(suggestedFileName(u"report", criteria, u"html"))});
    if (file.isEmpty()) return;
    window_.repaint();
    bool ok = false;
    {
        WaitCursor wait;
        ReportGenerator generator(state_.entries(), layout,
                                  loadExportSettings(state_.registry(), state_.settings()),
                                  localNow());
        ok = generator.generate(localFileName(file), criteria);
    }
    if (!ok) {
        fail(parent, toQt(std::u16string(kReportFailed)));
        return;
    }
    window_.announceFile(tr("Report"), file);
    const QUrl url = QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath());
    const bool opened = openerHook() ? openerHook()(url) : QDesktopServices::openUrl(url);
    if (!opened) {
        warn(parent, tr("The report was saved to %1, but no program could open it for viewing. "
                        "Open the file with your web browser.")
                         .arg(QDir::toNativeSeparators(QFileInfo(file).absoluteFilePath())));
    }
}

ReportDesigner* ReportCommands::openDesigner() {
    if (!designer_) {
        designer_ = new ReportDesigner(state_, &window_);
        designer_->setAttribute(Qt::WA_DeleteOnClose);
        connect(designer_, &ReportDesigner::reportRequested, this,
                [this](const ReportLayout& layout) { report(layout, designer_); });
    }
    designer_->show();
    designer_->raise();
    designer_->activateWindow();
    return designer_;
}

ReportCommands* installReports(MainWindow& window, AppState& state) {
    auto* commands = new ReportCommands(window, state);
    window.setHandler(kCmdExportCsv, [commands] { commands->exportCsv(); });
    window.setHandler(kCmdExportXml, [commands] { commands->exportXml(); });
    window.setHandler(kCmdExportIcal, [commands] { commands->exportIcal(); });
    window.setHandler(kCmdReport, [commands] { commands->report(); });
    window.setHandler(kCmdReportDesigner, [commands] { commands->openDesigner(); });
    return commands;
}

}  // namespace qb
