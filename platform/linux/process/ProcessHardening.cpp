#include "platform/ProcessHardening.h"

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::platform {

namespace {

constexpr std::array<int, 3> quitSignals{SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> pipeEnds{-1, -1};

void onSignal(int /*number*/) {
    const int interrupted = errno; // of the code that the signal interrupts
    const char byte = 1;
    // A full pipe means that a request to quit is already waiting.
    static_cast<void>(!write(pipeEnds[1], &byte, 1));
    errno = interrupted;
}

void onClosedPipe(int /*number*/) {}

/// A write to a closed pipe fails instead of ending the program. By a handler and not by SIG_IGN, which
/// programs that are started would inherit: they get the default.
void ignoreClosedPipes() {
    struct sigaction action {};

    action.sa_handler = onClosedPipe;
    action.sa_flags = SA_RESTART;
    sigaction(SIGPIPE, &action, nullptr);
}

} // namespace

void hardenProcess() {
    umask(077);
    ignoreClosedPipes();
#ifndef QUORVANE_DEBUGGABLE
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
#endif
}

QuitSignals::QuitSignals(QObject *parent) : QObject(parent) {
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    m_notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (read(pipeEnds[0], bytes.data(), bytes.size()) > 0) {
        }
        Q_EMIT quitRequested();
    });

    struct sigaction action {};

    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : quitSignals) {
        sigaction(number, &action, nullptr);
    }
}

QuitSignals::~QuitSignals() {
    for (const int number : quitSignals) {
        std::signal(number, SIG_DFL);
    }
    for (int &end : pipeEnds) {
        if (end >= 0) {
            close(end);
        }
        end = -1;
    }
}

} // namespace quorvane::platform
