#include "platform/platform.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace qb {

Platform::Platform(std::unique_ptr<DataFile> file)
    : file_(std::move(file)), objects_(*file_), registry_(*file_) {}

Status Platform::open(const std::string& dataDir, std::unique_ptr<Platform>* out) {
    std::error_code ec;
    std::filesystem::create_directories(dataDir, ec);
    if (ec) {
        return Status::ioError("cannot create data directory " + dataDir + ": " + ec.message());
    }
    std::unique_ptr<DataFile> file;
    Status s = DataFile::open((std::filesystem::path(dataDir) / kDataFileName).string(), &file);
    if (!s.isOk()) return s;
    out->reset(new Platform(std::move(file)));
    return Status::ok();
}

std::unique_ptr<Platform> Platform::inMemory() {
    return std::unique_ptr<Platform>(new Platform(DataFile::openInMemory()));
}

}  // namespace qb
