#include "cli/cli.h"
#include "gui/desktop.h"

int main(int argc, char** argv) { return qb::runCommandLine(argc, argv, qb::runDesktop); }
