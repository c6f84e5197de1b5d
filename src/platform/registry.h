#pragma once

// The registry of the handheld platform: keys of typed values under two
// roots, kept in the data file.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qb {

class DataFile;

enum class RegRoot { HKEY_CURRENT_USER = 1, HKEY_LOCAL_MACHINE = 2 };

enum RegType : std::uint32_t { REG_SZ = 1, REG_BINARY = 3, REG_DWORD = 4 };

// Results of the value operations, as the platform numbers them.
enum RegResult : long {
    ERROR_SUCCESS = 0,
    ERROR_FILE_NOT_FOUND = 2,
    ERROR_ACCESS_DENIED = 5,
    ERROR_WRITE_FAULT = 29,
    ERROR_MORE_DATA = 234,
};

class RegKey;

class Registry {
  public:
    explicit Registry(DataFile& file);

    // Opens the key, creating it and its parents when absent.
    std::optional<RegKey> createKey(RegRoot root, const std::string& path);
    // Opens an existing key for reading only.
    std::optional<RegKey> openKey(RegRoot root, const std::string& path);

  private:
    DataFile& file_;
};

struct RegValue {
    std::string name;
    RegType type = REG_BINARY;
    std::vector<std::uint8_t> data;
};

class RegKey {
  public:
    // Reads a value into a buffer of `bufferSize` bytes. A value larger than
    // the buffer cannot be read: ERROR_MORE_DATA, and `data` stays empty.
    long queryValue(const std::string& name, std::uint32_t bufferSize, RegValue* out) const;
    long setValue(const std::string& name, RegType type, const std::vector<std::uint8_t>& data);
    long deleteValue(const std::string& name);
    // Every value of the key, by name.
    std::vector<RegValue> values() const;

    // Typed conveniences over the calls above.
    long queryDword(const std::string& name, std::uint32_t* out) const;
    // A string value as UTF-16 without its terminating NUL; the buffer counts
    // bytes including the NUL, as the platform's does.
    long queryString(const std::string& name, std::uint32_t bufferSize, std::u16string* out) const;
    long setDword(const std::string& name, std::uint32_t value);
    long setString(const std::string& name, const std::u16string& value);

    const std::string& path() const { return path_; }

  private:
    friend class Registry;
    RegKey(DataFile& file, RegRoot root, std::string path, bool writable);

    DataFile* file_;
    RegRoot root_;
    std::string path_;
    bool writable_;
};

// The application's own key under HKEY_CURRENT_USER.
inline constexpr const char* kAppKey = "Software\\Quillarbor";

}  // namespace qb
