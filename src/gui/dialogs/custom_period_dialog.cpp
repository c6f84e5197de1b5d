#include "gui/dialogs/custom_period_dialog.h"

#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QVBoxLayout>

#include "gui/dialogs/dialog_support.h"

namespace qb {
namespace {

QDateEdit* datePicker(const SYSTEMTIME& day, QWidget* parent) {
    auto* picker = new QDateEdit(toQDate(day), parent);
    picker->setCalendarPopup(true);
    return picker;
}

}  // namespace

CustomPeriodDialog::CustomPeriodDialog(const SYSTEMTIME& start, const SYSTEMTIME& end,
                                       QWidget* parent)
    : QDialog(parent), start_(datePicker(start, this)), end_(datePicker(end, this)) {
    setWindowTitle(QStringLiteral("Custom Period"));
    start_->setObjectName(QStringLiteral("start"));
    end_->setObjectName(QStringLiteral("end"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Start:"), start_);
    form->addRow(QStringLiteral("End:"), end_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

SYSTEMTIME CustomPeriodDialog::start() const {
    return fromQDate(start_->date());
}
SYSTEMTIME CustomPeriodDialog::end() const {
    return fromQDate(end_->date());
}

bool CustomPeriodDialog::choose(QWidget* parent, SYSTEMTIME* start, SYSTEMTIME* end) {
    CustomPeriodDialog dialog(*start, *end, parent);
    if (dialog.exec() != QDialog::Accepted) return false;
    *start = dialog.start();
    *end = dialog.end();
    return true;
}

}  // namespace qb
