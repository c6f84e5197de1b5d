#pragma once

// Where imported entries came from, so that importing a file again adds
// nothing. Each imported row is remembered by a 64-bit key made of its
// format and its identity (the tool's own id, else the row's content and
// its occurrence within the file), beside the entry it became. The table
// is described in docs/formats/store.md.

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_set>

#include "import/import_row.h"
#include "platform/win_types.h"

struct sqlite3_stmt;

namespace qb {

class DataFile;

std::uint64_t originKey(ImportFormat format, std::string_view identity);

class ImportOrigins {
  public:
    explicit ImportOrigins(DataFile& file);
    ~ImportOrigins();
    ImportOrigins(const ImportOrigins&) = delete;
    ImportOrigins& operator=(const ImportOrigins&) = delete;

    // Reads the keys already remembered; a store without the table has none.
    bool load();
    bool contains(std::uint64_t key) const { return keys_.count(key) != 0; }
    // Records a key inside the caller's batch, creating the table on first use.
    bool remember(std::uint64_t key, CEOID entry);

  private:
    DataFile& file_;
    std::unordered_set<std::uint64_t> keys_;
    sqlite3_stmt* insert_ = nullptr;
};

}  // namespace qb
