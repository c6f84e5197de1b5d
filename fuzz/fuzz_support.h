#pragma once

// What the fuzz targets share: reading the fuzzer's bytes as the texts the
// readers take, and handing them to readers that only open files.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qb::fuzz {

// The bytes as UTF-16LE code units (an odd last byte is dropped), the form
// in which the core keeps every text.
std::u16string utf16(const std::uint8_t* data, std::size_t size);

inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Writes the bytes to this process's scratch file (one per name, in TMPDIR,
// rewritten on every call) and answers its path, for the readers that take
// a file name. Aborts when the file cannot be written: a fuzzer that cannot
// write its input tests nothing.
const std::string& scratchFile(std::string_view name, const std::uint8_t* data, std::size_t size);

}  // namespace qb::fuzz
