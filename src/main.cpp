#include "cli/cli.h"

int main(int argc, char** argv) { return qb::runCommandLine(argc, argv); }
