#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace quorvane::platform {

/// The properties that identify this machine. Any of them may be absent; none is cached here.
class HardwareRegistry {
public:
    virtual ~HardwareRegistry() = default;

    /// The product's (else the board's) serial from the firmware tables, blanks at the ends removed.
    [[nodiscard]] virtual std::optional<QString> platformSerialNumber() const = 0;
    /// Six bytes: the hardware address of the first Ethernet interface (lowest index; no loopback,
    /// tunnel, bridge or traffic-shaping device).
    [[nodiscard]] virtual std::optional<QByteArray> firstEthernetAddress() const = 0;
};

} // namespace quorvane::platform
