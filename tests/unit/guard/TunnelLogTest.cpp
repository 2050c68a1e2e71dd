#include "guard/TunnelLog.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

namespace quorvane::guard {

namespace {

constexpr const char *timestamp = "2026-11-21 10:00:00 ";

class TunnelLogTest : public testing::Test {
protected:
    TunnelLogTest() {
        const int file = mkstemp(m_path.data());
        EXPECT_GE(file, 0);
        close(file);
        m_log.emplace(FileDescriptor(open(m_path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC)));
    }

    ~TunnelLogTest() override { unlink(m_path.c_str()); }

    [[nodiscard]] std::string written() const {
        std::ostringstream text;
        text << std::ifstream(m_path).rdbuf();
        return text.str();
    }

    [[nodiscard]] bool contains(const std::string &text) const {
        return written().find(text) != std::string::npos;
    }

    std::string m_path = testing::TempDir() + "tunnel-log-XXXXXX";
    std::optional<TunnelLog> m_log;
};

} // namespace

TEST_F(TunnelLogTest, LinesAreCopiedOnceTheyAreComplete) {
    m_log->add("one\ntw");
    EXPECT_EQ(written(), "one\n");
    m_log->add("o\n");
    EXPECT_EQ(written(), "one\ntwo\n");
    m_log->add("three");
    m_log->finish("ended");
    EXPECT_TRUE(contains("two\nthree\n"));
}

TEST_F(TunnelLogTest, OpenVpnsOwnSentenceMeansThatTheTunnelIsUp) {
    m_log->add(std::string(timestamp) + "Initialization Sequence Completed\n");
    EXPECT_TRUE(m_log->isUp());
    EXPECT_TRUE(contains("Initialization Sequence Completed"));
}

TEST_F(TunnelLogTest, MicrosecondsOfTheVerboseLevelBelongToTheTime) {
    m_log->add("2026-11-21 18:48:33 us=592216 Initialization Sequence Completed\n");
    EXPECT_TRUE(m_log->isUp());
    EXPECT_TRUE(contains("Initialization Sequence Completed"));
}

TEST_F(TunnelLogTest, TheSameSentenceElsewhereInALineDoesNot) {
    for (const char *line :
         {"AUTH: Received control message: AUTH_FAILED,Initialization Sequence Completed",
          "Initialization Sequence Completed", "2026-11-21 10:00 Initialization Sequence Completed",
          "no time, just text: Initialization Sequence Completed",
          "2026-11-21 10:00:00 x Initialization Sequence Completed",
          "2026-11-21 10:00:00  Initialization Sequence Completed"}) {
        m_log->add(std::string(line) + "\n");
        EXPECT_FALSE(m_log->isUp()) << line;
    }
    m_log->finish("ended");
    EXPECT_FALSE(contains("Initialization Sequence Completed"));
    EXPECT_TRUE(contains("Initialization_Sequence_Completed"));
}

TEST_F(TunnelLogTest, AnAttemptThatWasGivenUpDoesNotBecomeATunnel) {
    m_log->giveUp();
    m_log->add(std::string(timestamp) + "Initialization Sequence Completed\n");
    EXPECT_FALSE(m_log->isUp());
    m_log->finish("ended");
    EXPECT_FALSE(contains("Initialization Sequence Completed"));
    EXPECT_TRUE(contains("Exiting due to fatal error\n"));
}

TEST_F(TunnelLogTest, ASentenceSplitOverTwoReadsIsRecognised) {
    m_log->add("x Initialization Sequence");
    m_log->add(" Completed\n");
    EXPECT_FALSE(contains("Initialization Sequence Completed"));
}

TEST_F(TunnelLogTest, EveryByteBecomesPlainAscii) {
    m_log->add("a\x01\xFF\tb\x7F\x1b[2J\r\n");
    EXPECT_EQ(written(), "a??\tb??[2J?\n");
}

TEST_F(TunnelLogTest, ALongLineIsCut) {
    m_log->add(std::string(10000, 'x'));
    m_log->add("\nend\n");
    EXPECT_EQ(written(), std::string(2048, 'x') + "\nend\n");
}

TEST_F(TunnelLogTest, TheEndOfAnAttemptIsAlwaysReported) {
    m_log->add("something\n");
    m_log->finish("OpenVPN ended with status 1");
    EXPECT_TRUE(contains("OpenVPN ended with status 1\n"));
    EXPECT_TRUE(contains("Exiting due to fatal error\n"));
}

TEST_F(TunnelLogTest, AnEndThatOpenVpnReportedIsNotReportedAgain) {
    for (const char *marker : {"AUTH_FAILED", "TLS key negotiation failed", "Cannot resolve host address",
                               "auth-user-pass fails"}) {
        TunnelLog reported(FileDescriptor(open(m_path.c_str(), O_WRONLY | O_TRUNC | O_APPEND | O_CLOEXEC)));
        reported.add(std::string(timestamp) + marker + "\n");
        reported.finish("OpenVPN ended with status 1");
        EXPECT_FALSE(contains("Exiting due to fatal error")) << marker;
    }
}

TEST_F(TunnelLogTest, TheEndOfATunnelThatWasUpIsNoFailure) {
    m_log->add(std::string(timestamp) + "Initialization Sequence Completed\n");
    m_log->finish("OpenVPN was ended by signal 9");
    EXPECT_FALSE(contains("Exiting due to fatal error"));
    EXPECT_FALSE(contains("with errors"));
}

TEST_F(TunnelLogTest, AFloodIsBoundedAndItsEndStillReported) {
    const std::string line(1000, 'x');
    for (int count = 0; count < 3000; ++count) {
        m_log->add(line + "\n");
    }
    m_log->finish("ended");
    EXPECT_LT(written().size(), 1100U * 1024U);
    EXPECT_TRUE(contains("Exiting due to fatal error\n"));
    EXPECT_TRUE(m_log->isComplete());
}

TEST(TunnelLogOnAFullDisk, LostLinesAreNoticed) {
    TunnelLog log(FileDescriptor(open("/dev/full", O_WRONLY | O_CLOEXEC)));
    EXPECT_FALSE(log.hasSpace()) << "a device cannot reserve space";
    log.add("x\n");
    EXPECT_FALSE(log.isComplete());
}

TEST_F(TunnelLogTest, AReportThatIsNotConfirmedIsMaskedAndEndsTheAttempt) {
    m_log->setConfirmation([] { return Result<>(Failure{"the tunnel is refused: why"}); });
    m_log->add(std::string(timestamp) + "Initialization Sequence Completed\n");
    EXPECT_FALSE(m_log->isUp());
    EXPECT_TRUE(m_log->isRefused());
    EXPECT_FALSE(contains("Initialization Sequence Completed"));
    EXPECT_TRUE(contains("the tunnel is refused: why\n"));
    m_log->add(std::string(timestamp) + "Initialization Sequence Completed\n");
    EXPECT_FALSE(contains("Initialization Sequence Completed")) << "the attempt is over";
    m_log->finish("ended");
    EXPECT_TRUE(contains("Exiting due to fatal error\n"));
}

TEST_F(TunnelLogTest, OnlyOpenVpnsOwnReportIsConfirmed) {
    int asked = 0;
    m_log->setConfirmation([&asked] {
        ++asked;
        return Result<>();
    });
    m_log->add("a text: Initialization Sequence Completed\n");
    EXPECT_EQ(asked, 0);
    m_log->add(std::string(timestamp) + "Initialization Sequence Completed\n");
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(m_log->isUp());
    EXPECT_FALSE(m_log->isRefused());
}

TEST_F(TunnelLogTest, EachLineIsReadOnceAlsoWhenItIsTooMuchForTheLog) {
    int lines = 0;
    m_log->setReader([&lines](std::string_view) { ++lines; });
    const std::string line(1023, 'x');
    for (int number = 0; number < 1100; ++number) {
        m_log->add(line + '\n');
    }
    EXPECT_EQ(lines, 1100);
}

TEST_F(TunnelLogTest, TheTokenForANewLoginIsMasked) {
    m_log->add(std::string(timestamp) + "Pushed option accepted by filter: 'auth-token SESS_ID_secret'\n");
    EXPECT_FALSE(contains("SESS_ID_secret"));
    EXPECT_TRUE(contains("Pushed option accepted by filter: 'auth-token *****'\n"));
}

TEST(ServerInLine, OnlyInOpenVpnsOwnLine) {
    const auto server = [](const std::string &line) {
        const auto found = serverIn(line);
        return found ? textOf(*found) : "";
    };
    EXPECT_EQ(server("2026-11-21 10:00:00 UDPv4 link remote: [AF_INET]192.0.2.1:1194"), "192.0.2.1/32");
    EXPECT_EQ(server("2026-11-21 10:00:00 us=12 TCPv4_CLIENT link remote: [AF_INET]192.0.2.1:443"),
              "192.0.2.1/32");
    EXPECT_EQ(server("2026-11-21 10:00:00 UDPv6 link remote: [AF_INET6]2001:db8::1:1194"), "2001:db8::1/128");
    EXPECT_EQ(server("UDPv4 link remote: [AF_INET]192.0.2.1:1194"), "");
    EXPECT_EQ(server("2026-11-21 10:00:00 said: UDPv4 link remote: [AF_INET]192.0.2.1:1194"), "");
    EXPECT_EQ(server("2026-11-21 10:00:00 UDPv4 link remote: [AF_INET]x:1194"), "");
    EXPECT_EQ(server("2026-11-21 10:00:00 UDPv4 link remote: [AF_INET"), "");
    EXPECT_EQ(server("2026-11-21 10:00:00 UDPv4 link remote: [AF_UNSPEC]"), "");
}

} // namespace quorvane::guard
