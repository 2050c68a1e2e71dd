#pragma once

#include <string_view>

namespace quorvane {

// Texts in OpenVPN's log that decide an attempt. The client searches the log for them; the guard, which
// writes that log, keeps the first one out of lines that do not come from OpenVPN itself. Both must agree on
// them.

/// The tunnel is up.
constexpr std::string_view completedMarker = "Initialization Sequence Completed";

// The attempt failed.
constexpr std::string_view authFailedMarker = "AUTH_FAILED";
constexpr std::string_view keyNegotiationFailedMarker = "TLS key negotiation failed";
constexpr std::string_view hostNotResolvedMarker = "Cannot resolve host address";
constexpr std::string_view credentialsFileMarker = "auth-user-pass fails";
constexpr std::string_view fatalErrorMarker = "Exiting due to fatal error";

} // namespace quorvane
