// The session's events that concern the service's answers.
#include "HideIpSession.h"

#include "SessionState.h"
#include "SessionWindow.h"
#include "frontend/support/Preferences.h"

namespace quorvane {

namespace {

bool isExpected(quint32 kind) {
    return kind == QrvApiRequest::Auth || kind == QrvApiRequest::Browser || kind == QrvApiRequest::Programs;
}

} // namespace

void HideIpSession::qrvAnswer(QrvAPI &api) {
    // Judged now: while the answer waits, the tunnel through which it may have been requested can end.
    const bool mayBeLent = isTunnelInUse(m_facts) || m_tunnelStarts != m_startsAtRequest;
    post(&HideIpSession::answered, api.request(), mayBeLent);
}

void HideIpSession::qrvFailed(const platform::UrlError & /*error*/) {
    post(&HideIpSession::requestFailed);
}

void HideIpSession::updateLeaseTimerFired() {
    if (SessionState::shared().hidden) {
        m_parts.api.getLease(QString());
    }
}

void HideIpSession::refreshLocationsPressed() {
    post(&HideIpSession::requestList);
}

Task<> HideIpSession::requestList() {
    if (!isTunnelInUse(m_facts)) {
        m_startsAtRequest = m_tunnelStarts;
        m_parts.api.requestListAgain();
    }
    co_return;
}

Task<> HideIpSession::reportNoAddress() {
    const auto shown =
        alert(tr("Error"), tr("There was a problem connecting to the Quorvane server, please check your "
                              "Internet connection or firewall settings."));
    co_await shown;
}

void HideIpSession::takeAddress(const QString &address) {
    SessionState::shared().currentIp = address;
    m_facts.realAddress = address;
    m_facts.shownAddress = address;
    publish();
}

Task<> HideIpSession::requestFailed() {
    if (!m_facts.answered) {
        takeAddress(QStringLiteral("0.0.0.0"));
    }
    co_await reportNoAddress();
}

Task<> HideIpSession::answered(QrvApiRequest answer, bool mayBeLent) {
    if (m_facts.answered) {
        co_await laterAnswer(answer, mayBeLent);
    } else {
        co_await firstAnswer(answer, mayBeLent);
    }
    Preferences::synchronize();
}

Task<> HideIpSession::firstAnswer(const QrvApiRequest &answer, bool mayBeLent) {
    if (answer.clientIP.isEmpty()) {
        SessionState::shared().currentIp = QStringLiteral("0.0.0.0");
        co_await reportNoAddress();
    }
    // An attempt may have begun by a hot key, before the answer or while its alert was open.
    const bool inUse = mayBeLent || isTunnelInUse(m_facts);
    if (inUse) {
        m_facts.realAddress = QStringLiteral("0.0.0.0"); // the service may have seen a lent one
    } else {
        takeAddress(answer.clientIP.isEmpty() ? QStringLiteral("0.0.0.0") : answer.clientIP);
    }
    if (answer.status == 0 && !inUse) {
        co_await continueWork(false);
    }
    if (answer.kind == QrvApiRequest::Auth) {
        m_parts.chooser.fillCountries(answer.servers);
        m_parts.chooser.checkPopupCountry();
    }
    m_facts.answered = true;
    if (!isExpected(answer.kind)) {
        m_parts.window.terminateApplication();
        co_return;
    }
    if (inUse) {
        co_return;
    }
    stopAnimation();
    co_await authPassed();
    m_facts.controls = true;
    if (m_facts.phase == Phase::Starting) {
        enter(Phase::NotHidden);
    }
}

Task<> HideIpSession::laterAnswer(const QrvApiRequest &answer, bool mayBeLent) {
    if (!isExpected(answer.kind)) {
        m_parts.window.terminateApplication();
        co_return;
    }
    const bool hasAddress = answer.hasClientIP && !answer.clientIP.isEmpty();
    if (!hasAddress && !mayBeLent && !isTunnelInUse(m_facts)) {
        co_await reportNoAddress(); // the known address stays
    }
    if (mayBeLent || isTunnelInUse(m_facts)) { // also if an attempt began while the alert was open
        m_parts.chooser.renew(answer.servers);
        co_return;
    }
    if (hasAddress) {
        takeAddress(answer.clientIP);
    }
    m_parts.chooser.renew(answer.servers);
    m_parts.chooser.checkPopupCountry();
    if (m_facts.phase == Phase::Waiting) {
        co_return; // it continues with the new list, which was an event of its own
    }
    if (answer.status == 0) {
        co_await continueWork(false);
    }
    stopAnimation();
    co_await authPassed();
    m_facts.controls = true;
}

Task<> HideIpSession::authPassed() {
    if (!m_parts.api.model().hasLocations()) {
        co_return;
    }
    if (!m_parts.window.startedHidden()) {
        m_parts.window.showWindow();
    }
    co_await continueWork(false);
}

Task<> HideIpSession::continueWork(bool proceed) {
    if (proceed) {
        co_return;
    }
    m_facts.controls = true;
    if (SessionState::shared().hidden) {
        co_await press(true);
        m_parts.animation.resetFrames();
    }
}

} // namespace quorvane
