#pragma once

#include <string>

#include "entry/unique_names.h"
#include "store/master_data.h"

namespace qb {

class CommandContext;

// Text typed into the input dialog: at most 127 characters.
std::u16string inputText(const std::string& typed);

// Finds the client by exact name; prints the refusal and answers false
// when there is none.
bool findClient(CommandContext& ctx, const std::u16string& name, ClientRecord* out);

// The question a destructive command asks; answers true when --yes was
// given, else prints it and answers false.
bool confirmed(CommandContext& ctx, bool yes, std::u16string_view question);

// The exit status of a rename: 0 when renamed or unchanged, else the
// refusal (blank, taken) or failure printed first.
int renameStatus(CommandContext& ctx, RenameOutcome outcome, NameKind kind,
                 const std::u16string& newName);

inline constexpr std::u16string_view kBlankNotAllowed =
    u"Please enter some text. Blank is not allowed.";

}  // namespace qb
