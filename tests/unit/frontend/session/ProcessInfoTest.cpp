#include "frontend/session/ProcessInfo.h"

#include "fakes/TestPlatform.h"
#include "platform/ProcessTable.h"
#include "tests/unit/Printing.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

class ProcessInfoTest : public testing::Test {
protected:
    fakes::TestPlatform services;
    ProcessInfo processes;
};

TEST_F(ProcessInfoTest, StartsWithoutASnapshot) {
    EXPECT_EQ(processes.numberOfProcesses(), -1);
    EXPECT_TRUE(processes.processList().isEmpty());
    EXPECT_FALSE(processes.findProcessWithName(text("openvpn")));
}

TEST_F(ProcessInfoTest, NamesInTheKernelsOrder) {
    services.processes().setNames({"init", "openvpn", "bash"});
    processes.obtainFreshProcessList();
    EXPECT_EQ(processes.numberOfProcesses(), 3);
    EXPECT_EQ(processes.processList(), (QStringList{text("init"), text("openvpn"), text("bash")}));
}

TEST_F(ProcessInfoTest, OnlyTheExactNameIsFound) {
    services.processes().setNames({"OpenVPN", "openvpn2", "openvp"});
    processes.obtainFreshProcessList();
    EXPECT_FALSE(processes.findProcessWithName(text("openvpn")));
    EXPECT_FALSE(processes.findProcessWithName(text("open")));
    EXPECT_FALSE(processes.findProcessWithName(text("")));
    EXPECT_TRUE(processes.findProcessWithName(text("openvpn2")));
}

TEST_F(ProcessInfoTest, CutNamesMatchOnlyAsTheKernelKeptThem) {
    services.processes().setNames({"a-rather-long-process-name"});
    processes.obtainFreshProcessList();
    EXPECT_TRUE(processes.findProcessWithName(text("a-rather-long-p")));
    EXPECT_FALSE(processes.findProcessWithName(text("a-rather-long-process-name")));
}

TEST_F(ProcessInfoTest, GrowthBetweenTheQueriesIsRetried) {
    services.processes().setNames({"init", "openvpn"});
    services.processes().growBetweenQueries(5);
    processes.obtainFreshProcessList();
    EXPECT_EQ(processes.numberOfProcesses(), 7);
    EXPECT_TRUE(processes.findProcessWithName(text("openvpn")));
    EXPECT_EQ(services.processes().queries(), 12);
}

TEST_F(ProcessInfoTest, FailureDropsThePreviousSnapshot) {
    services.processes().setNames({"openvpn"});
    processes.obtainFreshProcessList();
    ASSERT_TRUE(processes.findProcessWithName(text("openvpn")));
    services.processes().failWith(EPERM);
    processes.obtainFreshProcessList();
    EXPECT_EQ(processes.numberOfProcesses(), -1);
    EXPECT_FALSE(processes.findProcessWithName(text("openvpn")));
}

TEST_F(ProcessInfoTest, ErrorNumbersAreHandedOn) {
    std::unique_ptr<platform::ProcessRecord[]> rows;
    std::size_t count = 99;
    services.processes().failWith(EPERM);
    EXPECT_EQ(ProcessInfo::getBSDProcessList(&rows, &count), EPERM);
    EXPECT_EQ(rows, nullptr);
    EXPECT_EQ(count, 0U);
    services.processes().failWith(0);
    services.processes().failSecondQueryWith(EIO);
    EXPECT_EQ(ProcessInfo::getBSDProcessList(&rows, &count), EIO);
    EXPECT_EQ(rows, nullptr);
}

TEST_F(ProcessInfoTest, NumberCanBeSet) {
    processes.setNumberOfProcesses(7);
    EXPECT_EQ(processes.numberOfProcesses(), 7);
}

TEST(ProcessInfoDeathTest, PreconditionsAreAsserted) {
#ifdef QT_NO_DEBUG
    GTEST_SKIP() << "assertions are compiled out";
#else
    std::size_t count = 0;
    std::unique_ptr<platform::ProcessRecord[]> filled(new platform::ProcessRecord[1]);
    std::unique_ptr<platform::ProcessRecord[]> empty;
    EXPECT_DEATH(ProcessInfo::getBSDProcessList(nullptr, &count), "procList != NULL");
    EXPECT_DEATH(ProcessInfo::getBSDProcessList(&filled, &count), "\\*procList == NULL");
    EXPECT_DEATH(ProcessInfo::getBSDProcessList(&empty, nullptr), "procCount != NULL");
#endif
}

} // namespace

} // namespace quorvane
