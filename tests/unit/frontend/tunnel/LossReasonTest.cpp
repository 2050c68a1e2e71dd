#include "frontend/tunnel/LossReason.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

using platform::TunnelLoss;

QString reasonOf(TunnelLoss loss, const char *log) {
    return LossReason::of(loss, text(log)).logText;
}

TEST(LossReasonTest, LinesAfterTheTunnelCameUpDecide) {
    constexpr char up[] = "x process exiting\nInitialization Sequence Completed\n";
    EXPECT_EQ(reasonOf(TunnelLoss::ProcessEnded, up), text("OpenVPN was killed"));
    EXPECT_EQ(reasonOf(TunnelLoss::ProcessEnded,
                       "Initialization Sequence Completed\n[s] Inactivity timeout (--ping-exit), exiting\n"
                       "SIGTERM[soft,ping-exit] received, process exiting\n"),
              text("the server is silent"));
    EXPECT_EQ(
        reasonOf(TunnelLoss::ProcessEnded,
                 "Initialization Sequence Completed\nSIGTERM[soft,remote-exit] received, process exiting\n"),
        text("OpenVPN has ended"));
    EXPECT_EQ(
        reasonOf(TunnelLoss::ProcessEnded, "Initialization Sequence Completed\nExiting due to fatal error\n"),
        text("OpenVPN has ended"));
    EXPECT_EQ(reasonOf(TunnelLoss::ProcessEnded, ""), text("OpenVPN was killed"));
}

TEST(LossReasonTest, LossesOfTheNetworkAreOpenVpnsIfItSaysSo) {
    EXPECT_EQ(reasonOf(TunnelLoss::DeviceGone, ""), text("the device is gone"));
    EXPECT_EQ(reasonOf(TunnelLoss::RoutesChanged, ""), text("the routes were changed"));
    EXPECT_EQ(reasonOf(TunnelLoss::DeviceGone, "process exiting"), text("OpenVPN has ended"));
    EXPECT_EQ(reasonOf(TunnelLoss::RoutesChanged, "Inactivity timeout"), text("the server is silent"));
}

} // namespace

} // namespace quorvane
