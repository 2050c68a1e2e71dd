// The session's events and steps that concern the network lock.
#include "HideIpSession.h"

#include "SessionState.h"
#include "frontend/support/AlertPresenter.h"
#include "frontend/support/Diagnostics.h"
#include "platform/NetworkLock.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

namespace quorvane {

namespace {

platform::Platform &services() {
    return platform::Platform::current();
}

} // namespace

void HideIpSession::liftLockPressed() {
    post(&HideIpSession::liftLockAtRest);
}

void HideIpSession::watchLock() {
    services().networkLock->setObserver([this] { post(&HideIpSession::lockChanged); });
}

Task<> HideIpSession::lockChanged() {
    m_facts.locked = NetworkLock::isClosed();
    co_return;
}

Task<bool> HideIpSession::lockForAttempt() {
    if (!NetworkLock::isWanted()) {
        co_return true;
    }
    auto closing = m_lock.close(m_parts.events);
    const QString problem = co_await closing;
    m_facts.locked = NetworkLock::isClosed();
    publish();
    if (problem.isNull()) {
        co_return true;
    }
    Diagnostics::log(QStringLiteral("the network lock is not closed: ") + problem);
    m_failures = 0;
    co_await reset();
    m_parts.alerts.criticalLater(
        {QStringLiteral("Quorvane"),
         tr("Traffic outside the tunnel could not be blocked, so your IP is not hidden."), problem});
    putBackServersLater();
    co_return false;
}

Task<QString> HideIpSession::tryToLiftLock() {
    QString problem;
    if (m_lock.mayBeClosed()) {
        auto lifting = m_lock.lift(m_parts.events);
        problem = co_await lifting;
    }
    m_facts.locked = NetworkLock::isClosed();
    publish();
    if (!problem.isNull()) {
        Diagnostics::log(QStringLiteral("the network lock is not lifted: ") + problem);
    }
    co_return problem;
}

Task<> HideIpSession::liftLock() {
    const QString problem = co_await tryToLiftLock();
    if (!problem.isNull()) {
        m_parts.alerts.criticalLater({QStringLiteral("Quorvane"),
                                      tr("The block of traffic outside the tunnel could not be lifted."),
                                      problem});
    }
}

Task<> HideIpSession::liftLockAtRest() {
    if (isAtRest(m_facts)) {
        co_await liftLock();
    }
}

Task<> HideIpSession::liftLockAtEnd() {
    const QString problem = co_await tryToLiftLock();
    if (!problem.isNull()) {
        services().workspace->notify(tr("Traffic outside the tunnel is still blocked"),
                                     tr("Type \"quorvane --unlock\" in a terminal to lift the block."));
    }
}

Task<> HideIpSession::askAboutLock() {
    const Question question{QStringLiteral("Quorvane"),
                            tr("Traffic outside the tunnel is still blocked since Quorvane last ran."),
                            tr("It has ended without lifting the block. Your IP is not hidden."),
                            tr("Lift the Block"), tr("Hide My IP")};
    // Shared, because the question may be answered when this handler has ended.
    const auto answer = std::make_shared<Answer>(Answer::None);
    auto window = m_parts.events.outside([this, question, answer](const std::function<void()> &proceed) {
        m_parts.alerts.ask(question, [answer, proceed](Answer given) {
            *answer = given;
            proceed();
        });
    });
    co_await window;
    if (m_facts.phase != Phase::Starting && m_facts.phase != Phase::NotHidden) {
        co_return; // the user has begun something else meanwhile
    }
    switch (*answer) {
    case Answer::First:
        co_await liftLock();
        break;
    case Answer::Second:
        if (m_facts.answered) {
            co_await press(true);
        } else {
            // The first answer begins the attempt, as at every start that hides.
            SessionState::shared().hidden = true;
        }
        break;
    case Answer::None:
        break;
    }
}

} // namespace quorvane
