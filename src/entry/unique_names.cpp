#include "entry/unique_names.h"

namespace qb {

std::u16string nameTakenMessage(NameKind kind, std::u16string_view name) {
    const std::u16string quoted = u"\"" + std::u16string(name) + u"\"";
    switch (kind) {
        case NameKind::kClient:
            return u"A client named " + quoted + u" already exists.";
        case NameKind::kProject:
            return u"The project " + quoted + u" already exists.";
        case NameKind::kTask:
            return u"The task " + quoted + u" already exists.";
        case NameKind::kContact:
            return u"The contact " + quoted + u" already exists.";
        case NameKind::kDropItem:
            break;
    }
    return quoted + u" is in the list already.";
}

}  // namespace qb
