#include "LinuxTrayHosts.h"

namespace platform {

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

} // namespace platform
