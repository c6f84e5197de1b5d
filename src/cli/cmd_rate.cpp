#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/master_lookup.h"
#include "entry/rate_rules.h"
#include "entry/rate_setup.h"
#include "platform/string_printf.h"
#include "store/tables.h"

namespace qb {
namespace {

// The rate dialog's boxes, as typed.
struct RateDialog {
    std::uint16_t type = 0;
    std::u16string description;
    std::u16string rate;
};

bool typeArg(CommandContext& ctx, const Args& args, std::uint16_t* type) {
    std::uint32_t n = 0;
    if (!parseUnsignedArg(*args.value("type"), &n) || n >= kRateTypeCount) {
        ctx.usage("--type is a rate type from 0 to 4");
        return false;
    }
    *type = static_cast<std::uint16_t>(n);
    return true;
}

std::u16string cut(const std::string& text, std::size_t limit) {
    std::u16string s = u16(text);
    if (s.size() > limit) s.resize(limit);
    return s;
}

// OK of the dialog: the checks, then the value the rate table stores. A
// modified rate passes its stored value, which an untouched box keeps.
bool accept(CommandContext& ctx, const RateDialog& dialog, std::optional<std::uint32_t> stored,
            std::uint32_t* rate) {
    RateCheck check = checkRateDialog(dialog.description, dialog.rate, stored);
    if (!check.ok) {
        ctx.refused(std::u16string(check.message));
        return false;
    }
    *rate = check.rate;
    return true;
}

int list(CommandContext& ctx) {
    ctx.out << "id\tclientId\tclient\ttype\trate\tdescription\tflag\n";
    for (const RateGroup& g : rateSetupGroups(ctx.masters())) {
        for (const RateRecord& r : g.rates) {
            ctx.out << r.oid << "\t" << r.clientId << "\t" << u8(g.title) << "\t" << r.rateType
                    << "\t" << stringPrintf("%.2f", r.rate * 0.01) << "\t" << u8(r.description)
                    << "\t" << (r.flag ? 1 : 0) << "\n";
        }
    }
    return kExitOk;
}

int add(CommandContext& ctx, const Args& args) {
    ClientId owner = kDefaultRatesClient;
    if (args.has("default") == args.has("client")) {
        return ctx.usage("rate add needs either --client NAME or --default");
    }
    if (auto name = args.value("client")) {
        ClientRecord client;
        if (!findClient(ctx, u16(*name), &client)) return kExitRefused;
        owner = client.clientId;
    }
    if (!args.has("type")) return ctx.usage("rate add needs --type");
    RateDialog dialog;
    if (!typeArg(ctx, args, &dialog.type)) return kExitRefused;
    dialog.description = cut(args.value("description").value_or(""), 63);
    dialog.rate = cut(args.value("rate").value_or(""), 16);
    RateRecord rate{0, owner, dialog.description, dialog.type, 0, false};
    if (!accept(ctx, dialog, std::nullopt, &rate.rate)) return kExitRefused;
    CEOID oid = addRateRecord(ctx.masters().rates, rate);
    if (oid == 0) return ctx.failed("cannot add the rate");
    ctx.out << oid << "\n";
    return kExitOk;
}

int update(CommandContext& ctx, const Args& args) {
    std::uint32_t id = 0;
    if (args.positional().size() != 1 || !parseUnsignedArg(args.positional()[0], &id)) {
        return ctx.usage("rate update takes one rate ID");
    }
    RateTable& rates = ctx.masters().rates;
    RateRecord record;
    if (!rates.seekOid(id) || !readRate(rates, &record)) {
        return ctx.refused("There is no rate " + args.positional()[0] + ".");
    }
    RateDialog dialog{record.rateType, record.description, rateText(record.rate)};
    if (args.has("type") && !typeArg(ctx, args, &dialog.type)) return kExitRefused;
    if (auto d = args.value("description")) dialog.description = cut(*d, 63);
    if (auto r = args.value("rate")) dialog.rate = cut(*r, 16);
    const std::uint32_t stored = record.rate;
    record.rateType = dialog.type;
    record.description = dialog.description;
    if (!accept(ctx, dialog, stored, &record.rate)) return kExitRefused;
    if (!rates.seekOid(id) || !updateRateRecord(rates, record)) {
        return ctx.failed("cannot change the rate");
    }
    return kExitOk;
}

int remove(CommandContext& ctx, const Args& args) {
    std::uint32_t id = 0;
    if (args.positional().size() != 1 || !parseUnsignedArg(args.positional()[0], &id)) {
        return ctx.usage("rate delete takes one rate ID");
    }
    RateTable& rates = ctx.masters().rates;
    if (!rates.seekOid(id) || !rates.remove(id)) {
        return ctx.refused("There is no rate " + args.positional()[0] + ".");
    }
    return kExitOk;
}

}  // namespace

int runRate(CommandContext& ctx) {
    if (ctx.words().empty()) return ctx.usage("rate needs list, add, update or delete");
    const std::string& verb = ctx.words()[0];
    Args args;
    if (!ctx.parse(args, 1,
                   {{"client", true},
                    {"default", false},
                    {"type", true},
                    {"description", true},
                    {"rate", true}})) {
        return kExitRefused;
    }
    if (verb == "list") return list(ctx);
    if (verb == "add") return add(ctx, args);
    if (verb == "update") return update(ctx, args);
    if (verb == "delete") return remove(ctx, args);
    return ctx.usage("unknown rate command '" + verb + "'");
}

}  // namespace qb
