#pragma once

#include "platform/TunnelWatch.h"

#include <QString>

namespace quorvane {

/// Why a tunnel that was up was lost, as far as the watch and OpenVPN's log show it.
struct LossReason {
    /// A sentence for the user.
    QString shownText;
    /// A few words for the log.
    QString logText;

    [[nodiscard]] static LossReason of(platform::TunnelLoss loss, const QString &openVpnLog);
};

} // namespace quorvane
