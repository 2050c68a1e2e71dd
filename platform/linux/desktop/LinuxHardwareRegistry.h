#pragma once

#include "platform/HardwareRegistry.h"

namespace quorvane::platform {

/// The machine's identity from the kernel's firmware and network folders. Firmware serials are often
/// readable by the administrator only; then there is none. Any thread.
class LinuxHardwareRegistry final : public HardwareRegistry {
public:
    explicit LinuxHardwareRegistry(const QString &firmwareFolder = QStringLiteral("/sys/class/dmi/id"),
                                   const QString &networkFolder = QStringLiteral("/sys/class/net"));

    [[nodiscard]] std::optional<QString> platformSerialNumber() const override;
    [[nodiscard]] std::optional<QByteArray> firstEthernetAddress() const override;

private:
    const QString m_firmware;
    const QString m_network;
};

} // namespace quorvane::platform
