#include <dlfcn.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "cli/cli.h"

namespace {

using RunDesktop = int (*)(const char*, int, char**);

std::string executableDir() {
    char path[4096];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0) return ".";
    std::string exe(path, static_cast<std::size_t>(n));
    return exe.substr(0, exe.rfind('/'));
}

// The desktop lives in a module beside the program (build tree) or under
// lib/quillarbor of the installation, so that commands never load Qt.
int launchDesktop(const std::string& dataDir, int argc, char** argv) {
    std::string dir = executableDir();
    std::string error;
    for (const std::string& module : {dir + "/lib/quillarbor/quillarbor-desktop.so",
                                      dir + "/../lib/quillarbor/quillarbor-desktop.so"}) {
        if (access(module.c_str(), R_OK) != 0) continue;
        void* handle = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle) {
            error = dlerror();
            continue;
        }
        auto run = reinterpret_cast<RunDesktop>(dlsym(handle, "quillarbor_run_desktop"));
        if (run) return run(dataDir.c_str(), argc, argv);
        error = dlerror();
    }
    std::fprintf(stderr, "quillarbor: cannot start the desktop application%s%s\n",
                 error.empty() ? "" : ": ", error.c_str());
    return 1;
}

}  // namespace

int main(int argc, char** argv) { return qb::runCommandLine(argc, argv, launchDesktop); }
