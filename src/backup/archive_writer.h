#pragma once

// Archives: the entries of a date range, or chosen clients with their
// master data, moved out into a backup-layout file, and entry archives
// loaded back.

#include <cstdint>
#include <string>
#include <vector>

#include "backup/backup_writer.h"
#include "platform/win_types.h"

namespace qb {

enum class ArchiveType { kDateRange = 0, kClients = 1 };

class ArchiveWriter : public BackupWriter {
  public:
    // An archive of the entries with start <= date <= end (kind 2).
    ArchiveWriter(EntryTable& entries, MasterTables& masters, FILETIME start, FILETIME end);
    // An archive of the clients with these record ids, in this order, each
    // once (kind 4).
    ArchiveWriter(EntryTable& entries, MasterTables& masters, std::vector<CEOID> clients);
    // The writer that loads archives: it accepts entry archives only.
    ArchiveWriter(EntryTable& entries, MasterTables& masters);

    bool writeKind(CompoundStream& dataVersion) override;
    bool writeEntries(CompoundStorage& records) override;
    bool writeClients(CompoundStorage& root) override;
    bool restoreClients(CompoundStorage& root) override;
    bool acceptKind(std::uint32_t kind) const override;

    // Deletes what the archive holds: the entries of the range (one behind
    // the walk) or the chosen clients with their lists. Run only after the
    // file was written.
    bool deleteArchived();

    std::uint32_t kind() const { return kind_; }

  private:
    std::uint32_t kind_;
    FILETIME start_ = 0;
    FILETIME end_ = 0;
    std::vector<CEOID> clients_;
};

// What the archive will hold: the entries of the range, or the clients
// (each once). The question before deleting and the message after name it.
long archiveCount(EntryTable& entries, ArchiveType type, FILETIME start, FILETIME end,
                  const std::vector<CEOID>& clients);

// The archive as the menu runs it; true when the file was written (and,
// when asked, the archived data deleted).
bool createArchive(EntryTable& entries, MasterTables& masters, ArchiveType type, FILETIME start,
                   FILETIME end, const std::vector<CEOID>& clients, bool deleteWhenArchived,
                   const std::string& fileName, Status* why = nullptr);
// One of RestoreResult.
int loadArchive(EntryTable& entries, MasterTables& masters, const std::string& fileName,
                Status* why = nullptr);

}  // namespace qb
