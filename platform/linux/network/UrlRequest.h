#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QUrl>

#include <chrono>

namespace quorvane::platform {

/// The bounds of one transfer.
struct UrlLimits {
    /// Without any activity of the peer.
    std::chrono::milliseconds silence = std::chrono::seconds(60);
    /// From request to end.
    std::chrono::milliseconds overall = std::chrono::seconds(60);
    qint64 largestBody = qint64{16} * 1024 * 1024;
};

/// One request: its target, the name of the program and the authorities that vouch for the host.
struct UrlRequest {
    QUrl url;
    QByteArray userAgent;
    /// The system's authorities: a folder of certificates, each under the hash of its subject.
    QByteArray authorityFolder;
    /// More of them in one file, empty for none.
    QByteArray authorityFile;
    /// Numeric addresses of the host, which is then not looked up.
    QByteArrayList addresses = {};
};

} // namespace quorvane::platform
