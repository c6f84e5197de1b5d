#include "gui/entry/entry_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTimeEdit>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include "entry/duration_rule.h"
#include "entry/editor_choices.h"
#include "entry/entry_form.h"
#include "entry/rate_rules.h"
#include "entry/rate_setup.h"
#include "gui/app_state.h"
#include "gui/colours.h"
#include "gui/dialogs/dialog_support.h"
#include "gui/dialogs/rate_tree.h"
#include "gui/entry/choice_boxes.h"
#include "gui/entry/note_editor.h"
#include "gui/entry/set_times_dialog.h"
#include "gui/message_box.h"
#include "gui/tools/note_round_trip.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "store/entry_save.h"
#include "store/tables.h"

namespace qb {
namespace {

enum Page { kGeneralPage = 0, kBillingPage = 1, kCustomPage = 2, kNotesPage = 3 };

std::u16string textOf(const QComboBox* box) {
    return fromQt(box->currentText());
}

}  // namespace

struct EntryEditor::Pages {
    QTabWidget* tabs = nullptr;
    // General
    QDateEdit* date = nullptr;
    QComboBox* client = nullptr;
    QComboBox* project = nullptr;
    QComboBox* phase = nullptr;
    QComboBox* task = nullptr;
    QComboBox* duration = nullptr;
    QLabel* durationNote = nullptr;
    QCheckBox* hasStart = nullptr;
    QTimeEdit* start = nullptr;
    QPushButton* setTimes = nullptr;
    // Billing
    QCheckBox* billable = nullptr;
    QCheckBox* paid = nullptr;
    QComboBox* billTo = nullptr;
    QTreeWidget* rateTree = nullptr;
    QComboBox* currency = nullptr;
    QLineEdit* rate = nullptr;
    QLineEdit* total = nullptr;
    QPushButton* calculate = nullptr;
    QCheckBox* fixed = nullptr;
    // Custom and Notes
    QComboBox* custom[3] = {};
    NoteEditor* notes = nullptr;
};

EntryEditor::EntryEditor(AppState& state, const TimeEntry& entry, QWidget* parent)
    : QDialog(parent), state_(state), entry_(entry), p_(std::make_unique<Pages>()) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    p_->tabs = new QTabWidget(this);
    p_->tabs->setObjectName(QStringLiteral("pages"));
    buildGeneral();
    buildBilling();
    buildCustom();
    buildNotes();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &EntryEditor::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(p_->tabs, 1);
    layout->addWidget(buttons);

    showEntry();
    connect(p_->tabs, &QTabWidget::currentChanged, this, &EntryEditor::pageChanged);
    // Connected once the boxes show the entry, so that filling them in does
    // not count as typing.
    Pages& p = *p_;
    for (QComboBox* box : {p.duration, p.currency}) {
        connect(box, &QComboBox::editTextChanged, this, &EntryEditor::showWhatSaves);
    }
    connect(p.rate, &QLineEdit::textChanged, this, &EntryEditor::showWhatSaves);
    for (QCheckBox* check : {p.fixed, p.billable}) {
        connect(check, &QCheckBox::toggled, this, &EntryEditor::showWhatSaves);
    }
    connect(p.rateTree, &QTreeWidget::currentItemChanged, this, &EntryEditor::showWhatSaves);
    showWhatSaves();
    opened_ = form();
    p_->client->setFocus();
    // Wide enough for the Duration row with its note and for the Total's reasons.
    resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 26);
}

EntryEditor::~EntryEditor() = default;

bool EntryEditor::edit(AppState& state, const TimeEntry& entry, QWidget* parent) {
    EntryEditor editor(state, entry, parent);
    return editor.exec() == QDialog::Accepted && editor.saved();
}

