#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane::platform {

/// The IPv4 addresses of a host, in host byte order; empty when it is not found. Blocks without a time limit,
/// as the system's resolver does. Any thread.
[[nodiscard]] std::vector<std::uint32_t> lookUpHost(const QByteArray &host);

/// An address in its numeric form, in host byte order.
[[nodiscard]] std::optional<std::uint32_t> numericAddress(const QByteArray &text);

[[nodiscard]] QByteArray addressText(std::uint32_t address);

} // namespace quorvane::platform
