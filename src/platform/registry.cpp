#include "platform/registry.h"

#include <sqlite3.h>

#include <cstring>

#include "platform/data_file.h"

namespace qb {
namespace {

// A prepared statement that finalizes itself.
class Statement {
  public:
    Statement(sqlite3* db, const char* sql) { sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr); }
    ~Statement() { sqlite3_finalize(stmt_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool ok() const { return stmt_ != nullptr; }
    Statement& bind(int i, long long v) {
        sqlite3_bind_int64(stmt_, i, v);
        return *this;
    }
    Statement& bind(int i, const std::string& v) {
        sqlite3_bind_text(stmt_, i, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
        return *this;
    }
    Statement& bindBlob(int i, const std::vector<std::uint8_t>& v) {
        sqlite3_bind_blob(stmt_, i, v.empty() ? "" : static_cast<const void*>(v.data()),
                          static_cast<int>(v.size()), SQLITE_TRANSIENT);
        return *this;
    }
    int step() { return ok() ? sqlite3_step(stmt_) : SQLITE_ERROR; }
    sqlite3_stmt* get() const { return stmt_; }

  private:
    sqlite3_stmt* stmt_ = nullptr;
};

std::string parentOf(const std::string& path) {
    auto pos = path.rfind('\\');
    return pos == std::string::npos ? std::string() : path.substr(0, pos);
}

bool keyExists(sqlite3* db, RegRoot root, const std::string& path) {
    Statement q(db, "SELECT 1 FROM registry_keys WHERE root=? AND path=?");
    q.bind(1, static_cast<int>(root)).bind(2, path);
    return q.step() == SQLITE_ROW;
}

std::vector<std::uint8_t> columnBlob(sqlite3_stmt* stmt, int col) {
    const auto* p = static_cast<const std::uint8_t*>(sqlite3_column_blob(stmt, col));
    int n = sqlite3_column_bytes(stmt, col);
    return p ? std::vector<std::uint8_t>(p, p + n) : std::vector<std::uint8_t>();
}

}  // namespace

Registry::Registry(DataFile& file) : file_(file) {}

std::optional<RegKey> Registry::createKey(RegRoot root, const std::string& path) {
    if (path.empty()) return std::nullopt;
    sqlite3* db = file_.handle();
    if (!keyExists(db, root, path)) {
        file_.beforeWrite();
        // Parents first, so that every prefix of a key exists as a key.
        for (std::string p = path; !p.empty(); p = parentOf(p)) {
            Statement ins(db, "INSERT OR IGNORE INTO registry_keys (root, path) VALUES (?, ?)");
            ins.bind(1, static_cast<int>(root)).bind(2, p);
            if (ins.step() != SQLITE_DONE) return std::nullopt;
        }
    }
    return RegKey(file_, root, path, true);
}

std::optional<RegKey> Registry::openKey(RegRoot root, const std::string& path) {
    if (!keyExists(file_.handle(), root, path)) return std::nullopt;
    return RegKey(file_, root, path, false);
}

RegKey::RegKey(DataFile& file, RegRoot root, std::string path, bool writable)
    : file_(&file), root_(root), path_(std::move(path)), writable_(writable) {}

long RegKey::queryValue(const std::string& name, std::uint32_t bufferSize, RegValue* out) const {
    Statement q(file_->handle(),
                "SELECT type, data FROM registry_values WHERE root=? AND path=? AND name=?");
    q.bind(1, static_cast<int>(root_)).bind(2, path_).bind(3, name);
    if (q.step() != SQLITE_ROW) return ERROR_FILE_NOT_FOUND;
    out->name = name;
    out->type = static_cast<RegType>(sqlite3_column_int64(q.get(), 0));
    out->data.clear();
    if (static_cast<std::uint32_t>(sqlite3_column_bytes(q.get(), 1)) > bufferSize) {
        return ERROR_MORE_DATA;
    }
    out->data = columnBlob(q.get(), 1);
    return ERROR_SUCCESS;
}

long RegKey::setValue(const std::string& name, RegType type,
                      const std::vector<std::uint8_t>& data) {
    if (!writable_) return ERROR_ACCESS_DENIED;
    file_->beforeWrite();
    Statement q(file_->handle(),
                "INSERT OR REPLACE INTO registry_values (root, path, name, type, data) "
                "VALUES (?, ?, ?, ?, ?)");
    q.bind(1, static_cast<int>(root_)).bind(2, path_).bind(3, name).bind(4, type).bindBlob(5, data);
    return q.step() == SQLITE_DONE ? ERROR_SUCCESS : ERROR_WRITE_FAULT;
}

long RegKey::deleteValue(const std::string& name) {
    if (!writable_) return ERROR_ACCESS_DENIED;
    file_->beforeWrite();
    Statement q(file_->handle(), "DELETE FROM registry_values WHERE root=? AND path=? AND name=?");
    q.bind(1, static_cast<int>(root_)).bind(2, path_).bind(3, name);
    if (q.step() != SQLITE_DONE) return ERROR_WRITE_FAULT;
    return sqlite3_changes(file_->handle()) > 0 ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND;
}

std::vector<RegValue> RegKey::values() const {
    std::vector<RegValue> result;
    Statement q(
        file_->handle(),
        "SELECT name, type, data FROM registry_values WHERE root=? AND path=? ORDER BY name");
    q.bind(1, static_cast<int>(root_)).bind(2, path_);
    while (q.step() == SQLITE_ROW) {
        RegValue v;
        v.name = reinterpret_cast<const char*>(sqlite3_column_text(q.get(), 0));
        v.type = static_cast<RegType>(sqlite3_column_int64(q.get(), 1));
        v.data = columnBlob(q.get(), 2);
        result.push_back(std::move(v));
    }
    return result;
}

long RegKey::queryDword(const std::string& name, std::uint32_t* out) const {
    RegValue v;
    long rc = queryValue(name, 4, &v);
    if (rc != ERROR_SUCCESS) return rc;
    std::uint8_t bytes[4] = {};
    std::memcpy(bytes, v.data.data(), v.data.size());
    *out = std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
    return ERROR_SUCCESS;
}

long RegKey::queryString(const std::string& name, std::uint32_t bufferSize,
                         std::u16string* out) const {
    RegValue v;
    long rc = queryValue(name, bufferSize, &v);
    if (rc != ERROR_SUCCESS) return rc;
    std::u16string text;
    for (std::size_t i = 0; i + 1 < v.data.size(); i += 2) {
        char16_t c = static_cast<char16_t>(v.data[i] | v.data[i + 1] << 8);
        if (c == 0) break;
        text.push_back(c);
    }
    *out = std::move(text);
    return ERROR_SUCCESS;
}

long RegKey::setDword(const std::string& name, std::uint32_t value) {
    return setValue(
        name, REG_DWORD,
        {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
         static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)});
}

long RegKey::setString(const std::string& name, const std::u16string& value) {
    std::vector<std::uint8_t> data;
    data.reserve((value.size() + 1) * 2);
    for (char16_t c : value) {
        data.push_back(static_cast<std::uint8_t>(c));
        data.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    data.push_back(0);
    data.push_back(0);
    return setValue(name, REG_SZ, data);
}

}  // namespace qb
