#include "gui/reports/report_designer.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "gui/dialogs/dialog_support.h"
#include "gui/help.h"
#include "gui/message_box.h"
#include "gui/reports/layout_dialogs.h"
#include "report/report_fields.h"

namespace qb {
namespace {

constexpr int kCodeRole = Qt::UserRole;

const char* const kFooterTexts[kFooterLineCount] = {"Total Billable Hours", "Total Unpaid Amount",
                                                    "Total Paid Amount", "Total Non-Billable Hours",
                                                    "Report Date"};

QComboBox* choiceBox(const QStringList& texts, const char* name, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->addItems(texts);
    return box;
}

QComboBox* showHideBox(const char* name, QWidget* parent) {
    return choiceBox({QStringLiteral("Show"), QStringLiteral("Hide")}, name, parent);
}

void setShown(QComboBox* box, bool shown) {
    box->setCurrentIndex(shown ? 0 : 1);
}

bool isShown(const QComboBox* box) {
    return box->currentIndex() == 0;
}

QString fieldRowText(char16_t code, const Settings& settings) {
    const std::u16string title = reportFieldTitle(fieldDigitValue(code), settings);
    return title.empty() ? QStringLiteral("(%1)").arg(QChar(code)) : toQt(title);
}

// The rows of the header and footer areas share one grid so that their
// editors line up.
class AreaGrid {
  public:
    explicit AreaGrid(QWidget* page) : page_(page), grid_(new QGridLayout) {
        grid_->setColumnStretch(1, 1);
    }
    void heading(const QString& text) {
        if (row_ > 0) grid_->setRowMinimumHeight(row_++, 12);
        grid_->addWidget(makeHeading(text, page_), row_++, 0, 1, 2);
    }
    void add(const QString& text, QWidget* editor) {
        auto* label = new QLabel(text, page_);
        label->setContentsMargins(12, 0, 0, 0);
        label->setBuddy(editor);
        grid_->addWidget(label, row_, 0);
        grid_->addWidget(editor, row_++, 1);
    }
    QGridLayout* layout() { return grid_; }

