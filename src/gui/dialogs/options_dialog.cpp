#include "gui/dialogs/options_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "app/option_choices.h"
#include "entry/duration_rule.h"
#include "gui/app_state.h"

namespace qb {
namespace {

// Caption and currency limits: the registry buffers less the NUL, in UTF-16
// units (64 and 32 bytes).
constexpr int kCaptionChars = 31;
constexpr int kCurrencyChars = 15;

QCheckBox* flagBox(const QString& text, const Settings& s, std::uint32_t bit, QWidget* parent) {
    auto* box = new QCheckBox(text, parent);
    box->setChecked(s.optionFlags & bit);
    return box;
}

void setFlag(Settings& s, std::uint32_t bit, bool on) {
    s.optionFlags = on ? (s.optionFlags | bit) : (s.optionFlags & ~bit);
}

QComboBox* choiceBox(std::initializer_list<const char*> texts, int current, QWidget* parent) {
    auto* box = new QComboBox(parent);
    for (const char* text : texts) box->addItem(QString::fromUtf8(text));
    box->setCurrentIndex(current >= 0 && current < box->count() ? current : 0);
    return box;
}

// Selects the item carrying `value`; a value the list does not offer is
// added, so that OK without a change keeps it.
void selectValue(QComboBox* box, int value, const QString& text) {
    int index = box->findData(value);
    if (index < 0) {
        box->addItem(text, value);
        index = box->count() - 1;
    }
    box->setCurrentIndex(index);
}

QLineEdit* textBox(const std::u16string& text, int maxChars, QWidget* parent) {
    auto* edit = new QLineEdit(toQt(text), parent);
    edit->setMaxLength(maxChars);
    return edit;
}

}  // namespace

OptionsDialog::OptionsDialog(Settings& settings, QWidget* parent)
    : QDialog(parent), settings_(settings), tabs_(new QTabWidget(this)) {
    setWindowTitle(QStringLiteral("Options"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_);
    layout->addWidget(buttons);
    addGeneralPage();
    addDefaultsPage();
}

void OptionsDialog::addPage(QWidget* page, const QString& title,
                            std::function<void(Settings&)> apply) {
    tabs_->addTab(page, title);
    appliers_.push_back(std::move(apply));
}

void OptionsDialog::accept() {
    for (const auto& apply : appliers_) apply(settings_);
    QDialog::accept();
}

void OptionsDialog::addGeneralPage() {
    const Settings& s = settings_;
    auto* page = new QWidget(this);
    auto* weekStart =
        choiceBox({"Sunday", "Monday"}, (s.optionFlags & kWeekStartsMonday) ? 1 : 0, page);
    weekStart->setObjectName(QStringLiteral("weekStart"));
    auto* tap = choiceBox({"Edit", "Preview"}, (s.optionFlags & kTapPreview) ? 1 : 0, page);
    tap->setObjectName(QStringLiteral("itemTap"));
    auto* fontSize = new QComboBox(page);
    fontSize->setObjectName(QStringLiteral("fontSize"));
    for (int i = 0; i < kFontSizeChoices; ++i) {
        fontSize->addItem(QStringLiteral("%1 pt").arg(fontSizePoints(i)), i);
    }
    selectValue(fontSize, s.fontSize, QStringLiteral("%1 pt").arg(fontSizePoints(s.fontSize)));
    auto* bold = flagBox(QStringLiteral("Bold"), s, kBoldList, page);
    bold->setObjectName(QStringLiteral("bold"));
    auto* weekNumber =
        flagBox(QStringLiteral("Show Week Number (Week View Only)"), s, kShowWeekNumber, page);
    weekNumber->setObjectName(QStringLiteral("weekNumber"));
    auto* precise =
        flagBox(QStringLiteral("Enable Precise Calculations for minute 10, 20 , 40, and 50"), s,
                kPreciseCalculation, page);
    precise->setObjectName(QStringLiteral("precise"));

    auto* form = new QFormLayout(page);
    form->addRow(QStringLiteral("Week Start:"), weekStart);
    form->addRow(QStringLiteral("Item Click Option:"), tap);
    form->addRow(QStringLiteral("Font Size:"), fontSize);
    form->addRow(bold);
    form->addRow(weekNumber);
    form->addRow(precise);

    addPage(page, QStringLiteral("General"), [=](Settings& out) {
        setFlag(out, kWeekStartsMonday, weekStart->currentIndex() == 1);
        setFlag(out, kTapPreview, tap->currentIndex() == 1);
        out.fontSize = static_cast<std::uint16_t>(fontSize->currentData().toInt());
        setFlag(out, kBoldList, bold->isChecked());
        setFlag(out, kShowWeekNumber, weekNumber->isChecked());
        setFlag(out, kPreciseCalculation, precise->isChecked());
    });
}

void OptionsDialog::addDefaultsPage() {
    const Settings& s = settings_;
    auto* page = new QWidget(this);
    auto* billable = flagBox(QStringLiteral("Billable"), s, kBillableDefault, page);
    billable->setObjectName(QStringLiteral("billable"));
    auto* currency = textBox(s.defaultCurrency, kCurrencyChars, page);
    currency->setObjectName(QStringLiteral("currency"));

    auto* interval = new QComboBox(page);
    interval->setObjectName(QStringLiteral("timeInterval"));
    for (std::uint16_t i = 0; !timeIntervalLabel(i).empty(); ++i) {
        interval->addItem(toQt(std::u16string(timeIntervalLabel(i))), i);
    }
    selectValue(interval, s.timeInterval, QString::number(s.timeInterval));

    auto* granular =
        flagBox(QStringLiteral("Enable Duration Granularity of"), s, kDurationGranularity, page);
    granular->setObjectName(QStringLiteral("granularity"));
    auto* minTime = new QComboBox(page);
    minTime->setObjectName(QStringLiteral("minTime"));
    for (std::uint16_t minutes : kMinTimeChoices)
        minTime->addItem(QString::number(minutes), minutes);
    selectValue(minTime, s.minTime, QString::number(s.minTime));
    minTime->setEnabled(granular->isChecked());
    connect(granular, &QCheckBox::toggled, minTime, &QWidget::setEnabled);
    auto* granularRow = new QHBoxLayout;
    granularRow->addWidget(granular);
    granularRow->addWidget(minTime);
    granularRow->addWidget(new QLabel(QStringLiteral("minutes"), page));
    granularRow->addStretch();

    auto* custom1 = textBox(s.custom1Caption, kCaptionChars, page);
    custom1->setObjectName(QStringLiteral("custom1"));
    auto* custom2 = textBox(s.custom2Caption, kCaptionChars, page);
    custom2->setObjectName(QStringLiteral("custom2"));
    auto* custom3 = textBox(s.custom3Caption, kCaptionChars, page);
    custom3->setObjectName(QStringLiteral("custom3"));

    auto* form = new QFormLayout(page);
    form->addRow(billable);
    form->addRow(QStringLiteral("Currency:"), currency);
    form->addRow(QStringLiteral("Duration List Step:"), interval);
    form->addRow(granularRow);
    form->addRow(QStringLiteral("Custom Field 1:"), custom1);
    form->addRow(QStringLiteral("Custom Field 2:"), custom2);
    form->addRow(QStringLiteral("Custom Field 3:"), custom3);

    addPage(page, QStringLiteral("Defaults"), [=](Settings& out) {
        setFlag(out, kBillableDefault, billable->isChecked());
        out.defaultCurrency = fromQt(currency->text());
        out.timeInterval = static_cast<std::uint16_t>(interval->currentData().toInt());
        setFlag(out, kDurationGranularity, granular->isChecked());
        out.minTime = static_cast<std::uint16_t>(minTime->currentData().toInt());
        out.custom1Caption = fromQt(custom1->text());
        out.custom2Caption = fromQt(custom2->text());
        out.custom3Caption = fromQt(custom3->text());
    });
}

}  // namespace qb
