#pragma once

#include "platform/UrlLoader.h"

#include <QObject>
#include <QSslConfiguration>
#include <QUrl>

#include <chrono>
#include <memory>
#include <mutex>

namespace quorvane::platform {

/// What one transfer may cost.
struct UrlLimits {
    /// Without a byte.
    std::chrono::milliseconds silence = std::chrono::seconds(60);
    /// From request to end.
    std::chrono::milliseconds overall = std::chrono::seconds(60);
    qint64 largestBody = qint64{16} * 1024 * 1024;
};

/// What is asked, of whom, and how.
struct UrlRequest {
    QUrl url;
    QByteArray userAgent;
    QSslConfiguration tls;
};

/// UrlLoader over QSslSocket: HTTP/1.1, one request a connection, straight to the host whatever proxies are
/// set. Not over QNetworkAccessManager, which keeps a head of any size in memory, sends a request again up
/// to three times when the answer is none, and takes the end of the connection for the last chunk.
///
/// Every complete answer is a finished download, whatever its status and even when its body is empty.
/// Certificates are checked against the system's authorities and those of the extra file. Downloads
/// belong to the main thread and end silently with the loader.
class QtUrlLoader final : public UrlLoader {
public:
    /// The version is told to the server; an empty authority file is none. One that holds no
    /// certificate leaves the system's authorities alone.
    QtUrlLoader(const QString &version, const QString &authorityFile, const UrlLimits &limits = {});
    ~QtUrlLoader() override;
    QtUrlLoader(const QtUrlLoader &) = delete;
    QtUrlLoader &operator=(const QtUrlLoader &) = delete;

    bool download(const QByteArray &url, QObject *context, Destination destination, Finished finished,
                  Failed failed) override;
    [[nodiscard]] std::optional<QByteArray> fetch(const QByteArray &url) override;

private:
    [[nodiscard]] std::optional<UrlRequest> requestFor(const QByteArray &url);

    const QString m_version;
    const QString m_authorityFile;
    const UrlLimits m_limits;
    std::once_flag m_tlsIsSet;
    /// Set at the first request: the TLS library is slow to load, and the window should not wait for it.
    std::optional<QSslConfiguration> m_tls;
    /// Downloads end with it.
    QObject m_lifetime;
};

} // namespace quorvane::platform
