#include "export/export_file.h"

#include <algorithm>

#include "platform/text.h"

namespace qb {
namespace {

// Large texts are converted piece by piece so that the file's bytes never
// sit in memory twice over.
constexpr std::size_t kConvertChunk = 1 << 16;

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char16_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
bool isSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

bool keepsAscii(const std::string& codePage) {
    std::u16string ascii;
    std::string expected;
    for (char c = 1; c < 0x7F; ++c) {
        ascii += static_cast<char16_t>(c);
        expected += c;
    }
    return toAnsi(ascii, codePage) == expected;
}

}  // namespace

ExportFile::ExportFile(std::string fileName, std::string codePage)
    : out_(std::move(fileName)),
      codePage_(std::move(codePage)),
      asciiAsIs_(keepsAscii(codePage_)) {}

bool ExportFile::create() {
    return out_.open().isOk();
}

bool ExportFile::writeRaw(const void* bytes, std::size_t count) {
    return out_.write(bytes, count).isOk();
}

bool ExportFile::writeWide(std::u16string_view text) {
    while (!text.empty() && out_.status().isOk()) {
        const std::size_t take = std::min(text.size(), kConvertChunk);
        scratch_.clear();
        for (char16_t c : text.substr(0, take)) {
            scratch_.push_back(static_cast<char>(c & 0xFF));
            scratch_.push_back(static_cast<char>(c >> 8));
        }
        text.remove_prefix(take);
        out_.write(scratch_);
    }
    return ok();
}

void ExportFile::appendConverted(std::string& out, std::u16string_view text) const {
    std::size_t i = 0;
    while (i < text.size()) {
        // Exports are mostly ASCII, so only the runs of other characters go
        // through the converter; it would cost more than the rest of the
        // export.
        std::size_t j = i;
        if (asciiAsIs_) {
            while (j < text.size() && text[j] < 0x80) ++j;
            out.append(text.begin() + static_cast<std::ptrdiff_t>(i),
                       text.begin() + static_cast<std::ptrdiff_t>(j));
            i = j;
        }
        while (j < text.size() && (!asciiAsIs_ || text[j] >= 0x80) && !isSurrogate(text[j])) ++j;
        if (j > i) out += toAnsi(text.substr(i, j - i), codePage_);
        i = j;
        if (i < text.size() && isSurrogate(text[i])) {
            // A pair the code page maps (UTF-8) goes as its bytes; otherwise
            // each half is a '?' of its own.
            const bool pair =
                isHighSurrogate(text[i]) && i + 1 < text.size() && isLowSurrogate(text[i + 1]);
            const std::string bytes = pair ? toAnsi(text.substr(i, 2), codePage_) : std::string();
            out += bytes.empty() || bytes == "?" ? std::string(pair ? 2 : 1, '?') : bytes;
            i += pair ? 2 : 1;
        }
    }
}

bool ExportFile::writeConverted(std::u16string_view text) {
    while (!text.empty() && ok()) {
        std::size_t take = std::min(text.size(), kConvertChunk);
        if (take < text.size() && isHighSurrogate(text[take - 1])) --take;
        scratch_.clear();
        appendConverted(scratch_, text.substr(0, take));
        text.remove_prefix(take);
        out_.write(scratch_);
    }
    return ok();
}

bool ExportFile::finish() {
    return out_.commit().isOk();
}

}  // namespace qb
