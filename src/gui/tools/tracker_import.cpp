#include "gui/tools/tracker_import.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include "entry/duration_rule.h"
#include "entry/file_bytes.h"
#include "gui/app_state.h"
#include "gui/clients/file_chooser.h"
#include "gui/commands.h"
#include "gui/main_window.h"
#include "gui/message_box.h"
#include "gui/tools/progress_dialog.h"
#include "gui/tools/tool_support.h"
#include "import/readers.h"
#include "platform/calendar.h"
#include "platform/text.h"

namespace qb {
namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 30;

struct FormatLabel {
    ImportFormat format;
    const char* label;
};
constexpr FormatLabel kLabels[] = {
    {ImportFormat::kTimewarrior, "Timewarrior (timew export, JSON)"},
    {ImportFormat::kWatson, "Watson (frames, JSON)"},
    {ImportFormat::kToggl, "Toggl Track (detailed report, CSV)"},
    {ImportFormat::kClockify, "Clockify (detailed report, CSV)"},
    {ImportFormat::kKimai, "Kimai (export, CSV)"},
    {ImportFormat::kHarvest, "Harvest (time report, CSV)"},
    {ImportFormat::kHamster, "Hamster (export, TSV)"},
    {ImportFormat::kIcal, "iCalendar (.ics)"},
};

QString dayText(const TimeEntry& e) {
    SYSTEMTIME st{};
    if (!fileTimeToSystemTime(e.date, &st)) return {};
    return QString::asprintf("%04d-%02d-%02d", st.wYear, st.wMonth, st.wDay);
}

QString startText(const TimeEntry& e) {
    SYSTEMTIME st{};
    if (!hasStartTime(e) || !fileTimeToSystemTime(e.date, &st)) return {};
    return QString::asprintf("%02d:%02d", st.wHour, st.wMinute);
}

QString where(ImportFormat format, std::size_t line) {
    return QString::fromLatin1(countsRecords(format) ? "record %1" : "line %1").arg(line);
}

}  // namespace

