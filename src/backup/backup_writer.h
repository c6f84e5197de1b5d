#pragma once

// Backup files: every time entry and all client master data in one
// compound file, and the restore that adds such a file's contents to the
// tables. Archives (archive_writer.h) reuse this writer with four of its
// operations replaced.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/compound_file.h"
#include "platform/status.h"

namespace qb {

class BackupProgress;
class EntryTable;
struct MasterTables;
struct ClientRecord;

// Results of a restore (and of loading an archive).
enum RestoreResult : int {
    kRestoreDone = 0,
    kRestoreFailed = 1,
    kRestoreUnsupported = 2,  // a format version other than ours
    kRestoreWrongKind = 3,    // refused by the writer's kind test
};

class BackupWriter {
  public:
    // `progress` may be null: restores and archives report no progress.
    BackupWriter(EntryTable& entries, MasterTables& masters, BackupProgress* progress = nullptr);
    virtual ~BackupWriter();

    // Writes the whole file; false when a create or a write failed (a file
    // already started stays on disk).
    bool createFile(const std::string& fileName);
    // Adds the file's contents to the tables: one of RestoreResult.
    int restoreFile(const std::string& fileName);
    // Why the last createFile or restoreFile failed, naming the part of the
    // file; ok after a success.
    const Status& lastError() const { return error_; }

    // The operations an archive replaces, in the order the file meets them.
    virtual std::uint32_t formatVersion() const;
    virtual bool writeKind(CompoundStream& dataVersion);
    virtual bool writeEntries(CompoundStorage& records);
    virtual bool writeClients(CompoundStorage& root);
    virtual bool restoreClients(CompoundStorage& root);
    virtual bool acceptKind(std::uint32_t kind) const;

  protected:
    // The pieces the operations are made of, for the archive to reuse.
    bool writeWord(CompoundStream& stream, std::uint32_t word);
    bool writeEntry(CompoundStorage& records, std::uint32_t number, const struct TimeEntry& entry);
    // Creates "Clients" and writes each client in the order given.
    bool writeClientList(CompoundStorage& root, const std::vector<ClientRecord>& clients);
    void reportStep();
    bool fail(Status why);

    EntryTable& entries_;
    MasterTables& masters_;
    BackupProgress* progress_;

  private:
    bool writeClient(CompoundStorage& clients, std::uint32_t number, const ClientRecord& client);
    bool restoreEntries(CompoundEnum& elements);
    bool restoreClient(CompoundStorage& client);
    bool writeStream(CompoundStorage& storage, std::u16string_view name,
                     const std::vector<std::uint8_t>& bytes);
    bool openStream(CompoundStorage& storage, std::u16string_view name, CompoundStream* out);

    Status error_;
    std::uint32_t rememberedClient_ = 0;
    std::vector<std::uint8_t> entryBytes_;  // one entry's bytes, reused for every entry
};

// What a backup or archive file holds, read before anything is added.
struct BackupContents {
    std::uint32_t kind = 0;  // kKindBackup, kKindEntryArchive or kKindClientArchive
    long entries = 0;
    long clients = 0;
};

// Reads the file's header and, when `count` is true, counts its entries and
// clients (which reads the whole directory); adds nothing.
int inspectBackupFile(const std::string& fileName, BackupContents* out, Status* why = nullptr,
                      bool count = true);

// The entries and clients the store holds now.
long storedEntryCount(EntryTable& entries);
long storedClientCount(MasterTables& masters);

// The backup as the menu runs it: true on success.
bool createBackupFile(EntryTable& entries, MasterTables& masters, const std::string& fileName,
                      BackupProgress* progress = nullptr, Status* why = nullptr);
int restoreBackupFile(EntryTable& entries, MasterTables& masters, const std::string& fileName,
                      Status* why = nullptr);

}  // namespace qb
