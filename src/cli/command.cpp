#include "cli/command.h"

#include <ostream>

#include "cli/cli_text.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr const char* kControlCharacterRefusal =
    " holds a tab, line break or other control character; only --note may";

}  // namespace

CommandContext::CommandContext(std::string dataDir, std::string command,
                               std::vector<std::string> words, std::ostream& out, std::ostream& err)
    : out(out),
      err(err),
      dataDir_(std::move(dataDir)),
      command_(std::move(command)),
      words_(std::move(words)) {}

CommandContext::~CommandContext() = default;

bool CommandContext::openStore() {
    Status s = Platform::open(dataDir_, &platform_);
    if (!s.isOk()) {
        err << "quillarbor: " << s.message() << "\n";
        return false;
    }
    entries_ = std::make_unique<EntryTable>(*platform_);
    if (!entries_->open()) {
        err << "quillarbor: cannot open the time entries in " << platform_->file().path() << "\n";
        return false;
    }
    masters_ = std::make_unique<MasterTables>(*platform_);
    masters_->open();
    loadSettings(platform_->registry(), settings_ = Settings());
    return true;
}

bool CommandContext::parse(Args& args, std::size_t skip, const std::vector<Args::Option>& known) {
    std::vector<std::string> rest;
    if (skip < words_.size()) rest.assign(words_.begin() + static_cast<long>(skip), words_.end());
    std::string error;
    if (!args.parse(rest, known, &error)) {
        usage(error);
        return false;
    }
    // One row a line in every listing: no text may bring a line break or a
    // tab in. Notes may: the --note option and the TEXT of a note command.
    for (const Args::Option& option : known) {
        if (!option.takesValue || std::string_view(option.name) == "note") continue;
        for (const std::string& value : args.all(option.name)) {
            if (holdsControlCharacter(value)) {
                usage(std::string("--") + option.name + kControlCharacterRefusal);
                return false;
            }
        }
    }
    if (!words_.empty() && words_[0] == "note") return true;
    for (const std::string& word : args.positional()) {
        if (holdsControlCharacter(word)) {
            usage(std::string("an argument") + kControlCharacterRefusal);
            return false;
        }
    }
    return true;
}

int CommandContext::usage(const std::string& message) {
    err << "quillarbor: " << message << "\n";
    err << "Try 'quillarbor " << command_ << " --help'.\n";
    return kExitRefused;
}

int CommandContext::refused(const std::u16string& systemText) {
    err << utf16ToUtf8(systemText) << "\n";
    return kExitRefused;
}

int CommandContext::refused(const std::string& message) {
    err << message << "\n";
    return kExitRefused;
}

int CommandContext::failed(const std::string& message) {
    err << "quillarbor: " << message << "\n";
    return kExitFailed;
}

int CommandContext::writeFailed(std::u16string_view systemText, const std::string& reason) {
    err << utf16ToUtf8(systemText) << "\n";
    if (!reason.empty()) err << "quillarbor: " << reason << "\n";
    return kExitFailed;
}

}  // namespace qb
