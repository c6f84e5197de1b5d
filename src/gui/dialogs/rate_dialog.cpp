#include "gui/dialogs/rate_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "entry/rate_rules.h"
#include "gui/app_state.h"
#include "gui/icons.h"
#include "gui/message_box.h"

namespace qb {
namespace {

constexpr int kDescriptionChars = 63;
constexpr int kRateChars = 16;

}  // namespace

RateDialog::RateDialog(const RateRecord* initial, QWidget* parent)
    : QDialog(parent),
      type_(new QComboBox(this)),
      descriptionBox_(new QLineEdit(this)),
      rateBox_(new QLineEdit(this)) {
    setWindowTitle(QStringLiteral("Rate"));
    type_->setObjectName(QStringLiteral("rateType"));
    for (std::uint16_t t = 0; t < kRateTypeCount; ++t) {
        type_->addItem(rateIcon(t), toQt(std::u16string(rateTypeName(t))));
    }
    descriptionBox_->setObjectName(QStringLiteral("description"));
    descriptionBox_->setMaxLength(kDescriptionChars);
    rateBox_->setObjectName(QStringLiteral("rate"));
    rateBox_->setMaxLength(kRateChars);
    rateBox_->setPlaceholderText(toQt(rateText(0)));
    if (initial) {
        type_->setCurrentIndex(initial->rateType < kRateTypeCount ? initial->rateType : 0);
        descriptionBox_->setText(toQt(initial->description));
        rateBox_->setText(toQt(rateText(initial->rate)));
        storedRate_ = initial->rate;
    }

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Rate Type:"), type_);
    form->addRow(QStringLiteral("Description:"), descriptionBox_);
    form->addRow(QStringLiteral("Rate:"), rateBox_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 56);
}

void RateDialog::accept() {
    const std::u16string description = fromQt(descriptionBox_->text());
    const RateCheck check = checkRateDialog(description, fromQt(rateBox_->text()), storedRate_);
    if (!check.ok) {
        warn(this, toQt(std::u16string(check.message)));
        QLineEdit* box = check.field == RateField::kDescription ? descriptionBox_ : rateBox_;
        box->setFocus();
        box->selectAll();
        return;
    }
    rateType_ = static_cast<std::uint16_t>(type_->currentIndex());
    description_ = description;
    rate_ = check.rate;
    QDialog::accept();
}

}  // namespace qb
