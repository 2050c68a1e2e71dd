// What an attacker would do who runs code of his own inside the service: a library that is preloaded into it.
// After each request that contains "/planted" it tries to leave the process, and writes one line an attempt
// to standard error: "planted NAME ERROR", where ERROR is 0 for success.
//
// The environment of the service's start names what to try: PLANTED_KEYS (files, with colons between),
// PLANTED_PROCESS (the number of another process of the service's user), PLANTED_SOCKET (the control socket
// of another process).

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/netlink.h>
#include <linux/openat2.h>
#include <netinet/in.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void report(const std::string &name, long returned) {
    const std::string line = "planted " + name + ' ' + std::to_string(returned < 0 ? errno : 0) + '\n';
    static_cast<void>(!write(STDERR_FILENO, line.data(), line.size()));
}

std::string setting(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Reports the attempt to open a file, and closes it.
void reportOpened(const std::string &name, long file) {
    report(name, file);
    if (file >= 0) {
        close(static_cast<int>(file));
    }
}

void tryFiles() {
    std::string rest = setting("PLANTED_KEYS") + ":/etc/shadow";
    while (!rest.empty()) {
        const std::string path = rest.substr(0, rest.find(':'));
        rest.erase(0, path.size() + 1);
        const std::string name = path.substr(path.rfind('/') + 1);
        reportOpened("read-" + name, open(path.c_str(), O_RDONLY));
        reportOpened("change-" + name, open(path.c_str(), O_RDWR));
        open_how how{};
        reportOpened("openat2-" + name, syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof(how)));
    }
    reportOpened("write", open(setting("PLANTED_FILE").c_str(), O_WRONLY | O_CREAT, 0600));
    reportOpened("memory", open("/proc/self/mem", O_WRONLY));
}

void tryPrograms() {
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/true", "/bin/true", nullptr);
        _exit(1);
    }
    report("fork", child);
    if (child > 0) {
        waitpid(child, nullptr, 0);
        return;
    }
    // Where it succeeds the process would be another program: only when there was no child to do it.
    report("execute", execl("/bin/true", "/bin/true", nullptr));
}

void trySockets() {
    reportOpened("netlink", socket(AF_NETLINK, SOCK_RAW, NETLINK_NETFILTER));
    reportOpened("raw", socket(AF_INET, SOCK_RAW, IPPROTO_ICMP));
    reportOpened("udp", socket(AF_INET, SOCK_DGRAM, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = setting("PLANTED_SOCKET");
    std::copy_n(path.begin(), std::min(path.size(), sizeof(address.sun_path) - 1), address.sun_path);
    const int connection = socket(AF_UNIX, SOCK_STREAM, 0);
    long connected = connection;
    if (connection >= 0) {
        connected = connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof(address));
    }
    report("control-socket", connected);
    close(connection);
}

void tryProcesses() {
    const auto other = static_cast<pid_t>(std::strtol(setting("PLANTED_PROCESS").c_str(), nullptr, 10));
    report("signal", kill(other, 0));
    // The kernel would send a signal to the owner when something happens to the file.
    report("signal-by-file", fcntl(STDERR_FILENO, F_SETOWN, other));
    const long traced = ptrace(PTRACE_SEIZE, other, nullptr, nullptr);
    report("trace", traced);
    if (traced >= 0) {
        ptrace(PTRACE_INTERRUPT, other, nullptr, nullptr);
        waitpid(other, nullptr, __WALL);
        ptrace(PTRACE_DETACH, other, nullptr, nullptr);
    }
    void *memory = mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    report("executable-memory", memory == MAP_FAILED ? -1 : 0);
}

} // namespace

/// Takes the place of OpenSSL's function: what was received is seen here first.
// NOLINTNEXTLINE(readability-identifier-naming): the name is OpenSSL's.
extern "C" int SSL_read(void *connection, void *buffer, int length) {
    using Read = int (*)(void *, void *, int);
    static const auto original = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "SSL_read"));
    const int received = original(connection, buffer, length);
    if (received > 0 &&
        std::string_view(static_cast<const char *>(buffer), static_cast<std::size_t>(received))
                .find("/planted") != std::string_view::npos) {
        tryFiles();
        tryPrograms();
        trySockets();
        tryProcesses();
        report("end", 0);
    }
    return received;
}
