#pragma once

// How a record's properties are kept in the data file, and the byte keys
// that make SQLite's memcmp order the object store's sort order.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

std::string encodeProps(const std::vector<CEPROPVAL>& props);
// False when the bytes are not a well-formed property list. The values that
// `out` holds are overwritten in place, keeping their buffers.
bool decodeProps(std::string_view bytes, std::vector<CEPROPVAL>* out);

// One property where it lies in encoded bytes: its number decoded, the
// UTF-16LE text or blob bytes only viewed.
struct PropView {
    std::uint32_t propid = 0;
    std::uint64_t num = 0;
    std::string_view bytes;

    PropType type() const { return propType(propid); }
};

// Reads encoded properties one by one, copying nothing: how a walk reads
// record after record.
class PropReader {
  public:
    explicit PropReader(std::string_view bytes) : bytes_(bytes) {}
    // The next property; false at the end, or on malformed bytes (failed()).
    bool next(PropView& out);
    bool failed() const { return failed_; }

  private:
    std::string_view bytes_;
    bool failed_ = false;
};

// The text of a string property's bytes, into `out` (its buffer kept).
void assignText(std::string_view utf16le, std::u16string& out);

// The key of one value: present values sort by value (numbers unsigned,
// wide strings by UTF-16 code unit), records lacking the property last.
std::string sortKeyOf(const CEPROPVAL& value);
std::string missingSortKey();
// The key of a record for a sort order, from its property list.
std::string recordSortKey(const std::vector<CEPROPVAL>& props, std::uint32_t sortProp);

}  // namespace qb
