#include "guard/RouteRecord.h"
#include "FakeRouting.h"
#include "KernelMessages.h"
#include "guard/SessionRoutes.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <unistd.h>

namespace quorvane::guard {

class RouteRecordTest : public testing::Test {
protected:
    RouteRecordTest() {
        EXPECT_NE(mkdtemp(m_folder.data()), nullptr);
        m_path = m_folder + "/record";
        m_record.before.devices = {{1, "lo"}, {2, "eth0"}};
        m_record.before.addresses = {{2, *hostOf("192.168.77.2")}, {2, *hostOf("fd00::2")}};
        m_record.before.routes = {KernelMessage{"0.0.0.0", 0, "192.168.77.1", 2}.route(),
                                  KernelMessage{"192.168.77.0", 24, "", 2}.route()};
        m_record.servers = {*hostOf("203.0.113.5"), *hostOf("2001:db8::5")};
        EXPECT_TRUE(writeRecord(m_path, m_record).ok());
        std::ostringstream text;
        text << std::ifstream(m_path).rdbuf();
        m_content = text.str();
    }

    ~RouteRecordTest() override {
        unlink(m_path.c_str());
        rmdir(m_folder.c_str());
    }

    void write(const std::string &content) const {
        std::ofstream(m_path, std::ios::binary | std::ios::trunc) << content;
    }

    /// The routes of a computer on which a guard starts after this record was left.
    [[nodiscard]] std::set<Route> routesAfterNextStart() const {
        FakeRouting home;
        SessionRoutes(home, m_path).restoreAfterKilledGuard();
        return home.current.routes;
    }

    std::string m_folder = testing::TempDir() + "route-record-XXXXXX";
    std::string m_path;
    RouteRecord m_record;
    std::string m_content;
};

TEST_F(RouteRecordTest, WhatIsWrittenIsRead) {
    const auto read = readRecord(m_path);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->before.routes, m_record.before.routes);
    EXPECT_EQ(read->before.devices, m_record.before.devices);
    EXPECT_EQ(read->before.addresses.size(), 2U);
    EXPECT_EQ(read->servers, m_record.servers);
    EXPECT_NE(routesAfterNextStart(), FakeRouting().current.routes) << "a record that is used changes routes";
}

TEST_F(RouteRecordTest, OneThatIsCutOffChangesNoRoute) {
    for (std::size_t size = 0; size < m_content.size(); ++size) {
        write(m_content.substr(0, size));
        EXPECT_FALSE(readRecord(m_path).has_value()) << size << " of " << m_content.size() << " bytes";
        EXPECT_EQ(routesAfterNextStart(), FakeRouting().current.routes) << size << " bytes";
    }
}

TEST_F(RouteRecordTest, OneWithADamagedByteChangesNoRoute) {
    for (std::size_t at = 0; at < m_content.size(); ++at) {
        std::string damaged = m_content;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        write(damaged);
        EXPECT_FALSE(readRecord(m_path).has_value()) << "byte " << at;
        EXPECT_EQ(routesAfterNextStart(), FakeRouting().current.routes) << "byte " << at;
    }
}

} // namespace quorvane::guard
