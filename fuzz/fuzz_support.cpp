#include "fuzz_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>

namespace qb::fuzz {

std::u16string utf16(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char16_t>(data[2 * i] | data[2 * i + 1] << 8);
    }
    return text;
}

const std::string& scratchFile(std::string_view name, const std::uint8_t* data, std::size_t size) {
    static std::map<std::string, std::string, std::less<>> paths;
    auto it = paths.find(name);
    if (it == paths.end()) {
        const char* dir = std::getenv("TMPDIR");
        std::string path = std::string(dir && *dir ? dir : "/tmp") + "/qb-fuzz-" +
                           std::to_string(getpid()) + "-" + std::string(name);
        it = paths.emplace(std::string(name), path).first;
        // Removed when the fuzzer exits normally; a crash leaves it for the
        // reproduction.
        static struct Cleanup {
            ~Cleanup() {
                for (auto& [key, file] : paths) std::remove(file.c_str());
            }
        } cleanup;
    }
    std::FILE* f = std::fopen(it->second.c_str(), "wb");
    if (!f || (size > 0 && std::fwrite(data, 1, size, f) != size) || std::fclose(f) != 0) {
        std::perror(it->second.c_str());
        std::abort();
    }
    return it->second;
}

}  // namespace qb::fuzz
