#pragma once

#include "UrlRequest.h"
#include "platform/UrlLoader.h"

#include <QObject>

#include <memory>

namespace quorvane::platform {

/// UrlLoader over libcurl: HTTP/1.1, one request a connection, straight to the host whatever proxies are set.
/// libcurl reads the answer and speaks TLS; the bounds, the end of the head, the syntax of lengths and the
/// redirects are checked here.
///
/// Every complete answer is a finished download, whatever its status and even when its body is empty.
/// Certificates are checked against the system's authorities and those of the extra file. Downloads
/// belong to the main thread and end silently with the loader.
class CurlUrlLoader final : public UrlLoader {
public:
    using AddressesOf = std::function<QByteArrayList(const QByteArray &host)>;

    /// The version is sent to the server; an empty authority file is none. One that contains no
    /// certificate leaves the authorities of the folder alone. `addressesOf`, which may be empty, has the
    /// numeric addresses of a host that must not be looked up, and none for others; it is called on any
    /// thread.
    CurlUrlLoader(const QString &version, const QString &authorityFile, const UrlLimits &limits = {},
                  const QString &authorityFolder = QStringLiteral("/etc/ssl/certs"),
                  AddressesOf addressesOf = {});
    ~CurlUrlLoader() override;
    CurlUrlLoader(const CurlUrlLoader &) = delete;
    CurlUrlLoader &operator=(const CurlUrlLoader &) = delete;

    bool download(const QByteArray &url, QObject *context, Destination destination, Finished finished,
                  Failed failed) override;
    [[nodiscard]] std::optional<QByteArray> fetch(const QByteArray &url) override;

private:
    [[nodiscard]] std::optional<UrlRequest> requestFor(const QByteArray &url) const;

    const QString m_version;
    const QString m_authorityFile;
    const QString m_authorityFolder;
    const UrlLimits m_limits;
    const AddressesOf m_addressesOf;
    /// Downloads end with it.
    QObject m_lifetime;
};

} // namespace quorvane::platform
