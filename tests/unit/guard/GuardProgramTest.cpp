// The guard program itself, with a fake OpenVPN and a short deadline, run by the user who runs the tests.

#include "FakeNft.h"
#include "HostileConfigurations.h"

#include "common/FileDescriptor.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace quorvane::guard {

namespace {

using namespace std::chrono_literals;

std::string contentOf(const std::string &path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

bool within(std::chrono::milliseconds time, const std::function<bool()> &condition) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

class GuardProgram : public testing::Test {
protected:
    GuardProgram() {
        EXPECT_NE(mkdtemp(m_folder.data()), nullptr);
        write("creds", "user\npass word");
        write("log", "");
    }

    ~GuardProgram() override {
        if (m_pid > 0) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
        for (const char *name : {"config", "creds", "log", "canary", "target", "out"}) {
            unlink(at(name).c_str());
        }
        rmdir(m_folder.c_str());
    }

    [[nodiscard]] std::string at(const std::string &name) const { return m_folder + "/" + name; }

    void write(const std::string &name, const std::string &text) const { std::ofstream(at(name)) << text; }

    [[nodiscard]] std::string log() const { return contentOf(at("log")); }

    [[nodiscard]] bool logContains(const std::string &text) const {
        return log().find(text) != std::string::npos;
    }

    void start(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), GUARD_PROGRAM);
        std::vector<char *> raw;
        for (std::string &argument : arguments) {
            raw.push_back(argument.data());
        }
        raw.push_back(nullptr);
        const std::string out = at("out");
        m_pid = fork();
        if (m_pid == 0) {
            const int file = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            dup2(file, STDOUT_FILENO);
            dup2(file, STDERR_FILENO);
            if (m_closesOutput) {
                close(STDIN_FILENO);
                close(STDOUT_FILENO);
                close(STDERR_FILENO);
            }
            setenv("LD_BIND_NOW", "1", 1);
            if (!m_caller.empty()) {
                setenv("QUORVANE_CALLER", m_caller.c_str(), 1);
            }
            // The guard forbids tracing, which the leak checker needs.
            setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
            signal(SIGPIPE, SIG_IGN);
            execv(GUARD_PROGRAM, raw.data());
            _exit(126);
        }
    }

    void start() {
        start({"--config", at("config"), "--auth-user-pass", at("creds"), "--log-append", at("log")});
    }

    int wait() {
        int status = 0;
        waitpid(m_pid, &status, 0);
        m_pid = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    /// Starts the guard with an allowed configuration whose remote host is `host`.
    void startFor(const std::string &host) {
        write("config", "client\nremote " + host + " 1194 # a comment\n");
        start();
    }

    /// The guard's only child, or 0.
    [[nodiscard]] pid_t child() const {
        const std::string number = std::to_string(m_pid);
        std::istringstream children(contentOf("/proc/" + number + "/task/" + number + "/children"));
        pid_t found = 0;
        children >> found;
        return found;
    }

    std::string m_folder = testing::TempDir() + "guard-program-XXXXXX";
    pid_t m_pid = -1;
    bool m_closesOutput = false;
    std::string m_caller; ///< of the guard; empty for none
};

} // namespace

TEST_F(GuardProgram, EveryHostileConfigurationEndsInTheLogAndNothingRuns) {
    write("canary", "#!/bin/sh\ntouch '" + at("target") + "'\n");
    ASSERT_EQ(chmod(at("canary").c_str(), 0700), 0);
    for (const auto &hostile : hostileConfigurations(at("canary"))) {
        write("config", hostile.text);
        write("log", "");
        start();
        wait();
        EXPECT_TRUE(logContains("the configuration is refused: ")) << hostile.name << ": " << log();
        EXPECT_TRUE(logContains(hostile.refusal)) << hostile.name << ": " << log();
        EXPECT_TRUE(logContains("Exiting due to fatal error\n")) << hostile.name;
        EXPECT_FALSE(logContains("ended with status")) << hostile.name << ": OpenVPN was started";
    }
    EXPECT_NE(access(at("target").c_str(), F_OK), 0) << "the canary ran";
}

TEST_F(GuardProgram, ACanaryThatRunsIsNoticed) {
    write("canary", "#!/bin/sh\ntouch '" + at("target") + "'\n");
    ASSERT_EQ(chmod(at("canary").c_str(), 0700), 0);
    ASSERT_EQ(std::system(at("canary").c_str()), 0);
    EXPECT_EQ(access(at("target").c_str(), F_OK), 0);
}

