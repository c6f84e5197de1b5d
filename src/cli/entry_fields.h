#pragma once

// The FIELDS of `entry add` and `entry update`: options typed into the
// entry editor's boxes, then the editor's OK. Every command that makes an
// entry goes through here, so an entry is accepted or refused alike.

#include <vector>

#include "cli/args.h"

namespace qb {

class CommandContext;
struct TimeEntry;

// The FIELDS options (with --no-start and --unpaid).
const std::vector<Args::Option>& entryFieldOptions();

// The editor's OK on `entry` with the FIELDS of `args` typed over its
// boxes: the checks, the save and what the master data learns, committed
// together. Answers the exit status; on kExitOk `entry.recordOid` is the
// saved record. A refusal or failure has been printed; nothing else is.
int saveEntryFields(CommandContext& ctx, const Args& args, TimeEntry& entry);

}  // namespace qb