void EntryEditor::buildGeneral() {
    auto* page = new QWidget;
    Pages& p = *p_;
    p.date = new QDateEdit(page);
    p.date->setObjectName(QStringLiteral("date"));
    p.date->setCalendarPopup(true);
    // The device's date pictures read the same in Qt's language.
    p.date->setDisplayFormat(toQt(state_.locale().shortDate));
    p.client = choiceBox("client", kNameLimit, page);
    p.project = choiceBox("project", kNameLimit, page);
    p.phase = choiceBox("phase", kNameLimit, page);
    p.task = choiceBox("task", kNameLimit, page);
    p.duration = choiceBox("duration", kDurationLimit, page);
    p.duration->setMinimumContentsLength(6);
    p.duration->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    p.hasStart = new QCheckBox(page);
    p.hasStart->setObjectName(QStringLiteral("hasStart"));
    p.hasStart->setToolTip(QStringLiteral("Record a start time"));
    p.start = new QTimeEdit(page);
    p.start->setObjectName(QStringLiteral("start"));
    p.start->setDisplayFormat(timePickerFormat(state_.locale()));
    p.start->setWrapping(true);
    p.setTimes = new QPushButton(QStringLiteral("Set..."), page);
    p.setTimes->setObjectName(QStringLiteral("setTimes"));

    for (const std::u16string& c : clientChoices(state_.masters())) p.client->addItem(toQt(c));
    ListTable lists(state_.platform(), ListTable::Order::kByKind);
    if (lists.open()) {
        for (const std::u16string& item : lists.items(kListPhase)) p.phase->addItem(toQt(item));
    }
    for (const std::u16string& item : durationItems(state_.settings().timeInterval)) {
        p.duration->addItem(toQt(item));
    }

    p.durationNote = new QLabel(page);
    p.durationNote->setObjectName(QStringLiteral("durationNote"));

    auto* durationRow = new QHBoxLayout;
    durationRow->addWidget(p.duration);
    durationRow->addWidget(new QLabel(QStringLiteral("hour(s)"), page));
    durationRow->addSpacing(fontMetrics().averageCharWidth() * 2);
    durationRow->addWidget(p.durationNote);
    durationRow->addStretch(1);
    auto* startRow = new QHBoxLayout;
    startRow->addWidget(p.hasStart);
    startRow->addWidget(p.start);
    startRow->addWidget(p.setTimes);
    startRow->addStretch(1);

    auto* form = new QFormLayout(page);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(QStringLiteral("Date:"), p.date);
    form->addRow(QStringLiteral("Client:"), p.client);
    form->addRow(QStringLiteral("Project:"), p.project);
    form->addRow(QStringLiteral("Phase:"), p.phase);
    form->addRow(QStringLiteral("Task:"), p.task);
    form->addRow(QStringLiteral("Duration:"), durationRow);
    form->addRow(QStringLiteral("Start:"), startRow);
    p.tabs->addTab(page, QStringLiteral("General"));

    connect(p.hasStart, &QCheckBox::toggled, p.start, &QWidget::setEnabled);
    connect(p.client, &QComboBox::currentTextChanged, this, &EntryEditor::refillProjects);
    connect(p.project, &QComboBox::currentTextChanged, this, &EntryEditor::refillTasks);
    connect(p.setTimes, &QPushButton::clicked, this, &EntryEditor::setTimes);
}