TEST_F(GuardProgram, OpenVpnReceivesAPrivateCopyAndNothingOfTheCallers) {
    write("target", "");
    // Like a careless caller: open in every program that is started.
    const int open = ::open(at("target").c_str(), O_RDONLY); // NOLINT(android-cloexec-open)
    startFor("reports");
    EXPECT_EQ(wait(), 0);
    close(open);
    const std::string text = log();
    EXPECT_TRUE(logContains("files: /dev/null pipe:")) << text;
    EXPECT_FALSE(logContains(at("log"))) << text;
    EXPECT_FALSE(logContains(at("target"))) << text;
    EXPECT_TRUE(logContains("--script-security 0 --auth-user-pass /proc/self/fd/")) << text;
    EXPECT_TRUE(logContains(" --redirect-gateway def1 --remote-cert-tls server --dev tun --disable-dco "
                            "--pull-filter accept ifconfig  --pull-filter accept "))
        << text;
    EXPECT_TRUE(logContains(" --pull-filter accept dhcp-option DNS  --pull-filter ignore \n")) << text;
    EXPECT_FALSE(logContains(at("config"))) << text;
    EXPECT_TRUE(logContains("variables: PATH \n")) << text;
    EXPECT_TRUE(logContains("no new privileges: 1\n")) << text;
    EXPECT_TRUE(logContains("ignored: 0000000000000000\n")) << text;
    EXPECT_TRUE(logContains("blocked: 0000000000000000\n")) << text;
    EXPECT_TRUE(logContains("folder: /\n")) << text;
    EXPECT_TRUE(logContains("credentials: user|pass word\n")) << text;
    EXPECT_TRUE(logContains("configuration: client|remote reports 1194|\n")) << text;
}

TEST_F(GuardProgram, LogIsLockedWhileOpenVpnRuns) {
    const FileDescriptor file(open(at("log").c_str(), O_RDONLY | O_CLOEXEC));
    const auto isLocked = [&file] {
        struct flock whole {};

        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        EXPECT_EQ(fcntl(file.get(), F_OFD_GETLK, &whole), 0);
        return whole.l_type != F_UNLCK;
    };
    EXPECT_FALSE(isLocked());
    startFor("up");
    ASSERT_TRUE(within(10s, [this] { return logContains("Initialization Sequence Completed\n"); }));
    EXPECT_TRUE(isLocked());
    const pid_t openVpn = child();
    ASSERT_GT(openVpn, 0);
    ASSERT_EQ(kill(openVpn, SIGKILL), 0);
    EXPECT_TRUE(within(10s, [&isLocked] { return !isLocked(); }));
    wait();
}

