#pragma once

#include "LocationChoice.h"
#include "frontend/api/ConfigurationFetch.h"

#include <QObject>

class DiscardedAddresses;
class HideIpSession;
class MainWindow;
class QrvAPI;
class SessionDisplay;

/// Which address is asked for next: the pick of a location and its fetch, the discarded addresses, and the
/// rotation controls of the main window. Main thread. Collaborators are not owned and must outlive this.
class LocationRotation final : public QObject {
    Q_OBJECT

public:
    struct Parts {
        QrvAPI &api;
        MainWindow &window;
        SessionDisplay &display;
        HideIpSession &session;
        DiscardedAddresses &discarded;
        ConfigurationFetch &fetch;
    };

    LocationRotation(const Parts &parts, LocationChoice::Random random, QObject *parent = nullptr);

    /// Picks for one attempt and has the configuration fetched. With every location used, the attempt waits
    /// and goes on by itself when the used set or the list changes.
    void downloadCertificateForSelectedItem();
    void changeIpMenuItemPressed();
    void changeIpButtonPressed();
    void discardIpButtonPressed();
    void requireUSBasedIPButtonPressed(bool on);
    void setRequiredUS(bool required);
    void changeEveryPressed(bool on);
    void intervalEntered(int minutes);

    void forgetWaitingPick() { waiting = false; }

    [[nodiscard]] bool isWaiting() const { return waiting; }

    [[nodiscard]] const LocationChoice::Entry &lastItem() const { return last; }

    [[nodiscard]] const QSet<quint64> &usedItems() const { return choice.usedItems(); }

    void setUsedItems(const QSet<quint64> &items);

private:
    [[nodiscard]] LocationChoice::Request request() const;
    void selectEntry(quint64 number);
    void take(const LocationChoice::Outcome &outcome);
    void goOnIfWaiting();

    Parts parts;
    LocationChoice choice;
    LocationChoice::Entry last;
    bool waiting = false;
};
