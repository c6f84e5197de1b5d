#pragma once

// The output file of exports and reports, written through the buffered,
// all-or-nothing FileWriter: nothing carries the chosen name until finish()
// has put the complete file in place.
//
// Text goes in the ANSI code page (see CodePageText).

#include <cstddef>
#include <string>
#include <string_view>

#include "export/code_page_text.h"
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
    // Text in the code page (see CodePageText).
    bool writeConverted(std::u16string_view text);

    // Puts the complete file in place; false (see error()) when any write
    // failed on the way or the file cannot be put there.
    bool finish();
    // The reason of the first failure, naming the file; empty when none.
    std::string error() const { return out_.status().message(); }
    bool ok() const { return out_.status().isOk(); }
    const std::string& fileName() const { return out_.path(); }

  private:
    FileWriter out_;
    CodePageText text_;
    std::string scratch_;
};

}  // namespace qb
