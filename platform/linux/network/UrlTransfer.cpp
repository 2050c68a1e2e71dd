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
    : QObject(parent), m_request(std::move(wanted)), m_limits(bounds), m_receiver(std::move(takePiece)),
      m_ended(std::move(tellEnd)), m_answer(largestHead) {
    m_silence.setInterval(m_limits.silence);
    m_overall.setInterval(m_limits.overall);
    for (QTimer *timer : {&m_silence, &m_overall}) {
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
    if (m_lookup >= 0) {
        QHostInfo::abortHostLookup(m_lookup);
    }
    dropSocket();
}

void UrlTransfer::cancel() {
    m_hasEnded = true;
    m_silence.stop();
    m_overall.stop();
    dropSocket();
    deleteLater();
}

void UrlTransfer::dropSocket() {
    if (m_socket == nullptr) {
        return;
    }
    m_socket->disconnect(this);
    m_socket->abort();
    // It may be the one that is calling.
    m_socket->deleteLater();
    m_socket = nullptr;
}

void UrlTransfer::lookUp() {
    m_lookup = QHostInfo::lookupHost(m_request.url.host(), this, [this](const QHostInfo &found) {
        m_lookup = -1;
        if (m_hasEnded) {
            return;
        }
        m_addresses = found.addresses();
        if (m_addresses.isEmpty()) {
            end(UrlError{UrlError::Kind::NoHost, found.errorString()});
            return;
        }
        // The address that the service sees is what the window shows, and the tunnel lends IPv4 addresses.
        std::stable_partition(m_addresses.begin(), m_addresses.end(), [](const QHostAddress &address) {
            return address.protocol() == QAbstractSocket::IPv4Protocol;
        });
        connectToNext();
    });
}

void UrlTransfer::connectToNext() {
    dropSocket();
    m_isConnected = false;
    m_answer = HttpAnswer(largestHead);
    m_received = 0;
    m_socket = new QSslSocket(this);
    m_socket->setProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    // What is not read yet stays with the sender.
    m_socket->setReadBufferSize(unread);
    connect(m_socket, &QAbstractSocket::errorOccurred, this, &UrlTransfer::takeFailure);
    connect(m_socket, &QAbstractSocket::connected, this, [this] { m_isConnected = true; });
    connect(m_socket, &QIODevice::readyRead, this, &UrlTransfer::takeBytes);
    const QString address = m_addresses.takeFirst().toString();
    if (m_request.url.scheme() == QStringLiteral("https")) {
        connect(m_socket, &QSslSocket::encrypted, this, &UrlTransfer::send);
        m_socket->setSslConfiguration(m_request.tls);
        m_socket->connectToHostEncrypted(address, static_cast<quint16>(m_request.url.port(443)),
                                         m_request.url.host());
    } else {
        connect(m_socket, &QAbstractSocket::connected, this, &UrlTransfer::send);
        m_socket->connectToHost(address, static_cast<quint16>(m_request.url.port(80)));
    }
}

QByteArray UrlTransfer::text() const {
    const QString path = m_request.url.path(QUrl::FullyEncoded);
    QByteArray target = path.isEmpty() ? QByteArray("/") : path.toLatin1();
    if (m_request.url.hasQuery()) {
        target += '?' + m_request.url.query(QUrl::FullyEncoded).toLatin1();
    }
    // A packed body could unfold far beyond the limit.
    return "GET " + target + " HTTP/1.1\r\nHost: " + m_request.url.authority(QUrl::FullyEncoded).toLatin1() +
           "\r\nUser-Agent: " + m_request.userAgent +
           "\r\nAccept: */*\r\nAccept-Encoding: identity\r\nConnection: close\r\n\r\n";
}

void UrlTransfer::send() {
    m_silence.start();
    m_socket->write(text());
}

void UrlTransfer::takeFailure(QAbstractSocket::SocketError error) {
    if (!m_isConnected && !m_addresses.isEmpty()) {
        connectToNext();
        return;
    }
    if (m_isConnected && error == QAbstractSocket::RemoteHostClosedError) {
        takeBytes();
        if (m_socket == nullptr) {
            return;
        }
        m_answer.takeEnd();
        if (m_answer.state() == HttpAnswer::State::Complete) {
            end(m_received == 0 ? m_receiver(QByteArray()) : std::nullopt);
        } else {
            end(broken());
        }
        return;
    }
    end(UrlError{kindOf(error), m_socket->errorString()});
}

void UrlTransfer::takeBytes() {
    const QByteArray bytes = m_socket->readAll();
    if (bytes.isEmpty()) {
        return;
    }
    m_silence.start();
    const QByteArray piece = m_answer.take(bytes);
    m_received += piece.size();
    if (m_answer.state() == HttpAnswer::State::Broken) {
        end(broken());
    } else if (m_answer.state() == HttpAnswer::State::TooLarge || m_received > m_limits.largestBody ||
               m_answer.length().value_or(0) > m_limits.largestBody) {
        end(tooLarge());
    } else if (isRedirect()) {
        takeRedirect();
    } else if (const auto error = piece.isEmpty() ? std::nullopt : m_receiver(piece)) {
        end(error);
    } else if (m_answer.state() == HttpAnswer::State::Complete) {
        end(m_received == 0 ? m_receiver(QByteArray()) : std::nullopt);
    }
}

bool UrlTransfer::isRedirect() const {
    const int status = m_answer.status();
    const bool moved = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    const bool headIsWhole =
        m_answer.state() == HttpAnswer::State::Body || m_answer.state() == HttpAnswer::State::Complete;
    return moved && headIsWhole && !m_answer.location().isEmpty();
}

void UrlTransfer::takeRedirect() {
    const QUrl location = QUrl::fromEncoded(m_answer.location(), QUrl::StrictMode);
    QUrl target = m_request.url.resolved(location);
    target.setFragment(QString());
    const bool safe =
        target.scheme() == QStringLiteral("https") || m_request.url.scheme() == QStringLiteral("http");
    if (!location.isValid() || !safe || !strictUrl(target.toEncoded()) || ++m_redirects > mostRedirects) {
        end(UrlError{UrlError::Kind::Other, QStringLiteral("the answer leads astray")});
        return;
    }
    m_request.url = target;
    dropSocket();
    lookUp();
}

void UrlTransfer::end(const std::optional<UrlError> &error) {
    if (m_hasEnded) {
        return;
    }
    cancel();
    // The receiver of the news may delete the parent of this object.
    const Ended tell = std::move(m_ended);
    tell(error);
}

} // namespace quorvane::platform
