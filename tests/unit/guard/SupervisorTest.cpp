// The supervision of OpenVPN, with a program in its place whose output never pauses.

#include "guard/Supervisor.h"
#include "FakeRouting.h"

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::guard {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Pauses the guard before each look for events until there is output to read, so that it never finds a
/// pause. After `limit` it lets pauses happen, so that a guard that waits for one ends as well.
class RoutingThatAwaitsOutput : public FakeRouting {
public:
    static constexpr auto limit = 5s;

    /// `output`: the descriptor from which the guard is going to read.
    explicit RoutingThatAwaitsOutput(int output) : m_output(output) {}

    [[nodiscard]] int changesDescriptor() const override {
        struct stat state {};

        m_isPipe = m_isPipe && fstat(m_output, &state) == 0 && S_ISFIFO(state.st_mode);
        m_hasLetPauses = m_hasLetPauses || Clock::now() - m_begin > limit;
        if (m_isPipe && !m_hasLetPauses) {
            pollfd awaited{m_output, POLLIN, 0};
            m_isPipe = TEMP_FAILURE_RETRY(poll(&awaited, 1, -1)) == 1;
            ++m_looks;
        }
        return -1;
    }

    [[nodiscard]] bool isPipe() const { return m_isPipe; }

    [[nodiscard]] bool hasLetPauses() const { return m_hasLetPauses; }

    [[nodiscard]] unsigned looks() const { return m_looks; }

private:
    int m_output;
    Clock::time_point m_begin = Clock::now();
    mutable bool m_isPipe = true;
    mutable bool m_hasLetPauses = false;
    mutable unsigned m_looks = 0;
};

/// The guard blocks signals and renames its process; the other tests need both as they were.
class Supervisor : public testing::Test {
protected:
    Supervisor() {
        sigprocmask(SIG_SETMASK, nullptr, &m_signals);
        prctl(PR_GET_NAME, m_name.data());
    }

    ~Supervisor() override {
        sigprocmask(SIG_SETMASK, &m_signals, nullptr);
        prctl(PR_SET_NAME, m_name.data());
    }

private:
    sigset_t m_signals{};
    std::array<char, 16> m_name{};
};

} // namespace

TEST_F(Supervisor, DeadlineHoldsWhenOutputNeverPauses) {
    TunnelLog log{FileDescriptor(memfd_create("log", MFD_CLOEXEC))};
    const LockOpenings openings("/nonexistent/note", "/nonexistent/nft");
    // The guard's pipe receives the lowest number that is free, as this descriptor does.
    const int next = FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC)).get();
    RoutingThatAwaitsOutput routing(next);
    SessionRoutes routes(routing, "/nonexistent/record");
    const OpenVpnCommand command{"/usr/bin/yes", {"2026-11-21 10:00:00 waiting"}, 200ms, 5s};

    EXPECT_EQ(supervise(command, log, routes, openings, FileDescriptor()),
              "the tunnel did not come up in time");

    EXPECT_TRUE(routing.isPipe());
    EXPECT_FALSE(routing.hasLetPauses()) << "the deadline waited for a pause";
    EXPECT_GT(routing.looks(), 10U);
}

} // namespace quorvane::guard
