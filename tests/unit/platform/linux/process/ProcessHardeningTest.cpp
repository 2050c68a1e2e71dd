#include "platform/ProcessHardening.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

/// Whether a write to a pipe without a reader fails and the process lives.
bool survivesAClosedPipe() {
    std::array<int, 2> ends{-1, -1};
    if (pipe(ends.data()) != 0 || close(ends[0]) != 0) {
        return false;
    }
    return write(ends[1], "x", 1) == -1 && errno == EPIPE;
}

/// Whether a program that is started by any way ends by a closed pipe.
bool childEndsByAClosedPipe() {
    // NOLINTNEXTLINE(bugprone-command-processor,cert-env33-c): a way of starting that changes no signal
    const int status = std::system("kill -PIPE $$");
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE;
}

using ProcessHardeningDeathTest = ::testing::Test;

TEST_F(ProcessHardeningDeathTest, ClosedPipeIsAnErrorHereAndTheDefaultInChildren) {
    GTEST_FLAG_SET(death_test_style, "fast");
    EXPECT_EXIT(
        {
            hardenProcess();
            std::_Exit(survivesAClosedPipe() ? (childEndsByAClosedPipe() ? 0 : 2) : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(QuitSignalsTest, HandlerKeepsTheErrorNumberAndOneRequestIsEmitted) {
    QuitSignals signalsOfTheProgram;
    int requests = 0;
    QObject::connect(&signalsOfTheProgram, &QuitSignals::quitRequested, [&requests] { ++requests; });
    constexpr int moreThanAPipeHolds = 70000;
    for (int i = 0; i < moreThanAPipeHolds; ++i) {
        ASSERT_EQ(raise(SIGTERM), 0);
    }
    errno = ENOTEMPTY;
    ASSERT_EQ(raise(SIGTERM), 0); // the handler's write fails
    EXPECT_EQ(errno, ENOTEMPTY);
    QCoreApplication::processEvents();
    EXPECT_EQ(requests, 1);
}

} // namespace

} // namespace quorvane::platform
