// The program that the application starts with root's rights in place of OpenVPN, with OpenVPN's own command
// line.

#include "KernelRouting.h"
#include "Program.h"

int main(int count, char **arguments) {
    quorvane::guard::KernelRouting routing;
    return quorvane::guard::runGuard({arguments, static_cast<std::size_t>(count)},
                                     {QUORVANE_OPENVPN, "/run/quorvane-openvpn.lock",
                                      "/run/quorvane-openvpn.routes", "/run/quorvane-lock", "/usr/sbin/nft",
                                      std::chrono::seconds(60), std::chrono::seconds(3), QUORVANE_INSTALLED},
                                     routing);
}
