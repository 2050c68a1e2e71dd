#pragma once

#include "Reference.h"
#include "Steps.h"
#include "fakes/TestPlatform.h"
#include "frontend/api/ConfigurationFetch.h"
#include "frontend/control/AlertWatch.h"
#include "frontend/control/SessionControl.h"
#include "frontend/session/DiscardedAddresses.h"
#include "frontend/session/HideIpSession.h"
#include "frontend/session/LocationList.h"
#include "frontend/session/LocationRotation.h"
#include "frontend/session/ProcessInfo.h"
#include "frontend/session/SessionWindow.h"
#include "frontend/support/AlertPresenter.h"

namespace quorvane::simulation {

/// What every tunnel lends, as the script prints it.
inline const QString lentAddress = QStringLiteral("203.0.113.7\n");

/// A session with its real logic, and a machine, a service and a user that are simulated. One step after the
/// other is done to it, and after each one it is checked.
class World final : private SessionWindow, private AlertPresenter, private AttemptAnimation {
public:
    World();
    ~World() override;
    World(const World &) = delete;
    World &operator=(const World &) = delete;

    /// Does the step. Returns what is wrong afterwards, or a null text.
    [[nodiscard]] QString run(const Step &step);
    /// The present state, for a reader.
    [[nodiscard]] QString described() const;

private:
    class Discarded final : public DiscardedAddresses {
    public:
        void addDiscardedIp(const QString &address) override { m_rows.append(address); }

        [[nodiscard]] bool hasRow(const QString &text) const override { return m_rows.contains(text); }

        [[nodiscard]] QStringList getRowData() const override { return m_rows; }

    private:
        QStringList m_rows;
    };

    // SessionWindow, AlertPresenter, AttemptAnimation
    void openAdministratorDialog(const std::function<void()> &closed) override;

    void showWindow() override {}

    [[nodiscard]] bool startedHidden() const override { return false; }

    [[nodiscard]] bool hasImage(const QString & /*name*/) const override { return true; }

    void terminateApplication() override { m_terminated = true; }

    using AlertPresenter::critical;
    void critical(const Alert &alert, const std::function<void()> &closed) override;
    void criticalLater(const Alert &alert) override;
    void ask(const Question &question, const std::function<void(Answer)> &answered) override;

    void start() override;
    void stop() override;

    void resetFrames() override {}

    [[nodiscard]] platform::ScriptResult runLine(const fakes::FakeScriptingService::Call &call);
    void showProcesses();
    void writeLog(unsigned content);
    void answer(unsigned sort);
    void sleep(unsigned argument);
    /// By itself, or by a kill.
    void endOpenVpn();
    void storeConfiguration(bool exists);
    void changeStoredPair(unsigned argument);
    void begin(bool isLocked);
    [[nodiscard]] platform::ScriptResult runLockLine(bool closes);
    void closeModal(unsigned argument);
    /// The lock must be closed before anything of an attempt leaves the machine.
    void checkLock();
    void pressOff(bool isOff);
    void doStep(const Step &step);
    /// What the service and the background work do; false for another step.
    bool doServiceStep(const Step &step);
    void doUserStep(const Step &step);
    void changeSetting(const Step &step);
    void command(unsigned argument);
    void commandEnded(platform::ControlOperation operation, int rests,
                      const platform::ControlOutcome &outcome);
    /// A command that waits while nothing happens is never answered.
    void checkCommands();
    [[nodiscard]] bool isOffered(Kind kind) const;
    void passTime(unsigned argument);
    void quit();
    [[nodiscard]] QString wrong();
    [[nodiscard]] QString wrongAtRest();
    [[nodiscard]] QString wrongLock();
    [[nodiscard]] QString wrongAfterEnd() const;
    [[nodiscard]] std::size_t pieceOf(unsigned argument) const;

    fakes::TestPlatform m_services;
    Reference m_reference;
    Discarded m_discarded;
    LocationList m_list;
    LocationChooser m_chooser{m_list};
    QrvAPI m_api;
    ProcessInfo m_processes;
    ConfigurationFetch m_fetch{m_api};
    quint32 m_random = 0;
    LocationRotation m_rotation{m_api, m_list, m_discarded, [this] {
                                    return m_random += 7;
                                }};
    EventQueue m_events;
    Vpn m_vpn{m_processes, m_events};
    AlertWatch m_alerts{*this};
    HideIpSession m_session;
    bool m_dialogIsOpen = false;
    std::unique_ptr<SessionControl> m_control =
        std::make_unique<SessionControl>(ControlParts{m_session, m_chooser, m_events, m_alerts, [] {}, [] {},
                                                      [this] {
                                                          return m_dialogIsOpen;
                                                      }});
    /// Commands that were not answered, how many of them are stops, and for how many steps at rest.
    int m_commands = 0;
    int m_stopCommands = 0;
    int m_commandsAtRest = 0;
    int m_rests = 0; ///< how often the session was shown at rest
    QString m_wrongCommand;

    const QString m_logPath;
    bool m_pairAccepted = true;
    bool m_guardStarts = true;
    /// Processes named openvpn, and what became of the last.
    int m_running = 0;
    bool m_cameUp = false; ///< since the last launch or kill
    int m_launches = 0;
    int m_requests = 0;    ///< for a configuration
    bool m_reuses = false; ///< a configuration may have been used again
    bool m_killRefused = false;
    QList<std::function<void()>> m_open; ///< modal windows; the last is in front
    Answer m_answer = Answer::None;      ///< to a question that is closed
    bool m_resumes = false;              ///< the last question was answered so
    bool m_lockWorks = true;
    bool m_lockMayBeOpen = true; ///< the wish has changed since it was closed, or it was lifted elsewhere
    bool m_mayBeLifted = true;   ///< the user has done what lifts it
    bool m_stopIsDue = false;    ///< the user has switched off, and nothing was refused since
    QString m_wrongLock;
    bool m_begun = false;
    bool m_attemptHangs = false;
    bool m_addressIsRead = true;
    bool m_animating = false;
    bool m_terminated = false;
    bool m_ended = false;
    int m_launchesAtEnd = 0;
};

} // namespace quorvane::simulation
