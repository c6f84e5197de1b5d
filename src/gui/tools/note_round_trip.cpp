#include "gui/tools/note_round_trip.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>

#include "entry/note_export.h"
#include "gui/clients/file_chooser.h"
#include "gui/message_box.h"
#include "gui/tools/tool_support.h"

namespace qb {
namespace {

DocumentOpener& opener() {
    static DocumentOpener o;
    return o;
}

}  // namespace

std::optional<std::u16string> editNoteOutside(QWidget* parent, const std::u16string& note) {
    const std::string path = saveNoteForEditing(note, localPath(QDir::tempPath()));
    if (path.empty()) return std::nullopt;
    const QUrl url = QUrl::fromLocalFile(QFile::decodeName(path.c_str()));
    if (opener()) {
        opener()(url);
    } else {
        QDesktopServices::openUrl(url);
    }
    std::optional<std::u16string> edited;
    const MessageRequest prompt{qtText(kEditInWordPrompt), MessageIcon::kInformation,
                                QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok};
    std::u16string text;
    if (showMessage(parent, prompt) == QMessageBox::Ok && loadEditedNote(path, &text)) {
        edited = std::move(text);
    }
    removeEditedNote(path);
    return edited;
}

void setDocumentOpener(DocumentOpener o) {
    opener() = std::move(o);
}

}  // namespace qb
