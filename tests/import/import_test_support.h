#pragma once

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "import/readers.h"

namespace qb::testing {

// Pins the machine's time zone, so that UTC times land on known local ones.
class ZoneGuard {
  public:
    explicit ZoneGuard(const char* zone) {
        const char* old = std::getenv("TZ");
        had_ = old != nullptr;
        if (had_) old_ = old;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~ZoneGuard() {
        if (had_) {
            setenv("TZ", old_.c_str(), 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

  private:
    bool had_ = false;
    std::string old_;
};

struct ReadAll {
    ReadStatus status;
    std::vector<ImportRow> rows;
};

inline ReadAll readAll(ImportFormat format, const std::string& bytes,
                       const ImportOptions& options = {}) {
    ReadAll out;
    out.status = readRows(format, bytes, options, [&](ImportRow& row) {
        out.rows.push_back(row);
        return true;
    });
    return out;
}

}  // namespace qb::testing
