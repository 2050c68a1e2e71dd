#include "UrlTransfer.h"

#include "platform/StrictUrl.h"

#include <QHostInfo>
#include <QNetworkProxy>
#include <algorithm>

namespace quorvane::platform {

namespace {

constexpr qint64 largestHead = qint64{64} * 1024;
constexpr qint64 unread = qint64{256} * 1024;
constexpr int mostRedirects = 10;

UrlError tooLarge() {
    return {UrlError::Kind::TooLarge, QStringLiteral("the answer is too large")};
}

UrlError broken() {
    return {UrlError::Kind::Other, QStringLiteral("the answer is no HTTP, or not whole")};
}

UrlError::Kind kindOf(QAbstractSocket::SocketError error) {
    switch (static_cast<int>(error)) {
    case QAbstractSocket::ConnectionRefusedError:
        return UrlError::Kind::Refused;
    case QAbstractSocket::SocketTimeoutError:
        return UrlError::Kind::TimedOut;
    case QAbstractSocket::SslHandshakeFailedError:
        return UrlError::Kind::Tls;
    default:
        return UrlError::Kind::Other;
    }
}

} // namespace

UrlTransfer::UrlTransfer(UrlRequest wanted, const UrlLimits &bounds, QObject *parent, Receiver takePiece,
                         Ended tellEnd)
    : QObject(parent), request(std::move(wanted)), limits(bounds), receiver(std::move(takePiece)),
      ended(std::move(tellEnd)), answer(largestHead) {
    silence.setInterval(limits.silence);
    overall.setInterval(limits.overall);
    for (QTimer *timer : {&silence, &overall}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, [this] {
            end(UrlError{UrlError::Kind::TimedOut, QStringLiteral("the server took too long")});
        });
        timer->start();
    }
    lookUp();
}

UrlTransfer::~UrlTransfer() {
    if (lookup >= 0) {
        QHostInfo::abortHostLookup(lookup);
    }
    dropSocket();
}

void UrlTransfer::cancel() {
    hasEnded = true;
    silence.stop();
    overall.stop();
    dropSocket();
    deleteLater();
}

void UrlTransfer::dropSocket() {
    if (socket == nullptr) {
        return;
    }
    socket->disconnect(this);
    socket->abort();
    // It may be the one that is calling.
    socket->deleteLater();
    socket = nullptr;
}

void UrlTransfer::lookUp() {
    lookup = QHostInfo::lookupHost(request.url.host(), this, [this](const QHostInfo &found) {
        lookup = -1;
        if (hasEnded) {
            return;
        }
        addresses = found.addresses();
        if (addresses.isEmpty()) {
            end(UrlError{UrlError::Kind::NoHost, found.errorString()});
            return;
        }
        // The address that the service sees is what the window shows, and the tunnel lends IPv4 addresses.
        std::stable_partition(addresses.begin(), addresses.end(), [](const QHostAddress &address) {
            return address.protocol() == QAbstractSocket::IPv4Protocol;
        });
        connectToNext();
    });
}

void UrlTransfer::connectToNext() {
    dropSocket();
    isConnected = false;
    answer = HttpAnswer(largestHead);
    received = 0;
    socket = new QSslSocket(this);
    socket->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    // What is not read yet stays with the sender.
    socket->setReadBufferSize(unread);
    connect(socket, &QAbstractSocket::errorOccurred, this, &UrlTransfer::takeFailure);
    connect(socket, &QAbstractSocket::connected, this, [this] { isConnected = true; });
    connect(socket, &QIODevice::readyRead, this, &UrlTransfer::takeBytes);
    const QString address = addresses.takeFirst().toString();
    if (request.url.scheme() == QStringLiteral("https")) {
        connect(socket, &QSslSocket::encrypted, this, &UrlTransfer::send);
        socket->setSslConfiguration(request.tls);
        socket->connectToHostEncrypted(address, static_cast<quint16>(request.url.port(443)),
                                       request.url.host());
    } else {
        connect(socket, &QAbstractSocket::connected, this, &UrlTransfer::send);
        socket->connectToHost(address, static_cast<quint16>(request.url.port(80)));
    }
}

QByteArray UrlTransfer::text() const {
    const QString path = request.url.path(QUrl::FullyEncoded);
    QByteArray target = path.isEmpty() ? QByteArray("/") : path.toLatin1();
    if (request.url.hasQuery()) {
        target += '?' + request.url.query(QUrl::FullyEncoded).toLatin1();
    }
    // A packed body could unfold far beyond the limit.
    return "GET " + target + " HTTP/1.1\r\nHost: " + request.url.authority(QUrl::FullyEncoded).toLatin1() +
           "\r\nUser-Agent: " + request.userAgent +
           "\r\nAccept: */*\r\nAccept-Encoding: identity\r\nConnection: close\r\n\r\n";
}

void UrlTransfer::send() {
    silence.start();
    socket->write(text());
}

void UrlTransfer::takeFailure(QAbstractSocket::SocketError error) {
    if (!isConnected && !addresses.isEmpty()) {
        connectToNext();
        return;
    }
    if (isConnected && error == QAbstractSocket::RemoteHostClosedError) {
        takeBytes();
        if (socket == nullptr) {
            return;
        }
        answer.takeEnd();
        if (answer.state() == HttpAnswer::State::Complete) {
            end(received == 0 ? receiver(QByteArray()) : std::nullopt);
        } else {
            end(broken());
        }
        return;
    }
    end(UrlError{kindOf(error), socket->errorString()});
}

void UrlTransfer::takeBytes() {
    const QByteArray bytes = socket->readAll();
    if (bytes.isEmpty()) {
        return;
    }
    silence.start();
    const QByteArray piece = answer.take(bytes);
    received += piece.size();
    if (answer.state() == HttpAnswer::State::Broken) {
        end(broken());
    } else if (answer.state() == HttpAnswer::State::TooLarge || received > limits.largestBody ||
               answer.length().value_or(0) > limits.largestBody) {
        end(tooLarge());
    } else if (isRedirect()) {
        takeRedirect();
    } else if (const auto error = piece.isEmpty() ? std::nullopt : receiver(piece)) {
        end(error);
    } else if (answer.state() == HttpAnswer::State::Complete) {
        end(received == 0 ? receiver(QByteArray()) : std::nullopt);
    }
}

bool UrlTransfer::isRedirect() const {
    const int status = answer.status();
    const bool moved = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    const bool headIsWhole =
        answer.state() == HttpAnswer::State::Body || answer.state() == HttpAnswer::State::Complete;
    return moved && headIsWhole && !answer.location().isEmpty();
}

void UrlTransfer::takeRedirect() {
    const QUrl location = QUrl::fromEncoded(answer.location(), QUrl::StrictMode);
    QUrl target = request.url.resolved(location);
    target.setFragment(QString());
    const bool safe =
        target.scheme() == QStringLiteral("https") || request.url.scheme() == QStringLiteral("http");
    if (!location.isValid() || !safe || !strictUrl(target.toEncoded()) || ++redirects > mostRedirects) {
        end(UrlError{UrlError::Kind::Other, QStringLiteral("the answer leads astray")});
        return;
    }
    request.url = target;
    dropSocket();
    lookUp();
}

void UrlTransfer::end(const std::optional<UrlError> &error) {
    if (hasEnded) {
        return;
    }
    cancel();
    // The receiver of the news may delete the parent of this object.
    const Ended tell = std::move(ended);
    tell(error);
}

} // namespace quorvane::platform
