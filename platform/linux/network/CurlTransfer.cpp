#include "CurlTransfer.h"

#include "CurlExchange.h"
#include "platform/StrictUrl.h"

#include <QPointer>
#include <arpa/inet.h>

namespace quorvane::platform {

namespace {

constexpr int mostRedirects = 10;

bool isIPv4Address(const QString &host) {
    in_addr address{};
    return ::inet_pton(AF_INET, host.toLatin1().constData(), &address) == 1;
}

} // namespace

CurlTransfer::CurlTransfer(const CurlLibrary *curl, UrlRequest request, const UrlLimits &limits,
                           QObject *parent, Receiver receiver, Ended ended)
    : QObject(parent), m_curl(curl), m_request(std::move(request)), m_limits(limits),
      m_receiver(std::move(receiver)), m_ended(std::move(ended)) {
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
    if (m_curl != nullptr) {
        begin();
        return;
    }
    QTimer::singleShot(0, this, [this] {
        end(UrlError{UrlError::Kind::Other, QStringLiteral("libcurl cannot be loaded")});
    });
}

CurlTransfer::~CurlTransfer() = default;

void CurlTransfer::cancel() {
    m_hasEnded = true;
    m_silence.stop();
    m_overall.stop();
    m_exchange.reset();
    deleteLater();
}

void CurlTransfer::begin() {
    // IPv4 first: the address that the service sees is what the window shows, and the tunnel lends IPv4
    // addresses.
    const long family = m_overIPv6 ? CURL_IPRESOLVE_V6 : CURL_IPRESOLVE_V4;
    m_exchange = std::make_unique<CurlExchange>(*m_curl, m_request, family, m_limits.largestBody, nullptr);
    connect(m_exchange.get(), &CurlExchange::advanced, this, &CurlTransfer::advance);
}

void CurlTransfer::advance(bool socketMoved) {
    if (socketMoved) {
        m_silence.start();
    }
    const CurlExchange::State state = m_exchange->state();
    const bool isEmpty = state == CurlExchange::State::Complete && m_exchange->received() == 0;
    const QByteArray piece = m_exchange->nextPiece();
    if (!piece.isEmpty() || isEmpty) {
        // The receiver may destroy the parent of this object, or cancel the transfer. The copy lives until
        // it returns.
        const QPointer alive(this);
        const Receiver receiver = m_receiver;
        const auto error = receiver(piece);
        if (!alive || m_hasEnded) {
            return;
        }
        if (error) {
            end(error);
            return;
        }
    }
    switch (state) {
    case CurlExchange::State::Running:
        break;
    case CurlExchange::State::Complete:
        end(std::nullopt);
        break;
    case CurlExchange::State::Redirect:
        followRedirect();
        break;
    case CurlExchange::State::Failed:
        handleFailure();
        break;
    }
}

void CurlTransfer::followRedirect() {
    const QUrl location = QUrl::fromEncoded(m_exchange->location(), QUrl::StrictMode);
    QUrl target = m_request.url.resolved(location);
    target.setFragment(QString());
    const bool safe =
        target.scheme() == QStringLiteral("https") || m_request.url.scheme() == QStringLiteral("http");
    if (!location.isValid() || !safe || !strictUrl(target.toEncoded()) || ++m_redirects > mostRedirects) {
        end(UrlError{UrlError::Kind::Other, QStringLiteral("the answer redirects to an unusable address")});
        return;
    }
    if (target.authority() != m_request.url.authority()) {
        m_request.addresses.clear();
    }
    m_request.url = target;
    m_overIPv6 = false;
    m_firstError.reset();
    begin();
}

void CurlTransfer::handleFailure() {
    const CURLcode code = m_exchange->code();
    UrlError error = m_exchange->error();
    if (code == CURLE_SSL_CACERT_BADFILE && !m_request.authorityFile.isEmpty()) {
        m_request.authorityFile.clear();
        begin();
        return;
    }
    const bool isUnreachable = code == CURLE_COULDNT_RESOLVE_HOST || code == CURLE_COULDNT_CONNECT;
    if (isUnreachable && !m_overIPv6 && !isIPv4Address(m_request.url.host())) {
        m_overIPv6 = true;
        m_firstError = std::move(error);
        begin();
        return;
    }
    // A host without IPv6 has failed for its first reason.
    const bool firstSaysMore = m_firstError && m_firstError->kind != UrlError::Kind::NoHost;
    end(isUnreachable && firstSaysMore ? m_firstError : error);
}

void CurlTransfer::end(std::optional<UrlError> error) {
    if (m_hasEnded) {
        return;
    }
    cancel();
    // The receiver of the report may destroy the parent of this object.
    const Ended report = std::move(m_ended);
    report(error);
}

} // namespace quorvane::platform
