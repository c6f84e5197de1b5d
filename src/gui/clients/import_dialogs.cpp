#include "gui/clients/import_dialogs.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "gui/app_state.h"

namespace qb {
namespace {

QDialogButtonBox* okCancel(QDialog* dialog) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}

}  // namespace

ImportTypeDialog::ImportTypeDialog(bool clientSelected, QWidget* parent)
    : QDialog(parent), choices_(new QButtonGroup(this)) {
    setWindowTitle(QStringLiteral("Import"));
    static const char* const kChoices[] = {
        "Clients", "Projects for a selected client", "Tasks for a selected client or project",
        "Contacts (Bill To) for a selected client", "Import contacts from an address book file (vCard)"};
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Select the type to import:"), this));
    for (int i = 0; i <= kContactsFile; ++i) {
        auto* button = new QRadioButton(QString::fromLatin1(kChoices[i]), this);
        button->setObjectName(QStringLiteral("choice%1").arg(i));
        button->setEnabled(i == 0 || clientSelected);
        choices_->addButton(button, i);
        layout->addWidget(button);
    }
    choices_->button(0)->setChecked(true);
    layout->addStretch();
    layout->addWidget(okCancel(this));
}

int ImportTypeDialog::choice() const {
    return choices_->checkedId();
}

void ImportTypeDialog::setChoice(int choice) {
    if (QAbstractButton* button = choices_->button(choice); button && button->isEnabled()) {
        button->setChecked(true);
    }
}

ContactsImportDialog::ContactsImportDialog(const std::vector<VCardContact>& contacts,
                                           QWidget* parent)
    : QDialog(parent), list_(new QTreeWidget(this)) {
    setWindowTitle(QStringLiteral("Import Contacts"));
    list_->setObjectName(QStringLiteral("contacts"));
    list_->setHeaderLabels({QStringLiteral("File As"), QStringLiteral("Company")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    for (const VCardContact& c : contacts) {
        auto* item = new QTreeWidgetItem(list_, {toQt(c.fileAs), toQt(c.company)});
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Unchecked);
    }
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->header()->setStretchLastSection(false);
    list_->resizeColumnToContents(1);

    auto* label = new QLabel(QStringLiteral("List to be imported:"), this);
    label->setBuddy(list_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list_, 1);
    layout->addWidget(okCancel(this));
    resize(fontMetrics().averageCharWidth() * 64, fontMetrics().height() * 22);
}

std::vector<std::u16string> ContactsImportDialog::chosen() const {
    std::vector<std::u16string> names;
    for (int i = 0; i < list_->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = list_->topLevelItem(i);
        if (item->checkState(0) == Qt::Checked) names.push_back(fromQt(item->text(0)));
    }
    return names;
}

}  // namespace qb
