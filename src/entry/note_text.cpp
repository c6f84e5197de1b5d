#include "entry/note_text.h"

#include "store/time_entry.h"

namespace qb {

std::u16string noteText(const TimeEntry& entry) {
    return noteText(entry.notes);
}

std::u16string noteText(const std::vector<std::uint8_t>& bytes) {
    std::u16string text;
    appendNoteText(bytes, text);
    return text;
}

void appendNoteText(const std::vector<std::uint8_t>& bytes, std::u16string& out) {
    const std::size_t from = out.size();
    out.resize(from + bytes.size() / 2);
    char16_t* at = out.data() + from;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto c = static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
        if (c == 0) break;
        *at++ = c;
    }
    out.resize(static_cast<std::size_t>(at - out.data()));
}

std::vector<std::uint8_t> noteBytes(const std::u16string& text) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() * 2);
    for (char16_t c : text) {
        bytes.push_back(static_cast<std::uint8_t>(c & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    return bytes;
}

}  // namespace qb
