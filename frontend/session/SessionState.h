#pragma once

#include <QString>

namespace quorvane {

/// The state of the current session, shared by the whole program. One instance; main thread only.
struct SessionState {
    /// The tunnel is up and the lent address is shown. At the start it has the value of the preference
    /// "hide".
    bool hidden = false;
    /// The public address to show: the real one after each answer of the service, the lent one (as read,
    /// line feed included) while hidden. Null until the first answer.
    QString currentIp;
    /// The location of the lent address; null until one was lent or a random location picked.
    QString currentLocation;
    /// Lower-case country code of the lent address; null until one was lent.
    QString currentCountryCode;

    [[nodiscard]] static SessionState &shared();
};

} // namespace quorvane
