#pragma once

// Time away from the desk while a timer records. The desktop samples how
// long the session has had no keyboard or mouse input; after an absence of
// at least the idle setting it asks, on return, whether the timers keep that
// time. These are the rules; the window only asks.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/win_types.h"
#include "store/timer_table.h"

namespace qb {

class Registry;

// The idle setting: minutes without input after which the question comes;
// 0 turns it off. Registry value "IdleMinutes" of the application's key.
inline constexpr std::uint32_t kDefaultIdleMinutes = 10;
inline constexpr std::uint32_t kMostIdleMinutes = 24 * 60;
std::uint32_t idleMinutes(Registry& registry);
bool setIdleMinutes(Registry& registry, std::uint32_t minutes);

// An absence: from the last input before it to the first input after it.
struct IdleSpan {
    FILETIME from = 0;
    FILETIME to = 0;
};

class IdleWatch {
  public:
    // One sample at `now`: the session has had no input for `idleSeconds`.
    // Answers the absence once the user is back (the idle time fell below
    // the limit again) from one that reached `limitMinutes` while a timer
    // recorded. With the limit 0 it never answers.
    std::optional<IdleSpan> sample(FILETIME now, std::uint32_t idleSeconds,
                                   std::uint32_t limitMinutes, bool recording);
    // An absence that may end in the question is under way.
    bool away() const { return away_; }

  private:
    bool away_ = false;
    FILETIME from_ = 0;
};

enum class IdleAnswer { kKeep, kDiscard, kDiscardAndPause };

// The seconds of the absence that the timer counted by `now`: only a
// recording timer counts, and only since it last began counting.
std::uint32_t idleSecondsCounted(const EntryTimer& timer, const IdleSpan& span, FILETIME now);

// Applies the answer at `now`. Discard takes the absence off the timer,
// which records on; Discard and Pause takes off everything from the start
// of the absence to now and pauses the timer. False when the timer is not
// changed (Keep, or a timer that was not recording).
bool applyIdleAnswer(EntryTimer& timer, const IdleSpan& span, IdleAnswer answer, FILETIME now);

// The question: `since` is the start of the absence as the user's time
// format shows it.
std::u16string idleQuestion(const IdleSpan& span, std::u16string_view since);
inline constexpr std::u16string_view kIdleKeepText = u"Keep";
inline constexpr std::u16string_view kIdleDiscardText = u"Discard";
inline constexpr std::u16string_view kIdleDiscardAndPauseText = u"Discard and Pause";

}  // namespace qb
