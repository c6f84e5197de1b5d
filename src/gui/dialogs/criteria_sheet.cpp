#include "gui/dialogs/criteria_sheet.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QTabWidget>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"
#include "platform/calendar.h"
#include "views/filter_choices.h"

namespace qb {
namespace {

constexpr int kTextBuffer = 128;
constexpr int kBillToBuffer = 64;

QComboBox* choices(const char* name, const std::vector<std::u16string>& items,
                   const std::u16string& preset, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(20);
    fillChoices(box, items);
    selectChoice(box, preset);
    if (!preset.empty() && box->currentIndex() == 0) {
        box->addItem(toQt(preset));
        box->setCurrentIndex(box->count() - 1);
    }
    return box;
}

QCheckBox* check(const char* text, const char* name, bool on, QWidget* parent) {
    auto* box = new QCheckBox(QString::fromLatin1(text), parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setChecked(on);
    return box;
}

QDateEdit* datePicker(const char* name, const SYSTEMTIME& day, const LocaleInfo& locale,
                      QWidget* parent) {
    auto* picker = new QDateEdit(toQDate(day), parent);
    picker->setDisplayFormat(qtDatePicture(locale.shortDate));
    picker->setObjectName(QString::fromLatin1(name));
    picker->setCalendarPopup(true);
    return picker;
}

}  // namespace

CriteriaSheet::CriteriaSheet(AppState& state, const EntryFilter& preset, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    auto* tabs = new QTabWidget(this);
    tabs->addTab(makeCriteriaPage(state, preset), QStringLiteral("Criteria"));
    tabs->addTab(makeMoreChoicesPage(state, preset), QStringLiteral("More Choices"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);
}

void CriteriaSheet::setPurpose(const QString& purpose) {
    setWindowTitle(purpose.isEmpty() ? QStringLiteral("Quillarbor")
                                     : purpose + QStringLiteral(" - Quillarbor"));
}

QWidget* CriteriaSheet::makeCriteriaPage(AppState& state, const EntryFilter& preset) {
    auto* page = new QWidget(this);
    const FilterChoices items = filterChoices(state.masters(), state.platform());
    SYSTEMTIME first = preset.start;
    SYSTEMTIME last = preset.end;
    if (!preset.hasDateRange()) {
        const SYSTEMTIME now = localNow();
        first = last = makeDate(now.wYear, now.wMonth, now.wDay);
    }
    start_ = datePicker("start", first, state.locale(), page);
    end_ = datePicker("end", last, state.locale(), page);
    client_ = choices("client", items.clients, preset.client, page);
    project_ = choices("project", items.projects, preset.project, page);
    phase_ = choices("phase", items.phases, preset.phase, page);
    task_ = choices("task", items.tasks, preset.task, page);
    billTo_ = choices("billTo", items.billTo, preset.billTo, page);
    unpaid_ = check("Unpaid", "unpaid", preset.showUnpaid, page);
    paid_ = check("Paid", "paid", preset.showPaid, page);
    nonBillable_ = check("Non Billable", "nonBillable", preset.showNonBillable, page);

    auto* form = new QFormLayout(page);
    form->addRow(QStringLiteral("Start:"), start_);
    form->addRow(QStringLiteral("End:"), end_);
    form->addRow(QStringLiteral("Client:"), client_);
    form->addRow(QStringLiteral("Project:"), project_);
    form->addRow(QStringLiteral("Phase:"), phase_);
    form->addRow(QStringLiteral("Task:"), task_);
    form->addRow(QStringLiteral("Bill To:"), billTo_);
    addFlagRow(form, unpaid_, paid_, nonBillable_);
    return page;
}

QWidget* CriteriaSheet::makeMoreChoicesPage(AppState& state, const EntryFilter& preset) {
    auto* page = new QWidget(this);
    const FilterChoices items = filterChoices(state.masters(), state.platform());
    currency_ = choices("currency", items.currencies, preset.currency, page);
    rateType_ = new QComboBox(page);
    rateType_->setObjectName(QStringLiteral("rateType"));
    fillRateTypeChoices(rateType_);
    const int rateItem = preset.rateType + 1;
    rateType_->setCurrentIndex(rateItem > 0 && rateItem < rateType_->count() ? rateItem : 0);
    custom_[0] = choices("custom1", items.custom1, preset.custom1, page);
    custom_[1] = choices("custom2", items.custom2, preset.custom2, page);
    custom_[2] = choices("custom3", items.custom3, preset.custom3, page);

    const Settings& s = state.settings();
    auto* form = new QFormLayout(page);
    form->addRow(QStringLiteral("Currency:"), currency_);
    form->addRow(QStringLiteral("Rate Type:"), rateType_);
    form->addRow(toQt(s.custom1Caption) + u':', custom_[0]);
    form->addRow(toQt(s.custom2Caption) + u':', custom_[1]);
    form->addRow(toQt(s.custom3Caption) + u':', custom_[2]);
    return page;
}

EntryFilter CriteriaSheet::criteria() const {
    EntryFilter f;
    f.start = fromQDate(start_->date());
    f.end = fromQDate(end_->date());
    f.client = chosenText(client_, kTextBuffer);
    f.project = chosenText(project_, kTextBuffer);
    f.phase = chosenText(phase_, kTextBuffer);
    f.task = chosenText(task_, kTextBuffer);
    f.billTo = chosenText(billTo_, kBillToBuffer);
    f.showUnpaid = unpaid_->isChecked();
    f.showPaid = paid_->isChecked();
    f.showNonBillable = nonBillable_->isChecked();
    f.currency = chosenText(currency_, kTextBuffer);
    if (rateType_->currentIndex() > 0) f.rateType = rateType_->currentIndex() - 1;
    f.custom1 = chosenText(custom_[0], kTextBuffer);
    f.custom2 = chosenText(custom_[1], kTextBuffer);
    f.custom3 = chosenText(custom_[2], kTextBuffer);
    return f;
}

}  // namespace qb
