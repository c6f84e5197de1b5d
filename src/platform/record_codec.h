#pragma once

// How a record's properties are kept in the data file, and the byte keys
// that make SQLite's memcmp order the object store's sort order.

#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

std::string encodeProps(const std::vector<CEPROPVAL>& props);
// False when the bytes are not a well-formed property list. The values that
// `out` holds are overwritten in place, keeping their buffers.
bool decodeProps(std::string_view bytes, std::vector<CEPROPVAL>* out);

// The key of one value: present values sort by value (numbers unsigned,
// wide strings by UTF-16 code unit), records lacking the property last.
std::string sortKeyOf(const CEPROPVAL& value);
std::string missingSortKey();
// The key of a record for a sort order, from its property list.
std::string recordSortKey(const std::vector<CEPROPVAL>& props, std::uint32_t sortProp);

}  // namespace qb
