#pragma once

#include "Routing.h"

#include <functional>
#include <memory>

struct mnl_socket;
struct nlmsghdr;

namespace quorvane::guard {

/// The routing of the network namespace of this process, over netlink. Changes need root's rights. Nothing is
/// opened before the first call of state(), and from then on changes are noticed.
class KernelRouting : public Routing {
public:
    [[nodiscard]] Result<NetworkState> state() override;
    [[nodiscard]] int changesDescriptor() const override;
    [[nodiscard]] RouteChanges changes() override;
    bool add(const Route &route) override;
    bool remove(const Route &route) override;
    [[nodiscard]] std::optional<unsigned> tunnelDeviceOf(pid_t process) override;

private:
    struct Closer {
        void operator()(mnl_socket *socket) const;
    };

    using Socket = std::unique_ptr<mnl_socket, Closer>;
    using Visitor = std::function<void(const nlmsghdr *)>;

    static Socket openSocket(unsigned groups);
    void subscribe();
    bool dump(std::uint16_t type, int family, const Visitor &visit);
    bool readResponse(const Visitor &visit);
    bool change(std::uint16_t type, std::uint16_t flags, const Route &route);
    bool readOnce(NetworkState &state);

    Socket m_requests;
    Socket m_changes;
    unsigned m_sequence = 0;
};

} // namespace quorvane::guard