TEST_F(GuardProgram, AnEarlyEndIsReported) {
    startFor("early");
    wait();
    EXPECT_TRUE(logContains("Options error: something\n"));
    EXPECT_TRUE(logContains("OpenVPN ended with status 1\n"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, AnEndWithoutOutputIsReported) {
    startFor("quiet");
    wait();
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, BytesThatAreNoTextDoNotMakeTheLogUnreadable) {
    startFor("binary");
    wait();
    EXPECT_TRUE(logContains("a??b\n"));
}

TEST_F(GuardProgram, AnAttemptEnds) {
    startFor("hangs");
    wait();
    EXPECT_TRUE(logContains("the tunnel did not come up in time\n"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, AnAttemptEndsEvenIfOpenVpnIgnoresTheSignal) {
    startFor("stubborn");
    wait();
    EXPECT_TRUE(logContains("the tunnel did not come up in time\n"));
}

TEST_F(GuardProgram, ATunnelThatComesUpAfterTheDeadlineDoesNotCount) {
    startFor("late");
    wait();
    EXPECT_FALSE(logContains("Initialization Sequence Completed"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, ACallerWithoutOutputLosesNoLog) {
    write("config", "client\nremote early 1194\n");
    m_closesOutput = true;
    start();
    wait();
    EXPECT_TRUE(logContains("Options error: something\n"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, ATunnelThatIsUpHasNoDeadline) {
    startFor("up");
    ASSERT_TRUE(within(10s, [this] { return logContains("Initialization Sequence Completed"); }));
    // Longer than the deadline of this build.
    EXPECT_FALSE(within(1500ms, [this] { return child() == 0; }));
    kill(m_pid, SIGTERM);
    wait();
    EXPECT_TRUE(logContains("OpenVPN was ended by signal 15\n"));
    EXPECT_FALSE(logContains("Exiting due to fatal error"));
}

TEST_F(GuardProgram, ATunnelThatLeaksIsNeverReportedAsUp) {
    std::ofstream(GUARD_FOLDER "/leak") << "";
    startFor("up");
    wait();
    unlink(GUARD_FOLDER "/leak");
    EXPECT_FALSE(logContains("Initialization Sequence Completed")) << log();
    EXPECT_TRUE(logContains("Initialization_Sequence_Completed\n")) << log();
    EXPECT_TRUE(logContains("the tunnel is refused: the route to 192.0.2.1/32 leads past it\n")) << log();
    EXPECT_TRUE(logContains("the tunnel was refused\n")) << log();
    EXPECT_TRUE(logContains("Exiting due to fatal error\n")) << log();
}

TEST_F(GuardProgram, AClosedLockIsOpenedForTheServerThenForTheDeviceAndClosedAgain) {
    const FakeNft nft;
    FakeNft::closeLock();
    write("config", "client\nremote up\nremote 192.0.2.9 443 tcp\n");
    start();
    ASSERT_TRUE(within(10s, [this] { return logContains("Initialization Sequence Completed"); })) << log();
    const std::string none = "flush set inet quorvane_lock tunnels; flush set inet quorvane_lock servers; ";
    const std::vector<std::string> up{
        none, none + "add element inet quorvane_lock servers { 192.0.2.9 . tcp . 443 }; ",
        "flush set inet quorvane_lock tunnels; add element inet quorvane_lock tunnels { 7 }; "};
    EXPECT_EQ(FakeNft::calls(), up);
    kill(m_pid, SIGTERM);
    wait();
    ASSERT_EQ(FakeNft::calls().size(), up.size() + 1);
    EXPECT_EQ(FakeNft::calls().back(), none);
}

TEST_F(GuardProgram, AnAttemptEndsWhenAClosedLockCannotBeOpened) {
    const FakeNft nft;
    FakeNft::closeLock();
    FakeNft::refuse();
    startFor("up");
    wait();
    EXPECT_TRUE(logContains("the network lock cannot be opened\n")) << log();
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
    EXPECT_FALSE(logContains("Initialization"));
}

TEST_F(GuardProgram, AnAttemptEndsAlsoWhileOutputGoesOnWithoutAPause) {
    startFor("chatters");
    wait();
    EXPECT_TRUE(logContains("the tunnel did not come up in time\n"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, NoRecordIsLeft) {
    startFor("early");
    wait();
    EXPECT_NE(access(GUARD_FOLDER "/guard.routes", F_OK), 0);
}

TEST_F(GuardProgram, OpenVpnKilledByNameIsReported) {
    startFor("hangs");
    ASSERT_TRUE(within(10s, [this] { return logContains("waiting"); }));
    EXPECT_EQ(contentOf("/proc/" + std::to_string(m_pid) + "/comm"), "openvpn-guard\n");
    kill(child(), SIGKILL);
    wait();
    EXPECT_TRUE(logContains("OpenVPN was ended by signal 9\n"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, OpenVpnDiesWithTheGuard) {
    startFor("up");
    ASSERT_TRUE(within(10s, [this] { return logContains("Completed"); }));
    const pid_t openVpn = child();
    ASSERT_GT(openVpn, 0);
    kill(m_pid, SIGKILL);
    EXPECT_EQ(wait(), -SIGKILL);
    EXPECT_TRUE(within(10s, [openVpn] {
        const std::string state = contentOf("/proc/" + std::to_string(openVpn) + "/stat");
        return state.empty() || state.find(") Z") != std::string::npos;
    }));
}

TEST_F(GuardProgram, MissingCredentialsAreReportedInOpenVpnsOwnText) {
    unlink(at("creds").c_str());
    startFor("up");
    wait();
    EXPECT_TRUE(
        logContains("--auth-user-pass fails with '" + at("creds") + "': No such file or directory\n"));
    EXPECT_FALSE(logContains("Exiting due to fatal error")) << "the line above is enough";
}

TEST_F(GuardProgram, AMissingConfigurationIsReported) {
    start();
    EXPECT_EQ(wait(), 1);
    EXPECT_TRUE(logContains("the configuration is refused: No such file or directory\n"));
    EXPECT_TRUE(logContains("Exiting due to fatal error\n"));
}

TEST_F(GuardProgram, LinksAsAnyOfTheThreeFilesAreNotFollowed) {
    write("target", "client\nremote up\n");
    ASSERT_EQ(symlink(at("target").c_str(), at("config").c_str()), 0);
    start();
    EXPECT_EQ(wait(), 1);
    EXPECT_TRUE(logContains("it is not a plain file"));

    unlink(at("config").c_str());
    unlink(at("creds").c_str());
    ASSERT_EQ(symlink(at("target").c_str(), at("creds").c_str()), 0);
    startFor("up");
    wait();
    EXPECT_TRUE(logContains("auth-user-pass fails"));

    unlink(at("log").c_str());
    ASSERT_EQ(symlink(at("target").c_str(), at("log").c_str()), 0);
    startFor("up");
    EXPECT_EQ(wait(), 1);
    EXPECT_EQ(contentOf(at("target")), "client\nremote up\n") << "nothing was appended";
    EXPECT_NE(contentOf(at("out")).find("the log cannot be used: it is not a plain file"), std::string::npos);
}

TEST_F(GuardProgram, AnotherUsersConfigurationIsNotRead) {
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can change the owner of a file";
    }
    write("config", "secret line\n");
    ASSERT_EQ(chown(at("config").c_str(), 65534, 65534), 0);
    start();
    EXPECT_EQ(wait(), 1);
    EXPECT_EQ(log(), "");
    EXPECT_NE(contentOf(at("out")).find("it belongs to another user"), std::string::npos);

    ASSERT_EQ(chown(at("config").c_str(), 0, 0), 0);
    ASSERT_EQ(chown(at("creds").c_str(), 65534, 65534), 0);
    startFor("up");
    wait();
    EXPECT_TRUE(logContains("auth-user-pass fails with '" + at("creds") + "': it belongs to another user"));
}

TEST_F(GuardProgram, FilesMustBelongToTheCaller) {
    m_caller = std::to_string(getuid() + 1);
    startFor("up");
    EXPECT_EQ(wait(), 1);
    EXPECT_EQ(log(), "");
    EXPECT_NE(contentOf(at("out")).find("it belongs to another user"), std::string::npos);

    m_caller = "no number";
    start();
    EXPECT_EQ(wait(), 1);

    m_caller = std::to_string(getuid());
    startFor("early");
    EXPECT_EQ(wait(), 0);
    EXPECT_TRUE(logContains("Options error: something\n"));
}

TEST_F(GuardProgram, ProgramFilesThatOthersCanChangeAreRefused) {
    // Beside the guard under test.
    const std::string beside = GUARD_FOLDER "/writable-by-others";
    std::ofstream(beside) << "";
    ASSERT_EQ(chmod(beside.c_str(), 0666), 0);
    startFor("early");
    EXPECT_EQ(wait(), 1);
    EXPECT_TRUE(logContains("the program's files are refused: another user can change ")) << log();
    EXPECT_TRUE(logContains("Exiting due to fatal error\n")) << log();
    ASSERT_EQ(unlink(beside.c_str()), 0);
    startFor("early");
    EXPECT_EQ(wait(), 0);
}

TEST_F(GuardProgram, FilesOfAnInstalledGuardBelongToRootAlone) {
    const std::string mark = GUARD_FOLDER "/installed";
    std::ofstream(mark) << "";
    if (getuid() == 0) {
        // Of the caller, as the files of a build tree may be.
        ASSERT_EQ(chown(mark.c_str(), 1, 1), 0);
        m_caller = "1";
        ASSERT_EQ(chown(m_folder.c_str(), 1, 1), 0);
        ASSERT_EQ(chown(at("creds").c_str(), 1, 1), 0);
        ASSERT_EQ(chown(at("log").c_str(), 1, 1), 0);
        write("config", "");
        ASSERT_EQ(chown(at("config").c_str(), 1, 1), 0);
    }
    startFor("early");
    EXPECT_EQ(wait(), 1);
    EXPECT_TRUE(logContains("the program's files are refused: another user can change ")) << log();
    ASSERT_EQ(unlink(mark.c_str()), 0);
    startFor("early");
    EXPECT_EQ(wait(), 0) << log();
}

TEST_F(GuardProgram, ALinkInPlaceOfTheLockFileIsNotFollowed) {
    const std::string lock = GUARD_FOLDER "/run/guard.lock";
    unlink(lock.c_str());
    ASSERT_EQ(symlink(at("target").c_str(), lock.c_str()), 0);
    startFor("early");
    wait();
    EXPECT_NE(access(at("target").c_str(), F_OK), 0) << "a file was made behind the link";
    EXPECT_FALSE(logContains("ended with status")) << "OpenVPN was started: " << log();
    EXPECT_TRUE(logContains("the file that keeps two guards apart cannot be opened\n")) << log();
    ASSERT_EQ(unlink(lock.c_str()), 0);
    startFor("early");
    wait();
    EXPECT_TRUE(logContains("OpenVPN ended with status 1\n")) << log();
}

TEST_F(GuardProgram, AnyOtherCommandLineIsRefused) {
    write("config", "client\nremote up\n");
    start(
        {"--config", at("config"), "--auth-user-pass", at("creds"), "--log-append", at("log"), "--up", "x"});
    EXPECT_EQ(wait(), 2);
    start({"--config", at("config"), "--log-append", at("log"), "--auth-user-pass", at("creds")});
    EXPECT_EQ(wait(), 2);
    start({});
    EXPECT_EQ(wait(), 2);
    EXPECT_EQ(log(), "");
}

} // namespace quorvane::guard
