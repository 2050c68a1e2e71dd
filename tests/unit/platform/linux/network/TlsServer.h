#pragma once

#include <QString>
#include <QTemporaryDir>

#include <future>
#include <thread>

class QSslConfiguration;

/// Throw-away certificates for tests, made by the openssl tool: an authority, a certificate of it for
/// 127.0.0.1 and one for another host.
class TestCertificates {
public:
    TestCertificates();

    [[nodiscard]] bool areMade() const { return made; }

    /// A folder with the authority under the hash of its subject.
    [[nodiscard]] QString authorityFolder() const { return path(QStringLiteral("authorities")); }

    [[nodiscard]] QString authority() const { return path(QStringLiteral("ca.crt")); }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

private:
    QTemporaryDir folder;
    bool made = false;
};

/// An HTTPS server on 127.0.0.1 that gives every request the same answer.
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

    std::promise<quint16> listening;
    std::promise<void> ending;
    quint16 port = 0;
    std::thread thread;
};
