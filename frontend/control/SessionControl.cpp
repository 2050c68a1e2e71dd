#include "SessionControl.h"

#include "AlertWatch.h"
#include "frontend/session/HideIpSession.h"
#include "frontend/session/LocationList.h"
#include "frontend/support/EventQueue.h"
#include "platform/DelayedCalls.h"
#include "platform/Platform.h"

#include <QPointer>

#include <utility>

namespace quorvane {

using platform::ControlOperation;
using platform::ControlOutcome;
using Kind = ControlOutcome::Kind;

SessionControl::SessionControl(const ControlParts &parts, QObject *parent) : QObject(parent), m_parts(parts) {
    connect(&m_parts.session, &HideIpSession::displayChanged, this, [this] {
        noteStops();
        lookLater();
        Q_EMIT stateChanged();
    });
    m_parts.alerts.setObserver([this](const QString &text) {
        for (Request &request : m_requests) {
            request.problem = request.pressed ? text.trimmed() : QString();
        }
        lookLater();
    });
}

SessionControl::~SessionControl() {
    m_parts.alerts.setObserver({});
    platform::Platform::current().delayedCalls->cancelAll(this);
    for (const Request &request : m_requests) {
        request.reply({Kind::Failed, tr("Quorvane was quit.")});
    }
}

void SessionControl::operate(ControlOperation operation, const QString &location, const Reply &reply) {
    if (operation == ControlOperation::Show) {
        m_parts.showWindow();
        reply({});
        return;
    }
    if (operation == ControlOperation::Quit) {
        reply({});
        m_parts.quit();
        return;
    }
    if (m_parts.session.facts().phase == Phase::Starting) {
        platform::Platform::current().delayedCalls->callAfter(answerSeconds, this,
                                                              [this] { giveUpWaiting(); });
    }
    m_requests.push_back({++m_lastId, operation, location, reply, false, false, false, QString()});
    look();
}

void SessionControl::dialogChanged() {
    lookLater();
    Q_EMIT stateChanged();
}

void SessionControl::noteStops() {
    for (Request &request : m_requests) {
        request.stopped = request.stopped || (request.pressed && isAtRest(m_parts.session.facts()));
    }
}

void SessionControl::lookLater() {
    if (!m_looks && !m_requests.empty()) {
        m_looks = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_looks = false;
                look();
            },
            Qt::QueuedConnection);
    }
}

void SessionControl::look() {
    // A reply may bring the next request.
    Requests ended;
    std::list<ControlOutcome> outcomes;
    for (auto at = m_requests.begin(); at != m_requests.end();) {
        const auto request = at++;
        if (const Outcome outcome = progress(*request)) {
            outcomes.push_back(*outcome);
            ended.splice(ended.end(), m_requests, request);
        }
    }
    for (const Request &request : ended) {
        request.reply(outcomes.front());
        outcomes.pop_front();
    }
}

SessionControl::Outcome SessionControl::progress(Request &request) {
    if (!request.pressed && !request.begun) {
        if (const Outcome outcome = begin(request)) {
            return outcome;
        }
    }
    return request.begun ? ended(request) : std::nullopt;
}

SessionControl::Outcome SessionControl::begin(Request &request) {
    switch (request.operation) {
    case ControlOperation::Hide:
        return beginHide(request);
    case ControlOperation::Stop:
        return beginStop(request);
    case ControlOperation::Change:
    case ControlOperation::Discard:
        return beginChange(request);
    case ControlOperation::Show:
    case ControlOperation::Quit:
        break;
    }
    return ControlOutcome{};
}

SessionControl::Outcome SessionControl::beginHide(Request &request) {
    const SessionFacts &facts = m_parts.session.facts();
    if (facts.phase == Phase::Starting) {
        return std::nullopt;
    }
    if (!request.location.isEmpty()) {
        const LocationList &list = m_parts.chooser.list();
        for (int row = 0; row < list.count(); ++row) {
            if (list.title(row).compare(request.location, Qt::CaseInsensitive) == 0) {
                press(request, [this, id = list.idAt(row)] { m_parts.chooser.choose(id); });
                return std::nullopt;
            }
        }
        return ControlOutcome{Kind::UnknownLocation,
                              tr("There is no location \"%1\".").arg(request.location)};
    }
    if (facts.phase == Phase::NotHidden && isPressable(facts)) {
        press(request, [this] { m_parts.session.quorvaneButtonPressed(true); });
    } else {
        request.begun = true; // it is hidden already, or about to be
    }
    return std::nullopt;
}

SessionControl::Outcome SessionControl::beginStop(Request &request) {
    const SessionFacts &facts = m_parts.session.facts();
    if (isAtRest(facts)) {
        return ControlOutcome{};
    }
    if (isPressable(facts)) {
        press(request, [this] { m_parts.session.quorvaneButtonPressed(false); });
    }
    return std::nullopt;
}

