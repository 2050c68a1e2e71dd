#include "UrlTransfer.h"

namespace platform {

UrlTransfer::UrlTransfer(QNetworkReply *answer, const UrlLimits &limits, QObject *parent, Receiver takePiece,
                         Ended tellEnd)
    : QObject(parent), reply(answer), largestBody(limits.largestBody), receiver(std::move(takePiece)),
      ended(std::move(tellEnd)) {
    silence.setSingleShot(true);
    silence.setInterval(limits.silence);
    overall.setSingleShot(true);
    overall.setInterval(limits.overall);
    for (QTimer *timer : {&silence, &overall}) {
        timer->setTimerType(Qt::PreciseTimer);
        connect(timer, &QTimer::timeout, this, [this] {
            end(UrlError{UrlError::Kind::TimedOut, QStringLiteral("the server took too long")});
        });
        timer->start();
    }
    connect(reply, &QNetworkReply::metaDataChanged, this, &UrlTransfer::takeHead);
    connect(reply, &QNetworkReply::readyRead, this, &UrlTransfer::takeBody);
    connect(reply, &QNetworkReply::finished, this, &UrlTransfer::takeEnd);
    // The manager went: nobody is left to tell.
    connect(reply, &QObject::destroyed, this, [this] {
        hasEnded = true;
        silence.stop();
        overall.stop();
        deleteLater();
    });
}

UrlTransfer::~UrlTransfer() {
    if (reply.isNull())
        return;
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
}

void UrlTransfer::takeHead() {
    silence.start();
    if (reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > largestBody)
        end(UrlError{UrlError::Kind::TooLarge, QStringLiteral("the answer is too large")});
}

void UrlTransfer::takeBody() {
    if (hasEnded)
        return;
    silence.start();
    const QByteArray piece = reply->readAll();
    received += piece.size();
    if (received > largestBody)
        end(UrlError{UrlError::Kind::TooLarge, QStringLiteral("the answer is too large")});
    else if (const auto error = piece.isEmpty() ? std::nullopt : receiver(piece))
        end(error);
}

void UrlTransfer::takeEnd() {
    if (hasEnded)
        return;
    takeBody();
    if (hasEnded)
        return;
    if (!isCompleteAnswer())
        end(networkError());
    else
        end(received == 0 ? receiver(QByteArray()) : std::nullopt);
}

bool UrlTransfer::isCompleteAnswer() const {
    const QNetworkReply::NetworkError error = reply->error();
    // An early end of the connection may hide behind the error of the status.
    const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && length.toLongLong() != received)
        return false;
    // These errors say nothing but that the status is not one of success.
    const bool statusOnly =
        (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError) ||
        (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError) ||
        error == QNetworkReply::ProtocolInvalidOperationError || error == QNetworkReply::ProtocolUnknownError;
    constexpr int firstErrorStatus = 400;
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return error == QNetworkReply::NoError || (statusOnly && status >= firstErrorStatus);
}

UrlError UrlTransfer::networkError() const {
    const QString description = reply->errorString();
    switch (static_cast<int>(reply->error())) {
    case QNetworkReply::HostNotFoundError:
        return {UrlError::Kind::NoHost, description};
    case QNetworkReply::ConnectionRefusedError:
        return {UrlError::Kind::Refused, description};
    case QNetworkReply::TimeoutError:
        return {UrlError::Kind::TimedOut, description};
    case QNetworkReply::SslHandshakeFailedError:
        return {UrlError::Kind::Tls, description};
    case QNetworkReply::OperationCanceledError:
        return {UrlError::Kind::Cancelled, description};
    default:
        return {UrlError::Kind::Other, description};
    }
}

void UrlTransfer::end(const std::optional<UrlError> &error) {
    if (hasEnded)
        return;
    hasEnded = true;
    silence.stop();
    overall.stop();
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
    reply.clear();
    deleteLater();
    // The receiver of the news may delete the parent of this object.
    const Ended tell = std::move(ended);
    tell(error);
}

} // namespace platform
