#include "backup/backup_writer.h"

#include <sqlite3.h>

#include "backup/backup_layout.h"
#include "backup/backup_progress.h"
#include "platform/chunk_pipe.h"
#include "platform/data_file.h"
#include "platform/object_store.h"
#include "platform/platform.h"
#include "platform/record_codec.h"
#include "platform/text.h"
#include "store/master_data.h"
#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {
namespace {

long countRecords(PropertyTable& table) {
    long n = 0;
    for (bool found = table.seekFirst(); found; found = table.seekNext()) ++n;
    return n;
}

std::string quoted(std::u16string_view name) {
    std::string text(1, '"');
    text.append(utf16ToUtf8(name));
    text.push_back('"');
    return text;
}

// The restore adds every entry in one transaction: with SQLite's default
// cache of 2 MB the indexes outgrow it early and their pages are written out
// and read back again and again before the commit.
constexpr int kRestoreCacheKb = 12 * 1024;

class ScopedCacheSize {
  public:
    ScopedCacheSize(DataFile& data, int kb) : db_(data.handle()) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db_, "PRAGMA cache_size", -1, &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW) {
            old_ = sqlite3_column_int(stmt, 0);
        }
        sqlite3_finalize(stmt);
        set(-kb);
    }
    ~ScopedCacheSize() { set(old_); }

  private:
    void set(int size) {
        sqlite3_exec(db_, ("PRAGMA cache_size=" + std::to_string(size)).c_str(), nullptr, nullptr,
                     nullptr);
    }
    sqlite3* db_;
    int old_ = -2000;
};

Status within(std::u16string_view name, const Status& s) {
    switch (s.code()) {
        case Status::Code::kNotFound:
            return Status::notFound(quoted(name) + ": " + s.message());
        case Status::Code::kIoError:
            return Status::ioError(quoted(name) + ": " + s.message());
        default:
            return Status::corruption(quoted(name) + ": " + s.message());
    }
}

}  // namespace

BackupWriter::BackupWriter(EntryTable& entries, MasterTables& masters, BackupProgress* progress)
    : entries_(entries), masters_(masters), progress_(progress) {}

BackupWriter::~BackupWriter() = default;

bool BackupWriter::fail(Status why) {
    if (error_.isOk()) error_ = std::move(why);
    return false;
}

void BackupWriter::reportStep() {
    if (progress_) progress_->step();
}

std::uint32_t BackupWriter::formatVersion() const {
    return kBackupVersion;
}

bool BackupWriter::writeWord(CompoundStream& stream, std::uint32_t word) {
    std::vector<std::uint8_t> bytes;
    putU32(bytes, word);
    Status s = stream.write(bytes.data(), bytes.size());
    return s.isOk() || fail(within(kDataVersionStream, s));
}

bool BackupWriter::writeKind(CompoundStream& dataVersion) {
    return writeWord(dataVersion, kKindBackup);
}

bool BackupWriter::writeStream(CompoundStorage& storage, std::u16string_view name,
                               const std::vector<std::uint8_t>& bytes) {
    CompoundStream stream;
    Status s = storage.createStream(name, &stream);
    if (s.isOk()) s = stream.write(bytes.data(), bytes.size());
    return s.isOk() || fail(within(name, s));
}

bool BackupWriter::writeEntry(CompoundStorage& records, std::uint32_t number,
                              const TimeEntry& entry) {
    encodeEntry(entry, &entryBytes_);
    return writeStream(records, recordName(number), entryBytes_);
}

bool BackupWriter::writeEntries(CompoundStorage& records) {
    TimeEntry entry;
    std::uint32_t number = 0;
    for (bool found = entries_.seekFirst(); found; found = entries_.seekNext()) {
        int rc = readEntry(entries_, entry);
        if (rc == 1) break;
        if (rc != 0) return fail(Status::ioError("cannot read the time entries"));
        if (!writeEntry(records, number++, entry)) return false;
        reportStep();
    }
    return true;
}

