#include "TlsServer.h"

#include <QFile>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

namespace {

// $1: the folder.
constexpr char script[] = R"(
set -e
cd "$1"
new="-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes"
openssl req -x509 $new -keyout ca.key -out ca.crt -days 2 -subj "/CN=Test authority" \
    -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign
make() {
    openssl req $new -keyout "$1.key" -out "$1.csr" -subj "/CN=$1"
    printf 'basicConstraints=CA:FALSE\nextendedKeyUsage=serverAuth\nsubjectAltName=%s\n' "$2" >"$1.ext"
    openssl x509 -req -in "$1.csr" -CA ca.crt -CAkey ca.key -CAcreateserial -out "$1.crt" -days 2 -extfile "$1.ext"
}
make good IP:127.0.0.1
make wrong DNS:other.test
)";

} // namespace

TestCertificates::TestCertificates() {
    QProcess shell;
    shell.start(QStringLiteral("/bin/sh"),
                {QStringLiteral("-c"), QString::fromLatin1(script), QStringLiteral("sh"), folder.path()});
    made =
        shell.waitForFinished(60000) && shell.exitStatus() == QProcess::NormalExit && shell.exitCode() == 0;
}

TlsServer::TlsServer(const TestCertificates &certificates, const QString &certificate,
                     const QByteArray &answer)
    : server(new QSslServer) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    configuration.setLocalCertificateChain(
        QSslCertificate::fromPath(certificates.path(certificate + QStringLiteral(".crt"))));
    QFile key(certificates.path(certificate + QStringLiteral(".key")));
    if (!key.open(QIODevice::ReadOnly))
        qFatal("no key for the test server");
    configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    server->setSslConfiguration(configuration);
    server->moveToThread(&thread);
    QObject::connect(&thread, &QThread::finished, server, &QObject::deleteLater);
    QObject::connect(server, &QTcpServer::pendingConnectionAvailable, server, [this, answer] {
        while (QTcpSocket *socket = server->nextPendingConnection()) {
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            const auto serve = [socket, answer] {
                if (!socket->peek(65536).contains("\r\n\r\n"))
                    return;
                socket->readAll();
                socket->write(answer);
                socket->disconnectFromHost();
            };
            QObject::connect(socket, &QTcpSocket::readyRead, socket, serve);
            serve();
        }
    });
    thread.start();
    QMetaObject::invokeMethod(
        server,
        [this] {
            if (!server->listen(QHostAddress::LocalHost))
                qFatal("the test server cannot listen");
            port = server->serverPort();
        },
        Qt::BlockingQueuedConnection);
}

TlsServer::~TlsServer() {
    thread.quit();
    thread.wait();
}

QByteArray TlsServer::url() const {
    return "https://127.0.0.1:" + QByteArray::number(port) + "/";
}
