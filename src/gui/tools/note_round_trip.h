#pragma once

// "Edit In Word": the note goes out to the desktop's own editor in a
// temporary file and comes back when the user says the editing is done.

#include <QUrl>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

class QWidget;

namespace qb {

inline constexpr std::u16string_view kEditInWordPrompt =
    u"When finished editing and saving the note in your editor, click OK to update Quillarbor.";

// The note as edited; nothing when the file could not be written or read,
// or the user cancelled. The temporary file is gone afterwards either way.
std::optional<std::u16string> editNoteOutside(QWidget* parent, const std::u16string& note);

// Tests receive the file's address here instead of an editor; null restores
// the desktop's opener.
using DocumentOpener = std::function<bool(const QUrl&)>;
void setDocumentOpener(DocumentOpener opener);

}  // namespace qb
