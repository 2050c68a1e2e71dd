#pragma once

#include "HttpAnswer.h"
#include "QtUrlLoader.h"

#include <QHostAddress>
#include <QSslSocket>
#include <QTimer>

namespace quorvane::platform {

/// One request and its answer, within the limits. Hands each piece of the body to a receiver and tells the
/// end once; destroys itself then. Going away earlier cancels the transfer and tells nothing. Asks once:
/// nothing is sent a second time, but for a redirect.
class UrlTransfer final : public QObject {
    Q_OBJECT

public:
    /// Takes a piece of the body (an empty one at the end of an empty body). An error ends the transfer.
    using Receiver = std::function<std::optional<UrlError>(const QByteArray &piece)>;
    /// The end: no error after a complete answer.
    using Ended = std::function<void(const std::optional<UrlError> &error)>;

    UrlTransfer(UrlRequest request, const UrlLimits &limits, QObject *parent, Receiver receiver, Ended ended);
    ~UrlTransfer() override;

    /// Ends the transfer without a word.
    void cancel();

private:
    void lookUp();
    void connectToNext();
    void send();
    void takeFailure(QAbstractSocket::SocketError error);
    void takeBytes();
    void takeRedirect();
    void end(const std::optional<UrlError> &error);
    [[nodiscard]] bool isRedirect() const;
    [[nodiscard]] QByteArray text() const;
    void dropSocket();

    UrlRequest m_request;
    const UrlLimits m_limits;
    Receiver m_receiver;
    Ended m_ended;
    QTimer m_silence;
    QTimer m_overall;
    QList<QHostAddress> m_addresses; ///< not tried yet
    QSslSocket *m_socket = nullptr;
    HttpAnswer m_answer;
    qint64 m_received = 0;
    int m_redirects = 0;
    int m_lookup = -1;
    bool m_isConnected = false;
    bool m_hasEnded = false;
};

} // namespace quorvane::platform
