#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/layout_args.h"
#include "platform/platform.h"
#include "platform/string_printf.h"
#include "platform/text.h"
#include "report/saved_layouts.h"

namespace qb {
namespace {

// The layout's fields by the names `layout show` prints and `--set` takes.
struct LayoutField {
    const char* name;
    std::string (*get)(const ReportLayout&);
    bool (*set)(ReportLayout&, const std::string&);
};

bool number(const std::string& text, std::uint32_t* out) {
    if (text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0) {
        if (text.size() < 3 || text.size() > 10) return false;
        std::uint32_t v = 0;
        for (char c : text.substr(2)) {
            int d = c >= '0' && c <= '9'   ? c - '0'
                    : c >= 'a' && c <= 'f' ? c - 'a' + 10
                    : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                           : -1;
            if (d < 0) return false;
            v = v << 4 | static_cast<std::uint32_t>(d);
        }
        *out = v;
        return true;
    }
    return parseUnsignedArg(text, out);
}

template <std::uint16_t (ReportLayout::*Get)() const, void (ReportLayout::*Set)(std::uint16_t)>
LayoutField flag16(const char* name) {
    return {name, [](const ReportLayout& l) { return std::to_string((l.*Get)()); },
            [](ReportLayout& l, const std::string& v) {
                std::uint32_t n = 0;
                if (!number(v, &n) || n > 0xFFFF) return false;
                (l.*Set)(static_cast<std::uint16_t>(n));
                return true;
            }};
}

template <FooterLine Line>
LayoutField footer(const char* name) {
    return {name, [](const ReportLayout& l) { return std::to_string(l.footerHidden(Line)); },
            [](ReportLayout& l, const std::string& v) {
                std::uint32_t n = 0;
                if (!number(v, &n) || n > 0xFFFF) return false;
                l.setFooterHidden(Line, static_cast<std::uint16_t>(n));
                return true;
            }};
}

const std::vector<LayoutField>& layoutFields() {
    static const std::vector<LayoutField> kFields = {
        {"title", [](const ReportLayout& l) { return u8(l.title()); },
         [](ReportLayout& l, const std::string& v) {
             l.setTitle(u16(v));
             return true;
         }},
        flag16<&ReportLayout::type, &ReportLayout::setType>("type"),
        flag16<&ReportLayout::dateSelection, &ReportLayout::setDateSelection>("dateSelection"),
        {"groupBy", [](const ReportLayout& l) { return stringPrintf("0x%08X", l.groupBy()); },
         [](ReportLayout& l, const std::string& v) {
             std::uint32_t n = 0;
             if (!number(v, &n)) return false;
             l.setGroupBy(n);
             return true;
         }},
        flag16<&ReportLayout::groupRule, &ReportLayout::setGroupRule>("groupRule"),
        flag16<&ReportLayout::groupTotalHidden, &ReportLayout::setGroupTotalHidden>(
            "hideGroupTotalHours"),
        footer<FooterLine::kBillableHours>("hideTotalBillableHours"),
        footer<FooterLine::kUnpaidAmount>("hideTotalUnpaidAmount"),
        footer<FooterLine::kPaidAmount>("hideTotalPaidAmount"),
        footer<FooterLine::kNonBillableHours>("hideTotalNonBillableHours"),
        footer<FooterLine::kReportDate>("hideReportDate"),
        {"fieldOrder", [](const ReportLayout& l) { return u8(l.fieldOrder()); },
         [](ReportLayout& l, const std::string& v) {
             l.setFieldOrder(u16(v));
             return true;
         }},
        {"fieldMask", [](const ReportLayout& l) { return std::to_string(l.fieldMask()); },
         [](ReportLayout& l, const std::string& v) {
             std::uint32_t n = 0;
             if (!number(v, &n)) return false;
             l.setFieldMask(n);
             return true;
         }},
    };
    return kFields;
}

std::u16string layoutName(const std::string& text) {
    std::u16string name = u16(text);
    if (name.size() > kLayoutTitleMax) name.resize(kLayoutTitleMax);
    return name;
}

int list(CommandContext& ctx) {
    ctx.out << "id\tname\tdefault\n";
    for (const SavedLayout& s : savedLayouts(ctx.platform())) {
        const bool isDefault = !s.name.empty() && s.name == ctx.settings().defaultReport;
        ctx.out << s.oid << "\t" << u8(s.name) << "\t" << (isDefault ? "Y" : "N") << "\n";
    }
    return kExitOk;
}

int show(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("layout show takes one NAME");
    WorkingLayout working;
    if (!layoutFromArg(ctx, args.positional()[0], &working)) return kExitRefused;
    for (const LayoutField& f : layoutFields()) {
        ctx.out << f.name << "\t" << f.get(working.layout) << "\n";
    }
    return kExitOk;
}

int save(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1 || args.positional()[0].empty()) {
        return ctx.usage("layout save takes one NAME");
    }
    WorkingLayout working = defaultLayout(ctx.platform(), ctx.settings());
    if (auto from = args.value("from")) {
        if (!layoutFromArg(ctx, *from, &working)) return kExitRefused;
    }
    for (const std::string& assignment : args.all("set")) {
        const std::size_t eq = assignment.find('=');
        const LayoutField* field = nullptr;
        for (const LayoutField& f : layoutFields()) {
            if (eq != std::string::npos && assignment.compare(0, eq, f.name) == 0 &&
                std::char_traits<char>::length(f.name) == eq) {
                field = &f;
            }
        }
        if (!field) return ctx.usage("--set takes FIELD=VALUE with a field of 'layout show'");
        if (!field->set(working.layout, assignment.substr(eq + 1))) {
            return ctx.usage("--set " + assignment + ": not a value of that field");
        }
    }
    const bool overwrite = args.has("overwrite") || args.has("yes");
    switch (
        saveWorkingLayout(ctx.platform(), working, layoutName(args.positional()[0]), overwrite)) {
        case SaveOutcome::kSaved:
            ctx.out << working.oid << "\n";
            return kExitOk;
        case SaveOutcome::kExists:
            return ctx.refused(std::u16string(kReportExistsQuestion));
        case SaveOutcome::kReserved:
            return ctx.refused(std::u16string(kReservedLayoutNameText));
        case SaveOutcome::kFailed:
            break;
    }
    return ctx.failed("cannot save the layout");
}

int remove(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("layout delete takes one NAME");
    const CEOID oid = findSavedLayout(ctx.platform(), u16(args.positional()[0]));
    if (oid == 0) return noSuchLayout(ctx, args.positional()[0]);
    if (!deleteSavedLayout(ctx.platform(), oid)) return ctx.failed("cannot delete the layout");
    return kExitOk;
}

int rename(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 2 || args.positional()[1].empty()) {
        return ctx.usage("layout rename takes OLD and NEW");
    }
    const CEOID oid = findSavedLayout(ctx.platform(), u16(args.positional()[0]));
    if (oid == 0) return noSuchLayout(ctx, args.positional()[0]);
    const std::u16string name = layoutName(args.positional()[1]);
    if (isReservedLayoutName(name)) return ctx.refused(std::u16string(kReservedLayoutNameText));
    const CEOID other = findSavedLayout(ctx.platform(), name);
    if (other != 0 && other != oid) {
        return ctx.refused("A saved report named " + args.positional()[1] + " exists already.");
    }
    if (!renameSavedLayout(ctx.platform(), oid, name))
        return ctx.failed("cannot rename the layout");
    return kExitOk;
}

int setDefault(CommandContext& ctx, const Args& args) {
    if (args.positional().size() != 1) return ctx.usage("layout default takes NAME or none");
    const std::string& word = args.positional()[0];
    WorkingLayout working;
    if (word != "none" && !layoutFromArg(ctx, word, &working)) return kExitRefused;
    if (!setDefaultLayout(ctx.platform().registry(), ctx.settings(), working.name)) {
        return ctx.failed("cannot save the settings");
    }
    return kExitOk;
}

}  // namespace

int runLayout(CommandContext& ctx) {
    if (ctx.words().empty()) {
        return ctx.usage("layout needs list, show, save, delete, rename or default");
    }
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1,
                   {{"from", true}, {"set", true}, {"overwrite", false}, {"yes", false}})) {
        return kExitRefused;
    }
    if (verb == "list") return list(ctx);
    if (verb == "show") return show(ctx, args);
    if (verb == "save") return save(ctx, args);
    if (verb == "delete") return remove(ctx, args);
    if (verb == "rename") return rename(ctx, args);
    if (verb == "default") return setDefault(ctx, args);
    return ctx.usage("unknown layout command '" + verb + "'");
}

}  // namespace qb
