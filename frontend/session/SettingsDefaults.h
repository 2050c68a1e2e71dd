#pragma once

#include <QString>

namespace quorvane {

/// The preferences of the settings window. Main thread.
namespace SettingsDefaults {

inline QString changeIpEvery() {
    return QStringLiteral("changeIpEvery");
}

inline QString changeIpInterval() {
    return QStringLiteral("changeIpInterval");
}

inline QString hide() {
    return QStringLiteral("hide");
}

inline QString userAgent() {
    return QStringLiteral("userAgent");
}

inline QString modeUserAgent() {
    return QStringLiteral("modeUserAgent");
}

inline QString hideMyReferrerHeader() {
    return QStringLiteral("hideMyReferrerHeader");
}

inline QString hideMyCookiesHeaders() {
    return QStringLiteral("hideMyCookiesHeaders");
}

inline QString cookieSites() {
    return QStringLiteral("cookieSites");
}

inline QString vpnConfigPath() {
    return QStringLiteral("vpnConfigPath");
}

inline QString vpnUsername() {
    return QStringLiteral("vpnUsername");
}

inline QString vpnPassword() {
    return QStringLiteral("vpnPassword");
}

/// Stores the default under every key whose integer reads 0 or whose text is absent, and saves. A stored 0 is
/// therefore replaced. Call it at each start, before these keys are read.
void initialize();

} // namespace SettingsDefaults

} // namespace quorvane
