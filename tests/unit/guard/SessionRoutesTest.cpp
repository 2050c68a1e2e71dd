#include "guard/SessionRoutes.h"
#include "FakeRouting.h"
#include "KernelMessages.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::guard {

namespace {

constexpr unsigned cable = FakeRouting::cable;
constexpr unsigned tunnel = FakeRouting::tunnel;
constexpr const char *server = "203.0.113.5";

Route throughRouter(const std::string &destination) {
    return routeTo(destination, cable, true);
}

} // namespace

class SessionRoutesTest : public testing::Test {
protected:
    ~SessionRoutesTest() override {
        unlink(record.c_str());
        rmdir(folder.c_str());
    }

    static std::string newFolder() {
        std::string name = testing::TempDir() + "session-routes-XXXXXX";
        EXPECT_NE(mkdtemp(name.data()), nullptr);
        return name;
    }

    void bringUp() {
        ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
        home.bringUp(server);
        const auto checked = routes.checkUp(1);
        ASSERT_TRUE(checked.ok()) << checked.error();
        ASSERT_EQ(changed(), "");
    }

    [[nodiscard]] std::string changed() {
        const auto checked = routes.checkChanges();
        return checked ? "" : checked.error();
    }

    [[nodiscard]] bool hasRecord() const { return access(record.c_str(), F_OK) == 0; }

public:
    std::string folder = newFolder();
    std::string record = folder + "/record";
    FakeRouting home;
    SessionRoutes routes{home, record};
};

TEST_F(SessionRoutesTest, RouteToTheServerIsPutBackWithTheNetwork) {
    bringUp();
    const Route toServer = throughRouter(std::string(server) + "/32");
    const Route byDefault = throughRouter("0.0.0.0/0");
    home.vanish(toServer);
    home.vanish(byDefault);
    EXPECT_EQ(changed(), "");
    EXPECT_FALSE(home.current.routes.contains(toServer)) << "not without a network";
    home.appear(byDefault);
    EXPECT_EQ(changed(), "");
    EXPECT_TRUE(home.current.routes.contains(toServer));
    EXPECT_EQ(changed(), "");
}

TEST_F(SessionRoutesTest, RouteToTheServerIsPutBackWhenNotificationsWereLost) {
    bringUp();
    const Route toServer = throughRouter(std::string(server) + "/32");
    home.current.routes.erase(toServer);
    home.pending.isIncomplete = true;
    EXPECT_EQ(changed(), "");
    EXPECT_TRUE(home.current.routes.contains(toServer));
}

TEST_F(SessionRoutesTest, RouteToTheServerIsNotMadeBeforeTheTunnelIsUpOrForAnotherSession) {
    ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
    home.bringUp(server);
    const Route toServer = throughRouter(std::string(server) + "/32");
    home.vanish(toServer);
    home.appear(throughRouter("10.0.0.0/8"));
    EXPECT_EQ(changed(), "");
    EXPECT_FALSE(home.current.routes.contains(toServer));
}

TEST_F(SessionRoutesTest, RoutesAreAfterASessionAsBefore) {
    const auto before = home.current.routes;
    bringUp();
    home.vanish(throughRouter("0.0.0.0/0"));
    home.takeDown();
    EXPECT_NE(home.current.routes, before);
    routes.restore();
    EXPECT_EQ(home.current.routes, before);
    EXPECT_FALSE(hasRecord());
}

TEST_F(SessionRoutesTest, NothingStartsWithoutASnapshotAndARecord) {
    home.isReadable = false;
    EXPECT_FALSE(routes.begin({}).ok());
    home.isReadable = true;
    SessionRoutes other(home, folder + "/missing/record");
    const auto begun = other.begin({});
    ASSERT_FALSE(begun.ok());
    EXPECT_EQ(begun.error(), "the routes cannot be recorded: No such file or directory");
}

TEST_F(SessionRoutesTest, ATunnelWithoutADeviceOfItsOwnIsRefused) {
    ASSERT_TRUE(routes.begin({}).ok());
    EXPECT_FALSE(routes.checkUp(1).ok());
    home.device = cable;
    const auto checked = routes.checkUp(1);
    ASSERT_FALSE(checked.ok());
    EXPECT_EQ(checked.error(), "the tunnel is refused: it has no device of its own");
}

