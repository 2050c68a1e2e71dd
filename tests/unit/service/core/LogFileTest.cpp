#include "core/LogFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace quorvane::service {

namespace {

using std::chrono::seconds;

std::string leftOutLine(std::uint64_t count) {
    return std::to_string(count) + " left out\n";
}

class LogFileTest : public testing::Test {
protected:
    LogFileTest() {
        std::filesystem::create_directories(m_folder);
        m_limits.bytesPerSecond = 0;
        m_limits.fileBytes = 100;
        m_limits.copies = 2;
    }

    ~LogFileTest() override { std::filesystem::remove_all(m_folder); }

    [[nodiscard]] std::string text(const std::string &suffix = {}) const {
        std::ostringstream text;
        text << std::ifstream(m_path + suffix).rdbuf();
        return text.str();
    }

    void write(LogFile &log, char letter, int lines) const {
        for (int i = 0; i < lines; ++i) {
            log.write(std::string(49, letter) + '\n', leftOutLine);
        }
    }

    [[nodiscard]] LogFile opened() const {
        LogFile log(m_limits, [this] { return m_now; });
        EXPECT_TRUE(log.open(m_path).ok());
        return log;
    }

    std::string m_folder = testing::TempDir() + "log-file-" + std::to_string(getpid());
    std::string m_path = m_folder + "/x.log";
    LogLimits m_limits;
    std::chrono::steady_clock::time_point m_now;
};

TEST_F(LogFileTest, TurnsOverBySizeAndKeepsTheNewestCopies) {
    LogFile log = opened();
    for (const char letter : {'a', 'b', 'c', 'd'}) {
        write(log, letter, 2);
    }
    write(log, 'e', 1);
    EXPECT_EQ(text().front(), 'e');
    EXPECT_EQ(text(".1").substr(0, 2), "dd");
    EXPECT_EQ(text(".1").size(), 100U);
    EXPECT_EQ(text(".2").substr(0, 2), "cc");
    EXPECT_FALSE(std::filesystem::exists(m_path + ".3"));

    struct stat state {};

    ASSERT_EQ(stat(m_path.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0600U);
}

TEST_F(LogFileTest, CountsWhatAnEarlierRunWrote) {
    std::ofstream(m_path) << std::string(99, 'o') << '\n';
    LogFile log = opened();
    write(log, 'a', 1);
    EXPECT_EQ(text(".1").front(), 'o');
    EXPECT_EQ(text().front(), 'a');
}

TEST_F(LogFileTest, IsEmptiedWhenNoCopyIsKeptOrPossible) {
    m_limits.copies = 0;
    LogFile log = opened();
    write(log, 'a', 2);
    write(log, 'b', 1);
    EXPECT_EQ(text().front(), 'b');
    EXPECT_EQ(text().size(), 50U);
    m_limits.copies = 1;
    std::filesystem::create_directories(m_path + ".1/in-the-way");
    write(log, 'c', 2);
    EXPECT_EQ(text().size(), 50U);
    EXPECT_EQ(text().front(), 'c');
}

TEST_F(LogFileTest, IsOpenedAgainAfterARenaming) {
    LogFile log = opened();
    write(log, 'a', 1);
    std::filesystem::rename(m_path, m_path + ".old");
    write(log, 'b', 1);
    log.reopen();
    write(log, 'c', 2);
    EXPECT_EQ(text(".old").size(), 100U);
    EXPECT_EQ(text().size(), 100U) << "the size of the new file counts";
    EXPECT_EQ(text().front(), 'c');
}

TEST_F(LogFileTest, LeavesOutWhatExceedsTheRate) {
    m_limits.bytesPerSecond = 50;
    m_limits.fileBytes = 1000000;
    LogFile log = opened();
    write(log, 'a', 100);
    EXPECT_EQ(text().size(), 200U) << "a burst of four seconds";
    m_now += seconds(2);
    write(log, 'b', 10);
    EXPECT_THAT(text().substr(200), testing::StartsWith("96 left out\nbbb"));
    m_now += seconds(3600);
    log.write("end\n", leftOutLine);
    EXPECT_THAT(text(), testing::EndsWith("\n9 left out\nend\n"));
}

} // namespace

} // namespace quorvane::service
