#include "sandbox/Sandbox.h"

#include "common/FileDescriptor.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <linux/landlock.h>
#include <linux/netlink.h>
#include <netinet/in.h>
#include <sstream>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

constexpr int notConfined = -1;
const std::string keyFile = "/etc/passwd";

/// 0, or errno of a call that returned -1.
int errorOf(long returned) {
    return returned < 0 ? errno : 0;
}

class SandboxTest : public testing::Test {
protected:
    SandboxTest() { std::filesystem::create_directories(m_folder + "/writable"); }

    ~SandboxTest() override { std::filesystem::remove_all(m_folder); }

    /// What `attempt` returns in a confined process.
    int confined(const std::function<int()> &attempt) const { return inProcess(true, attempt); }

    /// What it returns in one that is not.
    int unconfined(const std::function<int()> &attempt) const { return inProcess(false, attempt); }

    /// The lines of /proc/PID/status of a confined process that has ended and is not waited for yet.
    [[nodiscard]] std::string statusOfConfined() const {
        const pid_t child = fork();
        if (child == 0) {
            _exit(confineProcess(m_needs).ok() ? 0 : 1);
        }
        siginfo_t ended{};
        EXPECT_EQ(waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT), 0);
        EXPECT_EQ(ended.si_status, 0);
        std::ostringstream text;
        text << std::ifstream("/proc/" + std::to_string(child) + "/status").rdbuf();
        EXPECT_EQ(waitpid(child, nullptr, 0), child);
        return text.str();
    }

    std::string m_folder = testing::TempDir() + "sandbox-" + std::to_string(getpid());
    Needs m_needs{{m_folder + "/writable"}, false};

private:
    int inProcess(bool isConfined, const std::function<int()> &attempt) const {
        std::array<int, 2> result{};
        EXPECT_EQ(pipe(result.data()), 0);
        const pid_t child = fork();
        if (child == 0) {
            int returned = notConfined;
            if (!isConfined || confineProcess(m_needs).ok()) {
                returned = attempt();
            }
            _exit(write(result[1], &returned, sizeof(returned)) == sizeof(returned) ? 0 : 1);
        }
        int returned = notConfined;
        close(result[1]);
        EXPECT_EQ(read(result[0], &returned, sizeof(returned)), static_cast<ssize_t>(sizeof(returned)));
        close(result[0]);
        EXPECT_EQ(waitpid(child, nullptr, 0), child);
        return returned;
    }
};

TEST_F(SandboxTest, NoFileIsOpenedForReading) {
    for (const int flags : {O_RDONLY, O_RDWR, O_RDONLY | O_CLOEXEC, O_PATH}) {
        const auto attempt = [flags] {
            return errorOf(open("/dev/null", flags));
        };
        EXPECT_EQ(confined(attempt), EPERM) << flags;
        EXPECT_EQ(unconfined(attempt), 0) << flags;
    }
    EXPECT_EQ(confined([] { return errorOf(syscall(SYS_open, keyFile.c_str(), O_RDONLY)); }), EPERM);
    EXPECT_EQ(confined([] {
                  std::array<std::uint64_t, 3> how{};
                  return errorOf(syscall(SYS_openat2, AT_FDCWD, keyFile.c_str(), how.data(), sizeof(how)));
              }),
              EPERM);
}

TEST_F(SandboxTest, FilesOfTheFolderAreWrittenReplacedAndRemoved) {
    const std::string path = m_folder + "/writable/log";
    EXPECT_EQ(confined([&path] {
                  const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600));
                  const int written = errorOf(write(file.get(), "text", 4));
                  const int renamed = errorOf(rename(path.c_str(), (path + ".1").c_str()));
                  const FileDescriptor again(
                      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_TRUNC | O_CLOEXEC, 0600));
                  const int removed = errorOf(unlink((path + ".1").c_str()));
                  return file.isOpen() && again.isOpen() ? written | renamed | removed : EBADF;
              }),
              0);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_FALSE(std::filesystem::exists(path + ".1"));
}

TEST_F(SandboxTest, NothingIsWrittenElsewhere) {
    if (syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, LANDLOCK_CREATE_RULESET_VERSION) < 1) {
        GTEST_SKIP() << "the kernel has no Landlock";
    }
    const std::string path = m_folder + "/elsewhere";
    const auto attempt = [&path] {
        return errorOf(open(path.c_str(), O_WRONLY | O_CREAT, 0600));
    };
    EXPECT_EQ(confined(attempt), EACCES);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(unconfined(attempt), 0);
    EXPECT_EQ(confined(attempt), EACCES) << "not even a file that is there";
    EXPECT_EQ(confined([&path] { return errorOf(unlink(path.c_str())); }), EACCES);
    EXPECT_EQ(confined([&] { return errorOf(rename(path.c_str(), (m_folder + "/writable/x").c_str())); }),
              EACCES);
}

