#include "frontend/session/ProcessInfo.h"

#include "fakes/TestPlatform.h"
#include "platform/ProcessTable.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include "common/FileDescriptor.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace quorvane {

namespace {

class ProcessInfoTest : public testing::Test {
protected:
    fakes::TestPlatform m_services;
    ProcessInfo m_processes;
};

TEST_F(ProcessInfoTest, StartsWithoutASnapshot) {
    EXPECT_EQ(m_processes.numberOfProcesses(), -1);
    EXPECT_TRUE(m_processes.processList().isEmpty());
    EXPECT_FALSE(m_processes.findProcessWithName(text("openvpn")));
}

TEST_F(ProcessInfoTest, NamesInTheKernelsOrder) {
    m_services.processes().setNames({"init", "openvpn", "bash"});
    m_processes.obtainFreshProcessList();
    EXPECT_EQ(m_processes.numberOfProcesses(), 3);
    EXPECT_EQ(m_processes.processList(), (QStringList{text("init"), text("openvpn"), text("bash")}));
}

TEST_F(ProcessInfoTest, OnlyTheExactNameIsFound) {
    m_services.processes().setNames({"OpenVPN", "openvpn2", "openvp"});
    m_processes.obtainFreshProcessList();
    EXPECT_FALSE(m_processes.findProcessWithName(text("openvpn")));
    EXPECT_FALSE(m_processes.findProcessWithName(text("open")));
    EXPECT_FALSE(m_processes.findProcessWithName(text("")));
    EXPECT_TRUE(m_processes.findProcessWithName(text("openvpn2")));
}

TEST_F(ProcessInfoTest, CutNamesMatchOnlyAsTheKernelKeptThem) {
    m_services.processes().setNames({"a-rather-long-process-name"});
    m_processes.obtainFreshProcessList();
    EXPECT_TRUE(m_processes.findProcessWithName(text("a-rather-long-p")));
    EXPECT_FALSE(m_processes.findProcessWithName(text("a-rather-long-process-name")));
}

TEST_F(ProcessInfoTest, GrowthBetweenTheQueriesIsRetried) {
    m_services.processes().setNames({"init", "openvpn"});
    m_services.processes().growBetweenQueries(5);
    m_processes.obtainFreshProcessList();
    EXPECT_EQ(m_processes.numberOfProcesses(), 7);
    EXPECT_TRUE(m_processes.findProcessWithName(text("openvpn")));
    EXPECT_EQ(m_services.processes().queries(), 12);
}

TEST_F(ProcessInfoTest, FailureDropsThePreviousSnapshot) {
    m_services.processes().setNames({"openvpn"});
    m_processes.obtainFreshProcessList();
    ASSERT_TRUE(m_processes.findProcessWithName(text("openvpn")));
    m_services.processes().failWith(EPERM);
    m_processes.obtainFreshProcessList();
    EXPECT_EQ(m_processes.numberOfProcesses(), -1);
    EXPECT_FALSE(m_processes.findProcessWithName(text("openvpn")));
}

TEST_F(ProcessInfoTest, ErrorNumbersArePassedOn) {
    std::unique_ptr<platform::ProcessRecord[]> records;
    std::size_t count = 99;
    m_services.processes().failWith(EPERM);
    EXPECT_EQ(ProcessInfo::getBSDProcessList(&records, &count), EPERM);
    EXPECT_EQ(records, nullptr);
    EXPECT_EQ(count, 0U);
    m_services.processes().failWith(0);
    m_services.processes().failSecondQueryWith(EIO);
    EXPECT_EQ(ProcessInfo::getBSDProcessList(&records, &count), EIO);
    EXPECT_EQ(records, nullptr);
}

/// A lock on the tunnel's log, as the guard holds it: by its own opening of the file.
class LogLock {
public:
    explicit LogLock(const QString &documents) {
        QDir().mkpath(documents);
        m_file.reset(::open(QFile::encodeName(documents + text("/openvpn.log")).constData(),
                            O_RDONLY | O_CREAT | O_CLOEXEC, 0600));

        struct flock whole {};

        whole.l_type = F_RDLCK;
        EXPECT_EQ(::fcntl(m_file.get(), F_OFD_SETLK, &whole), 0);
    }

    void release() { m_file.reset(); }

private:
    FileDescriptor m_file;
};

TEST_F(ProcessInfoTest, OwnTunnelIsFoundByItsLockWhereRootsProcessesAreHidden) {
    m_services.processes().setNames({"bash"});
    LogLock lock(m_services.platform().account.documents());
    EXPECT_FALSE(m_processes.isRunning(text("openvpn"))) << "everything is visible";
    m_services.processes().setShowsOtherUsers(false);
    EXPECT_TRUE(m_processes.isRunning(text("openvpn")));
    EXPECT_FALSE(m_processes.isRunning(text("init")));
    EXPECT_TRUE(m_processes.isRunning(text("bash")));
    lock.release();
    EXPECT_FALSE(m_processes.isRunning(text("openvpn")));
}

TEST_F(ProcessInfoTest, TunnelThatIsEndingIsWaitedFor) {
    m_services.processes().setShowsOtherUsers(false);
    LogLock lock(m_services.platform().account.documents());
    auto running =
        std::async(std::launch::async, [this] { return ProcessInfo().isRunning(text("openvpn")); });
    while (m_services.processes().queries() < 2) {
        std::this_thread::yield();
    }
    lock.release(); // the snapshot has been made
    EXPECT_FALSE(running.get());
}

TEST_F(ProcessInfoTest, WithoutALogNoTunnelRuns) {
    m_services.processes().setShowsOtherUsers(false);
    EXPECT_FALSE(m_processes.isRunning(text("openvpn")));
}

TEST_F(ProcessInfoTest, NumberCanBeSet) {
    m_processes.setNumberOfProcesses(7);
    EXPECT_EQ(m_processes.numberOfProcesses(), 7);
}

TEST(ProcessInfoDeathTest, PreconditionsAreAsserted) {
    std::size_t count = 0;
    std::unique_ptr<platform::ProcessRecord[]> filled(new platform::ProcessRecord[1]);
    std::unique_ptr<platform::ProcessRecord[]> empty;
    EXPECT_DEATH(ProcessInfo::getBSDProcessList(nullptr, &count), "frontend/ProcessInfo.*procList != NULL");
    EXPECT_DEATH(ProcessInfo::getBSDProcessList(&filled, &count), "\\*procList == NULL");
    EXPECT_DEATH(ProcessInfo::getBSDProcessList(&empty, nullptr), "procCount != NULL");
}

} // namespace

} // namespace quorvane
