#include "gui/clients/input_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "gui/app_state.h"

namespace qb {

InputDialog::InputDialog(const QString& prompt, int maxChars, QWidget* parent)
    : QDialog(parent), field_(new QLineEdit(this)) {
    setWindowTitle(QStringLiteral("Input:"));
    field_->setObjectName(QStringLiteral("input"));
    field_->setMaxLength(maxChars);
    auto* label = new QLabel(prompt, this);
    label->setBuddy(field_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(field_);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 48);
}

std::optional<std::u16string> InputDialog::ask(QWidget* parent, const QString& prompt,
                                               int maxChars) {
    InputDialog dialog(prompt, maxChars, parent);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return fromQt(dialog.field_->text());
}

}  // namespace qb
