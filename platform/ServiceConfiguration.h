#pragma once

#include <QString>
#include <QStringList>

namespace quorvane::platform {

/// The hosts of the service. Built-in defaults come from Resources/service.conf; /etc/quorvane/service.conf
/// overrides them key by key. Lines have the form "key = value", '#' begins a comment. Unknown keys and
/// values that are not hosts are reported in `problems` and otherwise ignored. Resources/read-service-conf.sh
/// reads the files by the same rules.
struct ServiceConfiguration {
    QString apiHost;          ///< host or host:port of the API
    QString webHost;          ///< host or host:port of the web pages
    QString reachabilityHost; ///< host whose reachability means "the Internet"
    QString caFile;           ///< extra certificate authority, absolute path; empty for none
    QStringList problems;     ///< one line each, for the log

    /// Reads the files in order; one that does not exist is skipped.
    [[nodiscard]] static ServiceConfiguration read(const QStringList &paths);
};

} // namespace quorvane::platform
