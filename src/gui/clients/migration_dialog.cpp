#include "gui/clients/migration_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/app_state.h"

namespace qb {

MigrationDialog::MigrationDialog(const QString& prompt, const std::vector<std::u16string>& names,
                                 const std::vector<ClientRecord>& targets,
                                 const std::u16string& checked, QWidget* parent)
    : QDialog(parent), names_(new QListWidget(this)), target_(new QComboBox(this)) {
    setWindowTitle(QStringLiteral("Migrate"));
    names_->setObjectName(QStringLiteral("names"));
    target_->setObjectName(QStringLiteral("target"));
    for (const std::u16string& name : names) {
        auto* item = new QListWidgetItem(toQt(name), names_);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(name == checked ? Qt::Checked : Qt::Unchecked);
    }
    for (const ClientRecord& c : targets) target_->addItem(toQt(c.name), c.clientId);

    auto* label = new QLabel(prompt, this);
    label->setBuddy(names_);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("To Client:"), target_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(names_, &QListWidget::itemChanged, this, [this] { updateOk(); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(names_, 1);
    layout->addLayout(form);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 48, fontMetrics().height() * 20);
    updateOk();
}

std::vector<std::u16string> MigrationDialog::chosen() const {
    std::vector<std::u16string> names;
    for (int i = 0; i < names_->count(); ++i) {
        if (names_->item(i)->checkState() == Qt::Checked) {
            names.push_back(fromQt(names_->item(i)->text()));
        }
    }
    return names;
}

ClientId MigrationDialog::target() const {
    return target_->currentData().toUInt();
}

void MigrationDialog::updateOk() {
    ok_->setEnabled(target_->count() > 0 && !chosen().empty());
}

}  // namespace qb
