#include "Fuzz.h"
#include "frontend/tunnel/LogVerdict.h"
#include "guard/TunnelLog.h"

#include <algorithm>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

using namespace quorvane;

using quorvane::guard::TunnelLog;

// The guard's log for any output of OpenVPN, as the application's monitor reads it.
void fuzzOne(std::string_view bytes) {
    const int memory = memfd_create("log", MFD_CLOEXEC);
    must(memory >= 0, "a memory file can be created");
    const FileDescriptor kept(dup(memory));
    TunnelLog log{FileDescriptor(memory)};
    const std::size_t half = bytes.size() / 2;
    log.add(bytes.substr(0, half));
    log.add(bytes.substr(half));
    log.finish("ended");

    std::string text(static_cast<std::size_t>(lseek(kept.get(), 0, SEEK_END)), '\0');
    must(pread(kept.get(), text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
         "the log can be read");
    must(std::ranges::all_of(text, [](char c) { return c == '\n' || c == '\t' || (c >= ' ' && c <= '~'); }),
         "the log is plain text");
    const LogVerdict verdict =
        LogVerdict::of(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    must(verdict.outcome != LogVerdict::Outcome::Undecided, "every attempt ends");
    const bool seenUp =
        verdict.outcome == LogVerdict::Outcome::Up || verdict.outcome == LogVerdict::Outcome::WithErrors;
    must(seenUp == log.isUp(), "the monitor reports a tunnel only if OpenVPN itself did");
}
