#include "gui/reports/layout_dialogs.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "gui/message_box.h"

namespace qb {
namespace {

constexpr int kOidRole = Qt::UserRole;

std::u16string cutName(const QString& text) {
    return fromQt(text.left(static_cast<int>(kLayoutTitleMax)));
}

void tellNothingSaved(QWidget* parent) {
    showMessage(parent, {toQt(std::u16string(kNoSavedReport)), MessageIcon::kInformation,
                         QMessageBox::Ok, QMessageBox::Ok});
}

}  // namespace

NamePrompt::NamePrompt(const std::u16string& name, QWidget* parent)
    : QDialog(parent), edit_(new QLineEdit(toQt(name), this)) {
    setWindowTitle(QStringLiteral("Save Report"));
    edit_->setObjectName(QStringLiteral("name"));
    edit_->setMaxLength(static_cast<int>(kLayoutTitleMax));
    edit_->selectAll();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // A layout is found again by its name, so it cannot be saved without one.
    auto enableOk = [this, buttons] {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(!edit_->text().isEmpty());
    };
    connect(edit_, &QLineEdit::textChanged, this, enableOk);
    enableOk();
    auto* column = new QVBoxLayout(this);
    column->addWidget(new QLabel(QStringLiteral("Enter a name for the report:"), this));
    column->addWidget(edit_);
    column->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 48);
}

std::u16string NamePrompt::name() const {
    return cutName(edit_->text());
}

bool NamePrompt::ask(QWidget* parent, std::u16string* name) {
    NamePrompt prompt(*name, parent);
    if (prompt.exec() != QDialog::Accepted) return false;
    *name = prompt.name();
    return true;
}

LayoutPicker::LayoutPicker(const std::vector<SavedLayout>& layouts, QWidget* parent)
    : QDialog(parent), layouts_(layouts), list_(new QListWidget(this)) {
    setWindowTitle(QStringLiteral("Load Report"));
    list_->setObjectName(QStringLiteral("reports"));
    for (const SavedLayout& s : layouts_) list_->addItem(toQt(s.name));
    list_->setCurrentRow(0);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(list_, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
    auto* column = new QVBoxLayout(this);
    column->addWidget(list_);
    column->addWidget(buttons);
}

const SavedLayout* LayoutPicker::chosen() const {
    const int row = list_->currentRow();
    return row >= 0 && row < static_cast<int>(layouts_.size())
               ? &layouts_[static_cast<std::size_t>(row)]
               : nullptr;
}

bool LayoutPicker::pick(Platform& platform, QWidget* parent, SavedLayout* chosen) {
    const std::vector<SavedLayout> layouts = savedLayouts(platform);
    if (layouts.empty()) {
        tellNothingSaved(parent);
        return false;
    }
    LayoutPicker picker(layouts, parent);
    if (picker.exec() != QDialog::Accepted || !picker.chosen()) return false;
    *chosen = *picker.chosen();
    return true;
}

OrganizeReports::OrganizeReports(Platform& platform, QWidget* parent)
    : QDialog(parent),
      platform_(platform),
      list_(new QListWidget(this)),
      delete_(new QPushButton(QStringLiteral("Delete"), this)),
      rename_(new QPushButton(QStringLiteral("Rename"), this)) {
    setWindowTitle(QStringLiteral("Organize Reports"));
    list_->setObjectName(QStringLiteral("reports"));
    delete_->setObjectName(QStringLiteral("delete"));
    rename_->setObjectName(QStringLiteral("rename"));
    list_->setEditTriggers(QAbstractItemView::EditKeyPressed);
    fill();

    connect(list_, &QListWidget::itemSelectionChanged, this, &OrganizeReports::updateButtons);
    connect(list_, &QListWidget::itemChanged, this, &OrganizeReports::commitRename);
    connect(delete_, &QPushButton::clicked, this, &OrganizeReports::deleteSelected);
    connect(rename_, &QPushButton::clicked, this, [this] {
        if (QListWidgetItem* item = list_->currentItem()) list_->editItem(item);
    });
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* side = new QVBoxLayout;
    side->addWidget(delete_);
    side->addWidget(rename_);
    side->addStretch(1);
    auto* row = new QHBoxLayout;
    row->addWidget(list_, 1);
    row->addLayout(side);
    auto* column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addWidget(buttons);
    updateButtons();
}

void OrganizeReports::fill() {
    filling_ = true;
    list_->clear();
    for (const SavedLayout& s : savedLayouts(platform_)) {
        auto* item = new QListWidgetItem(toQt(s.name), list_);
        item->setData(kOidRole, QVariant::fromValue(static_cast<qulonglong>(s.oid)));
        item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    filling_ = false;
}

void OrganizeReports::updateButtons() {
    const bool selected = !list_->selectedItems().isEmpty();
    delete_->setEnabled(selected);
    rename_->setEnabled(selected);
}

void OrganizeReports::deleteSelected() {
    QListWidgetItem* item = list_->currentItem();
    if (!item || !item->isSelected()) return;
    const auto oid = static_cast<CEOID>(item->data(kOidRole).toULongLong());
    if (!deleteSavedLayout(platform_, oid)) {
        fail(this, QStringLiteral("The report could not be deleted."));
        return;
    }
    delete item;
    updateButtons();
}

void OrganizeReports::commitRename(QListWidgetItem* item) {
    if (filling_) return;
    const auto oid = static_cast<CEOID>(item->data(kOidRole).toULongLong());
    const std::u16string name = cutName(item->text().trimmed());
    const CEOID other = name.empty() ? 0 : findSavedLayout(platform_, name);
    if (isReservedLayoutName(name)) {
        warn(this, toQt(std::u16string(kReservedLayoutNameText)));
    } else if (other != 0 && other != oid) {
        warn(this, QStringLiteral("A saved report named %1 exists already.").arg(toQt(name)));
    } else if (!name.empty()) {
        if (!renameSavedLayout(platform_, oid, name)) {
            fail(this, QStringLiteral("The report could not be renamed."));
        }
    }
    // The row shows what the table holds, also after a refused name.
    for (const SavedLayout& s : savedLayouts(platform_)) {
        if (s.oid != oid) continue;
        filling_ = true;
        item->setText(toQt(s.name));
        filling_ = false;
    }
}

void OrganizeReports::organize(Platform& platform, QWidget* parent) {
    if (savedLayouts(platform).empty()) {
        tellNothingSaved(parent);
        return;
    }
    OrganizeReports dialog(platform, parent);
    dialog.exec();
}

}  // namespace qb
