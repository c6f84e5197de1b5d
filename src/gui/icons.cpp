#include "gui/icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <functional>

#include "store/timer_table.h"

namespace qb {
namespace {

using Draw = std::function<void(QPainter&)>;

// Draws on a 16-unit canvas at several sizes.
QIcon drawn(const Draw& draw) {
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(size / 16.0, size / 16.0);
        draw(p);
        icon.addPixmap(pixmap);
    }
    return icon;
}

QIcon disc(const QColor& fill, const QColor& mark, const Draw& symbol) {
    return drawn([=](QPainter& p) {
        p.setPen(QPen(fill.darker(130), 1));
        p.setBrush(fill);
        p.drawEllipse(QRectF(1.5, 1.5, 13, 13));
        p.setPen(QPen(mark, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        symbol(p);
    });
}

QIcon letterTile(const QColor& fill, const QString& letter) {
    return drawn([=](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(fill);
        p.drawRoundedRect(QRectF(1, 1, 14, 14), 3, 3);
        p.setPen(Qt::white);
        QFont f = p.font();
        f.setPixelSize(11);
        f.setBold(true);
        p.setFont(f);
        p.drawText(QRectF(1, 1, 14, 14), Qt::AlignCenter, letter);
    });
}

}  // namespace

QIcon statusIcon(int status) {
    switch (status) {
        case 1:  // billable, unpaid: a coin
            return disc(QColor(0xF2, 0xB1, 0x34), Qt::white, [](QPainter& p) {
                p.drawLine(QPointF(8, 4.5), QPointF(8, 11.5));
                p.drawLine(QPointF(6, 6.5), QPointF(10, 6.5));
                p.drawLine(QPointF(6, 9.5), QPointF(10, 9.5));
            });
        case 2:  // paid: a tick
            return disc(QColor(0x3A, 0xA6, 0x5B), Qt::white, [](QPainter& p) {
                QPainterPath path(QPointF(4.8, 8.3));
                path.lineTo(7.2, 10.6);
                path.lineTo(11.3, 5.6);
                p.drawPath(path);
            });
        default:  // non-billable: a dash
            return disc(QColor(0x9A, 0xA3, 0xAD), Qt::white,
                        [](QPainter& p) { p.drawLine(QPointF(5, 8), QPointF(11, 8)); });
    }
}

QIcon treeIcon(int image) {
    switch (image) {
        case 0:
            return drawn([](QPainter& p) {  // a calendar page
                p.setPen(QPen(QColor(0x45, 0x6B, 0xA8), 1));
                p.setBrush(Qt::white);
                p.drawRoundedRect(QRectF(2, 3, 12, 11), 1.5, 1.5);
                p.setBrush(QColor(0x45, 0x6B, 0xA8));
                p.drawRect(QRectF(2, 3, 12, 3));
            });
        case 1:
            return letterTile(QColor(0x45, 0x6B, 0xA8), QStringLiteral("C"));
        case 2:
            return letterTile(QColor(0x7B, 0x5E, 0xA7), QStringLiteral("P"));
        case 3:
            return letterTile(QColor(0x2F, 0x8F, 0x9D), QStringLiteral("H"));
        case 4:
            return letterTile(QColor(0x5F, 0x6B, 0x78), QStringLiteral("T"));
        case 5:
            return letterTile(QColor(0x3A, 0xA6, 0x5B), QStringLiteral("$"));
        case 6:
            return statusIcon(1);
        case 7:
            return statusIcon(0);
        default:
            return statusIcon(2);
    }
}

QIcon todayIcon() {
    return drawn([](QPainter& p) {
        p.setPen(QPen(QColor(0x45, 0x6B, 0xA8), 1.6));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QRectF(3, 3, 10, 10));
        p.setBrush(QColor(0x45, 0x6B, 0xA8));
        p.drawEllipse(QRectF(6.5, 6.5, 3, 3));
    });
}

QIcon previousIcon() {
    return drawn([](QPainter& p) {
        p.setPen(QPen(QColor(0x3C, 0x46, 0x52), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(10, 3.5), QPointF(5.5, 8), QPointF(10, 12.5)}));
    });
}

