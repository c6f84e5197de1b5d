#pragma once

// The reference store: ten years of one busy user's data, generated from a
// seed so that every benchmark run, on every machine, measures the same store.

#include <cstdint>
#include <string>

#include "platform/win_types.h"

namespace qb {

class Platform;

inline constexpr std::uint32_t kReferenceSeed = 20261121;

struct ReferenceOptions {
    std::uint32_t seed = kReferenceSeed;
    int clients = 200;
    long entries = 100000;
    // Writes per transaction: large enough that commits do not dominate,
    // small enough that a batch never holds the file for long.
    int writesPerBatch = 2000;
};

// What the benchmarks and scripts need to know about a generated store.
struct ReferenceSummary {
    long entries = 0;
    CEOID firstEntry = 0;  // entries take consecutive ids
    CEOID lastEntry = 0;
    // A client with a project/task pair and a task of its own.
    std::u16string client;
    std::u16string project;
    std::u16string projectTask;
    std::u16string clientTask;
};

// Entries fall on the days from 2016-01-01 to 2025-12-31, about 27 a day,
// except the week of Monday 2025-06-02: that one is an ordinary working
// week of eight entries a weekday and none at the weekend, so that a walk of
// one week has a known size.
SYSTEMTIME referenceFirstDay();
SYSTEMTIME referenceLastDay();
SYSTEMTIME referenceQuietWeek();
inline constexpr long kQuietWeekEntries = 40;

// Fills an empty store through the core's own writes: settings, clients with
// their projects, tasks, contacts and rates, the drop lists, then the
// entries. The same options give the same store. False when a write fails
// (the batch in progress is rolled back).
bool makeReferenceStore(Platform& platform, const ReferenceOptions& options,
                        ReferenceSummary* summary = nullptr);

}  // namespace qb
