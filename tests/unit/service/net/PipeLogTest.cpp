#include <utility>

#include <boost/asio/io_context.hpp>

#include "net/PipeLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace quorvane::service {

namespace {

class PipeLogTest : public testing::Test {
protected:
    ~PipeLogTest() override { std::filesystem::remove(m_path); }

    /// What the log contains when all of this has been printed into a pipe.
    std::string logOf(const std::string &printed) {
        const auto log = std::make_shared<PipeLog>(m_context, m_limits);
        EXPECT_TRUE(log->open(m_path).ok());
        FileDescriptor pipe = log->newPipe();
        std::thread printing([&printed, pipe = std::move(pipe)] {
            std::size_t done = 0;
            while (done < printed.size()) {
                const ssize_t length = write(pipe.get(), printed.data() + done, printed.size() - done);
                ASSERT_GT(length, 0);
                done += static_cast<std::size_t>(length);
            }
        });
        m_context.run();
        printing.join();
        std::ostringstream text;
        text << std::ifstream(m_path).rdbuf();
        return text.str();
    }

    boost::asio::io_context m_context{1};
    LogLimits m_limits;
    std::string m_path = testing::TempDir() + "pipe-log-" + std::to_string(getpid());
};

TEST_F(PipeLogTest, WritesEveryLineAndTheLastOneWithoutALineFeed) {
    EXPECT_EQ(logOf("one\n\ntwo\nthree"), "one\n\ntwo\nthree\n");
}

TEST_F(PipeLogTest, CutsLongLines) {
    std::istringstream lines(logOf(std::string(300000, 'x') + "\nend\n"));
    std::string last;
    for (std::string line; std::getline(lines, line); last = line) {
        EXPECT_LT(line.size(), LogFile::maximumLine);
    }
    EXPECT_EQ(last, "end");
}

TEST_F(PipeLogTest, ReadsMoreThanItWrites) {
    m_limits.bytesPerSecond = 4096;
    std::string printed;
    for (int i = 0; i < 200000; ++i) {
        printed += "a line of the attack\n";
    }
    EXPECT_LT(logOf(printed).size(), 60000U) << "of 4 MB";
}

} // namespace

} // namespace quorvane::service
