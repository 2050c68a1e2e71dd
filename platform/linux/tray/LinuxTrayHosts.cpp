#include "LinuxTrayHosts.h"

namespace quorvane::platform {

LinuxTrayHosts::LinuxTrayHosts(bool embeds) {
    if (embeds) {
        selection = std::make_unique<TraySelectionWatch>();
    }
}

void LinuxTrayHosts::installChangeHandler(std::function<void()> handler) {
    if (selection) {
        selection->setChangeHandler(handler);
    }
    notifier.setChangeHandler(std::move(handler));
}

} // namespace quorvane::platform
