#include "gui/entry/set_times_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QTimeEdit>
#include <QVBoxLayout>

#include "gui/app_state.h"
#include "platform/date_format.h"

namespace qb {
namespace {

QTime toQTime(const SYSTEMTIME& t) {
    return QTime(t.wHour, t.wMinute);
}

SYSTEMTIME withTime(SYSTEMTIME day, const QTime& time) {
    day.wHour = static_cast<std::uint16_t>(time.hour());
    day.wMinute = static_cast<std::uint16_t>(time.minute());
    day.wSecond = 0;
    day.wMilliseconds = 0;
    return day;
}

}  // namespace

QString timePickerFormat(const LocaleInfo& locale) {
    // The device's picture language and Qt's agree on h, hh, H, HH, m, mm and
    // quoted text; the AM/PM marker is spelt differently, and the seconds go
    // together with the separator before them.
    const QString picture = toQt(locale.timeFormat);
    QString out;
    bool quoted = false;
    for (qsizetype i = 0; i < picture.size(); ++i) {
        const QChar c = picture[i];
        if (c == QLatin1Char('\'')) quoted = !quoted;
        if (quoted || c == QLatin1Char('\'')) {
            out += c;
            continue;
        }
        if (c == QLatin1Char('s')) {
            while (!out.isEmpty() && !out.back().isLetter() && out.back() != QLatin1Char(' ') &&
                   out.back() != QLatin1Char('\'')) {
                out.chop(1);
            }
            while (i + 1 < picture.size() && picture[i + 1] == QLatin1Char('s')) ++i;
        } else if (c == QLatin1Char('t')) {
            while (i + 1 < picture.size() && picture[i + 1] == QLatin1Char('t')) ++i;
            out += QStringLiteral("AP");
        } else {
            out += c;
        }
    }
    return out.trimmed().isEmpty() ? QStringLiteral("h:mm AP") : out.trimmed();
}

SetTimesDialog::SetTimesDialog(const SYSTEMTIME& start, int minutes, const LocaleInfo& locale,
                               QWidget* parent)
    : QDialog(parent),
      day_(start),
      start_(new QTimeEdit(toQTime(start), this)),
      end_(new QTimeEdit(toQTime(start).addSecs(minutes * 60), this)) {
    setWindowTitle(QStringLiteral("Quillarbor"));
    const QString format = timePickerFormat(locale);
    start_->setObjectName(QStringLiteral("startTime"));
    end_->setObjectName(QStringLiteral("endTime"));
    for (QTimeEdit* picker : {start_, end_}) {
        picker->setDisplayFormat(format);
        picker->setWrapping(true);
    }
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Start Time:"), start_);
    form->addRow(QStringLiteral("End Time:"), end_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 36);
}

SYSTEMTIME SetTimesDialog::start() const {
    return withTime(day_, start_->time());
}
SYSTEMTIME SetTimesDialog::end() const {
    return withTime(day_, end_->time());
}

}  // namespace qb
