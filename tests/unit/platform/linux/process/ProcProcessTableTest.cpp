#include "platform/linux/process/ProcProcessTable.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quorvane::platform {

namespace {

using platform::ProcessRecord;
using platform::ProcProcessTable;

std::vector<ProcessRecord> snapshot(const ProcProcessTable &table) {
    std::vector<ProcessRecord> rows;
    std::size_t count = 0;
    int outcome = ENOMEM;
    while (outcome == ENOMEM) {
        EXPECT_EQ(table.query(nullptr, count), 0);
        rows.resize(count);
        outcome = table.query(rows.data(), count);
    }
    EXPECT_EQ(outcome, 0);
    rows.resize(count);
    return rows;
}

TEST(ProcProcessTableTest, HoldsThisProcessUnderItsShortName) {
    ASSERT_EQ(prctl(PR_SET_NAME, "a-name-beyond-fifteen"), 0);
    const auto rows = snapshot(ProcProcessTable());
    const auto own =
        std::find_if(rows.begin(), rows.end(), [](const ProcessRecord &row) { return row.pid == getpid(); });
    ASSERT_NE(own, rows.end());
    EXPECT_STREQ(own->name.data(), "a-name-beyond-f");
}

TEST(ProcProcessTableTest, ContainsStartedAndNotEndedProcesses) {
    QProcess child;
    child.start(QStringLiteral("sleep"), {QStringLiteral("60")});
    ASSERT_TRUE(child.waitForStarted());
    const auto has = [&child](const std::vector<ProcessRecord> &rows) {
        return std::any_of(rows.begin(), rows.end(), [&child](const ProcessRecord &row) {
            return row.pid == static_cast<pid_t>(child.processId()) && QByteArray(row.name.data()) == "sleep";
        });
    };
    EXPECT_TRUE(has(snapshot(ProcProcessTable())));
    child.kill();
    ASSERT_TRUE(child.waitForFinished());
    EXPECT_FALSE(has(snapshot(ProcProcessTable())));
}

TEST(ProcProcessTableTest, OmitsEndedProcessesThatWaitForTheirParent) {
    const pid_t child = fork();
    if (child == 0) {
        pause();
        _exit(0);
    }
    ASSERT_GT(child, 0);
    const auto isListed = [child] {
        const auto rows = snapshot(ProcProcessTable());
        return std::any_of(rows.begin(), rows.end(), [child](const auto &row) { return row.pid == child; });
    };
    EXPECT_TRUE(isListed());
    kill(child, SIGKILL);
    EXPECT_FALSE(isListed()) << "omitted from the signal on, whether it has ended yet or not";
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_FALSE(isListed()) << "still in the table for its parent";
    waitpid(child, nullptr, 0);
}

/// Whether the table at this folder shows other users' processes to root and to an unprivileged user, as two
/// bits of an exit status; runs in a process of its own, with /proc mounted at the folder.
int visibilityAt(const QByteArray &folder, const char *options) {
    constexpr int cannotMount = 77;
    constexpr uid_t unprivilegedUser = 65534;
    const pid_t child = fork();
    if (child == 0) {
        if (unshare(CLONE_NEWNS) != 0 || mount("", "/", "", MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("proc", folder.constData(), "proc", 0, options) != 0) {
            _exit(cannotMount);
        }
        const ProcProcessTable table(folder);
        const int toRoot = table.showsOtherUsers() ? 1 : 0;
        if (setgroups(0, nullptr) != 0 || setgid(unprivilegedUser) != 0 || setuid(unprivilegedUser) != 0) {
            _exit(cannotMount);
        }
        _exit(toRoot + (table.showsOtherUsers() ? 2 : 0));
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(ProcProcessTableTest, ReportsWhetherOtherUsersAreHidden) {
    EXPECT_TRUE(ProcProcessTable().showsOtherUsers());
    EXPECT_FALSE(ProcProcessTable("/nowhere").showsOtherUsers());
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can mount /proc";
    }
    QTemporaryDir folder;
    ASSERT_EQ(chmod(folder.path().toUtf8().constData(), 0755), 0);
    const QByteArray path = folder.path().toUtf8();
    EXPECT_EQ(visibilityAt(path, "hidepid=0"), 3);
    EXPECT_EQ(visibilityAt(path, "hidepid=1"), 1);
    EXPECT_EQ(visibilityAt(path, "hidepid=2"), 1);
}

class FakeProcTable : public ::testing::Test {
protected:
    void process(const QString &pid, const QByteArray &name) const {
        ASSERT_TRUE(QDir(m_folder.path()).mkpath(pid));
        write(pid + QStringLiteral("/comm"), name);
    }

    /// Adds a process with this state, these flags and this mask of pending signals.
    void process(const QString &pid, const QByteArray &state, const QByteArray &flags,
                 const QByteArray &pending) const {
        process(pid, "a) Z 1 2\n");
        write(pid + QStringLiteral("/stat"), pid.toLatin1() + " (a) Z 1 2) " + state + " 1 2 3 0 -1 " +
                                                 flags + " 0 0 0 0 0 0 0 0 20 0 1 0 100 0 0 1 1 1 0 0 0 " +
                                                 pending + " 0 0 0 0\n");
    }

    void write(const QString &name, const QByteArray &text) const {
        QFile file(m_folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }

    std::vector<pid_t> listed() const {
        std::vector<pid_t> pids;
        for (const ProcessRecord &row : snapshot(m_table)) {
            pids.push_back(row.pid);
        }
        return pids;
    }

    QTemporaryDir m_folder;
    const ProcProcessTable m_table{m_folder.path().toUtf8()};
};

TEST_F(FakeProcTable, ReadsProcessFoldersOnly) {
    process(QStringLiteral("1"), "init\n");
    process(QStringLiteral("77x"), "no\n");
    process(QStringLiteral("sys"), "no\n");
    process(QStringLiteral("42"), "fifteen-letters\n");
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral("43")));
    auto rows = snapshot(m_table);
    std::sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return a.pid < b.pid; });
    ASSERT_EQ(rows.size(), 2U) << "a process without a name has ended";
    EXPECT_STREQ(rows[0].name.data(), "init");
    EXPECT_STREQ(rows[1].name.data(), "fifteen-letters");
    EXPECT_EQ(rows[1].pid, 42);
}

