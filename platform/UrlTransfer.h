#pragma once

#include "QtUrlLoader.h"

#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

namespace platform {

/// One answer on its way in, within the limits. Hands each piece of the body to a receiver and tells
/// the end once; destroys itself then. Going away earlier cancels the transfer and tells nothing.
class UrlTransfer final : public QObject {
    Q_OBJECT

public:
    /// Takes a piece of the body (an empty one at the end of an empty body). An error ends the transfer.
    using Receiver = std::function<std::optional<UrlError>(const QByteArray &piece)>;
    /// The end: no error after a complete answer.
    using Ended = std::function<void(const std::optional<UrlError> &error)>;

    /// Takes the reply over.
    UrlTransfer(QNetworkReply *reply, const UrlLimits &limits, QObject *parent, Receiver receiver,
                Ended ended);
    ~UrlTransfer() override;

private:
    void takeHead();
    void takeBody();
    void takeEnd();
    void end(const std::optional<UrlError> &error);
    [[nodiscard]] bool isCompleteAnswer() const;
    [[nodiscard]] UrlError networkError() const;

    QPointer<QNetworkReply> reply;
    const qint64 largestBody;
    Receiver receiver;
    Ended ended;
    QTimer silence;
    QTimer overall;
    qint64 received = 0;
    bool hasEnded = false;
};

} // namespace platform
