#pragma once

#include <QLatin1String>
#include <array>
#include <cstddef>
#include <variant>

namespace quorvane::platform {

/// Every preference of the program, in the order of preferenceTable.
enum class Preference {
    HideIpHotKey,
    ChangeIpHotKey,
    StopHideIpHotKey,
    DiscardIpHotKey,
    BringUpWindowHotKey,
    ChangeIpInterval,
    ChangeIpEvery,
    RequireUs,
    IpNonRepeat,
    TcpUdp,
    Hide,
    Quorvane,
    CountryCode,
    Location,
    UseSameIp,
    LastIp,
    DiscardedIps,
    NoReconnect,
    VpnConfigPath,
    VpnUsername,
    VpnPassword,
    AdministratorName,
    AdministratorPassword,
    UserAgent,
    ModeUserAgent,
    HideMyReferrerHeader,
    HideMyCookiesHeaders,
    CookieSites,
    ShowLogs,
    RestoresDns,
    DnsBefore,
    NetworkLock,
    LockHomeNetwork,
    Appearance,
};

enum class PreferenceType { Text, Integer, Boolean };

/// What is known of one preference. docs/configuration.md has the same table for users.
struct PreferenceEntry {
    /// What is stored at each start in place of a missing text, or of an integer that reads 0.
    using StartValue = std::variant<std::monostate, int, const char *>;

