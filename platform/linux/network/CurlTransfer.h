#pragma once

#include "UrlRequest.h"
#include "platform/UrlLoader.h"

#include <QTimer>

namespace quorvane::platform {

class CurlExchange;
struct CurlLibrary;

/// A download within the limits: one exchange, and another one for each redirect, for a host without IPv4 and
/// for an authority file without certificates. No request is sent twice. Passes each piece of the body to a
/// receiver and reports the end once; destroys itself then. Destroying it earlier cancels the transfer
/// without a report.
class CurlTransfer final : public QObject {
    Q_OBJECT

public:
    /// Receives a piece of the body (an empty one at the end of an empty body). An error ends the transfer.
    /// It may destroy the transfer, but must be copyable without effects.
    using Receiver = std::function<std::optional<UrlError>(const QByteArray &piece)>;
    /// The end: no error after a complete answer.
    using Ended = std::function<void(const std::optional<UrlError> &error)>;

    /// Without a library the transfer fails as soon as the event loop runs.
    CurlTransfer(const CurlLibrary *curl, UrlRequest request, const UrlLimits &limits, QObject *parent,
                 Receiver receiver, Ended ended);
    ~CurlTransfer() override;
    CurlTransfer(const CurlTransfer &) = delete;
    CurlTransfer &operator=(const CurlTransfer &) = delete;

    /// Ends the transfer without a report.
    void cancel();

private:
    void begin();
    void advance(bool socketMoved);
    void followRedirect();
    void handleFailure();
    void end(std::optional<UrlError> error);

    const CurlLibrary *m_curl;
    UrlRequest m_request;
    const UrlLimits m_limits;
    Receiver m_receiver;
    Ended m_ended;
    QTimer m_silence;
    QTimer m_overall;
    std::unique_ptr<CurlExchange> m_exchange;
    bool m_overIPv6 = false;
    /// Why IPv4 did not work.
    std::optional<UrlError> m_firstError;
    int m_redirects = 0;
    bool m_hasEnded = false;
};

} // namespace quorvane::platform
