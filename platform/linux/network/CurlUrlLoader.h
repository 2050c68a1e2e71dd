#pragma once

#include "UrlRequest.h"
#include "platform/UrlLoader.h"

#include <QObject>

#include <functional>
#include <thread>
#include <vector>

namespace quorvane::platform {

struct CurlLibrary;

/// UrlLoader over libcurl: HTTP/1.1, one request a connection, straight to the host whatever proxies are set.
/// libcurl reads the answer and speaks TLS; the bounds, the end of the head, the syntax of lengths and the
/// redirects are checked here.
///
/// Every complete answer is a finished download, whatever its status and even when its body is empty.
/// Certificates are checked against the system's authorities and those of the extra file. Downloads
/// belong to the main thread and end silently with the loader. The first one begins when libcurl has been
/// loaded, which takes the time of several frames and happens in a thread of its own.
class CurlUrlLoader final : public UrlLoader {
public:
    using AddressesOf = std::function<QByteArrayList(const QByteArray &host)>;
    /// Loads libcurl, or returns the one that is loaded; null when it cannot be loaded. Any thread.
    using Library = std::function<const CurlLibrary *()>;

    /// The version is sent to the server; an empty authority file is none. One that contains no
    /// certificate leaves the authorities of the folder alone. `addressesOf`, which may be empty, has the
    /// numeric addresses of a host that must not be looked up, and none for others; it is called on any
    /// thread.
    CurlUrlLoader(const QString &version, const QString &authorityFile, const UrlLimits &limits = {},
                  const QString &authorityFolder = QStringLiteral("/etc/ssl/certs"),
                  AddressesOf addressesOf = {}, Library library = {});
    ~CurlUrlLoader() override;
    CurlUrlLoader(const CurlUrlLoader &) = delete;
    CurlUrlLoader &operator=(const CurlUrlLoader &) = delete;

    bool download(const QByteArray &url, QObject *context, Destination destination, Finished finished,
                  Failed failed) override;
    [[nodiscard]] std::optional<QByteArray> fetch(const QByteArray &url) override;

private:
    [[nodiscard]] std::optional<UrlRequest> requestFor(const QByteArray &url) const;
    void startWhenLoaded(std::function<void()> start);

    const QString m_version;
    const QString m_authorityFile;
    const QString m_authorityFolder;
    const UrlLimits m_limits;
    const AddressesOf m_addressesOf;
    const Library m_library;
    bool m_isLoaded = false;
    std::thread m_loading;
    std::vector<std::function<void()>> m_waiting; ///< downloads that begin when the library is loaded
    /// Downloads end with it.
    QObject m_lifetime;
};

} // namespace quorvane::platform
