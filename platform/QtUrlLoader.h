#pragma once

#include "UrlLoader.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QSslConfiguration>

#include <chrono>
#include <memory>
#include <mutex>

namespace platform {

/// What one transfer may cost.
struct UrlLimits {
    /// Without a byte.
    std::chrono::milliseconds silence = std::chrono::seconds(60);
    /// From request to end.
    std::chrono::milliseconds overall = std::chrono::seconds(60);
    qint64 largestBody = qint64{16} * 1024 * 1024;
};

/// UrlLoader over QNetworkAccessManager: HTTP/1.1, straight to the host whatever proxies are set.
///
/// An answer cut short is told by its length. One sent in chunks has none, and Qt 6.4 sometimes takes the
/// end of the connection for its end: what reads the body must not rely on it being whole then.
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
    [[nodiscard]] std::optional<QNetworkRequest> requestFor(const QByteArray &url);
    [[nodiscard]] static std::unique_ptr<QNetworkAccessManager> makeManager();

    const QString version;
    const QString authorityFile;
    const UrlLimits limits;
    std::once_flag tlsIsSet;
    /// Set at the first request: the TLS library is slow to load, and the window should not wait for it.
    std::optional<QSslConfiguration> tls;
    std::unique_ptr<QNetworkAccessManager> manager;
};

} // namespace platform