TrackerImportDialog::TrackerImportDialog(AppState& state, const QString& path, std::string bytes,
                                         QWidget* parent)
    : QDialog(parent), state_(state), path_(path), bytes_(std::move(bytes)) {
    setWindowTitle(tr("Import"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    form->addRow(tr("File:"), new QLabel(path, this));
    format_ = new QComboBox(this);
    format_->setObjectName(QStringLiteral("format"));
    for (const FormatLabel& f : kLabels) {
        format_->addItem(QString::fromLatin1(f.label), static_cast<int>(f.format));
    }
    if (std::optional<ImportFormat> guessed = guessImportFormat(bytes_)) {
        format_->setCurrentIndex(format_->findData(static_cast<int>(*guessed)));
    }
    form->addRow(tr("&Format:"), format_);
    client_ = new QLineEdit(this);
    client_->setObjectName(QStringLiteral("client"));
    project_ = new QLineEdit(this);
    project_->setObjectName(QStringLiteral("project"));
    task_ = new QLineEdit(this);
    task_->setObjectName(QStringLiteral("task"));
    for (QLineEdit* box : {client_, project_, task_}) {
        box->setPlaceholderText(tr("for rows that have none"));
        box->setMaxLength(127);
    }
    form->addRow(tr("&Client:"), client_);
    form->addRow(tr("&Project:"), project_);
    form->addRow(tr("&Task:"), task_);
    layout->addLayout(form);

    table_ = new QTableWidget(0, 8, this);
    table_->setObjectName(QStringLiteral("preview"));
    table_->setHorizontalHeaderLabels({tr("Line"), tr("Client"), tr("Project"), tr("Task"),
                                       tr("Date"), tr("Start"), tr("Hours"), tr("Import")});
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(table_, 1);
    counts_ = new QLabel(this);
    counts_->setObjectName(QStringLiteral("counts"));
    counts_->setWordWrap(true);
    layout->addWidget(counts_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    import_ = buttons->addButton(tr("&Import"), QDialogButtonBox::AcceptRole);
    import_->setObjectName(QStringLiteral("import"));
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(import_, &QPushButton::clicked, this, &TrackerImportDialog::runImport);
    connect(format_, &QComboBox::currentIndexChanged, this, &TrackerImportDialog::preview);
    for (QLineEdit* box : {client_, project_, task_}) {
        connect(box, &QLineEdit::editingFinished, this, &TrackerImportDialog::preview);
    }
    resize(820, 520);
    preview();
}

ImportFormat TrackerImportDialog::format() const {
    return static_cast<ImportFormat>(format_->currentData().toInt());
}

ImportOptions TrackerImportDialog::options() const {
    ImportOptions o;
    o.client = fromQt(client_->text().trimmed());
    o.project = fromQt(project_->text().trimmed());
    o.task = fromQt(task_->text().trimmed());
    return o;
}

void TrackerImportDialog::preview() {
    WaitCursor wait;
    table_->setRowCount(0);
    ImportTarget target{state_.platform().file(), state_.entries(), state_.masters(),
                        state_.settings()};
    const ImportFormat chosen = format();
    int shown = 0;
    summary_ = importFile(chosen, bytes_, options(), target, true, [&](const RowOutcome& row) {
        // Every refusal is listed; other rows up to the limit.
        if (shown >= kPreviewRows && row.fate != RowFate::kRefused) return;
        const int r = table_->rowCount();
        table_->insertRow(r);
        const TimeEntry& e = row.entry;
        QString status = tr("add");
        if (row.fate == RowFate::kKnown) status = tr("already imported");
        if (row.fate == RowFate::kRefused) {
            status = tr("refused: %1").arg(QString::fromStdString(row.reason));
        }
        const QString hours =
            row.fate == RowFate::kRefused ? QString() : toQt(durationText(e.duration));
        const QString cells[] = {where(chosen, row.line),
                                 toQt(e.client),
                                 toQt(e.project),
                                 toQt(e.task),
                                 dayText(e),
                                 startText(e),
                                 hours,
                                 status};
        for (int c = 0; c < 8; ++c) table_->setItem(r, c, new QTableWidgetItem(cells[c]));
        ++shown;
    });
    table_->resizeColumnsToContents();
    QString text = QString::fromStdString(summaryLine(summary_));
    text.replace(QStringLiteral("imported "), tr("to import "), Qt::CaseSensitive);
    if (summary_.status == ImportStatus::kUnreadable) {
        text = tr("This file cannot be read as the chosen format: %1%2")
                   .arg(summary_.read.line > 0
                            ? where(chosen, summary_.read.line) + QStringLiteral(": ")
                            : QString(),
                        QString::fromStdString(summary_.read.reason));
    } else if (summary_.status == ImportStatus::kRefused) {
        text +=
            tr(". Nothing is imported while rows are refused: fill the missing fields "
               "above or correct the file.");
    }
    counts_->setText(text);
    import_->setEnabled(summary_.status == ImportStatus::kDone && summary_.imported > 0);
}

void TrackerImportDialog::runImport() {
    const long total = static_cast<long>(summary_.imported);
    ImportTarget target{state_.platform().file(), state_.entries(), state_.masters(),
                        state_.settings()};
    ProgressDialog progress(u"Importing entries...", true, this);
    progress.run([&](BackupProgress* p) {
        p->start(total);
        summary_ =
            importFile(format(), bytes_, options(), target, false, [&](const RowOutcome& row) {
                if (row.fate == RowFate::kAdded) p->step();
            });
        return 0;
    });
    imported_ = summary_.status == ImportStatus::kDone;
    accept();
}

void importFromTracker(MainWindow& window, AppState& state) {
    FileChoice choice;
    const FileRequest request{false,
                              QObject::tr("Import"),
                              {QObject::tr("Time tracker files (*.json *.csv *.tsv *.txt *.ics)"),
                               QObject::tr("All files (*)")},
                              QString()};
    if (!chooseFile(&window, request, &choice)) return;
    std::string bytes;
    if (!readWholeFile(localPath(choice.path), kLargestFile, &bytes)) {
        fail(&window, QObject::tr("Cannot read %1.").arg(choice.path));
        return;
    }
    TrackerImportDialog dialog(state, choice.path, std::move(bytes), &window);
    if (dialog.exec() != QDialog::Accepted) return;
    window.refresh();
    const ImportSummary& s = dialog.summary();
    if (dialog.imported()) {
        showMessage(&window, {QObject::tr("Imported %1 entries from %2 (%3 already imported "
                                          "before).")
                                  .arg(s.imported)
                                  .arg(choice.path)
                                  .arg(s.already),
                              MessageIcon::kInformation, QMessageBox::Ok, QMessageBox::Ok});
    } else {
        fail(&window, QObject::tr("Nothing of %1 was imported: the entries could not be saved.")
                          .arg(choice.path));
    }
}

void installTrackerImport(MainWindow& window, AppState& state) {
    window.setHandler(kCmdImport, [&window, &state] { importFromTracker(window, state); });
}

}  // namespace qb
