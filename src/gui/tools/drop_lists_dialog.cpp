#include "gui/tools/drop_lists_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QVBoxLayout>

#include "entry/drop_lists.h"
#include "entry/list_file.h"
#include "gui/app_state.h"
#include "gui/clients/file_chooser.h"
#include "gui/message_box.h"
#include "gui/tools/tool_support.h"
#include "platform/text.h"

namespace qb {
namespace {

constexpr std::u16string_view kListFileFilter = u"List File (*.txt)|*.txt|";

// The in-place editor of "Items:" stops at the list's limit.
class ItemDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (auto* line = qobject_cast<QLineEdit*>(editor)) {
            line->setMaxLength(static_cast<int>(kDropItemLimit));
        }
        return editor;
    }
};

QString listName(ListKind kind, const Settings& s) {
    switch (kind) {
        case kListPhase:
            return QStringLiteral("Phase");
        case kListCurrency:
            return QStringLiteral("Currency");
        case kListCustom1:
            return toQt(s.custom1Caption);
        case kListCustom2:
            return toQt(s.custom2Caption);
        case kListCustom3:
            return toQt(s.custom3Caption);
        default:
            return QString();
    }
}

// "List to be imported:": the lines of the file, added on OK.
bool confirmImport(const std::vector<std::u16string>& lines, QWidget* parent) {
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("importList"));
    dialog.setWindowTitle(QStringLiteral("Quillarbor"));
    auto* list = new QListWidget(&dialog);
    list->setObjectName(QStringLiteral("lines"));
    for (const std::u16string& line : lines) list->addItem(toQt(line));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(QStringLiteral("List to be imported:"), &dialog));
    layout->addWidget(list, 1);
    layout->addWidget(buttons);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace

DropListsDialog::DropListsDialog(AppState& state, QWidget* parent)
    : QDialog(parent),
      state_(state),
      lists_(std::make_unique<ListTable>(state.platform(), ListTable::Order::kByKind)),
      type_(new QComboBox(this)),
      items_(new QListWidget(this)),
      delete_(new QPushButton(QStringLiteral("Delete"), this)),
      import_(new QPushButton(QStringLiteral("Import..."), this)),
      deleteAll_(new QPushButton(QStringLiteral("Delete All"), this)) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    lists_->open();
    type_->setObjectName(QStringLiteral("listType"));
    for (ListKind kind : editableLists()) {
        type_->addItem(listName(kind, state.settings()), static_cast<int>(kind));
    }
    items_->setObjectName(QStringLiteral("items"));
    items_->setItemDelegate(new ItemDelegate(items_));
    items_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                            QAbstractItemView::SelectedClicked);
    delete_->setObjectName(QStringLiteral("delete"));
    import_->setObjectName(QStringLiteral("import"));
    deleteAll_->setObjectName(QStringLiteral("deleteAll"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("List Type:"), type_);
    auto* commands = new QHBoxLayout;
    commands->addWidget(delete_);
    commands->addWidget(import_);
    commands->addWidget(deleteAll_);
    commands->addStretch(1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(new QLabel(QStringLiteral("Items:"), this));
    layout->addWidget(items_, 1);
    layout->addLayout(commands);
    layout->addWidget(buttons);

    connect(type_, &QComboBox::currentIndexChanged, this, &DropListsDialog::refill);
    connect(items_, &QListWidget::itemSelectionChanged, this, &DropListsDialog::updateButtons);
    connect(items_, &QListWidget::itemChanged, this, &DropListsDialog::itemEdited);
    connect(delete_, &QPushButton::clicked, this, &DropListsDialog::deleteSelected);
    connect(import_, &QPushButton::clicked, this, &DropListsDialog::importList);
    connect(deleteAll_, &QPushButton::clicked, this, &DropListsDialog::deleteAll);
    refill();
}

DropListsDialog::~DropListsDialog() = default;

ListKind DropListsDialog::kind() const {
    return static_cast<ListKind>(type_->currentData().toInt());
}

void DropListsDialog::refill() {
    const QSignalBlocker quiet(items_);
    items_->clear();
    for (const std::u16string& text : lists_->items(kind())) {
        auto* item = new QListWidgetItem(toQt(text), items_);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        // The stored text, for the rename to find the record by.
        item->setData(Qt::UserRole, toQt(text));
    }
    updateButtons();
}

void DropListsDialog::updateButtons() {
    delete_->setEnabled(!items_->selectedItems().isEmpty());
    deleteAll_->setEnabled(canDeleteAll(*lists_, kind()));
}

void DropListsDialog::itemEdited(QListWidgetItem* item) {
    const std::u16string stored = fromQt(item->data(Qt::UserRole).toString());
    std::u16string edited;
    const RenameOutcome outcome =
        renameDropItem(*lists_, kind(), stored, fromQt(item->text()), &edited);
    // Refused or cut, the list shows what is stored.
    const int row = items_->row(item);
    refill();
    items_->setCurrentRow(row);
    // Said once the edit box is gone, so that its closing cannot ask twice.
    if (outcome == RenameOutcome::kTaken) {
        const QString refusal = toQt(nameTakenMessage(NameKind::kDropItem, edited));
        QTimer::singleShot(0, this, [this, refusal] { warn(this, refusal); });
    }
}

void DropListsDialog::deleteSelected() {
    const QList<QListWidgetItem*> chosen = items_->selectedItems();
    if (chosen.isEmpty()) return;
    lists_->removeItem(kind(), fromQt(chosen.first()->data(Qt::UserRole).toString()));
    refill();
}

void DropListsDialog::importList() {
    FileChoice file;
    if (!chooseFile(this, {false, QString(), nameFilters(kListFileFilter), QStringLiteral("txt")},
                    &file)) {
        return;
    }
    const std::string codePage = ansiCodePage(state_.registry());
    std::vector<std::u16string> lines;
    if (!readListFile(localPath(file.path), codePage, &lines)) {
        fail(this, qtText(kImportFailedMessage));
        return;
    }
    if (!confirmImport(lines, this)) return;
    std::size_t added = 0;
    if (!importDropItems(state_.platform().file(), *lists_, kind(), lines, &added)) {
        fail(this, qtText(kImportFailedMessage));
    }
    refill();
}

void DropListsDialog::deleteAll() {
    if (!confirm(this, qtText(kDeleteListQuestion), MessageIcon::kQuestion)) return;
    lists_->removeKind(kind());
    refill();
}

}  // namespace qb
