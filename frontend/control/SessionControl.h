#pragma once

#include "frontend/session/DisplayState.h"
#include "platform/Control.h"

#include <QObject>
#include <list>

namespace quorvane {

class AlertWatch;
class EventQueue;
class HideIpSession;
class LocationChooser;

/// The parts of the program that commands from outside act on. None is owned; all must outlive the control.
struct ControlParts {
    HideIpSession &session;
    LocationChooser &chooser;
    EventQueue &events;
    AlertWatch &alerts;
    std::function<void()> showWindow;
    std::function<void()> quit;
    std::function<bool()> asksAdministrator;
};

/// Commands from outside, as presses of the session's buttons: an operation waits until its button could be
/// pressed, presses it, and is answered when the session has come to rest. Main thread.
class SessionControl final : public QObject, public platform::ControlHandler {
    Q_OBJECT

public:
    /// Seconds for which a hide waits for the service's first answer.
    static constexpr double answerSeconds = 60.0;

    explicit SessionControl(const ControlParts &parts, QObject *parent = nullptr);
    /// Every operation that has not ended is answered as failed.
    ~SessionControl() override;

    void operate(platform::ControlOperation operation, const QString &location, const Reply &reply) override;
    /// The administrator's dialog was opened or closed.
    void dialogChanged();

    [[nodiscard]] platform::ControlState controlState() const override;
    [[nodiscard]] QList<platform::ControlLocation> controlLocations() const override;

Q_SIGNALS:
    /// The state may have changed.
    void stateChanged();

private:
    struct Request {
        quint64 id;
        platform::ControlOperation operation;
        QString location;
        Reply reply;
        /// The press was handled, or there was nothing to press.
        bool begun = false;
        bool pressed = false;
        /// A stop that was pressed has ended the tunnel or the attempt, even if another one has begun since.
        bool stopped = false;
        /// The last alert since the press.
        QString problem;
    };

    using Requests = std::list<Request>;
    /// What a request has come to; absent while it goes on.
    using Outcome = std::optional<platform::ControlOutcome>;

    void noteStops();
    void look();
    void lookLater();
    [[nodiscard]] Outcome progress(Request &request);
    /// Presses what the operation means, once that is possible.
    [[nodiscard]] Outcome begin(Request &request);
    [[nodiscard]] Outcome beginHide(Request &request);
    [[nodiscard]] Outcome beginStop(Request &request);
    [[nodiscard]] Outcome beginChange(Request &request);
    void press(Request &request, const std::function<void()> &button);
    void pressWasHandled(quint64 id);
    [[nodiscard]] Outcome ended(const Request &request);
    /// Why nothing is hidden; absent while that may still change.
    [[nodiscard]] Outcome failed(const QString &problem);
    void lookAfterEvents();
    [[nodiscard]] bool isHidden() const;
    void giveUpWaiting();

    ControlParts m_parts;
    Requests m_requests;
    quint64 m_lastId = 0;
    bool m_looks = false;
    bool m_looksAfterEvents = false;
};

} // namespace quorvane
