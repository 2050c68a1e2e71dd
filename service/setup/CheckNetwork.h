#pragma once

#include "Machine.h"

#include "common/FileDescriptor.h"

namespace quorvane::service {

/// A network namespace with a link to the machine, in which a client of the service can run. Everything is
/// removed at the end, and what a killed run left at the beginning. One at a time on a machine.
class CheckNetwork {
public:
    explicit CheckNetwork(Machine &machine) : m_machine(machine) {}

    ~CheckNetwork();
    CheckNetwork(const CheckNetwork &) = delete;
    CheckNetwork &operator=(const CheckNetwork &) = delete;

    /// Makes the namespace. Its network overlaps none of the machine's routes nor of `used`.
    Result<> make(const std::vector<Ipv4Network> &used);
    /// Moves the calling thread into the namespace.
    static Result<> enter();
    /// A folder that only root can read, for files of the client.
    [[nodiscard]] static std::string folder();

private:
    void remove();

    Machine &m_machine;
    FileDescriptor m_lock;
};

/// The first network for two ends of a link that overlaps none of these; nothing when all are used.
[[nodiscard]] std::optional<Ipv4Network> freeLinkNetwork(const std::vector<Ipv4Network> &used);

} // namespace quorvane::service
