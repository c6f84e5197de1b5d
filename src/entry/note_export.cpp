#include "entry/note_export.h"

#include <stdlib.h>
#include <unistd.h>

#include <cstdio>

#include "entry/file_bytes.h"
#include "platform/string_printf.h"
#include "platform/text.h"

namespace qb {
namespace {

// A note the editor could have typed is small; this only guards the read.
constexpr std::uintmax_t kEditedNoteLimit = 16u << 20;

std::string rtfBytes(std::u16string_view note) {
    std::string out = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Tahoma;}}\\uc1\\f0\\fs20 ";
    for (std::size_t i = 0; i < note.size(); ++i) {
        char16_t c = note[i];
        if (c == u'\r') {
            if (i + 1 < note.size() && note[i + 1] == u'\n') ++i;
            out += "\\par\r\n";
        } else if (c == u'\n') {
            out += "\\par\r\n";
        } else if (c == u'\t') {
            out += "\\tab ";
        } else if (c == u'\\' || c == u'{' || c == u'}') {
            out.push_back('\\');
            out.push_back(static_cast<char>(c));
        } else if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else {
            out += stringPrintf("\\u%d?", static_cast<int>(static_cast<std::int16_t>(c)));
        }
    }
    out += "}";
    return out;
}

}  // namespace

std::string noteFileBytes(std::u16string_view note, NoteFormat format,
                          const std::string& codePage) {
    switch (format) {
        case NoteFormat::kText:
            return toAnsi(note, codePage);
        case NoteFormat::kUnicode: {
            std::string bytes("\xFF\xFE", 2);
            for (char16_t unit : note) {
                bytes.push_back(static_cast<char>(unit & 0xFF));
                bytes.push_back(static_cast<char>(unit >> 8));
            }
            return bytes;
        }
        case NoteFormat::kRtf:
            return rtfBytes(note);
    }
    return {};
}

bool exportNote(const std::string& path, std::u16string_view note, NoteFormat format,
                const std::string& codePage, std::string* error) {
    return writeWholeFile(path, noteFileBytes(note, format, codePage), error);
}

std::string saveNoteForEditing(std::u16string_view note, const std::string& folder) {
    std::string path = folder + "/quillarbor-note-XXXXXX.txt";
    int fd = ::mkstemps(path.data(), 4);
    if (fd < 0) return {};
    ::close(fd);
    // The editor gets the platform's line ends.
    std::u16string lines;
    for (std::size_t i = 0; i < note.size(); ++i) {
        if (note[i] == u'\r' && i + 1 < note.size() && note[i + 1] == u'\n') continue;
        lines.push_back(note[i] == u'\r' ? u'\n' : note[i]);
    }
    const std::string text = utf16ToUtf8(lines);
    if (!writeWholeFile(path, text)) {
        ::unlink(path.c_str());
        return {};
    }
    return path;
}

bool loadEditedNote(const std::string& path, std::u16string* note) {
    std::string bytes;
    if (!readWholeFile(path, kEditedNoteLimit, &bytes)) return false;
    if (bytes.rfind("\xEF\xBB\xBF", 0) == 0) bytes.erase(0, 3);
    std::u16string text = utf8ToUtf16(bytes);
    std::u16string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') continue;
        if (text[i] == u'\n' || text[i] == u'\r') {
            out += u"\r\n";
        } else {
            out.push_back(text[i]);
        }
    }
    *note = std::move(out);
    return true;
}

bool removeEditedNote(const std::string& path) {
    return ::unlink(path.c_str()) == 0;
}

}  // namespace qb