TEST_F(FakeProcTable, ReportsThatItHasGrown) {
    process(QStringLiteral("1"), "a\n");
    std::size_t count = 0;
    ASSERT_EQ(m_table.query(nullptr, count), 0);
    EXPECT_EQ(count, 1U);
    process(QStringLiteral("2"), "b\n");
    std::vector<ProcessRecord> rows(count);
    EXPECT_EQ(m_table.query(rows.data(), count), ENOMEM);
}

TEST_F(FakeProcTable, ListsRunningProcesses) {
    process(QStringLiteral("1"), "S", "4194304", "0");
    process(QStringLiteral("2"), "R", "1077936384", "16384");
    EXPECT_THAT(listed(), testing::UnorderedElementsAre(1, 2));
}

TEST_F(FakeProcTable, OmitsEndedProcesses) {
    process(QStringLiteral("1"), "Z", "4194304", "0");
    process(QStringLiteral("2"), "X", "4194304", "0");
    EXPECT_THAT(listed(), testing::IsEmpty());
}

TEST_F(FakeProcTable, OmitsEndingProcesses) {
    process(QStringLiteral("1"), "D", "4194308", "0");
    process(QStringLiteral("2"), "S", "4194304", "256");
    EXPECT_THAT(listed(), testing::IsEmpty());
}

TEST_F(FakeProcTable, TreatsAnUnknownFormatAsRunning) {
    process(QStringLiteral("1"), "a\n");
    write(QStringLiteral("1/stat"), "1 (a");
    process(QStringLiteral("2"), "b\n");
    write(QStringLiteral("2/stat"), "2 (b) S x y");
    process(QStringLiteral("3"), "c\n");
    write(QStringLiteral("3/stat"), "3 (c) ");
    EXPECT_THAT(listed(), testing::UnorderedElementsAre(1, 2, 3));
}

TEST(ProcProcessTableFailure, ReturnsTheErrno) {
    std::size_t count = 7;
    EXPECT_EQ(ProcProcessTable("/no/such/folder").query(nullptr, count), ENOENT);
}

} // namespace

} // namespace quorvane::platform
