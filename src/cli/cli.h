#pragma once

#include <string>

namespace qb {

// Starts the desktop application on a data directory; answers its exit code.
using DesktopLauncher = int (*)(const std::string& dataDir, int argc, char** argv);

// Runs one command of the command line and answers the exit status:
// 0 done, 1 the operation failed, 2 bad usage or input refused by a rule.
// Without a command it hands over to the desktop application.
int runCommandLine(int argc, char** argv, DesktopLauncher desktop);

}  // namespace qb
