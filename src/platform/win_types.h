#pragma once

// The data types of the handheld platform that the system's records and
// files are defined in: object identifiers, file times, calendar times and
// typed property values.

#include <cstdint>
#include <string>
#include <vector>

namespace qb {

using CEOID = std::uint32_t;

// 100-nanosecond ticks since 1601-01-01 00:00 of local wall-clock time.
using FILETIME = std::uint64_t;

struct SYSTEMTIME {
    std::uint16_t wYear = 0;
    std::uint16_t wMonth = 0;
    std::uint16_t wDayOfWeek = 0;
    std::uint16_t wDay = 0;
    std::uint16_t wHour = 0;
    std::uint16_t wMinute = 0;
    std::uint16_t wSecond = 0;
    std::uint16_t wMilliseconds = 0;

    bool operator==(const SYSTEMTIME&) const = default;
};

// Value types of record properties (the low 16 bits of a property id).
enum PropType : std::uint16_t {
    CEVT_I2 = 2,
    CEVT_I4 = 3,
    CEVT_BOOL = 11,
    CEVT_UI2 = 18,
    CEVT_UI4 = 19,
    CEVT_LPWSTR = 31,
    CEVT_FILETIME = 64,
    CEVT_BLOB = 65,
};

constexpr std::uint32_t makePropId(std::uint16_t number, PropType type) {
    return (std::uint32_t{number} << 16) | type;
}
constexpr std::uint16_t propNumber(std::uint32_t propId) {
    return propId >> 16;
}
constexpr PropType propType(std::uint32_t propId) {
    return static_cast<PropType>(propId & 0xFFFF);
}

// Flag of a property value in a write: remove the property from the record.
constexpr std::uint16_t CEDB_PROPDELETE = 0x200;

// One typed property value. Numbers, booleans and file times travel in
// `num`; strings in `str`; blobs in `blob`.
struct CEPROPVAL {
    std::uint32_t propid = 0;
    std::uint16_t flags = 0;
    std::uint64_t num = 0;
    std::u16string str;
    std::vector<std::uint8_t> blob;

    PropType type() const { return propType(propid); }
    std::uint16_t number() const { return propNumber(propid); }

    static CEPROPVAL ui2(std::uint16_t number, std::uint16_t v) {
        return numeric(makePropId(number, CEVT_UI2), v);
    }
    static CEPROPVAL ui4(std::uint16_t number, std::uint32_t v) {
        return numeric(makePropId(number, CEVT_UI4), v);
    }
    static CEPROPVAL boolean(std::uint16_t number, bool v) {
        return numeric(makePropId(number, CEVT_BOOL), v ? 1 : 0);
    }
    static CEPROPVAL fileTime(std::uint16_t number, FILETIME v) {
        return numeric(makePropId(number, CEVT_FILETIME), v);
    }
    static CEPROPVAL wstr(std::uint16_t number, std::u16string v) {
        CEPROPVAL p;
        p.propid = makePropId(number, CEVT_LPWSTR);
        p.str = std::move(v);
        return p;
    }
    static CEPROPVAL blobOf(std::uint16_t number, std::vector<std::uint8_t> v) {
        CEPROPVAL p;
        p.propid = makePropId(number, CEVT_BLOB);
        p.blob = std::move(v);
        return p;
    }
    // The same property, marked to be deleted by the write.
    CEPROPVAL deleted() && {
        flags = CEDB_PROPDELETE;
        return std::move(*this);
    }

  private:
    static CEPROPVAL numeric(std::uint32_t id, std::uint64_t v) {
        CEPROPVAL p;
        p.propid = id;
        p.num = v;
        return p;
    }
};

}  // namespace qb
