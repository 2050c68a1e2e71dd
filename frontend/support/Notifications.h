#pragma once

#include <QLatin1String>

namespace quorvane {

/// The names of the notifications that parts of the program post to each other through
/// platform::NotificationCenter. They have no object unless one is given here.
namespace Notifications {

/// Start an attempt. Object: the control that was pressed, if one was.
inline constexpr QLatin1String startVpn("startVpn");
/// The tunnel is up.
inline constexpr QLatin1String showIp("showIp");
/// Reset to not hidden.
inline constexpr QLatin1String setDefaultControls("setDefaultControls");
/// Reachability changed. Object: 1 for reachable, else 0.
inline constexpr QLatin1String inetStatus("inetStatus");
/// The list of servers, or of discarded addresses, changed.
inline constexpr QLatin1String updateServerList("updateServerList");
/// Test the stored administrator pair, and open the dialog unless it is valid.
inline constexpr QLatin1String checkCredential("checkCredential");
inline constexpr QLatin1String showSettings("showSettings");
/// Observed, never posted.
inline constexpr QLatin1String getSystemDns("getSystemDns");
inline constexpr QLatin1String applicationWillTerminate("applicationWillTerminate");
/// Object: the Reachability that changed.
inline constexpr QLatin1String reachabilityChanged("kReachabilityChangedNotification");
/// Object: the ZqPrivilegedTask that ended.
inline constexpr QLatin1String privilegedTaskDidTerminate("ZqPrivilegedTaskDidTerminateNotification");

} // namespace Notifications

} // namespace quorvane
