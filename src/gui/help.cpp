#include "gui/help.h"

#include <QDesktopServices>
#include <QFileInfo>

#include "gui/message_box.h"

namespace qb {
namespace {

HelpOpener& opener() {
    static HelpOpener o;
    return o;
}

constexpr const char* kHelpDirs[] = {QB_HELP_DIR, QB_SOURCE_HELP_DIR};

}  // namespace

QUrl helpUrl(const char* topic) {
    for (const char* dir : kHelpDirs) {
        QFileInfo file(QString::fromUtf8(dir) + QStringLiteral("/quillarbor.html"));
        if (!file.isFile()) continue;
        QUrl url = QUrl::fromLocalFile(file.absoluteFilePath());
        url.setFragment(QString::fromUtf8(topic));
        return url;
    }
    return {};
}

void openHelp(QWidget* parent, const char* topic) {
    const QUrl url = helpUrl(topic);
    if (url.isEmpty()) {
        fail(parent, QStringLiteral("The help file quillarbor.html is not installed."));
        return;
    }
    const bool opened = opener() ? opener()(url) : QDesktopServices::openUrl(url);
    if (!opened) fail(parent, QStringLiteral("The help cannot be opened."));
}

void setHelpOpener(HelpOpener o) {
    opener() = std::move(o);
}

}  // namespace qb
