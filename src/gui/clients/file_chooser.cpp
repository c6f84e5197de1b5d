#include "gui/clients/file_chooser.h"

#include <QFile>
#include <QFileDialog>
#include <algorithm>
#include <utility>

#include "gui/file_notice.h"

namespace qb {
namespace {

FileChooser& hook() {
    static FileChooser chooser;
    return chooser;
}

}  // namespace

bool chooseFile(QWidget* parent, const FileRequest& request, FileChoice* choice) {
    if (hook()) return hook()(request, choice);
    QFileDialog dialog(parent, request.title);
    dialog.setAcceptMode(request.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilters(request.filters);
    dialog.setDefaultSuffix(request.defaultSuffix);
    if (request.save) {
        dialog.selectFile(suggestedSavePath(request.suggestedName));
    } else {
        dialog.setDirectory(suggestedSavePath(QString()));
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
    choice->path = dialog.selectedFiles().constFirst();
    rememberSaveFolder(choice->path);
    choice->filter =
        std::max(0, static_cast<int>(request.filters.indexOf(dialog.selectedNameFilter())));
    return true;
}

void setFileChooser(FileChooser chooser) {
    hook() = std::move(chooser);
}

std::string localPath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

}  // namespace qb
