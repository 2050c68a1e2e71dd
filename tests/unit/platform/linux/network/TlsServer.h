#pragma once

#include <QString>
#include <QTemporaryDir>

#include <future>
#include <thread>

class QSslConfiguration;

namespace quorvane::platform {

/// Temporary certificates for tests, created by the openssl tool: an authority, a certificate of it for
/// 127.0.0.1 and one for another host.
class TestCertificates {
public:
    TestCertificates();

    [[nodiscard]] bool areMade() const { return m_created; }

    /// A folder with the authority under the hash of its subject.
    [[nodiscard]] QString authorityFolder() const { return path(QStringLiteral("authorities")); }

    [[nodiscard]] QString authority() const { return path(QStringLiteral("ca.crt")); }

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    bool m_created = false;
};

/// An HTTPS server on 127.0.0.1 that sends the same answer to every request.
class TlsServer {
public:
    /// How the connection ends after the answer.
    enum class End {
        Announced, ///< with the message of TLS that says so
        Abrupt     ///< without it, as after a cut
    };

    /// The certificate's name is "good" or "wrong".
    TlsServer(const TestCertificates &certificates, const QString &certificate, const QByteArray &answer,
              End end = End::Announced);
    ~TlsServer();
    TlsServer(const TlsServer &) = delete;
    TlsServer &operator=(const TlsServer &) = delete;

    [[nodiscard]] QByteArray url() const;

private:
    void serve(const QSslConfiguration &configuration, const QByteArray &answer, End end);

    std::promise<quint16> m_listening;
    std::promise<void> m_ending;
    quint16 m_port = 0;
    std::thread m_thread;
};

} // namespace quorvane::platform
