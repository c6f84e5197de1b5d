#pragma once

// The contacts of a vCard file, as the import from the contacts
// application lists them: "File As" and "Company".

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qb {

struct VCardContact {
    std::u16string fileAs;
    std::u16string company;
};

// A contacts file larger than this is refused (the failure of a list import).
inline constexpr std::uintmax_t kVCardFileLimit = 16u << 20;

// The cards of the text in file order. "File As" is FN, else N as
// "Family, Given" (or whichever of the two there is); "Company" is the first
// component of ORG. Folded lines are unfolded; quoted-printable values and
// CHARSET parameters are decoded. A value without CHARSET is UTF-8 when its
// bytes are well-formed UTF-8, else in the code page (as older exports
// write). A card without any name is not offered.
std::vector<VCardContact> parseVCards(std::string_view text,
                                      const std::string& codePage = "CP1252");

// Reads and parses the file; false for a missing, unreadable or oversized
// file, or one with no BEGIN:VCARD.
bool readVCardFile(const std::string& path, std::vector<VCardContact>* out,
                   const std::string& codePage = "CP1252");

}  // namespace qb
