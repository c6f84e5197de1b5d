#pragma once

// Reading a database's records on a connection and a thread of their own, a
// bounded number of records ahead of the caller: while the caller turns one
// record into a line of a file, SQLite is already stepping to the next ones.

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/win_types.h"

namespace qb {

class DataFile;

class RecordReadAhead {
  public:
    // Says whether a record, by its encoded properties, may still be wanted:
    // the first one refused ends the reading. Runs on the reading thread.
    using Wanted = std::function<bool(std::string_view props)>;

    RecordReadAhead();
    // Stops the reading thread and waits for it.
    ~RecordReadAhead();
    RecordReadAhead(const RecordReadAhead&) = delete;
    RecordReadAhead& operator=(const RecordReadAhead&) = delete;

    // Starts reading the records of `database` in the sort order `sortProp`,
    // from the first one not smaller than `from`. False, with nothing
    // started, where a second connection would not see what the caller's
    // sees: an in-memory file, or one whose connection has a transaction
    // open (its writes are not committed yet).
    bool start(DataFile& file, CEOID database, std::uint32_t sortProp, const CEPROPVAL& from,
               Wanted wanted);
    // The next record: its id and encoded properties, valid until the next
    // call. False at the end of the records wanted, or when a record could
    // not be read.
    bool next(CEOID* oid, std::string_view* props);

  private:
    struct Shared;
    std::unique_ptr<Shared> shared_;
};

}  // namespace qb
