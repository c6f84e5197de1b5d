// Feeds arbitrary bytes to the compound file reader and to the backup
// layout's field reader: neither may crash, hang or allocate from a size it
// has not checked.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "backup/backup_layout.h"
#include "platform/compound_file.h"
#include "store/time_entry.h"

namespace {

void decodeAll(qb::CompoundStorage& storage, const std::u16string& name) {
    qb::CompoundStream stream;
    if (!storage.openStream(name, &stream).isOk()) return;
    qb::FieldReader entryReader(stream);
    qb::TimeEntry entry;
    qb::decodeEntry(entryReader, &entry);
    std::vector<qb::RateRecord> rates;
    if (!storage.openStream(name, &stream).isOk()) return;
    qb::FieldReader rateReader(stream);
    qb::decodeRates(rateReader, &rates);
    std::vector<qb::ProjectRecord> projects;
    if (!storage.openStream(name, &stream).isOk()) return;
    qb::FieldReader projectReader(stream);
    qb::decodeProjectTasks(projectReader, &projects);
}

void walk(qb::CompoundStorage& storage, int depth) {
    qb::CompoundEnum elements;
    if (depth > 64 || !storage.enumElements(&elements).isOk()) return;
    qb::ElementInfo element;
    while (elements.next(&element)) {
        if (element.type == qb::ElementType::kStream) {
            decodeAll(storage, element.name);
        } else {
            qb::CompoundStorage child;
            if (storage.openStorage(element.name, &child).isOk()) walk(child, depth + 1);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::unique_ptr<qb::CompoundFile> file;
    if (!qb::CompoundFile::openBytes(std::vector<std::uint8_t>(data, data + size), &file).isOk()) {
        return 0;
    }
    qb::CompoundStorage root = file->root();
    walk(root, 0);
    return 0;
}
