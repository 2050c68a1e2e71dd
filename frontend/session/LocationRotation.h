#pragma once

#include "LocationChoice.h"
#include "frontend/api/ConfigurationFetch.h"

#include <QObject>

namespace quorvane {

class DiscardedAddresses;
class HideIpSession;
class QrvAPI;
class RotationControls;
class SessionDisplay;

/// Decides which address is requested next: picks a location and fetches its configuration, and handles the
/// discarded addresses and the rotation controls of the main window. Main thread. Collaborators are not owned
/// and must outlive this.
class LocationRotation final : public QObject {
    Q_OBJECT

public:
    struct Parts {
        QrvAPI &api;
        RotationControls &controls;
        SessionDisplay &display;
        HideIpSession &session;
        DiscardedAddresses &discarded;
        ConfigurationFetch &fetch;
    };

    LocationRotation(const Parts &parts, LocationChoice::Random random, QObject *parent = nullptr);

    /// Picks a location for one attempt and starts fetching its configuration. If every location was used,
    /// the attempt waits and continues when the used set or the list changes.
    void downloadCertificateForSelectedItem();
    void changeIpMenuItemPressed();
    void changeIpButtonPressed();
    void discardIpButtonPressed();
    void requireUSBasedIPButtonPressed(bool on);
    void setRequiredUS(bool required);
    void changeEveryPressed(bool on);
    void intervalEntered(int minutes);

    /// Picks again if an attempt waits for an unused location.
    void resumeIfWaiting();

    void forgetWaitingPick() { m_waiting = false; }

    [[nodiscard]] bool isWaiting() const { return m_waiting; }

    [[nodiscard]] const LocationChoice::Entry &lastItem() const { return m_last; }

    [[nodiscard]] const QSet<quint64> &usedItems() const { return m_choice.usedItems(); }

    void setUsedItems(const QSet<quint64> &items);

private:
    [[nodiscard]] LocationChoice::Request request() const;
    void fetchPick(const LocationChoice::Outcome &outcome);

    Parts m_parts;
    LocationChoice m_choice;
    LocationChoice::Entry m_last;
    bool m_waiting = false;
};

} // namespace quorvane
