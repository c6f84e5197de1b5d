#include "entry/timer_idle.h"

#include "entry/entry_timers.h"
#include "platform/registry.h"
#include "platform/string_printf.h"
#include "platform/text.h"

namespace qb {
namespace {

constexpr std::uint64_t kTicksPerSecond = 10000000;
constexpr const char* kIdleValue = "IdleMinutes";

FILETIME later(FILETIME a, FILETIME b) {
    return a > b ? a : b;
}
FILETIME earlier(FILETIME a, FILETIME b) {
    return a < b ? a : b;
}

// Seconds of [from, to] within the stretch the timer has been counting.
std::uint32_t countedWithin(const EntryTimer& t, FILETIME from, FILETIME to, FILETIME now) {
    if (t.state != TimerState::kRecording || t.resumed == 0) return 0;
    FILETIME a = later(from, t.resumed);
    FILETIME b = earlier(to, now);
    if (b <= a) return 0;
    std::uint64_t seconds = (b - a) / kTicksPerSecond;
    std::uint32_t counted = timerElapsed(t, now);
    return seconds > counted ? counted : static_cast<std::uint32_t>(seconds);
}

}  // namespace

std::uint32_t idleMinutes(Registry& registry) {
    std::uint32_t minutes = kDefaultIdleMinutes;
    if (auto key = registry.openKey(RegRoot::HKEY_CURRENT_USER, kAppKey)) {
        if (key->queryDword(kIdleValue, &minutes) != ERROR_SUCCESS) minutes = kDefaultIdleMinutes;
    }
    return minutes > kMostIdleMinutes ? kMostIdleMinutes : minutes;
}

bool setIdleMinutes(Registry& registry, std::uint32_t minutes) {
    auto key = registry.createKey(RegRoot::HKEY_CURRENT_USER, kAppKey);
    return key && key->setDword(kIdleValue, minutes) == ERROR_SUCCESS;
}

std::optional<IdleSpan> IdleWatch::sample(FILETIME now, std::uint32_t idleSeconds,
                                          std::uint32_t limitMinutes, bool recording) {
    const std::uint64_t idleTicks = idleSeconds * kTicksPerSecond;
    const FILETIME lastInput = now > idleTicks ? now - idleTicks : 0;
    if (limitMinutes == 0) {
        away_ = false;
        return std::nullopt;
    }
    const bool beyondLimit = idleSeconds >= limitMinutes * 60ull;
    if (!away_) {
        if (beyondLimit && recording) {
            away_ = true;
            from_ = lastInput;
        }
        return std::nullopt;
    }
    if (beyondLimit) return std::nullopt;
    away_ = false;
    return IdleSpan{from_, later(lastInput, from_)};
}

std::uint32_t idleSecondsCounted(const EntryTimer& timer, const IdleSpan& span, FILETIME now) {
    return countedWithin(timer, span.from, span.to, now);
}

bool applyIdleAnswer(EntryTimer& timer, const IdleSpan& span, IdleAnswer answer, FILETIME now) {
    if (answer == IdleAnswer::kKeep || timer.state != TimerState::kRecording) return false;
    const bool pause = answer == IdleAnswer::kDiscardAndPause;
    const std::uint32_t cut = countedWithin(timer, span.from, pause ? now : span.to, now);
    timer.elapsed = timerElapsed(timer, now) - cut;
    timer.resumed = pause ? 0 : now;
    if (pause) timer.state = TimerState::kPaused;
    return true;
}

std::u16string idleQuestion(const IdleSpan& span, std::u16string_view since) {
    const std::uint64_t minutes = (span.to - span.from) / kTicksPerSecond / 60;
    return utf8ToUtf16(
        stringPrintf("You have been away for %llu minute%s, since %s, while a "
                     "timer was recording. Keep that time on the timer?",
                     static_cast<unsigned long long>(minutes), minutes == 1 ? "" : "s",
                     utf16ToUtf8(since).c_str()));
}

}  // namespace qb
