#include "cli/cli.h"

#include <malloc.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "cli/command.h"

namespace qb {
namespace {

constexpr const char* kOverview =
    "Quillarbor: time tracking and billing for consultants.\n"
    "\n"
    "usage: quillarbor [--data DIR] COMMAND [ARGS...]\n"
    "       quillarbor --help | --version | COMMAND --help\n"
    "\n"
    "Without a command, starts the desktop application.\n"
    "\n"
    "Options:\n"
    "  --data DIR   the data directory (else $QUILLARBOR_DATA, else\n"
    "               $XDG_DATA_HOME/quillarbor, else ~/.local/share/quillarbor)\n"
    "\n"
    "Environment: QUILLARBOR_NOW=YYYY-MM-DDTHH:MM:SS fixes today's date and time\n"
    "(for scripts and checks).\n"
    "\n"
    "Commands:\n";

std::string defaultDataDir() {
    if (const char* dir = std::getenv("QUILLARBOR_DATA"); dir && *dir) return dir;
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) {
        return std::string(xdg) + "/quillarbor";
    }
    const char* home = std::getenv("HOME");
    return std::string(home && *home ? home : ".") + "/.local/share/quillarbor";
}

void printOverview(std::ostream& out) {
    out << kOverview;
    for (const Command& c : allCommands()) {
        std::string name = c.name;
        name.resize(12, ' ');
        out << "  " << name << c.summary << "\n";
    }
    out << "\nExit status: 0 done, 1 the operation failed, 2 bad usage or input refused.\n";
}

bool wantsHelp(const std::vector<std::string>& words) {
    for (const std::string& w : words) {
        if (w == "--help" || w == "-h") return true;
    }
    return false;
}

// A command lives for one operation: memory it frees is better kept for
// its next allocation than given back to the system and faulted in again.
// A report of 100,000 entries builds and frees its groups' rows over and
// over; this takes a sixth off its time (its peak grows by 1 MB). The
// desktop, which lives on, keeps the allocator's own behaviour.
void keepFreedMemory() {
    mallopt(M_TRIM_THRESHOLD, 64 << 20);
    mallopt(M_MMAP_THRESHOLD, 8 << 20);
}

}  // namespace

int runCommandLine(int argc, char** argv, DesktopLauncher desktop) {
    std::vector<std::string> words(argv + 1, argv + argc);
    // "--data" with nothing after it, wherever it stands: the directory was
    // forgotten, and no default directory may be touched instead.
    if (!words.empty() && words.back() == "--data") {
        std::cerr << "quillarbor: --data needs a directory\nTry 'quillarbor --help'.\n";
        return kExitRefused;
    }
    std::string dataDir;
    std::size_t i = 0;
    while (i < words.size() && words[i].rfind("--", 0) == 0) {
        const std::string& w = words[i];
        if (w == "--help" || w == "-h") {
            printOverview(std::cout);
            return kExitOk;
        }
        if (w == "--version") {
            std::cout << "quillarbor " << QB_VERSION << "\n";
            return kExitOk;
        }
        // The desktop's own options: start-up timing and a picture of the window.
        if (w == "--quit-after-paint") {
            ++i;
            continue;
        }
        if (w == "--screenshot" && i + 1 < words.size()) {
            i += 2;
            continue;
        }
        if (w == "--data" || w.rfind("--data=", 0) == 0) {
            dataDir = w == "--data" ? words[i + 1] : w.substr(7);
            i += w == "--data" ? 2 : 1;
            // An empty name would quietly fall back to the default directory.
            if (dataDir.empty()) {
                std::cerr << "quillarbor: --data needs a directory, not an empty name\n"
                          << "Try 'quillarbor --help'.\n";
                return kExitRefused;
            }
        } else {
            std::cerr << "quillarbor: unknown option " << w << "\nTry 'quillarbor --help'.\n";
            return kExitRefused;
        }
    }
    if (i == words.size()) {
        return desktop(dataDir.empty() ? defaultDataDir() : dataDir, argc, argv);
    }
    keepFreedMemory();
    const std::string name = words[i];
    std::vector<std::string> rest(words.begin() + static_cast<long>(i) + 1, words.end());
    for (const Command& c : allCommands()) {
        if (name != c.name) continue;
        if (wantsHelp(rest)) {
            std::cout << c.usage;
            return kExitOk;
        }
        CommandContext ctx(dataDir.empty() ? defaultDataDir() : dataDir, name, std::move(rest),
                           std::cout, std::cerr);
        if (!ctx.openStore()) return kExitFailed;
        return c.run(ctx);
    }
    std::cerr << "quillarbor: unknown command '" << name << "'\nTry 'quillarbor --help'.\n";
    return kExitRefused;
}

}  // namespace qb
