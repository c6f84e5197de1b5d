#include "gui/tools/archive_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QListWidget>
#include <QVBoxLayout>

#include "backup/backup_texts.h"
#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"
#include "gui/help.h"
#include "gui/tools/tool_support.h"
#include "store/master_data.h"
#include "views/entry_filter.h"

namespace qb {
namespace {

QDateEdit* datePicker(const char* name, const SYSTEMTIME& day, const LocaleInfo& locale,
                      QWidget* parent) {
    auto* picker = new QDateEdit(toQDate(day), parent);
    picker->setObjectName(QString::fromLatin1(name));
    picker->setDisplayFormat(qtDatePicture(locale.shortDate));
    picker->setCalendarPopup(true);
    return picker;
}

// The filter's range rule is the one place that says what a day range
// covers.
EntryFilter rangeOf(const QDateEdit* start, const QDateEdit* end) {
    EntryFilter range;
    range.start = fromQDate(start->date());
    range.end = fromQDate(end->date());
    return range;
}

}  // namespace

ArchiveDialog::ArchiveDialog(AppState& state, const SYSTEMTIME& start, const SYSTEMTIME& end,
                             QWidget* parent)
    : QDialog(parent),
      type_(new QComboBox(this)),
      start_(datePicker("start", start, state.locale(), this)),
      end_(datePicker("end", end, state.locale(), this)),
      clients_(new QListWidget(this)),
      delete_(new QCheckBox(QStringLiteral("Delete when archived"), this)) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    type_->setObjectName(QStringLiteral("type"));
    type_->addItem(qtText(kArchiveTypeRangeText));
    type_->addItem(qtText(kArchiveTypeClientsText));
    clients_->setObjectName(QStringLiteral("clients"));
    for (const ClientRecord& client : allClients(state.masters().clients)) {
        auto* item = new QListWidgetItem(toQt(client.name), clients_);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Unchecked);
        item->setData(Qt::UserRole, static_cast<qulonglong>(client.oid));
    }
    delete_->setObjectName(QStringLiteral("deleteWhenArchived"));

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Type:"), type_);
    form->addRow(QStringLiteral("Start:"), start_);
    form->addRow(QStringLiteral("End:"), end_);
    form->addRow(QStringLiteral("Client(s):"), clients_);
    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [this] { openHelp(this, "deldata"); });
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form, 1);
    layout->addWidget(delete_);
    layout->addWidget(buttons);

    connect(type_, &QComboBox::currentIndexChanged, this, &ArchiveDialog::typeChanged);
    typeChanged(0);
}

void ArchiveDialog::typeChanged(int index) {
    const bool range = index == static_cast<int>(ArchiveType::kDateRange);
    start_->setEnabled(range);
    end_->setEnabled(range);
    clients_->setEnabled(!range);
}

ArchiveType ArchiveDialog::type() const {
    return type_->currentIndex() == static_cast<int>(ArchiveType::kClients)
               ? ArchiveType::kClients
               : ArchiveType::kDateRange;
}

FILETIME ArchiveDialog::rangeStart() const {
    return rangeOf(start_, end_).rangeStart();
}

FILETIME ArchiveDialog::rangeEnd() const {
    return rangeOf(start_, end_).rangeEnd();
}

std::vector<CEOID> ArchiveDialog::checkedClients() const {
    std::vector<CEOID> ids;
    for (int i = 0; i < clients_->count(); ++i) {
        const QListWidgetItem* item = clients_->item(i);
        if (item->checkState() == Qt::Checked) {
            ids.push_back(static_cast<CEOID>(item->data(Qt::UserRole).toULongLong()));
        }
    }
    return ids;
}

bool ArchiveDialog::deleteWhenArchived() const {
    return delete_->isChecked();
}

}  // namespace qb
