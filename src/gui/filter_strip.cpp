#include "gui/filter_strip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace qb {

FilterStrip::FilterStrip(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("filterStrip"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    // The highlight tinted into the window colour stays readable on light
    // and dark palettes alike.
    QPalette pal = palette();
    QColor tint = pal.color(QPalette::Highlight);
    QColor base = pal.color(QPalette::Window);
    tint.setAlphaF(1.0);
    QColor mixed((tint.red() + base.red() * 4) / 5, (tint.green() + base.green() * 4) / 5,
                 (tint.blue() + base.blue() * 4) / 5);
    pal.setColor(QPalette::Window, mixed);
    setPalette(pal);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 3, 6, 3);
    auto* icon = new QLabel(this);
    int size = fontMetrics().height();
    icon->setPixmap(style()->standardIcon(QStyle::SP_FileDialogContentsView).pixmap(size, size));
    text_ = new QLabel(this);
    text_->setObjectName(QStringLiteral("filterText"));
    auto* edit = new QPushButton(tr("Change..."), this);
    edit->setFlat(true);
    showAll_ = new QPushButton(QStringLiteral("Show All"), this);
    showAll_->setObjectName(QStringLiteral("filterShowAll"));
    row->addWidget(icon);
    row->addWidget(new QLabel(tr("Filter:"), this));
    row->addWidget(text_, 1);
    row->addWidget(edit);
    row->addWidget(showAll_);
    connect(showAll_, &QPushButton::clicked, this, &FilterStrip::showAllRequested);
    connect(edit, &QPushButton::clicked, this, &FilterStrip::editRequested);
    setVisible(false);
}

void FilterStrip::setDescription(const QString& text) {
    text_->setText(text);
    setVisible(!text.isEmpty());
}

QString FilterStrip::description() const {
    return isVisibleTo(parentWidget()) ? text_->text() : QString();
}

}  // namespace qb