TEST_F(SandboxTest, NoProgramAndNoProcessIsStarted) {
    const auto execute = [] {
        std::array<char *, 1> none{};
        return errorOf(execve("/bin/true", none.data(), none.data()));
    };
    EXPECT_EQ(confined(execute), EPERM);
    EXPECT_EQ(confined([] { return errorOf(syscall(SYS_fork)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(syscall(SYS_vfork)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(syscall(SYS_clone3, nullptr, 0)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(syscall(SYS_execveat, AT_FDCWD, "/bin/true", 0, 0, 0)); }), EPERM);
}

TEST_F(SandboxTest, OtherProcessesAreOutOfReach) {
    const pid_t parent = getpid();
    EXPECT_EQ(confined([parent] { return errorOf(kill(parent, 0)); }), EPERM);
    EXPECT_EQ(confined([parent] { return errorOf(syscall(SYS_tgkill, parent, parent, 0)); }), EPERM);
    EXPECT_EQ(confined([parent] { return errorOf(ptrace(PTRACE_SEIZE, parent, nullptr, nullptr)); }), EPERM);
    EXPECT_EQ(confined([parent] { return errorOf(syscall(SYS_process_vm_readv, parent, 0, 0, 0, 0, 0)); }),
              EPERM);
    EXPECT_EQ(unconfined([parent] { return errorOf(kill(parent, 0)); }), 0);
}

TEST_F(SandboxTest, TheKernelSendsNoSignalsForIt) {
    const pid_t parent = getpid();
    const auto makeOwner = [parent] {
        return errorOf(fcntl(STDERR_FILENO, F_SETOWN, parent));
    };
    const auto chooseSignal = [] {
        return errorOf(fcntl(STDERR_FILENO, F_SETSIG, SIGKILL));
    };
    EXPECT_EQ(confined(makeOwner), EPERM);
    EXPECT_EQ(confined(chooseSignal), EPERM);
    EXPECT_EQ(unconfined([] {
                  std::array<int, 2> ends{};
                  const int made = errorOf(pipe(ends.data()));
                  return made | errorOf(fcntl(ends[0], F_SETOWN, getppid())) |
                         errorOf(fcntl(ends[0], F_SETSIG, SIGKILL));
              }),
              0);
    EXPECT_EQ(confined([] { return errorOf(fcntl(STDERR_FILENO, F_GETFL)); }), 0);
}

TEST_F(SandboxTest, ItCanStillAbort) {
    const pid_t child = fork();
    if (child == 0) {
        if (confineProcess(m_needs).ok()) {
            std::signal(SIGABRT, SIG_DFL);
            std::abort();
        }
        _exit(1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT);
    EXPECT_FALSE(WCOREDUMP(status));
}

TEST_F(SandboxTest, NoMemoryBecomesExecutable) {
    EXPECT_EQ(confined([] {
                  void *memory =
                      mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                  return memory == MAP_FAILED ? errno : 0;
              }),
              EPERM);
    EXPECT_EQ(confined([] {
                  void *memory =
                      mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                  return memory == MAP_FAILED ? 0 : errorOf(mprotect(memory, 4096, PROT_READ | PROT_EXEC));
              }),
              EPERM);
}

TEST_F(SandboxTest, NoSocketIsMade) {
    const std::vector<std::array<int, 3>> sockets = {{AF_INET, SOCK_STREAM, 0},
                                                     {AF_INET6, SOCK_STREAM, 0},
                                                     {AF_INET, SOCK_DGRAM, 0},
                                                     {AF_INET, SOCK_RAW, IPPROTO_ICMP},
                                                     {AF_NETLINK, SOCK_RAW, NETLINK_NETFILTER},
                                                     {AF_UNIX, SOCK_STREAM, 0},
                                                     {AF_PACKET, SOCK_RAW, 0}};
    for (const std::array<int, 3> &made : sockets) {
        EXPECT_EQ(confined([&made] { return errorOf(socket(made[0], made[1], made[2])); }), EPERM) << made[0];
    }
}

TEST_F(SandboxTest, OneThatConnectsMakesTcpSocketsOnly) {
    m_needs.connects = true;
    for (const int family : {AF_INET, AF_INET6}) {
        EXPECT_EQ(confined([family] { return errorOf(socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0)); }), 0);
        EXPECT_EQ(confined([family] { return errorOf(socket(family, SOCK_STREAM, IPPROTO_TCP)); }), 0);
        EXPECT_EQ(confined([family] { return errorOf(socket(family, SOCK_STREAM, IPPROTO_SCTP)); }), EPERM);
        EXPECT_EQ(confined([family] { return errorOf(socket(family, SOCK_DGRAM, 0)); }), EPERM);
        EXPECT_EQ(confined([family] { return errorOf(socket(family, SOCK_RAW, IPPROTO_TCP)); }), EPERM);
    }
    EXPECT_EQ(confined([] { return errorOf(socket(AF_UNIX, SOCK_STREAM, 0)); }), EPERM);
    EXPECT_EQ(confined([] { return errorOf(socket(AF_NETLINK, SOCK_RAW, NETLINK_NETFILTER)); }), EPERM);
}

TEST_F(SandboxTest, NoCapabilityIsLeft) {
    const std::string status = statusOfConfined();
    for (const char *line :
         {"CapEff:\t0000000000000000\n", "CapPrm:\t0000000000000000\n", "CapInh:\t0000000000000000\n",
          "CapAmb:\t0000000000000000\n", "NoNewPrivs:\t1\n", "Seccomp:\t2\n"}) {
        EXPECT_NE(status.find(line), std::string::npos) << line << status;
    }
}

TEST_F(SandboxTest, AMissingFolderIsAFailure) {
    m_needs.writableFolders.push_back(m_folder + "/missing");
    EXPECT_EQ(confined([] { return 0; }), notConfined);
}

} // namespace

} // namespace quorvane::service
