#pragma once

#include <QByteArray>
#include <QUrl>

namespace platform {

/// One request: its target, the name of the program and the authorities that vouch for the host.
struct UrlRequest {
    QUrl url;
    QByteArray userAgent;
    /// The system's authorities: a folder of certificates, each under the hash of its subject.
    QByteArray authorityFolder;
    /// More of them in one file, empty for none.
    QByteArray authorityFile;
};

} // namespace platform
