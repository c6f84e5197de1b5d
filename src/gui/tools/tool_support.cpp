#include "gui/tools/tool_support.h"

#include <QApplication>
#include <QCursor>

namespace qb {

QStringList nameFilters(std::u16string_view deviceFilter) {
    const QStringList pieces = qtText(deviceFilter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < pieces.size(); i += 2) {
        if (!pieces[i].isEmpty()) filters << pieces[i];
    }
    return filters;
}

WaitCursor::WaitCursor() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor() {
    QApplication::restoreOverrideCursor();
}

}  // namespace qb
