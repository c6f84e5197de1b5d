#include "backup/archive_writer.h"

#include <algorithm>

#include "backup/backup_layout.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "store/entry_walk.h"
#include "store/master_data.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

namespace {

// A client chosen twice is archived once, where it was first chosen.
std::vector<CEOID> eachOnce(const std::vector<CEOID>& clients) {
    std::vector<CEOID> once;
    for (CEOID oid : clients) {
        if (std::find(once.begin(), once.end(), oid) == once.end()) once.push_back(oid);
    }
    return once;
}

}  // namespace

ArchiveWriter::ArchiveWriter(EntryTable& entries, MasterTables& masters, FILETIME start,
                             FILETIME end)
    : BackupWriter(entries, masters), kind_(kKindEntryArchive), start_(start), end_(end) {}

ArchiveWriter::ArchiveWriter(EntryTable& entries, MasterTables& masters, std::vector<CEOID> clients)
    : BackupWriter(entries, masters), kind_(kKindClientArchive), clients_(eachOnce(clients)) {}

ArchiveWriter::ArchiveWriter(EntryTable& entries, MasterTables& masters)
    : BackupWriter(entries, masters), kind_(kKindEntryArchive) {}

bool ArchiveWriter::writeKind(CompoundStream& dataVersion) {
    return writeWord(dataVersion, kind_);
}

bool ArchiveWriter::writeEntries(CompoundStorage& records) {
    if (kind_ != kKindEntryArchive) return true;
    std::uint32_t number = 0;
    bool ok = true;
    walkEntries(entries_, start_, end_, [&](const TimeEntry& entry) {
        ok = writeEntry(records, number++, entry);
        return ok;
    });
    return ok;
}

bool ArchiveWriter::writeClients(CompoundStorage& root) {
    if (kind_ != kKindClientArchive) return true;
    std::vector<ClientRecord> chosen;
    for (CEOID oid : clients_) {
        ClientRecord client;
        if (!masters_.clients.seekOid(oid) || !readClient(masters_.clients, &client)) {
            return fail(Status::notFound("there is no client record " + std::to_string(oid)));
        }
        chosen.push_back(std::move(client));
    }
    return writeClientList(root, chosen);
}

bool ArchiveWriter::restoreClients(CompoundStorage&) {
    return true;
}

bool ArchiveWriter::acceptKind(std::uint32_t kind) const {
    return kind == kKindEntryArchive;
}

bool ArchiveWriter::deleteArchived() {
    DataFile& file = entries_.platform().file();
    bool batched = file.beginBatch();
    bool ok = true;
    if (kind_ == kKindClientArchive) {
        ok = removeClient(masters_, clients_);
    } else {
        walkAndDelete(entries_, start_, end_, [](const TimeEntry&) { return true; });
    }
    if (batched) ok = file.commitBatch() && ok;
    return ok;
}

long archiveCount(EntryTable& entries, ArchiveType type, FILETIME start, FILETIME end,
                  const std::vector<CEOID>& clients) {
    if (type == ArchiveType::kDateRange) {
        return walkEntries(entries, start, end, [](const TimeEntry&) { return true; });
    }
    return static_cast<long>(eachOnce(clients).size());
}

bool createArchive(EntryTable& entries, MasterTables& masters, ArchiveType type, FILETIME start,
                   FILETIME end, const std::vector<CEOID>& clients, bool deleteWhenArchived,
                   const std::string& fileName, Status* why) {
    ArchiveWriter writer = type == ArchiveType::kDateRange
                               ? ArchiveWriter(entries, masters, start, end)
                               : ArchiveWriter(entries, masters, clients);
    bool ok = writer.createFile(fileName);
    if (why) *why = writer.lastError();
    if (ok && deleteWhenArchived) {
        ok = writer.deleteArchived();
        if (!ok && why) *why = Status::ioError("cannot delete the archived clients");
    }
    return ok;
}

int loadArchive(EntryTable& entries, MasterTables& masters, const std::string& fileName,
                Status* why) {
    ArchiveWriter writer(entries, masters);
    int result = writer.restoreFile(fileName);
    if (why) *why = writer.lastError();
    return result;
}

}  // namespace qb
