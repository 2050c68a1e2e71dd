// The guard with a fake OpenVPN, short deadlines and fake routes. The tunnel of the fake OpenVPN is complete,
// except while a file named "leak" is beside the record; with one named "installed" it is an installed copy.

#include "FakeRouting.h"
#include "guard/Program.h"

#include <unistd.h>

namespace {

class TunnelThatComesUp : public quorvane::guard::FakeRouting {
public:
    std::optional<unsigned> tunnelDeviceOf(pid_t process) override {
        bringUp("192.0.2.1");
        if (access(GUARD_FOLDER "/leak", F_OK) != 0) {
            current.routes.erase(quorvane::guard::routeTo("192.0.2.1/32", cable, true));
        }
        return FakeRouting::tunnelDeviceOf(process);
    }
};

} // namespace

int main(int count, char **arguments) {
    TunnelThatComesUp routing;
    return quorvane::guard::runGuard(
        {arguments, static_cast<std::size_t>(count)},
        {QUORVANE_OPENVPN, GUARD_FOLDER "/run/guard.lock", GUARD_FOLDER "/guard.routes",
         GUARD_FOLDER "/network.lock", GUARD_FOLDER "/fake-nft", std::chrono::milliseconds(600),
         std::chrono::milliseconds(300), access(GUARD_FOLDER "/installed", F_OK) == 0},
        routing);
}
