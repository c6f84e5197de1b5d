#pragma once

// Helpers shared by the tests: temporary directories, running the
// quillarbor binary, reading files.

#include <string>
#include <vector>

namespace qb::testing {

// A fresh directory, removed with everything in it when the object dies.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

struct RunResult {
    int status = -1;
    std::string out;
    std::string err;
};

// Runs the quillarbor binary (QB_BINARY) with the arguments, environment
// additions as NAME=VALUE, no input.
RunResult runQuillarbor(const std::vector<std::string>& args,
                        const std::vector<std::string>& env = {});

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

// The folder of the independent tools and fixtures that sit beside the project.
std::string sharedDir();

}  // namespace qb::testing
