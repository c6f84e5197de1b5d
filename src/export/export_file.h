#pragma once

// The output file of exports and reports, written through the buffered,
// all-or-nothing FileWriter: nothing carries the chosen name until finish()
// has put the complete file in place.
//
// Text in the ANSI code page: every character as the code page writes it,
// however many bytes that takes, and each UTF-16 code unit the code page
// cannot map (each half of a character beyond the Basic Multilingual Plane
// included) as one '?'. So no NUL byte is ever written and a file is never
// cut short. (Files were once written at one byte per code unit, which cut
// the end off a document in a code page of several bytes a character.)

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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
    // Text in the code page, as described above.
    bool writeConverted(std::u16string_view text);
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
    // The bytes of one code unit (no surrogate) in the code page.
    std::string_view unitBytes(char16_t unit) const;

    FileWriter out_;
    std::string codePage_;
    bool asciiAsIs_ = false;  // the code page keeps ASCII unchanged
    // Converting unit by unit gives the bytes a whole run gives (no shift
    // states), so each unit's bytes are learnt once and then copied.
    bool unitsApart_ = false;
    struct UnitBytes {
        std::uint8_t size = 0;  // 0 not learnt yet
        char bytes[7];
    };
    mutable std::vector<UnitBytes> units_;  // by code unit, once one is needed
    mutable std::string unitScratch_;       // a unit too long to keep
    std::string scratch_;
};

}  // namespace qb
