#include "TlsServer.h"

#include "platform/linux/process/ChildProcess.h"

#include <QEventLoop>
#include <QFile>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>
#include <sys/socket.h>

namespace quorvane::platform {

namespace {

// $1: the folder.
constexpr char script[] = R"(
set -e
cd "$1"
new="-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes"
openssl req -x509 $new -keyout ca.key -out ca.crt -days 2 -subj "/CN=Test authority $$" \
    -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign
make() {
    openssl req $new -keyout "$1.key" -out "$1.csr" -subj "/CN=$1"
    printf 'basicConstraints=CA:FALSE\nextendedKeyUsage=serverAuth\nsubjectAltName=%s\n' "$2" >"$1.ext"
    openssl x509 -req -in "$1.csr" -CA ca.crt -CAkey ca.key -CAcreateserial -out "$1.crt" -days 2 -extfile "$1.ext"
}
make good IP:127.0.0.1
make wrong DNS:other.test
mkdir authorities
cp ca.crt authorities
openssl rehash authorities
)";

} // namespace

TestCertificates::TestCertificates() {
    const platform::ChildOutcome outcome =
        platform::runChild({"/bin/sh",
                            {"sh", "-c", script, "sh", m_folder.path().toUtf8()},
                            {QByteArray("PATH=") + platform::systemPath},
                            "/"});
    m_created = outcome.startFailure == 0 && outcome.status == 0;
}

TlsServer::TlsServer(const TestCertificates &certificates, const QString &certificate,
                     const QByteArray &answer, End end) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setLocalCertificateChain(
        QSslCertificate::fromPath(certificates.path(certificate + QStringLiteral(".crt"))));
    QFile key(certificates.path(certificate + QStringLiteral(".key")));
    if (!key.open(QIODevice::ReadOnly)) {
        qFatal("no key for the test server");
    }
    configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    m_thread = std::thread([this, configuration, answer, end] { serve(configuration, answer, end); });
    m_port = m_listening.get_future().get();
}

TlsServer::~TlsServer() {
    m_ending.set_value();
    m_thread.join();
}

QByteArray TlsServer::url() const {
    return "https://127.0.0.1:" + QByteArray::number(m_port) + "/";
}

void TlsServer::serve(const QSslConfiguration &configuration, const QByteArray &answer, End end) {
    // Sockets of this thread need its loop.
    QEventLoop loop;
    QSslServer server;
    server.setSslConfiguration(configuration);
    QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [&server, answer, end] {
        while (QTcpSocket *socket = server.nextPendingConnection()) {
            const auto reply = [socket, answer, end] {
                if (!socket->peek(65536).contains("\r\n\r\n")) {
                    return;
                }
                socket->readAll();
                socket->write(answer);
                if (end == End::Abrupt) {
                    socket->flush();
                    ::shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR);
                    return;
                }
                socket->disconnectFromHost();
            };
            QObject::connect(socket, &QTcpSocket::readyRead, socket, reply);
            reply();
        }
    });
    if (!server.listen(QHostAddress::LocalHost)) {
        qFatal("the test server cannot listen");
    }
    m_listening.set_value(server.serverPort());
    const auto ended = m_ending.get_future();
    // Wakes the loop to look for the end.
    QTimer beat;
    beat.start(10);
    while (ended.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        loop.processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

} // namespace quorvane::platform
