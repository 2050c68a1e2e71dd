#include "ServiceLog.h"

#include "core/RequestLog.h"

#include <cstdio>

namespace quorvane::service {

void writeLog(const std::string &line) {
    std::fprintf(stderr, "%s quorvane-service: %s\n", isoTime(std::chrono::system_clock::now()).c_str(),
                 line.c_str());
}

} // namespace quorvane::service
