// The desktop application as a loadable module: its one entry point.

#include "gui/desktop.h"

extern "C" __attribute__((visibility("default"))) int quillarbor_run_desktop(const char* dataDir,
                                                                              int argc,
                                                                              char** argv) {
    return qb::runDesktop(dataDir, argc, argv);
}
