#include "import/import_origins.h"

#include <sqlite3.h>

#include "platform/data_file.h"

namespace qb {

std::uint64_t originKey(ImportFormat format, std::string_view identity) {
    // FNV-1a: stable across builds and machines, which a key kept in the
    // store must be.
    std::uint64_t h = 14695981039346656037ull;
    auto mix = [&](std::string_view bytes) {
        for (unsigned char c : bytes) {
            h ^= c;
            h *= 1099511628211ull;
        }
    };
    mix(importFormatName(format));
    mix(std::string_view("\0", 1));
    mix(identity);
    return h;
}

ImportOrigins::ImportOrigins(DataFile& file) : file_(file) {}

ImportOrigins::~ImportOrigins() {
    sqlite3_finalize(insert_);
}

bool ImportOrigins::load() {
    keys_.clear();
    sqlite3_stmt* select = nullptr;
    // No table yet: nothing was ever imported.
    if (sqlite3_prepare_v2(file_.handle(), "SELECT key FROM import_origins", -1, &select,
                           nullptr) != SQLITE_OK) {
        sqlite3_finalize(select);
        return true;
    }
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(select)) == SQLITE_ROW) {
        keys_.insert(static_cast<std::uint64_t>(sqlite3_column_int64(select, 0)));
    }
    sqlite3_finalize(select);
    return rc == SQLITE_DONE;
}

bool ImportOrigins::remember(std::uint64_t key, CEOID entry) {
    if (!insert_) {
        if (sqlite3_exec(file_.handle(),
                         "CREATE TABLE IF NOT EXISTS import_origins "
                         "(key INTEGER PRIMARY KEY, entry INTEGER NOT NULL)",
                         nullptr, nullptr, nullptr) != SQLITE_OK ||
            sqlite3_prepare_v2(file_.handle(),
                               "INSERT OR IGNORE INTO import_origins (key, entry) VALUES (?, ?)",
                               -1, &insert_, nullptr) != SQLITE_OK) {
            return false;
        }
    }
    sqlite3_bind_int64(insert_, 1, static_cast<sqlite3_int64>(key));
    sqlite3_bind_int64(insert_, 2, static_cast<sqlite3_int64>(entry));
    const int rc = sqlite3_step(insert_);
    sqlite3_reset(insert_);
    if (rc != SQLITE_DONE) return false;
    keys_.insert(key);
    return true;
}

}  // namespace qb
