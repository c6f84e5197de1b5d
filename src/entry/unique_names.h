#pragma once

// Names stay unique: no rename makes two clients with one name, two
// projects or tasks of one client with one name, or a drop-list item
// twice. A rename onto a name that is taken is refused and says so.

#include <string>
#include <string_view>

namespace qb {

enum class RenameOutcome {
    kRenamed,
    kUnchanged,  // the new name is the old one
    kBlank,      // nothing left after cutting to the box's limit
    kTaken,      // another record of the collection has the name
    kMissing,    // the record to rename is not there
    kFailed,     // the store refused the write
};

enum class NameKind { kClient, kProject, kTask, kContact, kDropItem };

// The refusal for a taken name, also given when an Add meets one:
// A client named "X" already exists. / The project "X" already exists. ...
std::u16string nameTakenMessage(NameKind kind, std::u16string_view name);

}  // namespace qb