bool BackupWriter::writeClient(CompoundStorage& clients, std::uint32_t number,
                               const ClientRecord& client) {
    CompoundStorage storage;
    std::u16string name = clientName(number);
    Status s = clients.createStorage(name, &storage);
    if (!s.isOk()) return fail(within(name, s));
    std::vector<std::uint8_t> bytes;
    encodeCountedString(client.name, &bytes);
    if (!writeStream(storage, kNameStream, bytes)) return false;
    encodeProjectTasks(projectsOf(masters_.projects, client.clientId), &bytes);
    if (!writeStream(storage, kProjectTasksStream, bytes)) return false;
    encodeNames(namesOf(masters_.tasks, client.clientId), &bytes);
    if (!writeStream(storage, kTasksStream, bytes)) return false;
    encodeNames(namesOf(masters_.contacts, client.clientId), &bytes);
    if (!writeStream(storage, kContactsStream, bytes)) return false;
    encodeRates(ratesOf(masters_.rates, client.clientId), &bytes);
    return writeStream(storage, kRatesStream, bytes);
}

bool BackupWriter::writeClientList(CompoundStorage& root, const std::vector<ClientRecord>& list) {
    CompoundStorage clients;
    Status s = root.createStorage(kClientsStorage, &clients);
    if (!s.isOk()) return fail(within(kClientsStorage, s));
    std::uint32_t number = 0;
    for (const ClientRecord& client : list) {
        if (!writeClient(clients, number++, client)) return false;
        reportStep();
    }
    return true;
}

bool BackupWriter::writeClients(CompoundStorage& root) {
    return writeClientList(root, allClients(masters_.clients));
}

bool BackupWriter::createFile(const std::string& fileName) {
    error_ = Status::ok();
    std::unique_ptr<CompoundFile> file;
    Status s = CompoundFile::create(fileName, &file);
    if (!s.isOk()) return fail(s);
    if (progress_) progress_->start(countRecords(entries_) + countRecords(masters_.clients));

    CompoundStorage root = file->root();
    CompoundStream dataVersion;
    CompoundStorage records;
    bool ok = false;
    s = root.createStream(kDataVersionStream, &dataVersion);
    if (!s.isOk()) {
        fail(within(kDataVersionStream, s));
    } else if (writeWord(dataVersion, formatVersion()) && writeKind(dataVersion)) {
        dataVersion.release();
        s = root.createStorage(kRecordsStorage, &records);
        if (!s.isOk()) {
            fail(within(kRecordsStorage, s));
        } else {
            ok = writeEntries(records) && writeClients(root);
        }
    }
    // Whatever was written reaches the disk, a failed backup too.
    s = file->close();
    if (!s.isOk()) ok = fail(s);
    return ok;
}

bool BackupWriter::openStream(CompoundStorage& storage, std::u16string_view name,
                              CompoundStream* out) {
    Status s = storage.openStream(name, out);
    return s.isOk() || fail(within(name, s));
}

bool BackupWriter::restoreEntries(CompoundEnum& elements) {
    // The file is read and its entries made into records on a thread of
    // their own while this one stores them: each half takes about as long as
    // the other. Each record follows its element's name, which a failure names.
    enum Tag : std::uint32_t { kName, kRecord };
    Status unreadable;  // the reading thread's, looked at once the pipe has ended
    ChunkPipe pipe;
    pipe.start([&elements, &unreadable](ChunkPipe& out) {
        ElementInfo element;
        CompoundStream record;  // one for all: its buffers serve every entry
        TimeEntry entry;
        while (elements.next(&element)) {
            Status s = elements.openStream(&record);
            if (s.isOk()) {
                FieldReader reader(record);
                s = decodeEntry(reader, &entry);
            }
            if (!s.isOk()) {
                unreadable = within(element.name, s);
                return;
            }
            const std::string props = Database::encodeNew(entryAddValues(entry));
            const std::string_view name(reinterpret_cast<const char*>(element.name.data()),
                                        element.name.size() * sizeof(char16_t));
            if (!out.put(kName, name) || !out.put(kRecord, props)) return;
        }
    });
    std::u16string name;
    std::uint32_t tag = 0;
    std::string_view bytes;
    while (pipe.next(&tag, &bytes)) {
        if (tag == kName) {
            assignText(bytes, name);
        } else if (!entries_.addEncoded(bytes)) {
            return fail(within(name, Status::ioError("cannot add a time entry")));
        }
    }
    return unreadable.isOk() || fail(unreadable);
}

