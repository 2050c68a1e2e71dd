#include "StandardLogSink.h"

#include <syslog.h>
#include <unistd.h>

namespace quorvane::platform {

StandardLogSink::StandardLogSink() {
    ::openlog("quorvane", LOG_PID, LOG_USER);
}

void StandardLogSink::write(const QString &line) {
    const QByteArray bytes = line.toUtf8();
    ::syslog(LOG_NOTICE, "%s", bytes.constData());
    // One system call per line, so that the lines of several threads do not mix. A closed standard error is
    // no reason to stop.
    const QByteArray whole = "quorvane: " + bytes + '\n';
    [[maybe_unused]] const ssize_t written =
        ::write(STDERR_FILENO, whole.constData(), static_cast<std::size_t>(whole.size()));
}

} // namespace quorvane::platform
