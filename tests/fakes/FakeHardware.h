#pragma once

#include "platform/HardwareRegistry.h"

namespace quorvane::fakes {

/// A machine whose identity the test sets; none at first.
class FakeHardware final : public platform::HardwareRegistry {
public:
    [[nodiscard]] std::optional<QString> platformSerialNumber() const override {
        ++serialReads;
        return serial;
    }

    [[nodiscard]] std::optional<QByteArray> firstEthernetAddress() const override {
        ++addressReads;
        return address;
    }

    std::optional<QString> serial;
    std::optional<QByteArray> address;
    mutable int serialReads = 0;
    mutable int addressReads = 0;
};

} // namespace quorvane::fakes
