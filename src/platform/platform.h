#pragma once

#include <memory>
#include <string>

#include "platform/data_file.h"
#include "platform/object_store.h"
#include "platform/registry.h"
#include "platform/status.h"

namespace qb {

// The platform facilities over one data file: object store and registry.
class Platform {
  public:
    // Opens DIR/quillarbor.db, creating the directory and the file on first use.
    static Status open(const std::string& dataDir, std::unique_ptr<Platform>* out);
    static std::unique_ptr<Platform> inMemory();

    DataFile& file() { return *file_; }
    ObjectStore& objects() { return objects_; }
    Registry& registry() { return registry_; }

  private:
    explicit Platform(std::unique_ptr<DataFile> file);

    std::unique_ptr<DataFile> file_;
    ObjectStore objects_;
    Registry registry_;
};

inline constexpr const char* kDataFileName = "quillarbor.db";

}  // namespace qb
