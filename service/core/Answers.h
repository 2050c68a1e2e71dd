#pragma once

#include "Config.h"
#include "CredentialStore.h"

#include <string>
#include <string_view>

namespace quorvane::service {

/// Joins lines with the answers' line mark; no line feed and no mark at the end.
std::string joinLines(const std::vector<std::string> &lines);

/// The answer to the server-list request: status, the caller's address and country, the locations, the
/// credentials and one server line per group.
std::string serverListAnswer(const Config &config, std::string_view peer, const Credentials &credentials);

/// An answer that carries a status and the caller's address only; status 0 means accepted.
std::string statusAnswer(int status, std::string_view peer);

/// Wraps a configuration: every line feed becomes the line mark.
std::string configurationAnswer(std::string_view configuration);

/// The page shown to a browser: what the service is and the address it sees.
std::string webPage(std::string_view peer, std::string_view country);

/// A page that holds nothing but a title and a sentence.
std::string errorPage(int status, std::string_view title, std::string_view sentence);

/// One server line's fields and addresses, without the "Server: " in front.
std::string serverRecord(std::size_t number, const Group &group);

/// One entry of the location list.
std::string locationRecord(const Group &group);

} // namespace quorvane::service
