#pragma once

// The output file of exports and reports, written through the buffered,
// all-or-nothing FileWriter: nothing carries the chosen name until finish()
// has put the complete file in place.
//
// Text in the ANSI code page keeps the count of this system's files: a
// converted text takes exactly one byte per UTF-16 code unit. A character
// that takes two bytes pushes the end of the text out (files have always
// been written so); a code unit that the code page cannot map (each half of
// a character beyond the Basic Multilingual Plane included) becomes one '?',
// so no NUL byte is ever written.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/file_writer.h"

namespace qb {

class ExportFile {
  public:
    // `codePage` is the iconv name of the ANSI code page (see ansiCodePage).
    explicit ExportFile(std::string fileName, std::string codePage = "CP1252");
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;

    // Starts the file (a temporary one beside the target).
    bool create();
    bool isOpen() const { return out_.isOpen(); }

    bool writeRaw(const void* bytes, std::size_t count);
    bool writeNarrow(std::string_view bytes) { return writeRaw(bytes.data(), bytes.size()); }
    // UTF-16LE, two bytes per code unit.
    bool writeWide(std::u16string_view text);
    // One converted text, as described above.
    bool writeConverted(std::u16string_view text);

    // One converted text that is produced piece by piece (a whole document):
    // the count rule holds for the run as a whole, as if it were one text.
    void beginConvertedRun();
    bool writeConvertedPart(std::u16string_view text);
    // A part converted beforehand (appendCodePage) from `units` code units.
    bool writeConvertedBytes(std::string_view bytes, std::uint64_t units);
    bool endConvertedRun();

    // Appends the code page's bytes for `text`, as many as they come to.
    void appendCodePage(std::string& out, std::u16string_view text) const;

    // Appends the bytes writeConverted writes for `text` to `out`, so that
    // many short texts can go to the file in one write.
    void appendConverted(std::string& out, std::u16string_view text) const;

    // Puts the complete file in place; false (see error()) when any write
    // failed on the way or the file cannot be put there.
    bool finish();
    // The reason of the first failure, naming the file; empty when none.
    std::string error() const { return out_.status().message(); }
    bool ok() const { return out_.status().isOk(); }
    const std::string& fileName() const { return out_.path(); }

  private:
    FileWriter out_;
    std::string codePage_;
    bool asciiAsIs_ = false;  // the code page keeps ASCII unchanged
    std::string scratch_;
    std::uint64_t runStart_ = 0;
    std::uint64_t runUnits_ = 0;
};

}  // namespace qb
