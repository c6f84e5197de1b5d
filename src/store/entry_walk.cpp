#include "store/entry_walk.h"

#include "platform/calendar.h"
#include "platform/platform.h"
#include "platform/read_ahead.h"
#include "platform/record_codec.h"
#include "store/record_props.h"
#include "store/tables.h"
#include "store/time_entry.h"

namespace qb {

namespace {

// Whether the walk's entry just read lies within the range. Records without
// a date sort after every dated one, so the first of them ends the walk:
// such a record belongs to no period. Both walks decide by this.
bool liesWithin(int read, bool dated, const TimeEntry& entry, FILETIME end) {
    return read == 0 && dated && entry.date <= end;
}

bool readWithin(EntryTable& table, FILETIME end, TimeEntry& entry) {
    bool dated = false;
    const int read = readEntry(table, entry, &dated);
    return liesWithin(read, dated, entry, end);
}

// Whether a record ahead of the walk may still lie within the range. Only
// the date matters, and an older record's separate start time may move it
// within its day but never off it, so a record of a later day ends the walk
// for certain; the walk itself decides on the others.
bool mayLieWithin(std::string_view props, FILETIME end) {
    PropReader reader(props);
    PropView p;
    while (reader.next(p)) {
        if (p.propid == makePropId(kPropDate, CEVT_FILETIME)) return startOfDay(p.num) <= end;
    }
    // A record without a date ends the walk; a damaged one is the walk's to refuse.
    return reader.failed();
}

}  // namespace

long walkEntries(EntryTable& table, FILETIME start, FILETIME end,
                 const std::function<bool(const TimeEntry&)>& visit) {
    long visited = 0;
    TimeEntry entry;
    for (bool found = table.seekAfter(CEPROPVAL::fileTime(kPropDate, start)); found;
         found = table.seekNext()) {
        if (!readWithin(table, end, entry)) break;
        ++visited;
        if (!visit(entry)) break;
    }
    return visited;
}

long walkEntriesReadingAhead(EntryTable& table, FILETIME start, FILETIME end,
                             const std::function<bool(const TimeEntry&)>& visit) {
    RecordReadAhead ahead;
    if (!table.isOpen() ||
        !ahead.start(table.platform().file(), table.databaseOid(), kDateSort,
                     CEPROPVAL::fileTime(kPropDate, start),
                     [end](std::string_view props) { return mayLieWithin(props, end); })) {
        return walkEntries(table, start, end, visit);
    }
    long visited = 0;
    TimeEntry entry;
    CEOID oid = 0;
    std::string_view props;
    while (ahead.next(&oid, &props)) {
        bool dated = false;
        const int read = decodeEntry(props, oid, entry, &dated);
        if (!liesWithin(read, dated, entry, end)) break;
        ++visited;
        if (!visit(entry)) break;
    }
    return visited;
}

void writeEntriesReadingAhead(EntryTable& table, FILETIME start, FILETIME end,
                              const MakeEntryBytes& make,
                              const std::function<bool(std::string_view bytes)>& take) {
    // The caller's bytes go to `take` in pieces of about this size.
    constexpr std::size_t kPiece = 1 << 16;
    std::string piece;
    const std::unique_ptr<EntryBytes> writer = make();
    const auto add = [&](const TimeEntry& e) {
        writer->append(e, piece);
        if (piece.size() < kPiece) return true;
        const bool more = take(piece);
        piece.clear();
        return more;
    };
    // The reading thread's writer and entry, used there alone.
    std::unique_ptr<EntryBytes> aheadWriter;
    TimeEntry aheadEntry;
    const auto finish = [&](CEOID oid, std::string_view props, std::string* made) {
        bool dated = false;
        const int read = decodeEntry(props, oid, aheadEntry, &dated);
        // The entry that ends the walk is the caller's to see.
        if (!liesWithin(read, dated, aheadEntry, end)) return false;
        if (!aheadWriter) aheadWriter = make();
        aheadWriter->append(aheadEntry, *made);
        return true;
    };
    RecordReadAhead ahead;
    bool more = true;
    if (!table.isOpen() ||
        !ahead.start(
            table.platform().file(), table.databaseOid(), kDateSort,
            CEPROPVAL::fileTime(kPropDate, start),
            [end](std::string_view props) { return mayLieWithin(props, end); }, finish)) {
        walkEntries(table, start, end, add);
    } else {
        TimeEntry entry;
        CEOID oid = 0;
        std::string_view props;
        while (more && ahead.next(&oid, &props)) {
            if (oid == RecordReadAhead::kFinished) {
                piece.append(props);
                if (piece.size() >= kPiece) {
                    more = take(piece);
                    piece.clear();
                }
                continue;
            }
            bool dated = false;
            const int read = decodeEntry(props, oid, entry, &dated);
            if (!liesWithin(read, dated, entry, end)) break;
            more = add(entry);
        }
    }
    if (more && !piece.empty()) take(piece);
}

long walkAndDelete(EntryTable& table, FILETIME start, FILETIME end,
                   const std::function<bool(const TimeEntry&)>& visit) {
    long deleted = 0;
    CEOID pending = 0;
    TimeEntry entry;
    for (bool found = table.seekAfter(CEPROPVAL::fileTime(kPropDate, start)); found;) {
        if (!readWithin(table, end, entry)) break;
        CEOID current = entry.recordOid;
        bool doomed = visit(entry);
        found = table.seekNext();
        if (pending != 0 && table.remove(pending)) ++deleted;
        pending = doomed ? current : 0;
    }
    if (pending != 0 && table.remove(pending)) ++deleted;
    return deleted;
}

}  // namespace qb
