#pragma once

#include "StatusNotifierWatch.h"
#include "TraySelectionWatch.h"
#include "platform/TrayHosts.h"

namespace quorvane::platform {

/// Status notifier hosts over the session bus, embedding trays over the X server.
class LinuxTrayHosts final : public TrayHosts {
public:
    /// Windows can be embedded only by a tray of the X server that the program itself shows its windows on:
    /// `embeds` tells whether it does.
    explicit LinuxTrayHosts(bool embeds);

    [[nodiscard]] bool notifierHost() const override { return m_notifier.hostRegistered(); }

    [[nodiscard]] bool embeddingTray() const override { return m_selection && m_selection->owned(); }

    void installChangeHandler(std::function<void()> handler) override;

private:
    StatusNotifierWatch m_notifier;
    std::unique_ptr<TraySelectionWatch> m_selection;
};

} // namespace quorvane::platform
