#pragma once

namespace qb {

// Runs one command of the command line and answers the exit status:
// 0 done, 1 the operation failed, 2 bad usage or input refused by a rule.
int runCommandLine(int argc, char** argv);

}  // namespace qb