void EntryEditor::buildBilling() {
    auto* page = new QWidget;
    Pages& p = *p_;
    p.billable = new QCheckBox(QStringLiteral("Billable"), page);
    p.billable->setObjectName(QStringLiteral("billable"));
    p.paid = new QCheckBox(QStringLiteral("Paid"), page);
    p.paid->setObjectName(QStringLiteral("paid"));
    p.billTo = choiceBox("billTo", kBillToLimit, page);
    p.rateTree = new QTreeWidget(page);
    p.rateTree->setObjectName(QStringLiteral("rateTree"));
    p.rateTree->setHeaderHidden(true);
    p.rateTree->setRootIsDecorated(true);
    p.currency = choiceBox("currency", kCurrencyLimit, page);
    p.currency->setMinimumContentsLength(5);
    p.rate = new QLineEdit(page);
    p.rate->setObjectName(QStringLiteral("rate"));
    p.rate->setMaxLength(static_cast<int>(kRateLimit));
    p.rate->setAlignment(Qt::AlignRight);
    p.total = new QLineEdit(page);
    p.total->setObjectName(QStringLiteral("total"));
    p.total->setReadOnly(true);
    p.total->setAlignment(Qt::AlignRight);
    p.total->setFocusPolicy(Qt::ClickFocus);
    p.calculate = new QPushButton(QStringLiteral("Calculate"), page);
    p.calculate->setObjectName(QStringLiteral("calculate"));
    p.fixed = new QCheckBox(QStringLiteral("Fixed"), page);
    p.fixed->setObjectName(QStringLiteral("fixed"));

    ListTable lists(state_.platform(), ListTable::Order::kByKind);
    if (lists.open()) {
        for (const std::u16string& item : lists.items(kListCurrency)) {
            p.currency->addItem(toQt(item));
        }
    }

    auto* checks = new QHBoxLayout;
    checks->addWidget(p.billable);
    checks->addSpacing(fontMetrics().averageCharWidth() * 3);
    checks->addWidget(p.paid);
    checks->addStretch(1);
    auto* rateRow = new QHBoxLayout;
    rateRow->addWidget(p.currency);
    rateRow->addWidget(p.rate, 1);
    auto* totalRow = new QHBoxLayout;
    totalRow->addWidget(p.total, 1);
    totalRow->addWidget(p.calculate);
    totalRow->addWidget(p.fixed);

    auto* grid = new QGridLayout(page);
    grid->addLayout(checks, 0, 0, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Bill To:"), page), 1, 0);
    grid->addWidget(p.billTo, 1, 1);
    auto* rateLabel = new QLabel(QStringLiteral("Rate:"), page);
    grid->addWidget(rateLabel, 2, 0, Qt::AlignTop);
    grid->addWidget(p.rateTree, 2, 1);
    grid->addLayout(rateRow, 3, 1);
    grid->addWidget(new QLabel(QStringLiteral("Total:"), page), 4, 0);
    grid->addLayout(totalRow, 4, 1);
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(1, 1);
    p.tabs->addTab(page, QStringLiteral("Billing"));

    connect(p.billable, &QCheckBox::toggled, this, &EntryEditor::updateBillingState);
    connect(p.rateTree, &QTreeWidget::currentItemChanged, this, &EntryEditor::rateNodeChosen);
    connect(p.calculate, &QPushButton::clicked, this, &EntryEditor::calculate);
}

void EntryEditor::buildCustom() {
    auto* page = new QWidget;
    const Settings& s = state_.settings();
    const std::u16string* captions[] = {&s.custom1Caption, &s.custom2Caption, &s.custom3Caption};
    const ListKind kinds[] = {kListCustom1, kListCustom2, kListCustom3};
    const char* names[] = {"custom1", "custom2", "custom3"};
    ListTable lists(state_.platform(), ListTable::Order::kByKind);
    const bool open = lists.open();
    auto* form = new QFormLayout(page);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    for (int i = 0; i < 3; ++i) {
        QComboBox* box = choiceBox(names[i], kCustomLimit, page);
        if (open) {
            for (const std::u16string& item : lists.items(kinds[i])) box->addItem(toQt(item));
        }
        p_->custom[i] = box;
        form->addRow(QStringLiteral("%1:").arg(toQt(*captions[i])), box);
    }
    p_->tabs->addTab(page, QStringLiteral("Custom"));
}

void EntryEditor::buildNotes() {
    auto* page = new QWidget;
    p_->notes = new NoteEditor(page);
    p_->notes->setObjectName(QStringLiteral("notes"));
    auto* editInWord = new QPushButton(QStringLiteral("Edit In Word"), page);
    editInWord->setObjectName(QStringLiteral("editInWord"));
    connect(editInWord, &QPushButton::clicked, this, [this] {
        QPlainTextEdit* box = p_->notes->textBox();
        if (auto edited = editNoteOutside(this, fromQt(box->toPlainText()))) {
            // Through the cursor, so that Undo brings the old note back.
            QTextCursor all(box->document());
            all.select(QTextCursor::Document);
            all.insertText(toQt(*edited));
        }
    });
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(p_->notes);
    layout->addWidget(editInWord, 0, Qt::AlignLeft);
    p_->tabs->addTab(page, QStringLiteral("Notes"));
}

void EntryEditor::showEntry() {
    const EntryForm f = formFromEntry(entry_);
    Pages& p = *p_;
    p.date->setDate(toQDate(f.day));
    p.hasStart->setChecked(f.start.has_value());
    p.start->setEnabled(f.start.has_value());
    p.start->setTime(f.start ? QTime(f.start->wHour, f.start->wMinute) : QTime(9, 0));
    // The client first: its text refills the project and task lists.
    p.client->setEditText(toQt(f.client));
    refillProjects();
    p.project->setEditText(toQt(f.project));
    refillTasks();
    p.phase->setEditText(toQt(f.phase));
    p.task->setEditText(toQt(f.task));
    p.duration->setEditText(toQt(f.duration));

    p.billable->setChecked(f.billable);
    p.paid->setChecked(f.paid);
    p.billTo->setEditText(toQt(f.billTo));
    p.currency->setEditText(toQt(f.currency));
    p.rate->setText(toQt(f.rate));
    p.fixed->setChecked(f.fixed);
    p.custom[0]->setEditText(toQt(f.custom1));
    p.custom[1]->setEditText(toQt(f.custom2));
    p.custom[2]->setEditText(toQt(f.custom3));
    p.notes->setNoteBytes(f.notes);
    // The Billing page is ready before it is first shown, so that an OK from
    // another page keeps the entry's rate and its type.
    showBilling();
}

EntryForm EntryEditor::form() const {
    const Pages& p = *p_;
    EntryForm f;
    f.day = fromQDate(p.date->date());
    if (p.hasStart->isChecked()) {
        SYSTEMTIME start = f.day;
        start.wHour = static_cast<std::uint16_t>(p.start->time().hour());
        start.wMinute = static_cast<std::uint16_t>(p.start->time().minute());
        f.start = start;
    }
    f.client = textOf(p.client);
    f.project = textOf(p.project);
    f.phase = textOf(p.phase);
    f.task = textOf(p.task);
    f.duration = textOf(p.duration);
    f.billable = p.billable->isChecked();
    f.paid = p.paid->isChecked();
    f.billTo = textOf(p.billTo);
    f.currency = textOf(p.currency);
    f.rate = fromQt(p.rate->text());
    if (const QTreeWidgetItem* node = p.rateTree->currentItem()) {
        const QVariant type = node->data(0, kRateTypeRole);
        if (type.isValid()) f.rateNode = static_cast<std::uint16_t>(type.toUInt());
    }
    f.fixed = p.fixed->isChecked();
    f.custom1 = textOf(p.custom[0]);
    f.custom2 = textOf(p.custom[1]);
    f.custom3 = textOf(p.custom[2]);
    f.notes = p.notes->noteBytes();
    return f;
}

void EntryEditor::refillProjects() {
    refillChoices(p_->project, projectChoices(state_.masters(), textOf(p_->client)));
    refillTasks();
}

void EntryEditor::refillTasks() {
    refillChoices(p_->task, taskChoices(state_.masters(), textOf(p_->client), textOf(p_->project)));
}

void EntryEditor::pageChanged(int index) {
    if (shownPage_ == kGeneralPage && index != kGeneralPage) {
        const FormResult r = leaveGeneral(form(), state_.settings(), entry_);
        if (!r.ok) {
            refuse(r);
            return;
        }
    }
    shownPage_ = index;
    if (index == kBillingPage) showBilling();
}

void EntryEditor::refuse(const FormResult& result) {
    const int page = pageOf(result.field) == FormPage::kBilling ? kBillingPage : kGeneralPage;
    {
        const QSignalBlocker quiet(p_->tabs);
        p_->tabs->setCurrentIndex(page);
    }
    shownPage_ = page;
    warn(this, toQt(std::u16string(result.message)));
    QWidget* field = nullptr;
    switch (result.field) {
        case FormField::kClient:
            field = p_->client;
            break;
        case FormField::kDuration:
            field = p_->duration;
            break;
        case FormField::kTask:
            field = p_->task;
            break;
        case FormField::kRate:
            field = p_->rate;
            break;
        case FormField::kNone:
            break;
    }
    if (field) {
        field->setFocus();
        if (auto* box = qobject_cast<QComboBox*>(field)) box->lineEdit()->selectAll();
        if (auto* line = qobject_cast<QLineEdit*>(field)) line->selectAll();
    }
}

void EntryEditor::showBilling() {
    Pages& p = *p_;
    const std::u16string client = textOf(p.client);
    {
        const QSignalBlocker quiet(p.rateTree);
        fillRateTree(p.rateTree, state_, clientIdOf(state_.masters().clients, client),
                     toQt(client));
    }
    refillChoices(p.billTo, contactChoices(state_.masters(), client));

    QTreeWidgetItem* match = nullptr;
    if (matchingRateNode(state_.masters(), client, entry_.rate, entry_.rateType)) {
        for (QTreeWidgetItemIterator it(p.rateTree); *it && !match; ++it) {
            const QTreeWidgetItem* node = *it;
            if (node->data(0, kRateOidRole).toUInt() != 0 &&
                node->data(0, kRateValueRole).toUInt() == entry_.rate &&
                node->data(0, kRateTypeRole).toUInt() == entry_.rateType) {
                match = *it;
            }
        }
    }
    if (match) {
        p.rateTree->setCurrentItem(match);
        p.total->setText(toQt(totalText(entry_, textOf(p.currency), state_.settings())));
    } else {
        {
            const QSignalBlocker quiet(p.rateTree);
            p.rateTree->setCurrentItem(p.rateTree->topLevelItem(0));
        }
        p.fixed->setChecked(entry_.rateType == kFixedRate);
        calculate();
    }
    updateBillingState();
}

void EntryEditor::updateBillingState() {
    Pages& p = *p_;
    const bool on = p.billable->isChecked();
    for (QWidget* w : std::initializer_list<QWidget*>{p.paid, p.rate, p.currency, p.billTo,
                                                      p.calculate, p.rateTree}) {
        w->setEnabled(on);
    }
    const QTreeWidgetItem* node = p.rateTree->currentItem();
    const bool customNode = node && node == p.rateTree->topLevelItem(0);
    p.fixed->setEnabled(on && customNode);
}

void EntryEditor::rateNodeChosen() {
    const QTreeWidgetItem* node = p_->rateTree->currentItem();
    if (node && node->data(0, kRateOidRole).toUInt() != 0) {
        p_->rate->setText(toQt(rateText(node->data(0, kRateValueRole).toUInt())));
        p_->fixed->setChecked(node->data(0, kRateTypeRole).toUInt() == kFixedRate);
    }
    updateBillingState();
}

void EntryEditor::calculate() {
    const std::optional<std::u16string> total =
        calculateTotal(entry_, textOf(p_->currency), fromQt(p_->rate->text()),
                       p_->fixed->isChecked(), state_.settings());
    if (!total) {
        refuse({false, kRateRangeMessage, FormField::kRate});
        return;
    }
    p_->total->setText(toQt(*total));
}

// What OK would store, from the boxes as they stand: the hours beside the
// Duration box, and the Total (the rate and hours that make it can be
// refused, and the box then says why).
void EntryEditor::showWhatSaves() {
    Pages& p = *p_;
    const EntryForm f = form();
    const FormPreview hours = durationPreview(f, state_.settings(), entry_);
    p.durationNote->setText(toQt(hours.text));
    p.durationNote->setToolTip(toQt(std::u16string(hours.message)));
    QPalette notePalette = p.durationNote->palette();
    notePalette.setColor(QPalette::WindowText, hours.ok ? palette().color(QPalette::PlaceholderText)
                                                        : warningColour(palette()));
    p.durationNote->setPalette(notePalette);

    const FormPreview total = totalPreview(f, state_.settings(), entry_);
    p.total->setText(toQt(total.text));
    p.total->setPlaceholderText(toQt(std::u16string(total.message)));
    p.total->setToolTip(p.total->placeholderText());
}

void EntryEditor::setTimes() {
    const FormResult r = beginSetTimes(form(), state_.settings(), entry_);
    if (!r.ok) {
        refuse(r);
        return;
    }
    SYSTEMTIME start = localNow();
    if (hasStartTime(entry_)) fileTimeToSystemTime(entry_.date, &start);
    SetTimesDialog dialog(start, endOffsetMinutes(entry_.duration), state_.locale(), this);
    if (dialog.exec() != QDialog::Accepted) return;
    if (const FormResult set =
            finishSetTimes(dialog.start(), dialog.end(), state_.settings(), entry_);
        !set.ok) {
        refuse(set);
        return;
    }
    p_->hasStart->setChecked(true);
    p_->start->setTime(QTime(dialog.start().wHour, dialog.start().wMinute));
    p_->duration->setEditText(toQt(durationText(entry_.duration)));
}

void EntryEditor::reject() {
    if (form() != opened_ && !confirm(this, QStringLiteral("Discard the changes to this entry?"),
                                      MessageIcon::kQuestion)) {
        return;
    }
    QDialog::reject();
}

void EntryEditor::accept() {
    const FormResult r = applyForm(form(), state_.settings(), entry_);
    if (!r.ok) {
        refuse(r);
        return;
    }
    DataFile& file = state_.platform().file();
    if (saveEditedEntry(file, state_.entries(), state_.masters(), entry_) != EntrySave::kSaved) {
        fail(this, QStringLiteral("The entry could not be saved in %1.")
                       .arg(QString::fromStdString(file.path())));
        return;
    }
    saved_ = true;
    QDialog::accept();
}

}  // namespace qb
