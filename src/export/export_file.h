#pragma once

// The output file of exports and reports, with the three kinds of write they
// need. Every write answers whether the platform wrote all of it, and keeps
// its byte count and result for the caller to inspect.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qb {

class ExportFile {
  public:
    // `codePage` is the iconv name of the ANSI code page (see ansiCodePage).
    explicit ExportFile(std::string fileName, std::string codePage = "CP1252");
    ~ExportFile();
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;

    // Creates the file for reading and writing, replacing one that exists.
    bool create();
    bool isOpen() const { return fd_ >= 0; }

    bool writeRaw(const void* bytes, std::size_t count);
    // UTF-16LE, two bytes per code unit.
    bool writeWide(std::u16string_view text);
    bool writeNarrow(std::string_view bytes);
    // The text in the ANSI code page, written as exactly one byte per UTF-16
    // code unit: a character that takes two bytes pushes the end of the text
    // out, one that takes fewer (a surrogate pair becomes one '?') leaves NUL
    // bytes at the end. Files of this system have always been written so.
    bool writeConverted(std::u16string_view text);

    // The bytes writeConverted writes for `text`, without writing them, so
    // that many short texts can go to the file in one write.
    std::string convertedBytes(std::u16string_view text) const;

    std::size_t lastBytesWritten() const { return lastBytes_; }
    bool lastWriteOk() const { return lastOk_; }
    const std::string& fileName() const { return fileName_; }

  private:
    bool put(const char* bytes, std::size_t count);
    // The code page's bytes, as many as they come to.
    std::string toCodePage(std::u16string_view text) const;

    std::string fileName_;
    std::string codePage_;
    bool asciiAsIs_ = false;  // the code page keeps ASCII unchanged
    int fd_ = -1;
    std::size_t lastBytes_ = 0;
    bool lastOk_ = false;
};

}  // namespace qb
