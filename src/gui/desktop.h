#pragma once

#include <string>

namespace qb {

// Starts the desktop application on the data directory. A second start
// hands its command line to the running instance, brings it to the front
// and answers 0.
int runDesktop(const std::string& dataDir, int argc, char** argv);

}  // namespace qb
