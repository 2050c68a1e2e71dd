#pragma once

#include "Config.h"
#include "VpnUsers.h"

#include <string>
#include <string_view>

namespace quorvane::service {

/// Joins lines with the line mark of answers, without a line feed and without a mark at the end.
[[nodiscard]] std::string joinLines(const std::vector<std::string> &lines);

/// The answer to the server-list request: status, the caller's address and country, the locations, the
/// credentials and one server line per group that is offered.
[[nodiscard]] std::string serverListAnswer(const Config &config, const std::vector<Group> &offered,
                                           std::string_view peer, const Credentials &credentials);

/// An answer with a status and the caller's address only. Status 0 means accepted.
[[nodiscard]] std::string statusAnswer(int status, std::string_view peer);

/// Wraps a configuration: every line feed becomes the line mark.
[[nodiscard]] std::string configurationAnswer(std::string_view configuration);

/// The page for a browser: the address from which the service received the request.
[[nodiscard]] std::string webPage(std::string_view peer, std::string_view country);

/// A page with a title and one sentence.
[[nodiscard]] std::string errorPage(int status, std::string_view title, std::string_view sentence);

/// The fields and addresses of one server line, without the "Server: " in front.
[[nodiscard]] std::string serverRecord(std::size_t number, const Group &group);

/// One entry of the location list.
[[nodiscard]] std::string locationRecord(const Group &group);

} // namespace quorvane::service