QIcon nextIcon() {
    return drawn([](QPainter& p) {
        p.setPen(QPen(QColor(0x3C, 0x46, 0x52), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawPolyline(QPolygonF({QPointF(6, 3.5), QPointF(10.5, 8), QPointF(6, 12.5)}));
    });
}

namespace {

// The stopwatch on the 16-unit canvas: red while running, blue at rest.
void drawStopwatch(QPainter& p, bool running) {
    QColor colour = running ? QColor(0xD9, 0x4F, 0x3D) : QColor(0x45, 0x6B, 0xA8);
    p.setPen(QPen(colour, 1.5));
    p.setBrush(running ? colour.lighter(185) : QColor(Qt::white));
    p.drawEllipse(QRectF(2.5, 3.5, 11, 11));
    p.drawLine(QPointF(6.5, 1.5), QPointF(9.5, 1.5));
    p.drawLine(QPointF(8, 1.5), QPointF(8, 3.5));
    p.setPen(QPen(colour.darker(120), 1.5, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(8, 9), QPointF(8, 5.8));
    p.drawLine(QPointF(8, 9), QPointF(10.3, 10.4));
}

}  // namespace

QIcon timersIcon(bool running) {
    return drawn([running](QPainter& p) { drawStopwatch(p, running); });
}

QIcon timerStateIcon(TimerState state) {
    switch (state) {
        case TimerState::kIdle:
            return timersIcon(false);
        case TimerState::kPaused:
            // The running clock with two bars over it.
            return drawn([](QPainter& p) {
                drawStopwatch(p, true);
                p.setPen(Qt::NoPen);
                p.setBrush(QColor(0x3C, 0x46, 0x52));
                p.drawRoundedRect(QRectF(8.5, 8.5, 2.5, 7), 0.8, 0.8);
                p.drawRoundedRect(QRectF(12.5, 8.5, 2.5, 7), 0.8, 0.8);
            });
        case TimerState::kRecording:
        case TimerState::kComplete:
            break;
    }
    return timersIcon(true);
}

QIcon summaryIcon() {
    return drawn([](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x45, 0x6B, 0xA8));
        p.drawRect(QRectF(2, 9, 3, 5));
        p.setBrush(QColor(0x2F, 0x8F, 0x9D));
        p.drawRect(QRectF(6.5, 5, 3, 9));
        p.setBrush(QColor(0x3A, 0xA6, 0x5B));
        p.drawRect(QRectF(11, 2, 3, 12));
    });
}

QIcon rateIcon(int rateType) {
    static const QColor kColours[] = {QColor(0x45, 0x6B, 0xA8), QColor(0xD9, 0x7B, 0x29),
                                      QColor(0x7B, 0x5E, 0xA7), QColor(0x3A, 0xA6, 0x5B),
                                      QColor(0xC0, 0x39, 0x5A)};
    static const char* kLetters[] = {"N", "O", "W", "F", "D"};
    int t = rateType >= 0 && rateType < 5 ? rateType : 0;
    return letterTile(kColours[t], QString::fromLatin1(kLetters[t]));
}

QIcon contactIcon() {
    return drawn([](QPainter& p) {  // a person on a tile
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x2F, 0x8F, 0x9D));
        p.drawRoundedRect(QRectF(1, 1, 14, 14), 3, 3);
        p.setBrush(Qt::white);
        p.drawEllipse(QRectF(5.5, 3.5, 5, 5));
        p.drawChord(QRectF(3.5, 9, 9, 8), 0, 180 * 16);
    });
}

QIcon groupIcon() {
    return drawn([](QPainter& p) {  // a folder
        p.setPen(QPen(QColor(0xB8, 0x8A, 0x1E), 1));
        p.setBrush(QColor(0xF4, 0xC8, 0x5A));
        QPainterPath path(QPointF(1.5, 4));
        path.lineTo(6, 4);
        path.lineTo(7.5, 5.5);
        path.lineTo(14.5, 5.5);
        path.lineTo(14.5, 13);
        path.lineTo(1.5, 13);
        path.closeSubpath();
        p.drawPath(path);
    });
}

QIcon applicationIcon() {
    return drawn([](QPainter& p) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x2F, 0x5D, 0x8C));
        p.drawRoundedRect(QRectF(0.5, 0.5, 15, 15), 3.5, 3.5);
        p.setPen(QPen(Qt::white, 1.4));
        p.setBrush(Qt::NoBrush);
        p.drawEllipse(QRectF(3.2, 3.2, 9.6, 9.6));
        p.setPen(QPen(QColor(0xF4, 0xC8, 0x5A), 1.6, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(8, 8), QPointF(8, 4.8));
        p.drawLine(QPointF(8, 8), QPointF(10.6, 9.6));
    });
}

}  // namespace qb
