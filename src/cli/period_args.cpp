#include "cli/period_args.h"

#include <sstream>

#include "app/settings.h"
#include "cli/cli_text.h"
#include "cli/command.h"
#include "views/period_view.h"

namespace qb {
namespace {

bool kindFromName(const std::string& name, ViewKind* out) {
    static const struct {
        const char* name;
        ViewKind kind;
    } kKinds[] = {
        {"day", kDayView}, {"week", kWeekView}, {"month", kMonthView}, {"custom", kCustomView}};
    for (const auto& k : kKinds) {
        if (name == k.name) {
            *out = k.kind;
            return true;
        }
    }
    return false;
}

bool dateOption(CommandContext& ctx, const Args& args, const char* name, SYSTEMTIME* out) {
    auto text = args.value(name);
    if (!text) return true;
    if (parseDateArg(*text, out)) return true;
    ctx.usage(dateArgProblem(std::string("--") + name, *text));
    return false;
}

}  // namespace

std::vector<Args::Option> periodOptions() {
    return {{"view", true}, {"date", true}, {"end", true}, {"select", true}, {"move", true}};
}

bool periodFromArgs(CommandContext& ctx, const Args& args, std::unique_ptr<PeriodView>* out) {
    const Settings& settings = ctx.settings();
    ViewKind kind = static_cast<ViewKind>(settings.view);
    if (auto name = args.value("view")) {
        if (!kindFromName(*name, &kind)) {
            ctx.usage("--view is day, week, month or custom");
            return false;
        }
    }
    if (kind < kDayView || kind > kCustomView) kind = kWeekView;
    SYSTEMTIME start = todayDate();
    SYSTEMTIME end = start;
    // The custom view opens on the saved custom period, when there is one.
    if (kind == kCustomView && settings.periodStart.wMonth != 0) {
        start = settings.periodStart;
        end = settings.periodEnd;
    }
    if (!dateOption(ctx, args, "date", &start) || !dateOption(ctx, args, "end", &end)) return false;
    auto view = makePeriodView(kind, settings.optionFlags & kWeekStartsMonday);
    view->setPeriod(start, end);
    SYSTEMTIME selected;
    if (args.has("select")) {
        if (!dateOption(ctx, args, "select", &selected)) return false;
        view->selectDate(selected);
    }
    for (const std::string& moves : args.all("move")) {
        std::stringstream steps(moves);
        std::string step;
        while (std::getline(steps, step, ',')) {
            if (step == "next")
                view->next();
            else if (step == "previous")
                view->previous();
            else if (step == "today")
                view->today();
            else {
                ctx.usage("--move takes next, previous and today, separated by commas");
                return false;
            }
        }
    }
    *out = std::move(view);
    return true;
}

}  // namespace qb
