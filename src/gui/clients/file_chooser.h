#pragma once

// Every file the user picks in a window comes through here, so that a test
// can answer the choice without a dialog on the screen.

#include <QString>
#include <QStringList>
#include <functional>
#include <string>

class QWidget;

namespace qb {

struct FileRequest {
    bool save = false;
    QString title;
    QStringList filters;  // "List File (*.txt)", in the order shown
    QString defaultSuffix;
    // The name a save dialog suggests; the dialog opens in the folder of
    // the last file saved.
    QString suggestedName = {};
};

struct FileChoice {
    QString path;
    int filter = 0;  // index into the request's filters
};

// Asks for a file to open (it must exist) or to save; false when cancelled.
bool chooseFile(QWidget* parent, const FileRequest& request, FileChoice* choice);

// Tests answer here instead of a dialog; null restores the dialog.
using FileChooser = std::function<bool(const FileRequest&, FileChoice*)>;
void setFileChooser(FileChooser chooser);

// A path as the core's file functions take it.
std::string localPath(const QString& path);

}  // namespace qb
