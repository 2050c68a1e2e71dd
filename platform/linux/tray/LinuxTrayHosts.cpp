#include "LinuxTrayHosts.h"

namespace quorvane::platform {

LinuxTrayHosts::LinuxTrayHosts(bool embeds) {
    if (embeds) {
        m_selection = std::make_unique<TraySelectionWatch>();
    }
}

void LinuxTrayHosts::installChangeHandler(std::function<void()> handler) {
    if (m_selection) {
        m_selection->setChangeHandler(handler);
    }
    m_notifier.setChangeHandler(std::move(handler));
}

} // namespace quorvane::platform
