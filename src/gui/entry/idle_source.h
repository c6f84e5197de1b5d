#pragma once

// How long the session has had no keyboard or mouse input, as the desktop
// itself reports it: the freedesktop screen-saver service on the session
// bus, else the X server's screen-saver extension. No input hook of our own.

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

namespace qb {

class IdleSource {
  public:
    virtual ~IdleSource() = default;
    // Seconds since the last input, or nothing when the desktop did not answer.
    virtual std::optional<std::uint32_t> idleSeconds() = 0;
    // Where the answer comes from, for the Options page.
    virtual QString name() const = 0;
};

// The desktop's own source, or null when it has none that answers.
std::unique_ptr<IdleSource> desktopIdleSource();

// Why idle time cannot be detected here, for the Options page.
QString idleUnavailableText();

}  // namespace qb