bool BackupWriter::restoreClient(CompoundStorage& client) {
    CompoundStream stream;
    std::u16string name;
    if (!openStream(client, kNameStream, &stream)) return false;
    FieldReader nameReader(stream);
    Status s = nameReader.countedString("name", &name);
    if (!s.isOk()) return fail(within(kNameStream, s));
    if (!name.empty() && !masters_.clients.seekEqual(CEPROPVAL::wstr(kPropClient, name))) {
        ClientId id = 0;
        if (addClient(masters_.clients, name, &id) == 0) {
            return fail(Status::ioError("cannot add the client " + quoted(name)));
        }
        rememberedClient_ = id;
    }
    // Lists of a client that was not added go to the client added last in
    // this restore (0 before any): that is how restores have always filed them.
    const CEPROPVAL owner = CEPROPVAL::ui4(kPropClientId, rememberedClient_);
    auto added = [this](PropertyTable& table, const std::vector<CEPROPVAL>& values) {
        if (!table.add(values)) return fail(Status::ioError("cannot add a client's list item"));
        return true;
    };

    std::vector<ProjectRecord> projects;
    if (!openStream(client, kProjectTasksStream, &stream)) return false;
    FieldReader projectReader(stream);
    s = decodeProjectTasks(projectReader, &projects);
    if (!s.isOk()) return fail(within(kProjectTasksStream, s));
    for (const ProjectRecord& p : projects) {
        std::vector<CEPROPVAL> values{owner, CEPROPVAL::wstr(kPropText, p.project)};
        if (!p.task.empty()) values.push_back(CEPROPVAL::wstr(kPropTask, p.task));
        if (!added(masters_.projects, values)) return false;
    }

    std::vector<NamedRecord> names;
    for (auto [streamName, table] :
         {std::pair<std::u16string_view, PropertyTable*>{kTasksStream, &masters_.tasks},
          {kContactsStream, &masters_.contacts}}) {
        if (!openStream(client, streamName, &stream)) return false;
        FieldReader reader(stream);
        s = decodeNames(reader, &names);
        if (!s.isOk()) return fail(within(streamName, s));
        for (const NamedRecord& n : names) {
            if (!added(*table, {owner, CEPROPVAL::wstr(kPropText, n.name)})) return false;
        }
    }

    std::vector<RateRecord> rates;
    if (!openStream(client, kRatesStream, &stream)) return false;
    FieldReader rateReader(stream);
    s = decodeRates(rateReader, &rates);
    if (!s.isOk()) return fail(within(kRatesStream, s));
    for (const RateRecord& r : rates) {
        if (!added(masters_.rates,
                   {CEPROPVAL::ui2(kPropListKind, r.rateType), CEPROPVAL::ui4(kPropRate, r.rate),
                    owner, CEPROPVAL::wstr(kPropRateDescription, r.description),
                    CEPROPVAL::boolean(kPropRateFlag, r.flag)})) {
            return false;
        }
    }
    return true;
}

bool BackupWriter::restoreClients(CompoundStorage& root) {
    CompoundStorage clients;
    CompoundEnum elements;
    Status s = root.openStorage(kClientsStorage, &clients);
    if (s.isOk()) s = clients.enumElements(&elements);
    if (!s.isOk()) return fail(within(kClientsStorage, s));
    ElementInfo element;
    while (elements.next(&element)) {
        CompoundStorage client;
        s = clients.openStorage(element.name, &client);
        if (!s.isOk()) return fail(within(element.name, s));
        if (!restoreClient(client)) {
            error_ = within(element.name, error_);
            return false;
        }
    }
    return true;
}

bool BackupWriter::acceptKind(std::uint32_t) const {
    return true;
}