    Preference preference;
    /// The key in the file.
    const char *key;
    PreferenceType type;
    StartValue startValue;
    /// Never shown or logged.
    bool secret;
    const char *purpose;
};

/// An absent value reads as 0, false or no text.
inline constexpr std::array preferenceTable = {
    PreferenceEntry{Preference::HideIpHotKey, "hideIpHotKey", PreferenceType::Integer, -1, false,
                    "hot key of \"Hide IP\": the tag of a combination, -1 for none"},
    PreferenceEntry{Preference::ChangeIpHotKey, "changeIpHotKey", PreferenceType::Integer, -1, false,
                    "hot key of \"Change IP\""},
    PreferenceEntry{Preference::StopHideIpHotKey, "stopHideIpHotKey", PreferenceType::Integer, -1, false,
                    "hot key of \"Stop hiding IP\""},
    PreferenceEntry{Preference::DiscardIpHotKey, "discardIpHotKey", PreferenceType::Integer, -1, false,
                    "hot key of \"Discard IP\""},
    PreferenceEntry{Preference::BringUpWindowHotKey, "bringUpWindowHotKey", PreferenceType::Integer, -1,
                    false, "hot key of \"Bring up window\""},
    PreferenceEntry{Preference::ChangeIpInterval, "changeIpInterval", PreferenceType::Integer, 10, false,
                    "minutes between automatic changes of the address"},
    PreferenceEntry{Preference::ChangeIpEvery,
                    "changeIpEvery",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether the address is changed automatically"},
    PreferenceEntry{Preference::RequireUs,
                    "requireUS",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether only locations in the United States are picked"},
    PreferenceEntry{Preference::IpNonRepeat,
                    "ipNonRepeat",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "the box \"Do not repeat IPs\"; it has no effect"},
    PreferenceEntry{Preference::TcpUdp,
                    "tcpUdp",
                    PreferenceType::Integer,
                    {},
                    false,
                    "transport of the tunnel: the index in the pop-up"},
    PreferenceEntry{Preference::Hide,
                    "hide",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether the IP is hidden at the start"},
    PreferenceEntry{Preference::Quorvane,
                    "quorvane",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "set to false by each reset to not hidden; only written"},
    PreferenceEntry{Preference::CountryCode,
                    "countryCode",
                    PreferenceType::Text,
                    {},
                    false,
                    "country of the location chosen or fetched last"},
    PreferenceEntry{
        Preference::Location, "location", PreferenceType::Text, {}, false, "code of the chosen location"},
    PreferenceEntry{Preference::UseSameIp,
                    "useSameIP",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether the stored configuration is used again"},
    PreferenceEntry{
        Preference::LastIp, "lastIP", PreferenceType::Text, {}, false, "the address that is used again"},
    PreferenceEntry{Preference::DiscardedIps,
                    "discardedIPs",
                    PreferenceType::Text,
                    {},
                    false,
                    "discarded addresses, joined by \"|\""},
    PreferenceEntry{Preference::NoReconnect,
                    "noReconnect",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether a tunnel that was lost is not started again"},
    PreferenceEntry{Preference::VpnConfigPath,
                    "vpnConfigPath",
                    PreferenceType::Text,
                    {},
                    false,
                    "path of the OpenVPN configuration"},
    PreferenceEntry{
        Preference::VpnUsername, "vpnUsername", PreferenceType::Text, {}, false, "user of the VPN session"},
    PreferenceEntry{Preference::VpnPassword,
                    "vpnPassword",
                    PreferenceType::Text,
                    {},
                    true,
                    "password of the VPN session"},
    PreferenceEntry{Preference::AdministratorName,
                    "un",
                    PreferenceType::Text,
                    {},
                    true,
                    "the administrator's user name, scrambled"},
    PreferenceEntry{Preference::AdministratorPassword,
                    "up",
                    PreferenceType::Text,
                    {},
                    true,
                    "the administrator's password, scrambled"},
    PreferenceEntry{Preference::UserAgent, "userAgent", PreferenceType::Text, "", false,
                    "user agent chosen for browsers; it has no effect"},
    PreferenceEntry{Preference::ModeUserAgent,
                    "modeUserAgent",
                    PreferenceType::Integer,
                    {},
                    false,
                    "1 to use that user agent; it has no effect"},
    PreferenceEntry{Preference::HideMyReferrerHeader, "hideMyReferrerHeader", PreferenceType::Integer, 0,
                    false, "1 to hide the referrer; it has no effect"},
    PreferenceEntry{Preference::HideMyCookiesHeaders,
                    "hideMyCookiesHeaders",
                    PreferenceType::Integer,
                    {},
                    false,
                    "1 to hide cookies; it has no effect"},
    PreferenceEntry{Preference::CookieSites,
                    "cookieSites",
                    PreferenceType::Text,
                    {},
                    false,
                    "sites of the cookie table, joined by \"|\"; it has no effect"},
    PreferenceEntry{Preference::ShowLogs,
                    "showLogs",
                    PreferenceType::Integer,
                    {},
                    false,
                    "0 writes diagnostic lines, any other number suppresses them"},
    PreferenceEntry{Preference::RestoresDns,
                    "restoreDns",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether the name servers are put back when hiding stops"},
    PreferenceEntry{Preference::DnsBefore,
                    "dnsBefore",
                    PreferenceType::Text,
                    {},
                    false,
                    "name servers from before the first change: `service=words` joined by \"|\""},
    PreferenceEntry{Preference::NetworkLock,
                    "networkLock",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether traffic outside the tunnel is blocked while hiding"},
    PreferenceEntry{Preference::LockHomeNetwork,
                    "lockHomeNetwork",
                    PreferenceType::Boolean,
                    {},
                    false,
                    "whether the home network is blocked then, too"},
    PreferenceEntry{Preference::Appearance,
                    "appearance",
                    PreferenceType::Integer,
                    {},
                    false,
                    "1 for dark windows, 2 for light ones, any other number for the desktop's choice"},
};

[[nodiscard]] constexpr const PreferenceEntry &entryOf(Preference preference) {
    return preferenceTable[static_cast<std::size_t>(preference)];
}

/// The key under which the preference is stored.
[[nodiscard]] inline QLatin1String keyOf(Preference preference) {
    return QLatin1String(entryOf(preference).key);
}

/// Whether each entry is where entryOf() looks for it.
[[nodiscard]] constexpr bool isInOrder() {
    for (std::size_t i = 0; i < preferenceTable.size(); ++i) {
        if (preferenceTable[i].preference != static_cast<Preference>(i)) {
            return false;
        }
    }
    return preferenceTable.back().preference == Preference::Appearance;
}

static_assert(isInOrder());

} // namespace quorvane::platform
