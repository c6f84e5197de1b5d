#include "gui/dialogs/filter_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"
#include "views/filter_choices.h"

namespace qb {
namespace {

constexpr int kTextBuffer = 128;

QComboBox* combo(const char* name, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(20);
    return box;
}

QCheckBox* check(const char* text, const char* name, bool on, QWidget* parent) {
    auto* box = new QCheckBox(QString::fromLatin1(text), parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setChecked(on);
    return box;
}

}  // namespace

FilterDialog::FilterDialog(AppState& state, EntryFilter& filter, QWidget* parent)
    : QDialog(parent),
      filter_(filter),
      client_(combo("client", this)),
      project_(combo("project", this)),
      phase_(combo("phase", this)),
      custom_{combo("custom1", this), combo("custom2", this), combo("custom3", this)},
      currency_(combo("currency", this)),
      billTo_(combo("billTo", this)),
      rateType_(combo("rateType", this)),
      unpaid_(check("Unpaid", "unpaid", filter.showUnpaid, this)),
      paid_(check("Paid", "paid", filter.showPaid, this)),
      nonBillable_(check("Non Billable", "nonBillable", filter.showNonBillable, this)) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    const FilterChoices choices = filterChoices(state.masters(), state.platform());
    fillChoices(client_, choices.clients);
    fillChoices(project_, choices.projects);
    fillChoices(phase_, choices.phases);
    fillChoices(custom_[0], choices.custom1);
    fillChoices(custom_[1], choices.custom2);
    fillChoices(custom_[2], choices.custom3);
    fillChoices(currency_, choices.currencies);
    fillChoices(billTo_, choices.billTo);
    fillRateTypeChoices(rateType_);

    selectChoice(client_, filter.client);
    selectChoice(project_, filter.project);
    selectChoice(phase_, filter.phase);
    selectChoice(custom_[0], filter.custom1);
    selectChoice(custom_[1], filter.custom2);
    selectChoice(custom_[2], filter.custom3);
    selectChoice(currency_, filter.currency);
    selectChoice(billTo_, filter.billTo);
    const int rateItem = filter.rateType + 1;
    rateType_->setCurrentIndex(rateItem > 0 && rateItem < rateType_->count() ? rateItem : 0);

    const Settings& s = state.settings();
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Client:"), client_);
    form->addRow(QStringLiteral("Project:"), project_);
    form->addRow(QStringLiteral("Phase:"), phase_);
    form->addRow(toQt(s.custom1Caption) + u':', custom_[0]);
    form->addRow(toQt(s.custom2Caption) + u':', custom_[1]);
    form->addRow(toQt(s.custom3Caption) + u':', custom_[2]);
    form->addRow(QStringLiteral("Currency:"), currency_);
    form->addRow(QStringLiteral("Bill To:"), billTo_);
    form->addRow(QStringLiteral("Rate Type:"), rateType_);
    addFlagRow(form, unpaid_, paid_, nonBillable_);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makeHeading(QStringLiteral("Filters"), this));
    layout->addLayout(form);
    layout->addWidget(buttons);
}

void FilterDialog::accept() {
    filter_.reset();
    QComboBox* const boxes[] = {client_,    project_,  phase_,  custom_[0], custom_[1],
                                custom_[2], currency_, billTo_, rateType_};
    const bool allAny = std::all_of(std::begin(boxes), std::end(boxes),
                                    [](const QComboBox* b) { return b->currentIndex() == 0; });
    const bool allShown = unpaid_->isChecked() && paid_->isChecked() && nonBillable_->isChecked();
    if (!(allAny && allShown)) {
        filter_.client = chosenText(client_, kTextBuffer);
        filter_.project = chosenText(project_, kTextBuffer);
        filter_.phase = chosenText(phase_, kTextBuffer);
        filter_.custom1 = chosenText(custom_[0], kTextBuffer);
        filter_.custom2 = chosenText(custom_[1], kTextBuffer);
        filter_.custom3 = chosenText(custom_[2], kTextBuffer);
        filter_.currency = chosenText(currency_, kTextBuffer);
        filter_.billTo = chosenText(billTo_, kTextBuffer);
        if (rateType_->currentIndex() > 0) filter_.rateType = rateType_->currentIndex() - 1;
        filter_.showPaid = paid_->isChecked();
        filter_.showUnpaid = unpaid_->isChecked();
        filter_.showNonBillable = nonBillable_->isChecked();
    }
    QDialog::accept();
}

}  // namespace qb
