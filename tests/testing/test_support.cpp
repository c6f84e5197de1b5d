#include "testing/test_support.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

extern char** environ;

namespace qb::testing {
TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qbtest-XXXXXX").string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    char* made = mkdtemp(buffer.data());
    path_ = made ? made : "";
}

TempDir::~TempDir() {
    std::error_code ec;
    if (!path_.empty()) std::filesystem::remove_all(path_, ec);
}

RunResult runQuillarbor(const std::vector<std::string>& args, const std::vector<std::string>& env) {
    RunResult result;
    const char* binary = std::getenv("QB_BINARY");
    if (!binary) binary = QB_DEFAULT_BINARY;
    TempDir scratch;
    std::string outPath = scratch.file("out");
    std::string errPath = scratch.file("err");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);

    std::vector<std::string> argStrings{binary};
    argStrings.insert(argStrings.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : argStrings) argv.push_back(a.data());
    argv.push_back(nullptr);

    std::vector<std::string> envStrings;
    for (char** e = environ; *e; ++e) envStrings.emplace_back(*e);
    envStrings.insert(envStrings.end(), env.begin(), env.end());
    std::vector<char*> envp;
    for (std::string& e : envStrings) envp.push_back(e.data());
    envp.push_back(nullptr);

    pid_t pid = 0;
    int rc = posix_spawn(&pid, binary, &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0) {
        result.err = "cannot start " + std::string(binary);
        return result;
    }
    int status = 0;
    waitpid(pid, &status, 0);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    return result;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream data;
    data << in.rdbuf();
    return data.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string sharedDir() {
    const char* dir = std::getenv("QB_SHARED");
    return dir ? dir : QB_DEFAULT_SHARED;
}

}  // namespace qb::testing
