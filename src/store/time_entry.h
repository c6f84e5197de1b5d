#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win_types.h"

namespace qb {

class EntryTable;

// One piece of recorded work, as stored in EntryTable.
struct TimeEntry {
    bool billable = false;
    bool paid = false;
    std::u16string client;
    std::u16string project;
    std::u16string phase;
    std::u16string task;
    std::u16string currency;
    std::u16string billTo;
    std::u16string custom1;
    std::u16string custom2;
    std::u16string custom3;
    std::uint16_t rateType = 0;
    // Local wall-clock time of the work; seconds == 1 marks a start time.
    FILETIME date = 0;
    // The note (UTF-16LE text); empty means no note.
    std::vector<std::uint8_t> notes;
    // Hundredths of an hour.
    std::uint16_t duration = 0;
    // Hundredths of a currency unit.
    std::uint32_t rate = 0;
    CEOID recordOid = 0;

    std::int32_t notesSize() const { return static_cast<std::int32_t>(notes.size()); }
};

void resetEntry(TimeEntry& entry);
void setNotes(TimeEntry& entry, std::int32_t size, const std::uint8_t* bytes);

// The three date operations of an entry.
void setEntryDay(TimeEntry& entry, const SYSTEMTIME& day);
void setStartTime(TimeEntry& entry, const SYSTEMTIME& time);
void clearStartTime(TimeEntry& entry);
// True when the entry records a start time (the seconds of `date` equal 1).
bool hasStartTime(const TimeEntry& entry);
// The same from the calendar fields of an entry's date.
inline bool hasStartTime(const SYSTEMTIME& date) {
    return date.wSecond == 1;
}

// Reads the table's current record: 0 read, 1 end of table, -1 error.
// `dated`, when given, tells whether the record holds a date (1001).
int readEntry(EntryTable& table, TimeEntry& entry, bool* dated = nullptr);
// The same from a record's encoded properties: 0 read, -1 damaged.
int decodeEntry(std::string_view encoded, CEOID oid, TimeEntry& entry, bool* dated = nullptr);
bool addEntry(EntryTable& table, const TimeEntry& entry);
// Rewrites the table's current record (the caller seeks recordOid first).
bool updateEntry(EntryTable& table, const TimeEntry& entry);
// Adds a new entry or rewrites its record, as the editor saves.
bool saveEntry(EntryTable& table, TimeEntry& entry);

// The property values an add or an update writes, in the order written.
std::vector<CEPROPVAL> entryAddValues(const TimeEntry& entry);
std::vector<CEPROPVAL> entryUpdateValues(const TimeEntry& entry);

}  // namespace qb
