#include "export/export_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/text.h"

namespace qb {
namespace {

// Large texts (a whole XML document) are converted piece by piece so that the
// file's bytes never sit in memory twice over.
constexpr std::size_t kConvertChunk = 1 << 16;

bool isHighSurrogate(char16_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
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
    : fileName_(std::move(fileName)),
      codePage_(std::move(codePage)),
      asciiAsIs_(keepsAscii(codePage_)) {}

ExportFile::~ExportFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool ExportFile::create() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = ::open(fileName_.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return fd_ >= 0;
}

bool ExportFile::put(const char* bytes, std::size_t count) {
    while (count > 0) {
        ssize_t n = ::write(fd_, bytes, count);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        lastBytes_ += static_cast<std::size_t>(n);
        bytes += n;
        count -= static_cast<std::size_t>(n);
    }
    return true;
}

bool ExportFile::writeRaw(const void* bytes, std::size_t count) {
    lastBytes_ = 0;
    lastOk_ = fd_ >= 0 && put(static_cast<const char*>(bytes), count);
    return lastOk_;
}

bool ExportFile::writeWide(std::u16string_view text) {
    lastBytes_ = 0;
    lastOk_ = false;
    if (fd_ < 0) return false;
    std::string bytes;
    while (!text.empty()) {
        const std::size_t take = std::min(text.size(), kConvertChunk);
        bytes.clear();
        for (char16_t c : text.substr(0, take)) {
            bytes.push_back(static_cast<char>(c & 0xFF));
            bytes.push_back(static_cast<char>(c >> 8));
        }
        text.remove_prefix(take);
        if (!put(bytes.data(), bytes.size())) return false;
    }
    lastOk_ = true;
    return true;
}

bool ExportFile::writeNarrow(std::string_view bytes) {
    return writeRaw(bytes.data(), bytes.size());
}

std::string ExportFile::toCodePage(std::u16string_view text) const {
    if (!asciiAsIs_) return toAnsi(text, codePage_);
    // Exports are mostly ASCII, so only the runs of other characters go
    // through the converter; it would cost more than the rest of the export.
    std::string bytes;
    bytes.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t j = i;
        while (j < text.size() && text[j] < 0x80) ++j;
        bytes.append(text.begin() + static_cast<std::ptrdiff_t>(i),
                     text.begin() + static_cast<std::ptrdiff_t>(j));
        i = j;
        while (j < text.size() && text[j] >= 0x80) ++j;
        if (j > i) bytes += toAnsi(text.substr(i, j - i), codePage_);
        i = j;
    }
    return bytes;
}

std::string ExportFile::convertedBytes(std::u16string_view text) const {
    std::string bytes = toCodePage(text);
    bytes.resize(text.size(), '\0');
    return bytes;
}

bool ExportFile::writeConverted(std::u16string_view text) {
    lastBytes_ = 0;
    lastOk_ = false;
    if (fd_ < 0) return false;
    const std::size_t count = text.size();
    std::size_t written = 0;
    while (!text.empty() && written < count) {
        std::size_t take = std::min(text.size(), kConvertChunk);
        if (take < text.size() && isHighSurrogate(text[take - 1])) --take;
        std::string bytes = toCodePage(text.substr(0, take));
        text.remove_prefix(take);
        std::size_t n = std::min(bytes.size(), count - written);
        if (!put(bytes.data(), n)) return false;
        written += n;
    }
    if (written < count) {
        std::string padding(count - written, '\0');
        if (!put(padding.data(), padding.size())) return false;
    }
    lastOk_ = true;
    return true;
}

}  // namespace qb
