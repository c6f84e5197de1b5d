#pragma once

// Export Note... and the note's round trip through the desktop's editor
// ("Edit In Word").

#include <string>
#include <string_view>

namespace qb {

inline constexpr std::u16string_view kExportNoteFailedMessage =
    u"Export note failed. Please make sure there is enough storage space and try again.";

enum class NoteFormat {
    kText,     // Text Files: the ANSI code page
    kUnicode,  // Unicode Text Files: UTF-16LE behind an FF FE mark
    kRtf,      // Rich Text Files
};

// The bytes of the note in the format: line breaks as stored. RTF is plain
// RTF 1 with one font; backslash and braces escaped, each line break a
// \par, tabs \tab, every character beyond ASCII \uN? (N the signed 16-bit
// code unit, '?' for readers without Unicode).
std::string noteFileBytes(std::u16string_view note, NoteFormat format, const std::string& codePage);

// Writes the note; false (then show kExportNoteFailedMessage) when the file
// cannot be written whole; `error` then names the file and the reason.
bool exportNote(const std::string& path, std::u16string_view note, NoteFormat format,
                const std::string& codePage, std::string* error = nullptr);

// Edit In Word: the note goes into a new, uniquely named UTF-8 ".txt" file
// in `folder`, which the desktop's default text editor opens. Answers its
// path, or empty when it could not be written (the editing stops there).
std::string saveNoteForEditing(std::u16string_view note, const std::string& folder);

// OK after editing: the file's text, line ends made CR LF as notes keep
// them (a UTF-8 mark is dropped). False when it cannot be read. The caller
// deletes the file in both cases (removeEditedNote).
bool loadEditedNote(const std::string& path, std::u16string* note);
bool removeEditedNote(const std::string& path);

}  // namespace qb
