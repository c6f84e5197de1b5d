#include "gui/dialogs/dialog_support.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include "entry/rate_rules.h"
#include "gui/app_state.h"
#include "platform/calendar.h"
#include "views/filter_choices.h"

namespace qb {

QDate toQDate(const SYSTEMTIME& date) {
    return QDate(date.wYear, date.wMonth, date.wDay);
}

SYSTEMTIME fromQDate(const QDate& date) {
    return makeDate(date.year(), date.month(), date.day());
}

QString qtDatePicture(const std::u16string& picture) {
    QString out;
    bool quoted = false;
    for (std::size_t i = 0; i < picture.size(); ++i) {
        const char16_t c = picture[i];
        if (c == u'\'') quoted = !quoted;
        if (quoted || c != u'y') {
            out += QChar(c);
            continue;
        }
        std::size_t run = 1;
        while (i + run < picture.size() && picture[i + run] == u'y') ++run;
        out += run <= 2 ? QStringLiteral("yy") : QStringLiteral("yyyy");
        i += run - 1;
    }
    return out;
}

QComboBox* makeTextBox(const char* name, int maxLength, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    // Without a completer the box also matches items case-sensitively when
    // editing ends, so a text that equals an item keeps its own spelling.
    box->setCompleter(nullptr);
    if (maxLength > 0) box->lineEdit()->setMaxLength(maxLength);
    return box;
}

void fillChoices(QComboBox* box, const std::vector<std::u16string>& items) {
    box->clear();
    box->addItem(toQt(kAllItem));
    for (const std::u16string& item : items) box->addItem(toQt(item));
}

void fillRateTypeChoices(QComboBox* box) {
    box->clear();
    box->addItem(toQt(kAllItem));
    for (std::uint16_t type = 0; type < kRateTypeCount; ++type) {
        box->addItem(toQt(std::u16string(rateTypeName(type))));
    }
}

void selectChoice(QComboBox* box, const std::u16string& text) {
    const int found = text.empty() ? -1 : box->findText(toQt(text), Qt::MatchFixedString);
    box->setCurrentIndex(found > 0 ? found : 0);
}

std::u16string chosenText(const QComboBox* box, int bufferChars) {
    if (box->currentIndex() <= 0) return {};
    return fromQt(box->currentText().left(bufferChars - 1));
}

QLabel* makeHeading(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.15);
    label->setFont(font);
    return label;
}

void addFlagRow(QFormLayout* form, QCheckBox* unpaid, QCheckBox* paid, QCheckBox* nonBillable) {
    auto* checks = new QHBoxLayout;
    checks->addWidget(unpaid);
    checks->addWidget(paid);
    checks->addWidget(nonBillable);
    checks->addStretch();
    form->addRow(checks);
}

}  // namespace qb
