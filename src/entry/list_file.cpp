#include "entry/list_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/text.h"

namespace qb {
namespace {

void splitInto(std::u16string_view text, std::vector<std::u16string>* out) {
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] != u'\r' && text[i] != u'\n') continue;
        std::u16string_view piece = text.substr(start, i - start);
        if (piece.size() > kListItemLimit) piece = piece.substr(0, kListItemKeep);
        if (!piece.empty()) out->emplace_back(piece);
        start = i + 1;
    }
}

// The file closes with its lock when the object goes.
class OpenFile {
  public:
    explicit OpenFile(int fd) : fd_(fd) {}
    ~OpenFile() {
        if (fd_ >= 0) ::close(fd_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    int fd() const { return fd_; }

  private:
    int fd_;
};

}  // namespace

bool isUtf8(std::string_view bytes) {
    std::size_t i = 0;
    while (i < bytes.size()) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        if (b < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        // The second byte's range rules out overlong forms, surrogates and
        // values past U+10FFFF.
        unsigned char low = 0x80;
        unsigned char high = 0xBF;
        if (b >= 0xC2 && b <= 0xDF) {
            length = 2;
        } else if (b >= 0xE0 && b <= 0xEF) {
            length = 3;
            if (b == 0xE0) low = 0xA0;
            if (b == 0xED) high = 0x9F;
        } else if (b >= 0xF0 && b <= 0xF4) {
            length = 4;
            if (b == 0xF0) low = 0x90;
            if (b == 0xF4) high = 0x8F;
        } else {
            return false;
        }
        if (i + length > bytes.size()) return false;
        for (std::size_t k = 1; k < length; ++k) {
            const auto c = static_cast<unsigned char>(bytes[i + k]);
            if (c < (k == 1 ? low : 0x80) || c > (k == 1 ? high : 0xBF)) return false;
        }
        i += length;
    }
    return true;
}

std::u16string textFileText(std::string_view bytes, const std::string& codePage) {
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF") return utf8ToUtf16(bytes.substr(3));
    const bool ascii = std::all_of(bytes.begin(), bytes.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (!ascii && isUtf8(bytes)) return utf8ToUtf16(bytes);
    return fromAnsi(bytes, codePage);
}

bool listItemsFromBytes(std::string_view bytes, const std::string& codePage,
                        std::vector<std::u16string>* out) {
    std::vector<std::u16string> items;
    if (bytes.size() >= 2 && static_cast<unsigned char>(bytes[0]) == 0xFF &&
        static_cast<unsigned char>(bytes[1]) == 0xFE) {
        std::u16string text;
        for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
            char16_t unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                                  static_cast<unsigned char>(bytes[i + 1]) << 8);
            if (unit == 0) break;
            text.push_back(unit);
        }
        // The mapped view ends in zeros, so a mark with nothing after it
        // also reads as a first character of NUL.
        if (text.empty()) return false;
        splitInto(text, &items);
    } else {
        if (bytes.find('\0') != std::string_view::npos) return false;
        splitInto(textFileText(bytes, codePage), &items);
    }
    *out = std::move(items);
    return true;
}

bool readListFile(const std::string& path, const std::string& codePage,
                  std::vector<std::u16string>* out) {
    OpenFile file(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY));
    if (file.fd() < 0) return false;
    struct stat st {};
    if (::fstat(file.fd(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    // Root may write anywhere; the read-only attribute still refuses.
    if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return false;
    if (static_cast<std::uintmax_t>(st.st_size) > kListFileLimit) return false;
    if (::flock(file.fd(), LOCK_EX | LOCK_NB) != 0) return false;
    std::string bytes(static_cast<std::size_t>(st.st_size), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        ssize_t n = ::read(file.fd(), bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return listItemsFromBytes(bytes, codePage, out);
}

std::string listFileBytes(const std::vector<std::u16string>& items, bool unicode,
                          const std::string& codePage) {
    std::u16string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += u"\r\n";
        text += items[i];
    }
    if (!unicode) return toAnsi(text, codePage);
    std::string bytes("\xFF\xFE", 2);
    bytes.reserve(2 + text.size() * 2);
    for (char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

}  // namespace qb
