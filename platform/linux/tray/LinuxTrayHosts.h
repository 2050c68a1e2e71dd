#pragma once

#include "StatusNotifierWatch.h"
#include "TraySelectionWatch.h"
#include "platform/TrayHosts.h"

namespace quorvane::platform {

/// Status notifier hosts over the session bus, embedding trays over the X server.
class LinuxTrayHosts final : public TrayHosts {
public:
    /// A tray can embed windows only if it uses the X server on which the program shows its windows: `embeds`
    /// says whether the program uses one.
    explicit LinuxTrayHosts(bool embeds);

    [[nodiscard]] bool notifierHost() const override { return m_notifier.hostRegistered(); }

    [[nodiscard]] bool embeddingTray() const override { return m_selection && m_selection->owned(); }

    void installChangeHandler(std::function<void()> handler) override;

private:
    StatusNotifierWatch m_notifier;
    std::unique_ptr<TraySelectionWatch> m_selection;
};

} // namespace quorvane::platform
