#pragma once

#include "frontend/api/QrvVpnDataList.h"

#include <QString>
#include <optional>

namespace quorvane {

/// The operations of the surrounding window that the hide-IP session needs. Main thread. Tests use a
/// recording fake.
class SessionEnvironment {
public:
    virtual ~SessionEnvironment() = default;

    /// A critical alert with one "OK" button; returns when it is dismissed.
    virtual void alert(const QString &title, const QString &message) = 0;
    /// The same, shown after the running handler has returned and after any other alert.
    virtual void alertLater(const QString &message, const QString &informative) = 0;

    /// False when the stored administrator pair is valid. Otherwise runs the dialog until it is closed, and
    /// returns true.
    virtual bool authWindow() = 0;

    /// Title of the location pane's selected entry.
    [[nodiscard]] virtual QString selectedTitle() const = 0;
    /// Picks a location for one attempt and fetches its configuration. Ends in HideIpSession::startVpn(), in
    /// HideIpSession::connectionError(), or without a call.
    virtual void downloadCertificateForSelectedItem() = 0;
    /// If the current attempt waits for an unused location, it waits no longer.
    virtual void forgetWaitingPick() = 0;
    /// Title and group of the last attempt's location; null texts and a null group before the first.
    [[nodiscard]] virtual QString lastItemTitle() const = 0;
    [[nodiscard]] virtual QrvVpnDataPointer lastItemData() const = 0;
    /// Rebuilds the location list, then stores its choice.
    virtual void fillLocations(const QrvVpnDataList &servers) = 0;

    /// Whether the automatic-change box is on.
    [[nodiscard]] virtual bool changesAutomatically() const = 0;

    /// Starts the tray animation from its first frame unless it is running.
    virtual void startAnimation() = 0;
    virtual void stopAnimation() = 0;
    virtual void resetAnimationFrames() = 0;

    /// Whether there is an image of this name.
    [[nodiscard]] virtual bool hasImage(const QString &name) const = 0;
    /// Brings the main window forward.
    virtual void showWindow() = 0;
    /// Whether the program was started to stay in the background.
    [[nodiscard]] virtual bool startedHidden() const = 0;
    virtual void terminateApplication() = 0;
};

} // namespace quorvane
