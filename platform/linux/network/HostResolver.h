#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace quorvane::platform {

/// The IPv4 address of one host name, looked up in the background. Any thread.
///
/// A look-up may take as long as the system's resolver likes; it runs on a thread of its own, one at a
/// time, and neither callers nor the destructor wait for it.
class HostResolver {
public:
    /// A numeric address is known at once and never looked up.
    explicit HostResolver(const QByteArray &host);

    /// The address last found, in host byte order.
    [[nodiscard]] std::optional<std::uint32_t> address() const;
    /// Begins a look-up unless one is under way; found is called on its thread after it found an
    /// address (it must not refer to what may be gone by then).
    void refresh(std::function<void()> found);

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace quorvane::platform
