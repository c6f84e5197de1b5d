#include "gui/mnemonics.h"

#include <QAction>
#include <QMenu>
#include <QSet>

namespace qb {
namespace {

// The letter after a single '&', or a null character.
QChar accessKey(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != QLatin1Char('&')) continue;
        if (text[i + 1] != QLatin1Char('&')) return text[i + 1].toLower();
        ++i;
    }
    return QChar();
}

}  // namespace

void giveMnemonics(QMenu* menu) {
    QSet<QChar> used;
    QList<QAction*> bare;
    for (QAction* a : menu->actions()) {
        if (a->isSeparator() || a->text().isEmpty()) continue;
        QChar key = accessKey(a->text());
        if (key.isNull()) {
            bare << a;
        } else {
            used.insert(key);
        }
    }
    for (QAction* a : bare) {
        QString text = a->text();
        qsizetype at = -1;
        // First letters of words, then any letter or digit.
        for (int pass = 0; pass < 2 && at < 0; ++pass) {
            for (qsizetype i = 0; i < text.size(); ++i) {
                QChar c = text[i];
                bool wordStart = i == 0 || !text[i - 1].isLetterOrNumber();
                if (!c.isLetterOrNumber() || (pass == 0 && !wordStart)) continue;
                if (used.contains(c.toLower())) continue;
                at = i;
                break;
            }
        }
        if (at < 0) continue;
        used.insert(text[at].toLower());
        // Keep a literal ampersand literal.
        text.replace(QLatin1Char('&'), QStringLiteral("&&"));
        qsizetype shift = 0;
        for (qsizetype i = 0; i < at; ++i) {
            if (a->text()[i] == QLatin1Char('&')) ++shift;
        }
        text.insert(at + shift, QLatin1Char('&'));
        a->setText(text);
    }
}

}  // namespace qb
