#pragma once

// Small pieces the backup, archive and bulk commands share.

#include <QString>
#include <QStringList>
#include <string_view>

namespace qb {

inline QString qtText(std::u16string_view text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// The device's filter string ("Backup Files (*.qrb)|*.qrb|") as the file
// chooser's name filters: the descriptions already carry their patterns.
QStringList nameFilters(std::u16string_view deviceFilter);

// The wait cursor for the lifetime of the object.
class WaitCursor {
  public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace qb
