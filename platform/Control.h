#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

namespace quorvane::platform {

/// What a running copy reports about its session to other programs of the user.
struct ControlState {
    /// "starting", "not-hidden", "searching" or "hidden".
    QString state;
    /// The address that is shown: the lent one while it is hidden, else the real one; empty while unknown.
    QString currentAddress;
    /// Empty before the service's first answer.
    QString realAddress;
    /// The location of the lent address while it is hidden, else the selected one, as the service sent it.
    QString location;
    /// Traffic outside the tunnel is blocked.
    bool locked = false;
    /// The dialog for the administrator's name and password is open.
    bool asksAdministrator = false;

    bool operator==(const ControlState &) const = default;
};

struct ControlLocation {
    QString title;   ///< as the service sent it
    QString country; ///< code as the service sent it; empty for a random location
    bool full = false;
    bool selected = false;

    bool operator==(const ControlLocation &) const = default;
};

enum class ControlOperation { Hide, Stop, Change, Discard, Show, Quit };

/// How an operation ended.
struct ControlOutcome {
    enum class Kind { Done, Failed, NotHidden, UnknownLocation, NotRunning };
    Kind kind = Kind::Done;
    /// Done: the lent address, empty after other operations. Else why it failed, for the user.
    QString text;

    bool operator==(const ControlOutcome &) const = default;
};

/// The part of a running copy that acts for other programs. Main thread.
class ControlHandler {
public:
    using Reply = std::function<void(const ControlOutcome &)>;

    virtual ~ControlHandler() = default;
    /// Acts as the user's press would. `reply` is called once, when the operation has ended: for Hide, Change
    /// and Discard when an address is lent or the attempt has failed. The location is a title, for Hide only;
    /// empty for the selected one.
    virtual void operate(ControlOperation operation, const QString &location, const Reply &reply) = 0;
    [[nodiscard]] virtual ControlState controlState() const = 0;
    [[nodiscard]] virtual QList<ControlLocation> controlLocations() const = 0;
};

/// Offers a running copy to other programs of the same user. Main thread.
class ControlService {
public:
    virtual ~ControlService() = default;
    /// The handler is not owned; withdraw() ends its use. False when other programs cannot reach this copy.
    virtual bool offer(ControlHandler &handler) = 0;
    virtual void withdraw() = 0;
    /// Reports what has changed in the handler's state since the last report.
    virtual void reportState() = 0;
    virtual void reportLocations() = 0;
};

/// The other end: reaches the copy that runs in the user's session. For a process without windows; its calls
/// block, with an event loop.
class ControlClient {
public:
    /// Receives a state; null when the copy has ended. Returns whether to go on.
    using Follower = std::function<bool(const std::optional<ControlState> &state)>;

    virtual ~ControlClient() = default;
    [[nodiscard]] virtual bool isRunning() = 0;
    /// Whether there is a screen to start a copy on.
    [[nodiscard]] virtual bool hasDisplay() const = 0;
    /// Starts a copy in the background and returns when it can be reached. False when it cannot.
    [[nodiscard]] virtual bool start() = 0;
    /// Reports states that come meanwhile to `observer`, which may be empty.
    virtual ControlOutcome operate(ControlOperation operation, const QString &location,
                                   const std::function<void(const ControlState &)> &observer) = 0;
    /// Null when no copy runs.
    [[nodiscard]] virtual std::optional<ControlState> state() = 0;
    [[nodiscard]] virtual std::optional<QList<ControlLocation>> locations() = 0;
    /// Reports the present state and each that follows.
    virtual void follow(const Follower &follower) = 0;
};

/// Needs a QCoreApplication.
[[nodiscard]] std::unique_ptr<ControlClient> makeControlClient();

} // namespace quorvane::platform
