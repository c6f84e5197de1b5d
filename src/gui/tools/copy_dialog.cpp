#include "gui/tools/copy_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "entry/duration_rule.h"
#include "entry/entry_copy.h"
#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"
#include "gui/help.h"
#include "gui/message_box.h"
#include "platform/calendar.h"
#include "platform/data_file.h"

namespace qb {
namespace {

// The Duration box takes what the editor's does.
constexpr int kDurationChars = 6;

SYSTEMTIME dayOf(FILETIME date) {
    SYSTEMTIME day{};
    fileTimeToSystemTime(date, &day);
    return day;
}

QLabel* fixedText(const char* name, const std::u16string& text, QWidget* parent) {
    auto* label = new QLabel(toQt(text), parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

}  // namespace

CopyDialog::CopyDialog(AppState& state, const TimeEntry& entry, QWidget* parent)
    : QDialog(parent),
      state_(state),
      entry_(entry),
      duration_(makeTextBox("duration", kDurationChars, this)),
      restOfWeek_(new QRadioButton(QStringLiteral("Rest of the week"), this)),
      until_(new QRadioButton(QStringLiteral("Specific end date:"), this)),
      endDate_(new QDateEdit(this)),
      weekend_(new QCheckBox(QStringLiteral("Include Weekend"), this)) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    duration_->setMinimumContentsLength(kDurationChars);
    duration_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    for (const std::u16string& item : durationItems(state.settings().timeInterval)) {
        duration_->addItem(toQt(item));
    }
    duration_->setEditText(toQt(durationText(entry.duration)));
    restOfWeek_->setObjectName(QStringLiteral("restOfWeek"));
    until_->setObjectName(QStringLiteral("specificEnd"));
    restOfWeek_->setChecked(true);
    endDate_->setObjectName(QStringLiteral("endDate"));
    endDate_->setDisplayFormat(qtDatePicture(state.locale().shortDate));
    endDate_->setCalendarPopup(true);
    endDate_->setDate(toQDate(dayOf(entry.date)));
    endDate_->setEnabled(false);
    connect(until_, &QRadioButton::toggled, endDate_, &QWidget::setEnabled);
    weekend_->setObjectName(QStringLiteral("includeWeekend"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Client:"), fixedText("client", entry.client, this));
    form->addRow(QStringLiteral("Project:"), fixedText("project", entry.project, this));
    form->addRow(QStringLiteral("Phase:"), fixedText("phase", entry.phase, this));
    form->addRow(QStringLiteral("Task:"), fixedText("task", entry.task, this));
    auto* durationRow = new QHBoxLayout;
    durationRow->addWidget(duration_);
    durationRow->addWidget(new QLabel(QStringLiteral("hour(s)"), this));
    durationRow->addStretch(1);
    form->addRow(QStringLiteral("Duration:"), durationRow);
    auto* untilRow = new QHBoxLayout;
    untilRow->addWidget(until_);
    untilRow->addWidget(endDate_);
    untilRow->addStretch(1);

    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CopyDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this] { openHelp(this, "copy"); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeHeading(QStringLiteral("Copy entry to:"), this));
    layout->addLayout(form);
    layout->addWidget(restOfWeek_);
    layout->addLayout(untilRow);
    layout->addWidget(weekend_);
    layout->addStretch(1);
    layout->addWidget(buttons);
}

void CopyDialog::accept() {
    CopyRequest request;
    request.duration = fromQt(duration_->currentText());
    if (until_->isChecked()) request.until = fromQDate(endDate_->date());
    request.includeWeekend = weekend_->isChecked();
    DataFile& file = state_.platform().file();
    const CopyResult r =
        copyEntry(file, state_.entries(), state_.masters(), entry_, request, state_.settings());
    if (!r.check.ok) {
        warn(this, toQt(std::u16string(r.check.message)));
        duration_->setFocus();
        return;
    }
    if (!r.ok) {
        fail(this, QStringLiteral("The copies could not be saved in %1.")
                       .arg(QString::fromStdString(file.path())));
        return;
    }
    created_ = r.created;
    QDialog::accept();
}

}  // namespace qb