SessionControl::Outcome SessionControl::beginChange(Request &request) {
    if (!isHidden()) {
        return ControlOutcome{Kind::NotHidden, tr("Your IP is not hidden.")};
    }
    if (isPressable(m_parts.session.facts())) {
        const bool discards = request.operation == ControlOperation::Discard;
        press(request, [this, discards] {
            discards ? m_parts.session.discardIpButtonPressed() : m_parts.session.changeIpMenuItemPressed();
        });
    }
    return std::nullopt;
}

void SessionControl::press(Request &request, const std::function<void()> &button) {
    request.pressed = true;
    request.problem = QString();
    button();
    m_parts.events.post([control = QPointer(this), id = request.id]() -> Task<> {
        if (control) {
            control->pressWasHandled(id);
        }
        co_return;
    });
}

void SessionControl::pressWasHandled(quint64 id) {
    for (Request &request : m_requests) {
        request.begun = request.begun || request.id == id;
    }
    lookLater();
}

SessionControl::Outcome SessionControl::ended(const Request &request) {
    const SessionFacts &facts = m_parts.session.facts();
    const bool stops = request.operation == ControlOperation::Stop;
    if (stops && request.stopped) {
        return ControlOutcome{};
    }
    if (stops && !request.problem.isEmpty()) {
        return failed(request.problem); // without a network or a list, a press may stop nothing
    }
    switch (facts.phase) {
    case Phase::Hidden:
        if (stops || facts.lost) {
            return std::nullopt; // an alert is open, or the loss is still to be handled
        }
        return ControlOutcome{Kind::Done, controlState().currentAddress};
    case Phase::NotHidden:
    case Phase::Unusable:
        if (stops) {
            return ControlOutcome{};
        }
        return failed(request.problem.isEmpty() ? tr("No IP could be hidden.") : request.problem);
    case Phase::Waiting:
    case Phase::Unconfigured:
        return stops ? std::nullopt
                     : Outcome(ControlOutcome{Kind::Failed, m_parts.session.display().line3.text});
    case Phase::Dropped:
        return failed(tr("No administrator's name and password were given."));
    case Phase::Ended:
        return ControlOutcome{Kind::Failed, tr("Quorvane was quit.")};
    case Phase::Starting:
    case Phase::Checking:
    case Phase::Fetching:
    case Phase::Connecting:
        return std::nullopt;
    }
    return std::nullopt;
}

SessionControl::Outcome SessionControl::failed(const QString &problem) {
    if (m_parts.asksAdministrator()) {
        return std::nullopt;
    }
    if (!m_parts.events.isIdle()) {
        // The dialog's pair begins a new attempt, which may wait in the queue when the dialog has closed.
        lookAfterEvents();
        return std::nullopt;
    }
    return ControlOutcome{Kind::Failed, problem};
}

void SessionControl::lookAfterEvents() {
    if (std::exchange(m_looksAfterEvents, true)) {
        return;
    }
    m_parts.events.post([control = QPointer(this)]() -> Task<> {
        if (control) {
            control->m_looksAfterEvents = false;
            control->lookLater();
        }
        co_return;
    });
}

bool SessionControl::isHidden() const {
    return m_parts.session.display().look == Look::Hidden;
}

void SessionControl::giveUpWaiting() {
    if (m_parts.session.facts().phase != Phase::Starting) {
        return;
    }
    Requests waiting;
    waiting.swap(m_requests);
    for (const Request &request : waiting) {
        request.reply({Kind::Failed, tr("The service has not answered yet.")});
    }
}

platform::ControlState SessionControl::controlState() const {
    const SessionFacts &facts = m_parts.session.facts();
    const DisplayState &display = m_parts.session.display();
    platform::ControlState state;
    if (display.look == Look::Hidden) {
        state.state = QStringLiteral("hidden");
        state.location = facts.location;
    } else {
        const bool searches = display.look == Look::Searching || display.timed;
        const LocationList &list = m_parts.chooser.list();
        state.state = facts.phase == Phase::Starting ? QStringLiteral("starting")
                      : searches                     ? QStringLiteral("searching")
                                                     : QStringLiteral("not-hidden");
        state.location = list.title(list.currentRow());
    }
    state.currentAddress = display.currentIp.trimmed();
    state.realAddress = facts.realAddress.trimmed();
    state.locked = facts.locked;
    state.asksAdministrator = m_parts.asksAdministrator();
    return state;
}

QList<platform::ControlLocation> SessionControl::controlLocations() const {
    QList<platform::ControlLocation> locations;
    const LocationList &list = m_parts.chooser.list();
    for (int row = 0; row < list.count(); ++row) {
        locations.append(
            {list.title(row), list.countryCode(row), list.isFull(row), row == list.currentRow()});
    }
    return locations;
}

} // namespace quorvane
