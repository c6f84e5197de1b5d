#include "report/saved_layouts.h"

#include "app/settings.h"
#include "platform/platform.h"
#include "platform/text.h"
#include "store/record_props.h"
#include "store/tables.h"

namespace qb {
namespace {

constexpr std::uint32_t kNameProp = makePropId(kPropText, CEVT_LPWSTR);
constexpr std::uint32_t kLayoutProp = makePropId(kPropLayout, CEVT_BLOB);

CEPROPVAL layoutKind() {
    return CEPROPVAL::ui2(kPropListKind, kListLayout);
}

// The empty name: what "Set As Default" of a layout without a name clears.
constexpr std::u16string_view kNoDefaultName = u"";

template <typename Visit>
void forEachLayout(ListTable& list, Visit visit) {
    std::vector<CEPROPVAL> props;
    const CEPROPVAL kind = layoutKind();
    for (bool found = list.seekEqual(kind); found; found = list.seekNextEqual(kind)) {
        if (list.readAll(&props) != 0) continue;
        if (!visit(list.currentOid(), props)) return;
    }
}

const CEPROPVAL* property(const std::vector<CEPROPVAL>& props, std::uint32_t id) {
    for (const CEPROPVAL& p : props) {
        if (p.propid == id) return &p;
    }
    return nullptr;
}

}  // namespace

std::vector<SavedLayout> savedLayouts(Platform& platform) {
    std::vector<SavedLayout> result;
    ListTable list(platform, ListTable::Order::kByKind);
    if (!list.open()) return result;
    forEachLayout(list, [&](CEOID oid, const std::vector<CEPROPVAL>& props) {
        const CEPROPVAL* name = property(props, kNameProp);
        result.push_back({oid, name ? name->str : std::u16string()});
        return true;
    });
    return result;
}

CEOID findSavedLayout(Platform& platform, std::u16string_view name) {
    for (const SavedLayout& s : savedLayouts(platform)) {
        if (compareStringW(s.name, name, false) == 0) return s.oid;
    }
    return 0;
}

bool loadSavedLayout(Platform& platform, CEOID oid, ReportLayout* layout) {
    ListTable list(platform, ListTable::Order::kByKind);
    std::vector<CEPROPVAL> props;
    if (oid == 0 || !list.open() || !list.seekOid(oid) || list.readAll(&props) != 0) return false;
    const CEPROPVAL* kind = property(props, kListKindSort);
    const CEPROPVAL* blob = property(props, kLayoutProp);
    if (!kind || kind->num != kListLayout || !blob) return false;
    ReportLayout loaded;
    if (!loaded.setBytes(blob->blob)) return false;
    extendFieldOrder(loaded);
    *layout = loaded;
    return true;
}

CEOID writeSavedLayout(Platform& platform, CEOID oid, std::u16string_view name,
                       const ReportLayout& layout) {
    ListTable list(platform, ListTable::Order::kByKind);
    if (!list.open()) return 0;
    const std::vector<CEPROPVAL> values = {
        layoutKind(), CEPROPVAL::wstr(kPropText, std::u16string(name)),
        CEPROPVAL::blobOf(kPropLayout,
                          std::vector<std::uint8_t>(layout.bytes().begin(), layout.bytes().end()))};
    if (oid != 0) {
        if (!list.seekOid(oid) || !list.update(values)) return 0;
        return oid;
    }
    return list.add(values) ? list.currentOid() : 0;
}

bool deleteSavedLayout(Platform& platform, CEOID oid) {
    ListTable list(platform, ListTable::Order::kByKind);
    ReportLayout unused;
    return loadSavedLayout(platform, oid, &unused) && list.open() && list.remove(oid);
}

bool isReservedLayoutName(std::u16string_view name) {
    return compareStringW(name, u"client", true) == 0 || compareStringW(name, u"date", true) == 0;
}

bool renameSavedLayout(Platform& platform, CEOID oid, std::u16string_view name) {
    if (isReservedLayoutName(name)) return false;
    ListTable list(platform, ListTable::Order::kByKind);
    ReportLayout unused;
    return loadSavedLayout(platform, oid, &unused) && list.open() && list.seekOid(oid) &&
           list.update({CEPROPVAL::wstr(kPropText, std::u16string(name))});
}

SaveOutcome saveWorkingLayout(Platform& platform, WorkingLayout& working,
                              std::u16string_view enteredName, bool overwrite) {
    if (isReservedLayoutName(enteredName)) return SaveOutcome::kReserved;
    if (compareStringW(enteredName, working.name, false) != 0) {
        working.name = std::u16string(enteredName);
        working.oid = 0;
    }
    const CEOID existing = findSavedLayout(platform, working.name);
    if (existing != 0) {
        if (!overwrite) return SaveOutcome::kExists;
        // Overwriting replaces the layout of that name rather than adding a
        // second record with the same name.
        working.oid = existing;
    }
    const CEOID oid = writeSavedLayout(platform, working.oid, working.name, working.layout);
    if (oid == 0) return SaveOutcome::kFailed;
    working.oid = oid;
    return SaveOutcome::kSaved;
}

WorkingLayout defaultLayout(Platform& platform, const Settings& settings) {
    WorkingLayout w;
    if (!settings.defaultReport.empty()) {
        const CEOID oid = findSavedLayout(platform, settings.defaultReport);
        if (oid != 0 && loadSavedLayout(platform, oid, &w.layout)) {
            w.name = settings.defaultReport;
            w.oid = oid;
            return w;
        }
    }
    w.layout = clientLayout();
    return w;
}

bool setDefaultLayout(Registry& registry, Settings& settings, std::u16string_view workingName) {
    settings.defaultReport =
        workingName == kNoDefaultName ? std::u16string() : std::u16string(workingName);
    return saveSettings(registry, settings);
}

}  // namespace qb
