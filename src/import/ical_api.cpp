#include "import/ical_api.h"

#include <dlfcn.h>

namespace qb {
namespace {

// The library's file names, newest first.
constexpr const char* kLibraryNames[] = {"libical.so.3", "libical.so"};

struct Loaded {
    IcalApi api;
    bool ok = false;
    std::string why;
};

Loaded load() {
    Loaded loaded;
    void* handle = nullptr;
    for (const char* name : kLibraryNames) {
        handle = ::dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (handle) break;
    }
    if (!handle) {
        const char* error = ::dlerror();
        loaded.why = std::string("the iCalendar library (libical) cannot be loaded: ") +
                     (error ? error : "not found");
        return loaded;
    }
#define QB_ICAL_RESOLVE(name)                                                              \
    loaded.api.name = reinterpret_cast<decltype(loaded.api.name)>(::dlsym(handle, #name)); \
    if (!loaded.api.name) {                                                                \
        loaded.why = "the iCalendar library (libical) lacks " #name;                       \
        return loaded;                                                                     \
    }
    QB_ICAL_FUNCTIONS(QB_ICAL_RESOLVE)
#undef QB_ICAL_RESOLVE
    // The handle stays open for the life of the process.
    loaded.ok = true;
    return loaded;
}

const Loaded& loaded() {
    static const Loaded once = load();
    return once;
}

}  // namespace

bool loadIcal(std::string* why) {
    if (!loaded().ok && why) *why = loaded().why;
    return loaded().ok;
}

const IcalApi& ical() {
    return loaded().api;
}

}  // namespace qb
