#include "platform/ProcProcessTable.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>

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

TEST(ProcProcessTableTest, SeesProcessesComeAndGo) {
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

class MadeUpTable : public ::testing::Test {
protected:
    void process(const QString &pid, const QByteArray &name) const {
        ASSERT_TRUE(QDir(folder.path()).mkpath(pid));
        QFile file(folder.filePath(pid + QStringLiteral("/comm")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(name), name.size());
    }

    QTemporaryDir folder;
    const ProcProcessTable table{folder.path().toUtf8()};
};

TEST_F(MadeUpTable, TakesProcessFoldersOnly) {
    process(QStringLiteral("1"), "init\n");
    process(QStringLiteral("77x"), "no\n");
    process(QStringLiteral("sys"), "no\n");
    process(QStringLiteral("42"), "fifteen-letters\n");
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("43")));
    auto rows = snapshot(table);
    std::sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) { return a.pid < b.pid; });
    ASSERT_EQ(rows.size(), 2U) << "one that has no name any more is gone";
    EXPECT_STREQ(rows[0].name.data(), "init");
    EXPECT_STREQ(rows[1].name.data(), "fifteen-letters");
    EXPECT_EQ(rows[1].pid, 42);
}

TEST_F(MadeUpTable, TellsWhenItHasGrown) {
    process(QStringLiteral("1"), "a\n");
    std::size_t count = 0;
    ASSERT_EQ(table.query(nullptr, count), 0);
    EXPECT_EQ(count, 1U);
    process(QStringLiteral("2"), "b\n");
    std::vector<ProcessRecord> rows(count);
    EXPECT_EQ(table.query(rows.data(), count), ENOMEM);
}

TEST(ProcProcessTableFailure, GivesTheErrno) {
    std::size_t count = 7;
    EXPECT_EQ(ProcProcessTable("/no/such/folder").query(nullptr, count), ENOENT);
}

} // namespace
