#include "export/export_file.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace qb {
namespace {

// Large texts are converted piece by piece so that the file's bytes never
// sit in memory twice over.
constexpr std::size_t kConvertChunk = 1 << 16;

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}

}  // namespace

ExportFile::ExportFile(std::string fileName, std::string codePage)
    : out_(std::move(fileName)), text_(std::move(codePage)) {}

bool ExportFile::create() {
    return out_.open().isOk();
}

bool ExportFile::writeRaw(const void* bytes, std::size_t count) {
    return out_.write(bytes, count).isOk();
}

bool ExportFile::writeWide(std::u16string_view text) {
    // UTF-16LE is how this system's hosts hold the text already.
    static_assert(std::endian::native == std::endian::little);
    return writeRaw(text.data(), text.size() * sizeof(char16_t));
}

bool ExportFile::writeConverted(std::u16string_view text) {
    while (!text.empty() && ok()) {
        std::size_t take = std::min(text.size(), kConvertChunk);
        if (take < text.size() && isHighSurrogate(text[take - 1])) --take;
        scratch_.clear();
        text_.append(scratch_, text.substr(0, take));
        text.remove_prefix(take);
        out_.write(scratch_);
    }
    return ok();
}

bool ExportFile::finish() {
    return out_.commit().isOk();
}

}  // namespace qb
