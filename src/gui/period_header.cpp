#include "gui/period_header.h"

#include <QCalendarWidget>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QToolButton>

#include "gui/icons.h"

namespace qb {
namespace {

QToolButton* bandButton(QWidget* parent, const QIcon& icon, const QString& tip) {
    auto* b = new QToolButton(parent);
    b->setIcon(icon);
    b->setToolTip(tip);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::NoFocus);
    return b;
}

}  // namespace

PeriodHeader::PeriodHeader(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    label_ = new QLabel(this);
    label_->setTextFormat(Qt::PlainText);
    QFont bold = label_->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    label_->setFont(bold);
    label_->setCursor(Qt::PointingHandCursor);
    label_->setToolTip(tr("Choose a date"));
    label_->installEventFilter(this);
    week_ = new QLabel(this);
    week_->setTextFormat(Qt::PlainText);
    week_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    today_ = bandButton(this, todayIcon(), QStringLiteral("Goto Today"));
    previous_ = bandButton(this, previousIcon(), QStringLiteral("Previous Period"));
    next_ = bandButton(this, nextIcon(), QStringLiteral("Next Period"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 4, 4, 5);
    row->setSpacing(2);
    row->addWidget(label_);
    row->addStretch(1);
    row->addWidget(week_);
    row->addSpacing(12);
    row->addWidget(today_);
    row->addWidget(previous_);
    row->addWidget(next_);

    calendar_ = new QCalendarWidget(this);
    calendar_->setWindowFlags(Qt::Popup);
    calendar_->setGridVisible(false);
    connect(calendar_, &QCalendarWidget::clicked, this, [this](QDate d) {
        calendar_->hide();
        SYSTEMTIME st{};
        st.wYear = static_cast<std::uint16_t>(d.year());
        st.wMonth = static_cast<std::uint16_t>(d.month());
        st.wDay = static_cast<std::uint16_t>(d.day());
        emit dateSelected(st);
    });
    connect(today_, &QToolButton::clicked, this, &PeriodHeader::todayRequested);
    connect(previous_, &QToolButton::clicked, this, &PeriodHeader::previousRequested);
    connect(next_, &QToolButton::clicked, this, &PeriodHeader::nextRequested);
}

void PeriodHeader::setLabel(const QString& label) {
    label_->setText(label);
}

void PeriodHeader::setWeekNumber(int week) {
    week_->setText(week > 0 ? QString::number(week) : QString());
    week_->setToolTip(week > 0 ? tr("Week number") : QString());
}

void PeriodHeader::setCalendarDate(const SYSTEMTIME& date, bool mondayFirst, bool weekNumbers) {
    calendar_->setSelectedDate(QDate(date.wYear, date.wMonth, date.wDay));
    calendar_->setFirstDayOfWeek(mondayFirst ? Qt::Monday : Qt::Sunday);
    calendar_->setVerticalHeaderFormat(weekNumbers ? QCalendarWidget::ISOWeekNumbers
                                                   : QCalendarWidget::NoVerticalHeader);
}

void PeriodHeader::showCalendar() {
    calendar_->adjustSize();
    calendar_->move(mapToGlobal(QPoint(label_->x(), height())));
    calendar_->show();
    calendar_->setFocus();
}

void PeriodHeader::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Left:
        case Qt::Key_Up:
            emit previousRequested();
            break;
        case Qt::Key_Right:
        case Qt::Key_Down:
            emit nextRequested();
            break;
        default:
            QWidget::keyPressEvent(event);
    }
}

void PeriodHeader::mousePressEvent(QMouseEvent* event) {
    calendar_->hide();
    setFocus();
    QWidget::mousePressEvent(event);
}

bool PeriodHeader::eventFilter(QObject* watched, QEvent* event) {
    if (watched == label_ && event->type() == QEvent::MouseButtonPress) {
        showCalendar();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void PeriodHeader::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setPen(palette().color(QPalette::Mid));
    p.drawLine(0, height() - 1, width(), height() - 1);
}

}  // namespace qb