TEST_F(SessionRoutesTest, ARouteThatLeadsPastIsRefusedAtTheStart) {
    ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
    home.bringUp(server);
    home.appear(throughRouter("8.8.8.8/32"));
    const auto checked = routes.checkUp(1);
    ASSERT_FALSE(checked.ok());
    EXPECT_EQ(checked.error(), "the tunnel is refused: the route to 8.8.8.8/32 leads past it");
}

TEST_F(SessionRoutesTest, RoutesThatCannotBeReadConfirmNothing) {
    ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
    home.bringUp(server);
    home.isReadable = false;
    EXPECT_FALSE(routes.checkUp(1).ok());
}

TEST_F(SessionRoutesTest, AServerThatWasNamedMayHaveItsRoute) {
    ASSERT_TRUE(routes.begin({}).ok());
    home.bringUp(server);
    EXPECT_FALSE(routes.checkUp(1).ok());
    routes.addServer(*hostOf(server));
    EXPECT_TRUE(routes.checkUp(1).ok());
    home.takeDown();
    routes.restore();
    EXPECT_FALSE(home.current.routes.contains(throughRouter("203.0.113.5/32")));
}

TEST_F(SessionRoutesTest, NothingIsJudgedBeforeTheTunnelIsUp) {
    ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
    home.appear(throughRouter("8.8.8.8/32"));
    EXPECT_EQ(changed(), "");
}

TEST_F(SessionRoutesTest, ARouteThatLeadsPastEndsTheTunnel) {
    bringUp();
    home.appear(throughRouter("8.8.8.8/32"));
    EXPECT_EQ(changed(), "the tunnel is ended: the route to 8.8.8.8/32 leads past it");
}

TEST_F(SessionRoutesTest, ARouteThatLedPastForAMomentEndsTheTunnel) {
    bringUp();
    home.appear(throughRouter("8.8.8.8/32"));
    home.vanish(throughRouter("8.8.8.8/32"));
    EXPECT_EQ(changed(), "the tunnel is ended: the route to 8.8.8.8/32 leads past it");
}

TEST_F(SessionRoutesTest, LostNotificationsAreMadeUpForByALook) {
    bringUp();
    home.current.routes.insert(throughRouter("8.8.8.8/32"));
    EXPECT_EQ(changed(), "");
    home.pending.isIncomplete = true;
    EXPECT_NE(changed(), "");
}

TEST_F(SessionRoutesTest, ATunnelThatLosesItsRoutesIsNoticed) {
    bringUp();
    EXPECT_TRUE(routes.carriesAllAddresses());
    home.vanish(routeTo("128.0.0.0/1", tunnel, true));
    EXPECT_EQ(changed(), "");
    EXPECT_FALSE(routes.carriesAllAddresses());
    home.appear(routeTo("128.0.0.0/1", tunnel, true));
    EXPECT_EQ(changed(), "");
    EXPECT_TRUE(routes.carriesAllAddresses());
}

TEST_F(SessionRoutesTest, RoutesThatCannotBeReadEndTheTunnel) {
    bringUp();
    home.pending.isIncomplete = true;
    home.isReadable = false;
    EXPECT_NE(changed(), "");
}

TEST_F(SessionRoutesTest, RoutesOfTheHomeThatComeAndGoEndNothing) {
    bringUp();
    home.vanish(throughRouter("0.0.0.0/0"));
    EXPECT_EQ(changed(), "");
    home.appear(throughRouter("0.0.0.0/0"));
    home.appear(routeTo("172.17.0.0/16", 3, false, RTPROT_KERNEL));
    home.appear(routeTo("0.0.0.0/0", cable, true, RTPROT_DHCP));
    EXPECT_EQ(changed(), "");
}

