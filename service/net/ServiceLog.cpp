#include "ServiceLog.h"

#include "core/LogFile.h"
#include "core/RequestLog.h"
#include "core/TokenBucket.h"

#include <cstdio>

namespace quorvane::service {

namespace {

/// Logins and errors that strangers cause are lines, too.
constexpr double bytesPerSecond = 16384;
constexpr double burstBytes = 16 * bytesPerSecond;

void print(const std::string &line) {
    std::fprintf(stderr, "%s quorvane-service: %s\n", isoTime(std::chrono::system_clock::now()).c_str(),
                 line.c_str());
}

} // namespace

void writeLog(const std::string &line) {
    static TokenBucket budget(bytesPerSecond, burstBytes);
    static std::uint64_t leftOut = 0;
    const std::string shown = line.substr(0, LogFile::maximumLine);
    if (!budget.take(static_cast<double>(shown.size()), std::chrono::steady_clock::now())) {
        ++leftOut;
        return;
    }
    if (leftOut > 0) {
        print(std::to_string(std::exchange(leftOut, 0)) + " lines were left out");
    }
    print(shown);
}

} // namespace quorvane::service
