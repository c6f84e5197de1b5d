// Runs a fuzz target's inputs without libFuzzer: every file named, and every
// file in every directory named. The regression tests run the inputs that
// once crashed a reader through it, in the ordinary and sanitizer builds.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool runFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", path.c_str());
        return false;
    }
    std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    // As libFuzzer does, an empty input still comes with a valid pointer.
    bytes.reserve(1);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        std::filesystem::path arg(argv[i]);
        std::vector<std::filesystem::path> files;
        if (std::filesystem::is_directory(arg)) {
            for (const auto& e : std::filesystem::directory_iterator(arg)) {
                if (e.is_regular_file()) files.push_back(e.path());
            }
            std::sort(files.begin(), files.end());
        } else {
            files.push_back(arg);
        }
        for (const auto& f : files) {
            std::printf("%s\n", f.c_str());
            std::fflush(stdout);
            if (!runFile(f)) return 1;
            ++count;
        }
    }
    std::printf("%d inputs ran\n", count);
    return count > 0 ? 0 : 1;
}
