#pragma once

#include <QString>
#include <QStringList>

namespace quorvane::platform {

/// Where the service is. Built-in defaults come from Resources/service.conf; /etc/quorvane/service.conf
/// overrides them key by key. Plain "key = value" lines, '#' begins a comment. Unknown keys and values that
/// are no host are reported in `problems` and otherwise ignored.
struct ServiceConfiguration {
    QString apiHost;          ///< host or host:port of the API
    QString webHost;          ///< host or host:port of the web pages
    QString reachabilityHost; ///< host that stands for "the Internet"
    QString caFile;           ///< extra certificate authority, absolute path; empty for none
    QStringList problems;     ///< one plain line each, for the log

    /// Reads the files in order; one that does not exist is skipped.
    [[nodiscard]] static ServiceConfiguration read(const QStringList &paths);
};

} // namespace quorvane::platform
