#pragma once

// The streams of a backup or archive file, and the bytes inside them
// (docs/formats/backup.md). Building the bytes does no I/O; reading takes
// them from an open stream and checks every count against what is left.

#include <cstdint>
#include <string>
#include <vector>

#include "platform/status.h"
#include "store/master_data.h"

namespace qb {

class CompoundStream;
struct TimeEntry;

inline constexpr std::uint32_t kBackupVersion = 220;
inline constexpr std::uint32_t kKindBackup = 1;
inline constexpr std::uint32_t kKindEntryArchive = 2;
inline constexpr std::uint32_t kKindClientArchive = 4;

inline constexpr std::u16string_view kDataVersionStream = u"DataVersion";
inline constexpr std::u16string_view kRecordsStorage = u"Records";
inline constexpr std::u16string_view kClientsStorage = u"Clients";
inline constexpr std::u16string_view kNameStream = u"Name";
inline constexpr std::u16string_view kProjectTasksStream = u"ProjectTasks";
inline constexpr std::u16string_view kTasksStream = u"Tasks";
inline constexpr std::u16string_view kContactsStream = u"Contacts";
inline constexpr std::u16string_view kRatesStream = u"Rates";

// "Record%d" and "Client%d".
std::u16string recordName(std::uint32_t number);
std::u16string clientName(std::uint32_t number);

// Little-endian building blocks.
void putU32(std::vector<std::uint8_t>& out, std::uint32_t value);
void putCountedString(std::vector<std::uint8_t>& out, std::u16string_view text);

void encodeEntry(const TimeEntry& entry, std::vector<std::uint8_t>* out);
void encodeCountedString(std::u16string_view text, std::vector<std::uint8_t>* out);
void encodeProjectTasks(const std::vector<ProjectRecord>& items, std::vector<std::uint8_t>* out);
void encodeNames(const std::vector<NamedRecord>& items, std::vector<std::uint8_t>* out);
void encodeRates(const std::vector<RateRecord>& items, std::vector<std::uint8_t>* out);

// Reads the fields of one stream in order. A failed read names the field.
class FieldReader {
  public:
    explicit FieldReader(CompoundStream& stream) : stream_(stream) {}

    Status u8(const char* field, std::uint8_t* out);
    Status u32(const char* field, std::uint32_t* out);
    Status countedString(const char* field, std::u16string* out);
    // A count of items each at least `minItemSize` bytes long: a count that
    // promises more than the stream holds is refused before anything is
    // allocated.
    Status count(const char* field, std::size_t minItemSize, std::uint32_t* out);
    Status bytes(const char* field, std::size_t size, std::vector<std::uint8_t>* out);

  private:
    Status shortOf(const char* field, std::uint64_t needed);
    CompoundStream& stream_;
};

// The notes of an entry follow their length only when it is at least 1; a
// length below 1 means no notes. Bytes after the last field are ignored.
Status decodeEntry(FieldReader& reader, TimeEntry* out);
Status decodeProjectTasks(FieldReader& reader, std::vector<ProjectRecord>* out);
Status decodeNames(FieldReader& reader, std::vector<NamedRecord>* out);
Status decodeRates(FieldReader& reader, std::vector<RateRecord>* out);

}  // namespace qb
