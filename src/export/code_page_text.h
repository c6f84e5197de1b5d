#pragma once

// UTF-16 text in the ANSI code page: every character as the code page writes
// it, however many bytes that takes, and each UTF-16 code unit the code page
// cannot map (each half of a character beyond the Basic Multilingual Plane
// included) as one '?'. So no NUL byte is ever written and a file is never
// cut short. (Files were once written at one byte per code unit, which cut
// the end off a document in a code page of several bytes a character.)
//
// A converter learns the bytes of the characters it meets and keeps them, so
// each thread that converts has one of its own.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qb {

class CodePageText {
  public:
    // `codePage` is the iconv name of the ANSI code page (see ansiCodePage).
    explicit CodePageText(std::string codePage);

    // Appends the bytes of `text` to `out`.
    void append(std::string& out, std::u16string_view text);

  private:
    // The bytes of one code unit (no surrogate) in the code page.
    std::string_view unitBytes(char16_t unit);

    std::string codePage_;
    bool asciiAsIs_ = false;  // the code page keeps ASCII unchanged
    // Converting unit by unit gives the bytes a whole run gives (no shift
    // states), so each unit's bytes are learnt once and then copied.
    bool unitsApart_ = false;
    struct UnitBytes {
        std::uint8_t size = 0;  // 0 not learnt yet
        char bytes[7];
    };
    std::vector<UnitBytes> units_;  // by code unit, once one is needed
    std::string unitScratch_;       // a unit too long to keep
};

}  // namespace qb
