#pragma once

// Reading a database's records on a connection and a thread of their own, a
// bounded number of records ahead of the caller: while the caller turns one
// record into a line of a file, SQLite is already stepping to the next ones.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/win_types.h"

namespace qb {

class DataFile;

class RecordReadAhead {
  public:
    // Says whether a record, by its encoded properties, may still be wanted:
    // the first one refused ends the reading. Runs on the reading thread.
    using Wanted = std::function<bool(std::string_view props)>;

    // Turns a record into what the caller would have made of it, on the
    // reading thread, into `made` (left empty when the caller would make
    // nothing of it). False leaves the record to the caller as it is.
    using Finish = std::function<bool(CEOID oid, std::string_view props, std::string* made)>;
    // The id next() gives for what Finish made.
    static constexpr CEOID kFinished = 0;

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
    //
    // With `finish`, the reading thread also does the caller's work on the
    // records whenever the caller has fallen behind (handed-over chunks wait
    // for it), so that the two threads share the work however it divides
    // between reading and making.
    bool start(DataFile& file, CEOID database, std::uint32_t sortProp, const CEPROPVAL& from,
               Wanted wanted, Finish finish = {});
    // The next record: its id and encoded properties, valid until the next
    // call; or kFinished and what `finish` made of a record. False at the
    // end of the records wanted, or when a record could not be read.
    bool next(CEOID* oid, std::string_view* props);

  private:
    struct Shared;
    std::unique_ptr<Shared> shared_;
};

// The test seam: the reading thread finishes every other record, behind or
// not, so that tests see the work shared in every pattern. Off by default.
void setReadAheadFinishesEveryOther(bool on);

}  // namespace qb
