#include "guard/TunnelLog.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>
#include <unistd.h>

using quorvane::guard::TunnelLog;

namespace {

constexpr const char *Time = "2026-11-21 10:00:00 ";

class TunnelLogTest : public testing::Test {
protected:
    TunnelLogTest() {
        const int file = mkstemp(path.data());
        EXPECT_GE(file, 0);
        close(file);
        log.emplace(quorvane::FileDescriptor(open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC)));
    }

    ~TunnelLogTest() override { unlink(path.c_str()); }

    std::string written() const {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    bool holds(const std::string &text) const { return written().find(text) != std::string::npos; }

    std::string path = testing::TempDir() + "tunnel-log-XXXXXX";
    std::optional<TunnelLog> log;
};

} // namespace

TEST_F(TunnelLogTest, LinesAreCopiedAndUnfinishedOnesWait) {
    log->add("one\ntw");
    EXPECT_EQ(written(), "one\n");
    log->add("o\n");
    EXPECT_EQ(written(), "one\ntwo\n");
    log->add("three");
    log->finish("ended");
    EXPECT_TRUE(holds("two\nthree\n"));
}

TEST_F(TunnelLogTest, OpenVpnsOwnSentenceSaysThatTheTunnelIsUp) {
    log->add(std::string(Time) + "Initialization Sequence Completed\n");
    EXPECT_TRUE(log->isUp());
    EXPECT_TRUE(holds("Initialization Sequence Completed"));
}

TEST_F(TunnelLogTest, MicrosecondsOfTheTalkativeLevelBelongToTheTime) {
    log->add("2026-11-21 18:48:33 us=592216 Initialization Sequence Completed\n");
    EXPECT_TRUE(log->isUp());
    EXPECT_TRUE(holds("Initialization Sequence Completed"));
}

TEST_F(TunnelLogTest, TheSameWordsInsideOfALineDoNot) {
    for (const char *line :
         {"AUTH: Received control message: AUTH_FAILED,Initialization Sequence Completed",
          "Initialization Sequence Completed", "2026-11-21 10:00 Initialization Sequence Completed",
          "2026-11-21 10:00:00 x Initialization Sequence Completed",
          "2026-11-21 10:00:00  Initialization Sequence Completed"}) {
        log->add(std::string(line) + "\n");
        EXPECT_FALSE(log->isUp()) << line;
    }
    log->finish("ended");
    EXPECT_FALSE(holds("Initialization Sequence Completed"));
    EXPECT_TRUE(holds("Initialization_Sequence_Completed"));
}

TEST_F(TunnelLogTest, AnAttemptThatWasGivenUpIsNotUpAfterAll) {
    log->giveUp();
    log->add(std::string(Time) + "Initialization Sequence Completed\n");
    EXPECT_FALSE(log->isUp());
    log->finish("ended");
    EXPECT_FALSE(holds("Initialization Sequence Completed"));
    EXPECT_TRUE(holds("Exiting due to fatal error\n"));
}

TEST_F(TunnelLogTest, WordsSplitOverPiecesAreSeenWhole) {
    log->add("x Initialization Sequence");
    log->add(" Completed\n");
    EXPECT_FALSE(holds("Initialization Sequence Completed"));
}

TEST_F(TunnelLogTest, EveryByteBecomesPlainAscii) {
    log->add("a\x01\xFF\tb\x7F\x1b[2J\r\n");
    EXPECT_EQ(written(), "a??\tb??[2J?\n");
}

TEST_F(TunnelLogTest, ALongLineIsCut) {
    log->add(std::string(10000, 'x'));
    log->add("\nend\n");
    EXPECT_EQ(written(), std::string(2048, 'x') + "\nend\n");
}

TEST_F(TunnelLogTest, TheEndOfAnAttemptIsAlwaysTold) {
    log->add("something\n");
    log->finish("OpenVPN ended with status 1");
    EXPECT_TRUE(holds("OpenVPN ended with status 1\n"));
    EXPECT_TRUE(holds("Exiting due to fatal error\n"));
}

TEST_F(TunnelLogTest, AnEndThatOpenVpnToldIsNotToldAgain) {
    for (const char *marker : {"AUTH_FAILED", "TLS key negotiation failed", "Cannot resolve host address",
                               "auth-user-pass fails"}) {
        TunnelLog told(
            quorvane::FileDescriptor(open(path.c_str(), O_WRONLY | O_TRUNC | O_APPEND | O_CLOEXEC)));
        told.add(std::string(Time) + marker + "\n");
        told.finish("OpenVPN ended with status 1");
        EXPECT_FALSE(holds("Exiting due to fatal error")) << marker;
    }
}

TEST_F(TunnelLogTest, TheEndOfATunnelThatWasUpIsNoFailure) {
    log->add(std::string(Time) + "Initialization Sequence Completed\n");
    log->finish("OpenVPN was ended by signal 9");
    EXPECT_FALSE(holds("Exiting due to fatal error"));
    EXPECT_FALSE(holds("with errors"));
}

TEST_F(TunnelLogTest, AFloodIsBoundedAndItsEndStillTold) {
    const std::string line(1000, 'x');
    for (int count = 0; count < 3000; ++count) {
        log->add(line + "\n");
    }
    log->finish("ended");
    EXPECT_LT(written().size(), 1100U * 1024U);
    EXPECT_TRUE(holds("Exiting due to fatal error\n"));
    EXPECT_TRUE(log->isWhole());
}

TEST(TunnelLogOnAFullDisk, LostLinesAreNoticed) {
    TunnelLog log(quorvane::FileDescriptor(open("/dev/full", O_WRONLY | O_CLOEXEC)));
    EXPECT_FALSE(log.hasRoom()) << "a device has no room to reserve";
    log.add("x\n");
    EXPECT_FALSE(log.isWhole());
}
