#include "export/export_settings.h"

#include "platform/text.h"

namespace qb {

ExportSettings loadExportSettings(Registry& registry, const Settings& settings) {
    ExportSettings out;
    out.settings = settings;
    out.locale = loadLocaleInfo(registry);
    out.codePage = ansiCodePage(registry);
    return out;
}

}  // namespace qb
