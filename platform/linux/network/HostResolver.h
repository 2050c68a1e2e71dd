#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quorvane::platform {

/// The IPv4 address of one host name, looked up in the background. Any thread.
///
/// The system's resolver sets no time limit. A look-up runs on its own thread, one at a time, and neither
/// callers nor the destructor wait for it.
class HostResolver {
public:
    /// A numeric address is available at once and never looked up.
    explicit HostResolver(const QByteArray &host);

    /// The address last found, in host byte order.
    [[nodiscard]] std::optional<std::uint32_t> address() const;
    /// Starts a look-up unless one is running. `found` is called on the look-up's thread when an address was
    /// found; it must not refer to objects that may be destroyed by then.
    void refresh(std::function<void()> found);

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace quorvane::platform
