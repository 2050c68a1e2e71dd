#include "setup/Machine.h"

#include "FakeMachine.h"

#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

TEST(Machine, RunsAProgramWithItsInput) {
    LocalMachine machine;
    EXPECT_EQ(machine.run({"cat"}, "text\n").value(), "text\n");
    EXPECT_EQ(machine.run({"/bin/sh", "-c", "echo $LC_ALL $HOME"}).value(), "C.UTF-8\n");
    EXPECT_EQ(machine.run({"sh", "-c", "echo out; echo bad >&2; exit 3"}).error(),
              "sh -c echo out; echo bad >&2; exit 3: bad\nout\n");
    EXPECT_FALSE(machine.run({"no-such-program"}));
    EXPECT_FALSE(machine.run({"sh", "-c", "kill -9 $$"}));
}

TEST(Machine, ReadsItsNetwork) {
    test::FakeMachine machine;
    const MachineNetwork network = MachineNetwork::read(machine).value();
    EXPECT_EQ(network.device, "wan");
    EXPECT_EQ(network.nextHop->text(), "198.51.100.1");
    EXPECT_EQ(network.publicAddress()->text(), "198.51.100.10");
    EXPECT_TRUE(network.owns(*Ipv4Address::parse("127.0.0.1")));
    EXPECT_FALSE(network.owns(*Ipv4Address::parse("127.0.0.2")));
    EXPECT_EQ(network.addresses.at(1).network().text(), "198.51.100.0/24");
    machine.answers["ip -json -4 route show default"] = "[]";
    EXPECT_EQ(MachineNetwork::read(machine).value().publicAddress(), std::nullopt);
    machine.answers["ip -json -4 address show"] = R"([{"addr_info":[{}]}])";
    EXPECT_FALSE(MachineNetwork::read(machine));
}

} // namespace

} // namespace quorvane::service