TEST_F(SessionRoutesTest, TheNextGuardRestoresWhatAKilledOneLeft) {
    const Route router = KernelMessage{"0.0.0.0", 0, "192.168.77.1", cable}.route();
    home.current.routes = {router};
    ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
    home.bringUp(server);
    home.takeDown();
    home.appear(throughRouter("8.8.8.8/32"));
    home.vanish(router);
    ASSERT_TRUE(hasRecord());

    struct stat state {};

    ASSERT_EQ(stat(record.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 07777U, 0600U);
    SessionRoutes next(home, record);
    next.restoreAfterKilledGuard();
    EXPECT_EQ(home.current.routes, std::set{router});
    EXPECT_FALSE(hasRecord());
}

TEST_F(SessionRoutesTest, ARecordThatIsNotWholeIsNotUsed) {
    home.current.routes = {KernelMessage{"0.0.0.0", 0, "192.168.77.1", cable}.route()};
    ASSERT_TRUE(routes.begin({*hostOf(server)}).ok());
    std::ostringstream text;
    text << std::ifstream(record).rdbuf();
    const std::string content = text.str();
    ASSERT_TRUE(readRecord(record).has_value());
    for (std::size_t size = 0; size < content.size(); ++size) {
        std::ofstream(record, std::ios::trunc) << content.substr(0, size);
        const auto read = readRecord(record);
        EXPECT_TRUE(!read || read->before.routes.empty()) << size << " bytes";
    }
    std::ofstream(record, std::ios::trunc) << content << "1:x";
    EXPECT_FALSE(readRecord(record).has_value());
    std::string elsewhere = content;
    // The first dash is in the version, the next one in the identifier of the start.
    elsewhere.replace(elsewhere.find('-', elsewhere.find('-') + 1), 1, "+");
    std::ofstream(record, std::ios::trunc) << elsewhere;
    EXPECT_FALSE(readRecord(record).has_value()) << "of another start of the computer";
}

TEST_F(SessionRoutesTest, ALinkInPlaceOfTheRecordIsNotFollowed) {
    ASSERT_TRUE(routes.begin({}).ok());
    const std::string moved = folder + "/moved";
    ASSERT_EQ(rename(record.c_str(), moved.c_str()), 0);
    ASSERT_EQ(symlink(moved.c_str(), record.c_str()), 0);
    EXPECT_FALSE(readRecord(record).has_value());
    routes.restoreAfterKilledGuard();
    EXPECT_EQ(access(moved.c_str(), F_OK), 0);
    unlink(moved.c_str());
}

TEST(RouteMessages, CountersAndStatesMakeNoDifference) {
    const KernelMessage plain{"10.0.0.0", 8, "192.168.77.1", 2};
    KernelMessage counted = plain;
    counted.hasCounters = true;
    EXPECT_EQ(plain.route(), counted.route());
    EXPECT_TRUE(plain.route().leadsThroughGateway());
    EXPECT_TRUE(plain.route().usesOnly(2));
    EXPECT_EQ(textOf(plain.route().destination), "10.0.0.0/8");
    EXPECT_NE(plain.route(), (KernelMessage{"10.0.0.0", 8, "192.168.77.2", 2}.route()));
}

TEST(RouteMessages, ARequestNamesANextHopObjectAlone) {
    const Route plain = KernelMessage{"10.0.0.0", 8, "192.168.77.1", 2}.route();
    EXPECT_EQ(requestFor(plain), plain.message);
    const Route object = KernelMessage{"10.0.0.0", 8, "192.168.77.1", 2, 5}.route();
    EXPECT_EQ(object.message.size() - requestFor(object).size(), 16U);
}

TEST(RouteMessages, AStoredRouteIsReadBack) {
    const Route route = KernelMessage{"10.0.0.0", 8, "192.168.77.1", 2}.route();
    const auto read = storedRoute(route.message);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->destination, route.destination);
    EXPECT_EQ(read->hops, route.hops);
    EXPECT_FALSE(storedRoute("x").has_value());
    EXPECT_FALSE(storedRoute(route.message + "xyz").has_value());
    EXPECT_FALSE(storedRoute(route.message.substr(0, route.message.size() - 1)).has_value());
}

} // namespace quorvane::guard
