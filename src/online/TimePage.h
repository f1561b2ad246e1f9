#pragma once

#include <QByteArray>
#include <QDate>
#include <QTime>

#include <optional>

namespace minutor {

// The moment a page of the time service gives, moved into the local zone.
struct Zeitkorrektur {
  QDate date;  // the date of the page, in UTC
  QTime time;  // the time of the page plus the zone's offset
};

// Reads the page of the time service. Its last line must hold
// "Current Timezone:" and behind it "<H2>", followed by a Unix date line
// ("<H2>Mon Nov 23 10:05:09 UTC 2026</H2>") whose fields stand at fixed
// places; an unknown month counts as December. Only the minutes are moved by
// `biasSeconds` (seconds east of UTC), wrapping within the day: the date stays
// the page's UTC date even when the offset crosses midnight.
// nullopt when the page holds no such line or no valid date.
std::optional<Zeitkorrektur> ParseZeitseite(const QByteArray& page, qint64 biasSeconds);

}  // namespace minutor
