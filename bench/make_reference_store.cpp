// make_reference_store DIR [--seed N] [--entries N]: writes the reference
// store (100,000 entries unless told) into DIR/quillarbor.db, which must not
// exist yet.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/platform.h"
#include "platform/text.h"
#include "reference_store.h"

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

int usage(const char* message) {
    std::fprintf(
        stderr,
        "make_reference_store: %s\nusage: make_reference_store DIR [--seed N] [--entries N]\n",
        message);
    return kExitUsage;
}

bool parseNumber(const std::string& text, std::uint32_t* out) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
    unsigned long long value = std::strtoull(text.c_str(), nullptr, 10);
    if (value > 0xFFFFFFFFULL) return false;
    *out = static_cast<std::uint32_t>(value);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    qb::ReferenceOptions options;
    std::string dir;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--seed") {
            if (i + 1 >= argc || !parseNumber(argv[++i], &options.seed)) {
                return usage("--seed takes a number from 0 to 4294967295");
            }
        } else if (arg == "--entries") {
            std::uint32_t entries = 0;
            if (i + 1 >= argc || !parseNumber(argv[++i], &entries) || entries == 0 ||
                entries > 10000000) {
                return usage("--entries takes a number from 1 to 10000000");
            }
            options.entries = entries;
        } else if (arg == "--help" || arg == "-h") {
            std::printf("usage: make_reference_store DIR [--seed N] [--entries N]\n");
            return 0;
        } else if (!arg.empty() && arg[0] == '-') {
            return usage(("unknown option " + arg).c_str());
        } else if (dir.empty()) {
            dir = arg;
        } else {
            return usage("give one directory");
        }
    }
    if (dir.empty()) return usage("give the directory to write into");

    const std::filesystem::path file = std::filesystem::path(dir) / qb::kDataFileName;
    std::error_code ec;
    if (std::filesystem::exists(file, ec) || ec) {
        std::fprintf(stderr, "make_reference_store: %s exists already; refusing to overwrite it\n",
                     file.c_str());
        return kExitUsage;
    }

    const auto started = std::chrono::steady_clock::now();
    std::unique_ptr<qb::Platform> platform;
    qb::Status s = qb::Platform::open(dir, &platform);
    if (!s.isOk()) {
        std::fprintf(stderr, "make_reference_store: %s\n", s.message().c_str());
        return kExitFailed;
    }
    qb::ReferenceSummary summary;
    if (!qb::makeReferenceStore(*platform, options, &summary)) {
        std::fprintf(stderr, "make_reference_store: cannot write the reference store into %s\n",
                     file.c_str());
        return kExitFailed;
    }
    platform.reset();  // closing checkpoints the log, which belongs to the cost
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();

    std::printf("%s: %ld entries (ids %u-%u), seed %u, %.2f s\n", file.c_str(), summary.entries,
                summary.firstEntry, summary.lastEntry, options.seed, seconds);
    std::printf("client\t%s\nproject\t%s\nprojectTask\t%s\nclientTask\t%s\n",
                qb::utf16ToUtf8(summary.client).c_str(), qb::utf16ToUtf8(summary.project).c_str(),
                qb::utf16ToUtf8(summary.projectTask).c_str(),
                qb::utf16ToUtf8(summary.clientTask).c_str());
    return 0;
}