int BackupWriter::restoreFile(const std::string& fileName) {
    error_ = Status::ok();
    rememberedClient_ = 0;
    std::unique_ptr<CompoundFile> file;
    Status s = CompoundFile::open(fileName, &file);
    if (!s.isOk()) {
        fail(s);
        return kRestoreFailed;
    }
    CompoundStorage root = file->root();
    CompoundStream dataVersion;
    if (!openStream(root, kDataVersionStream, &dataVersion)) return kRestoreFailed;
    FieldReader header(dataVersion);
    std::uint32_t word = 0;
    s = header.u32("version", &word);
    if (!s.isOk()) {
        fail(within(kDataVersionStream, s));
        return kRestoreFailed;
    }
    if (word != formatVersion()) {
        fail(Status::invalidArgument("format version " + std::to_string(word) + ", not " +
                                     std::to_string(formatVersion())));
        return kRestoreUnsupported;
    }
    s = header.u32("kind", &word);
    if (!s.isOk()) {
        fail(within(kDataVersionStream, s));
        return kRestoreFailed;
    }
    if (!acceptKind(word)) {
        fail(Status::invalidArgument("a file of kind " + std::to_string(word)));
        return kRestoreWrongKind;
    }
    dataVersion.release();

    DataFile& data = entries_.platform().file();
    ScopedCacheSize cache(data, kRestoreCacheKb);
    bool batched = data.beginBatch();
    bool ok = true;
    CompoundStorage records;
    CompoundEnum elements;
    s = root.openStorage(kRecordsStorage, &records);
    if (s.isOk()) s = records.enumElements(&elements);
    if (!s.isOk()) ok = fail(within(kRecordsStorage, s));
    ok = ok && restoreEntries(elements);
    ok = ok && restoreClients(root);
    // What was added stays, a failed restore's records too.
    if (batched && !data.commitBatch())
        ok = fail(Status::ioError("cannot store the restored records"));
    return ok ? kRestoreDone : kRestoreFailed;
}

int inspectBackupFile(const std::string& fileName, BackupContents* out, Status* why, bool count) {
    auto failed = [why](int result, Status s) {
        if (why) *why = std::move(s);
        return result;
    };
    std::unique_ptr<CompoundFile> file;
    Status s = CompoundFile::open(fileName, &file);
    if (!s.isOk()) return failed(kRestoreFailed, s);
    CompoundStorage root = file->root();
    CompoundStream dataVersion;
    s = root.openStream(kDataVersionStream, &dataVersion);
    if (!s.isOk()) return failed(kRestoreFailed, within(kDataVersionStream, s));
    FieldReader header(dataVersion);
    std::uint32_t version = 0;
    s = header.u32("version", &version);
    if (s.isOk() && version != kBackupVersion) {
        return failed(kRestoreUnsupported,
                      Status::invalidArgument("format version " + std::to_string(version)));
    }
    if (s.isOk()) s = header.u32("kind", &out->kind);
    if (!s.isOk()) return failed(kRestoreFailed, within(kDataVersionStream, s));
    if (!count) {
        if (why) *why = Status::ok();
        return kRestoreDone;
    }
    auto elements = [&root](std::u16string_view storage) {
        long n = 0;
        CompoundStorage inner;
        CompoundEnum elements;
        ElementInfo element;
        if (!root.openStorage(storage, &inner).isOk() || !inner.enumElements(&elements).isOk()) {
            return n;
        }
        while (elements.next(&element)) ++n;
        return n;
    };
    out->entries = elements(kRecordsStorage);
    out->clients = elements(kClientsStorage);
    if (why) *why = Status::ok();
    return kRestoreDone;
}

long storedEntryCount(EntryTable& entries) {
    return entries.recordCount();
}

long storedClientCount(MasterTables& masters) {
    return static_cast<long>(allClients(masters.clients).size());
}

bool createBackupFile(EntryTable& entries, MasterTables& masters, const std::string& fileName,
                      BackupProgress* progress, Status* why) {
    BackupWriter writer(entries, masters, progress);
    bool ok = writer.createFile(fileName);
    if (why) *why = writer.lastError();
    return ok;
}

int restoreBackupFile(EntryTable& entries, MasterTables& masters, const std::string& fileName,
                      Status* why) {
    BackupWriter writer(entries, masters);
    int result = writer.restoreFile(fileName);
    if (why) *why = writer.lastError();
    return result;
}

}  // namespace qb
