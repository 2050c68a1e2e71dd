#pragma once

#include <QString>

namespace quorvane {

/// The answer to a request for a VPN configuration.
namespace ConfigurationAnswer {

/// The service did not understand the request.
[[nodiscard]] bool isArgumentError(const QString &text);
/// Everything after the first "VPNConfig: ", "<br />" turned into line feeds; null when there is none. The
/// text is neither trimmed nor checked here.
[[nodiscard]] QString getCertificate(const QString &text);
/// The text between the first "remote " and the next "<br />"; null when either is missing.
[[nodiscard]] QString getIPAdress(const QString &text);

} // namespace ConfigurationAnswer

} // namespace quorvane
