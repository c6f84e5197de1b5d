// Reads arbitrary bytes as a list file in the code pages the import meets,
// and through the file reader itself; every item must fit a list's limit,
// and the items written back out must read back the same.

#include <cstddef>
#include <cstdint>

#include "entry/list_file.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const kCodePages[] = {"CP1252", "CP932", "UTF-8", "CP1251"};
    if (size == 0) return 0;
    const std::string codePage = kCodePages[data[0] % 4];
    std::vector<std::u16string> items;
    if (qb::listItemsFromBytes(qb::fuzz::bytesOf(data + 1, size - 1), codePage, &items) &&
        !items.empty()) {
        for (const std::u16string& item : items) {
            if (item.empty() || item.size() > qb::kListItemLimit) __builtin_trap();
        }
        std::vector<std::u16string> again;
        if (!qb::listItemsFromBytes(qb::listFileBytes(items, true, codePage), codePage, &again) ||
            again != items) {
            __builtin_trap();
        }
    }
    qb::readListFile(qb::fuzz::scratchFile("list", data + 1, size - 1), codePage, &items);
    return 0;
}
