// Parses arbitrary bytes as a contacts file; every card offered has a name.

#include <cstddef>
#include <cstdint>

#include "entry/vcard.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const qb::VCardContact& c : qb::parseVCards(qb::fuzz::bytesOf(data, size))) {
        if (c.fileAs.empty()) __builtin_trap();
    }
    std::vector<qb::VCardContact> contacts;
    qb::readVCardFile(qb::fuzz::scratchFile("vcard", data, size), &contacts);
    return 0;
}
