#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "app/settings.h"
#include "cli/args.h"

namespace qb {

class Platform;
class EntryTable;
struct MasterTables;

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitRefused = 2;

// What a command works with: its words, the data directory's store, the
// loaded settings and the two output streams.
class CommandContext {
  public:
    CommandContext(std::string dataDir, std::string command, std::vector<std::string> words,
                   std::ostream& out, std::ostream& err);
    ~CommandContext();

    // Opens the store, its tables and the settings; false after printing why.
    bool openStore();
    Platform& platform() { return *platform_; }
    EntryTable& entries() { return *entries_; }
    MasterTables& masters() { return *masters_; }
    Settings& settings() { return settings_; }

    // The words after the command's name.
    const std::vector<std::string>& words() const { return words_; }
    // Parses words[skip..] into `args`; false after printing a usage error.
    bool parse(Args& args, std::size_t skip, const std::vector<Args::Option>& known);

    // Each prints its text on stderr and answers the matching exit status.
    int usage(const std::string& message);
    int refused(const std::u16string& systemText);
    int refused(const std::string& message);
    int failed(const std::string& message);
    // A file that could not be written: the system's text, then the reason
    // naming the file (when known).
    int writeFailed(std::u16string_view systemText, const std::string& reason);

    std::ostream& out;
    std::ostream& err;

  private:
    std::string dataDir_;
    std::string command_;
    std::vector<std::string> words_;
    std::unique_ptr<Platform> platform_;
    std::unique_ptr<EntryTable> entries_;
    std::unique_ptr<MasterTables> masters_;
    Settings settings_;
};

struct Command {
    const char* name;
    const char* summary;  // one line for the overview
    const char* usage;    // the command's own help
    int (*run)(CommandContext& ctx);
};

// Every command, in the order the overview lists them.
const std::vector<Command>& allCommands();

}  // namespace qb