  private:
    QWidget* page_;
    QGridLayout* grid_;
    int row_ = 0;
};

}  // namespace

ReportDesigner::ReportDesigner(AppState& state, QWidget* parent)
    : QMainWindow(parent), state_(state) {
    setWindowFlag(Qt::Window);
    setObjectName(QStringLiteral("reportDesigner"));
    working_ = defaultLayout(state_.platform(), state_.settings());
    buildMenus();
    setCentralWidget(buildRows());
    showLayout();
    updateTitle();
}

void ReportDesigner::buildMenus() {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Report"));
    QMenu* load = menu->addMenu(QStringLiteral("Load"));
    auto add = [this](QMenu* m, const char* name, const QString& text, auto slot) {
        QAction* a = m->addAction(text);
        connect(a, &QAction::triggered, this, slot);
        a->setObjectName(QString::fromLatin1(name));
        return a;
    };
    add(load, "loadClient", QStringLiteral("Client"), [this] { loadBuiltIn(clientLayout()); });
    add(load, "loadDate", QStringLiteral("Date"), [this] { loadBuiltIn(dateLayout()); });
    add(load, "loadCustom", QStringLiteral("Custom..."), [this] { loadCustom(); });
    add(menu, "organize", QStringLiteral("Organize Reports..."), [this] { organize(); });
    add(menu, "save", QStringLiteral("Save..."), [this] {
        save();
    })->setShortcut(QKeySequence::Save);
    add(menu, "setDefault", QStringLiteral("Set As Default"), [this] { setAsDefault(); });
    menu->addSeparator();
    add(menu, "makeReport", QStringLiteral("Make Report..."),
        [this] { emit reportRequested(working().layout); });
    menu->addSeparator();
    add(menu, "close", QStringLiteral("Close"), [this] { close(); });

    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    add(help, "help", QStringLiteral("Report Designer Help"), [this] {
        openHelp(this, "reports");
    })->setShortcut(QKeySequence::HelpContents);
}

QWidget* ReportDesigner::buildRows() {
    auto* page = new QWidget(this);
    const Settings& s = state_.settings();

    title_ = new QLineEdit(page);
    title_->setObjectName(QStringLiteral("title"));
    title_->setMaxLength(static_cast<int>(kLayoutTitleMax));
    dateSelection_ = choiceBox(
        {QStringLiteral("None"), QStringLiteral("Range"), QStringLiteral("Start Date Only")},
        "dateSelection", page);
    type_ = choiceBox({QStringLiteral("Group By Field"), QStringLiteral("Tabular")}, "type", page);
    QStringList groupTexts;
    for (int i = 0; i < kGroupByChoiceCount; ++i) groupTexts << toQt(groupByText(i, s));
    groupBy_ = choiceBox(groupTexts, "groupBy", page);
    groupTitle_ = showHideBox("groupTitle", page);
    groupTotal_ = showHideBox("groupTotal", page);
    title_->setMinimumWidth(title_->fontMetrics().averageCharWidth() * 32);
    AreaGrid areas(page);
    areas.heading(QStringLiteral("Header Area"));
    areas.add(QStringLiteral("Title:"), title_);
    areas.add(QStringLiteral("Date Selection:"), dateSelection_);
    areas.add(QStringLiteral("Type:"), type_);
    areas.add(QStringLiteral("Group By:"), groupBy_);
    areas.add(QStringLiteral("Group By Title:"), groupTitle_);
    areas.add(QStringLiteral("Group Total Hours:"), groupTotal_);
    connect(type_, &QComboBox::currentIndexChanged, this, &ReportDesigner::updateStates);

    areas.heading(QStringLiteral("Footer Area"));
    for (int i = 0; i < kFooterLineCount; ++i) {
        const QByteArray name = "footer" + QByteArray::number(i);
        footer_[static_cast<std::size_t>(i)] = showHideBox(name.constData(), page);
        areas.add(QString::fromLatin1(kFooterTexts[i]) + QLatin1Char(':'),
                  footer_[static_cast<std::size_t>(i)]);
    }

    fields_ = new QListWidget(page);
    fields_->setObjectName(QStringLiteral("fields"));
    fields_->setSelectionMode(QAbstractItemView::SingleSelection);
    connect(fields_, &QListWidget::currentRowChanged, this, &ReportDesigner::updateStates);
    moveUp_ = new QPushButton(QStringLiteral("Move Up"), page);
    moveUp_->setObjectName(QStringLiteral("moveUp"));
    moveDown_ = new QPushButton(QStringLiteral("Move Down"), page);
    moveDown_->setObjectName(QStringLiteral("moveDown"));
    connect(moveUp_, &QPushButton::clicked, this, [this] { moveSelected(-1); });
    connect(moveDown_, &QPushButton::clicked, this, [this] { moveSelected(1); });

    auto* left = new QVBoxLayout;
    left->addLayout(areas.layout());
    left->addStretch(1);

    auto* moves = new QHBoxLayout;
    moves->addWidget(moveUp_);
    moves->addWidget(moveDown_);
    moves->addStretch(1);
    auto* right = new QVBoxLayout;
    right->addWidget(makeHeading(QStringLiteral("Detail Area"), page));
    auto* tableFields = new QLabel(QStringLiteral("Table Fields"), page);
    tableFields->setContentsMargins(12, 0, 0, 0);
    right->addWidget(tableFields);
    right->addWidget(fields_, 1);
    right->addLayout(moves);

    auto* help = new QPushButton(QStringLiteral("Help"), page);
    connect(help, &QPushButton::clicked, this, [this] { openHelp(this, "reports"); });
    auto* make = new QPushButton(QStringLiteral("Make Report..."), page);
    connect(make, &QPushButton::clicked, this, [this] { emit reportRequested(working().layout); });
    auto* closeButton = new QPushButton(QStringLiteral("Close"), page);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(help);
    buttons->addStretch(1);
    buttons->addWidget(make);
    buttons->addWidget(closeButton);

    auto* sides = new QHBoxLayout;
    sides->addLayout(left, 3);
    sides->addSpacing(16);
    sides->addLayout(right, 2);
    auto* column = new QVBoxLayout(page);
    column->addLayout(sides, 1);
    column->addLayout(buttons);
    return page;
}

void ReportDesigner::showLayout() {
    const LayoutDesign d = designFromLayout(working_.layout);
    title_->setText(toQt(d.title));
    dateSelection_->setCurrentIndex(d.dateSelection < dateSelection_->count() ? d.dateSelection
                                                                              : -1);
    type_->setCurrentIndex(d.type < type_->count() ? d.type : -1);
    groupBy_->setCurrentIndex(d.groupByIndex);
    setShown(groupTitle_, d.groupTitleShown);
    setShown(groupTotal_, d.groupTotalShown);
    fields_->setUpdatesEnabled(false);
    fields_->clear();
    for (const LayoutDesign::FieldRow& row : d.fields) {
        auto* item = new QListWidgetItem(fieldRowText(row.code, state_.settings()), fields_);
        item->setData(kCodeRole, QChar(row.code));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(row.shown ? Qt::Checked : Qt::Unchecked);
    }
    fields_->setUpdatesEnabled(true);
    for (int i = 0; i < kFooterLineCount; ++i) {
        setShown(footer_[static_cast<std::size_t>(i)], d.footerShown[static_cast<std::size_t>(i)]);
    }
    updateStates();
}

LayoutDesign ReportDesigner::readRows() const {
    LayoutDesign d;
    d.title = fromQt(title_->text());
    // A choice a stored layout had outside the lists stays as it was.
    const LayoutDesign stored = designFromLayout(working_.layout);
    d.dateSelection = dateSelection_->currentIndex() >= 0
                          ? static_cast<std::uint16_t>(dateSelection_->currentIndex())
                          : stored.dateSelection;
    d.type = type_->currentIndex() >= 0 ? static_cast<std::uint16_t>(type_->currentIndex())
                                        : stored.type;
    d.groupByIndex = groupBy_->currentIndex();
    d.groupTitleShown = isShown(groupTitle_);
    d.groupTotalShown = isShown(groupTotal_);
    for (int i = 0; i < fields_->count(); ++i) {
        const QListWidgetItem* item = fields_->item(i);
        d.fields.push_back(
            {item->data(kCodeRole).toChar().unicode(), item->checkState() == Qt::Checked});
    }
    for (int i = 0; i < kFooterLineCount; ++i) {
        d.footerShown[static_cast<std::size_t>(i)] = isShown(footer_[static_cast<std::size_t>(i)]);
    }
    return d;
}

const WorkingLayout& ReportDesigner::working() {
    applyDesign(readRows(), working_.layout);
    return working_;
}

void ReportDesigner::updateStates() {
    const bool grouped = type_->currentIndex() == kGroupedReport;
    for (QWidget* w : {static_cast<QWidget*>(groupBy_), static_cast<QWidget*>(groupTitle_),
                       static_cast<QWidget*>(groupTotal_)}) {
        w->setEnabled(grouped);
        for (QLabel* label : w->parentWidget()->findChildren<QLabel*>()) {
            if (label->buddy() == w) label->setEnabled(grouped);
        }
    }
    const int row = fields_->currentRow();
    moveUp_->setEnabled(row > 0);
    moveDown_->setEnabled(row >= 0 && row + 1 < fields_->count());
}

void ReportDesigner::updateTitle() {
    setWindowTitle(working_.name.empty()
                       ? QStringLiteral("Report Designer")
                       : QStringLiteral("Report Designer - %1").arg(toQt(working_.name)));
}

void ReportDesigner::loadBuiltIn(const ReportLayout& layout) {
    working_ = WorkingLayout{layout, {}, 0};
    showLayout();
    updateTitle();
}

void ReportDesigner::loadCustom() {
    SavedLayout chosen;
    if (!LayoutPicker::pick(state_.platform(), this, &chosen)) return;
    ReportLayout layout;
    if (!loadSavedLayout(state_.platform(), chosen.oid, &layout)) {
        fail(this, QStringLiteral("The report could not be loaded."));
        return;
    }
    working_ = WorkingLayout{layout, chosen.name, chosen.oid};
    showLayout();
    updateTitle();
}

void ReportDesigner::organize() {
    OrganizeReports::organize(state_.platform(), this);
    // The working layout's record may have been renamed or deleted.
    if (working_.oid == 0) return;
    bool found = false;
    for (const SavedLayout& s : savedLayouts(state_.platform())) {
        if (s.oid != working_.oid) continue;
        working_.name = s.name;
        found = true;
    }
    if (!found) working_.oid = 0;
    updateTitle();
}

void ReportDesigner::save() {
    working();
    std::u16string name = working_.name;
    while (NamePrompt::ask(this, &name)) {
        SaveOutcome outcome = saveWorkingLayout(state_.platform(), working_, name, false);
        if (outcome == SaveOutcome::kReserved) {
            warn(this, toQt(std::u16string(kReservedLayoutNameText)));
            continue;
        }
        // No is the default, as for every question that destroys something.
        if (outcome == SaveOutcome::kExists) {
            const auto answer = showMessage(
                this, {toQt(std::u16string(kReportExistsQuestion)), MessageIcon::kQuestion,
                       QMessageBox::Yes | QMessageBox::No, QMessageBox::No});
            if (answer != QMessageBox::Yes) continue;
            outcome = saveWorkingLayout(state_.platform(), working_, name, true);
        }
        if (outcome == SaveOutcome::kFailed) {
            fail(this, QStringLiteral("The report could not be saved."));
        }
        break;
    }
    updateTitle();
}

void ReportDesigner::setAsDefault() {
    if (!setDefaultLayout(state_.registry(), state_.settings(), working_.name)) {
        fail(this, QStringLiteral("The settings could not be saved."));
    }
}

void ReportDesigner::moveSelected(int step) {
    const int row = fields_->currentRow();
    const int to = row + step;
    if (row < 0 || to < 0 || to >= fields_->count()) return;
    fields_->insertItem(to, fields_->takeItem(row));
    fields_->setCurrentRow(to);
}

}  // namespace qb
