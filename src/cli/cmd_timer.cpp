#include <functional>
#include <ostream>

#include "cli/cli_text.h"
#include "cli/command.h"
#include "cli/entry_fields.h"
#include "cli/master_lookup.h"
#include "entry/entry_form.h"
#include "entry/entry_timers.h"
#include "entry/note_text.h"
#include "platform/calendar.h"
#include "platform/data_file.h"
#include "platform/platform.h"
#include "store/time_entry.h"

namespace qb {
namespace {

const char* const kStateNames[] = {"idle", "recording", "paused", "complete"};

std::string stateName(TimerState state) {
    return kStateNames[static_cast<std::uint32_t>(state)];
}

FILETIME now() {
    FILETIME ft = 0;
    systemTimeToFileTime(localNow(), &ft);
    return ft;
}

std::string timerLabel(int index) {
    return u8(timerName(index));
}

// The timer named by the first word: 1 to 4 for the user, 0 to 3 here.
bool timerIndex(CommandContext& ctx, const Args& args, int* index) {
    std::uint32_t n = 0;
    if (args.positional().empty()) {
        ctx.usage("give the timer's number, 1 to " + std::to_string(kTimerCount));
        return false;
    }
    if (!parseUnsignedArg(args.positional()[0], &n) || n < 1 || n > kTimerCount) {
        ctx.refused("There is no timer " + args.positional()[0] + "; the timers are 1 to " +
                    std::to_string(kTimerCount) + ".");
        return false;
    }
    *index = static_cast<int>(n) - 1;
    return true;
}

int list(CommandContext& ctx, TimerTable& table) {
    EntryTimerSet timers;
    if (!timers.load(table))
        return ctx.failed("cannot read the timers in " + ctx.platform().file().path());
    const FILETIME at = now();
    ctx.out << "timer\tstate\tstart\telapsed\tclient\tproject\ttask\tnote\n";
    for (int i = 0; i < kTimerCount; ++i) {
        const EntryTimer& t = timers.timer(i);
        const bool idle = t.state == TimerState::kIdle;
        ctx.out << i + 1 << "\t" << stateName(t.state) << "\t" << (idle ? "" : isoDateTime(t.start))
                << "\t" << u8(timerClockText(timers.elapsed(i, at))) << "\t" << u8(t.client) << "\t"
                << u8(t.project) << "\t" << u8(t.task) << "\t"
                << escapedLineBreaks(noteText(t.note)) << "\n";
    }
    return kExitOk;
}

// Why a button is not offered in the timer's state.
std::string notOffered(int index, TimerState state, const char* button, const char* needs) {
    return timerLabel(index) + " is " + stateName(state) + "; " + button + " needs " + needs + ".";
}

// A button that every state offers.
constexpr const char* kAlwaysOffered = nullptr;

// Runs one change of one timer in a transaction and reports the outcome.
// When `apply` refuses, the timer's state did not offer `button`, which
// needs a timer as `needs` says.
int change(CommandContext& ctx, TimerTable& table, int index, const char* button, const char* needs,
           const std::function<bool(EntryTimerSet&)>& apply) {
    EntryTimerSet timers;
    TimerState seen = TimerState::kIdle;
    auto watched = [&](EntryTimerSet& set) {
        seen = set.timer(index).state;
        return apply(set);
    };
    switch (timers.update(table, index, watched)) {
        case EntryTimerSet::Update::kDone:
            return kExitOk;
        case EntryTimerSet::Update::kRefused:
            return ctx.refused(notOffered(index, seen, button, needs));
        case EntryTimerSet::Update::kFailed:
            break;
    }
    return ctx.failed("cannot write the timers to " + ctx.platform().file().path());
}

int record(CommandContext& ctx, TimerTable& table, const Args& args, int index) {
    const FILETIME at = now();
    return change(ctx, table, index, "Record", "an idle timer", [&](EntryTimerSet& timers) {
        if (!timers.record(index, at)) return false;
        EntryTimer& t = timers.timer(index);
        if (auto v = args.value("client")) t.client = limitText(u16(*v), kNameLimit);
        if (auto v = args.value("project")) t.project = limitText(u16(*v), kNameLimit);
        if (auto v = args.value("task")) t.task = limitText(u16(*v), kNameLimit);
        if (auto v = args.value("note")) t.note = noteBytes(u16(*v));
        return true;
    });
}

int pause(CommandContext& ctx, TimerTable& table, int index) {
    const FILETIME at = now();
    return change(ctx, table, index, "Pause", "a recording, paused or completed timer",
                  [&](EntryTimerSet& timers) { return timers.pause(index, at); });
}

// Task Complete and the editor's OK in one transaction: the entry is saved
// and the timer reset together, or neither happens and the timer goes on
// as it was.
int complete(CommandContext& ctx, TimerTable& table, const Args& args, int index) {
    DataFile& file = ctx.platform().file();
    if (!file.beginBatch()) return ctx.failed("cannot write to " + file.path());
    EntryTimerSet timers;
    if (!timers.load(table)) {
        file.rollbackBatch();
        return ctx.failed("cannot read the timers in " + file.path());
    }
    const EntryTimer& t = timers.timer(index);
    if (!timers.complete(index, t.note, now())) {
        file.rollbackBatch();
        return ctx.refused(
            notOffered(index, t.state, "Task Complete", "a recording, paused or completed timer"));
    }
    TimeEntry entry;
    const FormResult made = entryFromTimer(t, ctx.settings(), localNow(), entry);
    if (!made.ok) {
        file.rollbackBatch();
        return ctx.refused(std::u16string(made.message));
    }
    const int status = saveEntryFields(ctx, args, entry);
    if (status != kExitOk) {
        file.rollbackBatch();
        return status;
    }
    timers.reset(index);
    if (!timers.save(table, index) || !file.commitBatch()) {
        file.rollbackBatch();
        return ctx.failed("cannot save the entry in " + file.path());
    }
    ctx.out << entry.recordOid << "\n";
    return kExitOk;
}

int reset(CommandContext& ctx, TimerTable& table, const Args& args, int index) {
    EntryTimerSet now;
    if (!now.load(table)) return ctx.failed("cannot read the timers");
    if (resetAsks(now.timer(index)) && !confirmed(ctx, args.has("yes"), kResetTimerQuestion)) {
        return kExitRefused;
    }
    return change(ctx, table, index, kAlwaysOffered, kAlwaysOffered, [&](EntryTimerSet& timers) {
        timers.reset(index);
        return true;
    });
}

int note(CommandContext& ctx, TimerTable& table, const Args& args, int index) {
    if (args.positional().size() != 2) return ctx.usage("timer note takes a timer and one TEXT");
    const std::vector<std::uint8_t> bytes = noteBytes(u16(args.positional()[1]));
    return change(ctx, table, index, kAlwaysOffered, kAlwaysOffered, [&](EntryTimerSet& timers) {
        timers.timer(index).note = bytes;
        return true;
    });
}

std::vector<Args::Option> optionsOf(const std::string& verb) {
    if (verb == "record")
        return {{"client", true}, {"project", true}, {"task", true}, {"note", true}};
    if (verb == "complete") return entryFieldOptions();
    if (verb == "reset") return {{"yes", false}};
    return {};
}

}  // namespace

int runTimer(CommandContext& ctx) {
    if (ctx.words().empty())
        return ctx.usage("timer needs list, record, pause, complete, reset or note");
    const std::string& verb = ctx.words()[0];
    if (verb != "list" && verb != "record" && verb != "pause" && verb != "complete" &&
        verb != "reset" && verb != "note") {
        return ctx.usage("unknown timer command '" + verb + "'");
    }
    Args args;
    if (!ctx.parse(args, 1, optionsOf(verb))) return kExitRefused;
    TimerTable table(ctx.platform());
    if (!table.open())
        return ctx.failed("cannot open the timers in " + ctx.platform().file().path());
    if (verb == "list") {
        if (!args.positional().empty()) return ctx.usage("timer list takes no arguments");
        return list(ctx, table);
    }
    int index = 0;
    if (!timerIndex(ctx, args, &index)) return kExitRefused;
    if (verb != "note" && args.positional().size() != 1) {
        return ctx.usage("timer " + verb + " takes one timer number");
    }
    if (verb == "record") return record(ctx, table, args, index);
    if (verb == "pause") return pause(ctx, table, index);
    if (verb == "complete") return complete(ctx, table, args, index);
    if (verb == "reset") return reset(ctx, table, args, index);
    return note(ctx, table, args, index);
}

}  // namespace qb
