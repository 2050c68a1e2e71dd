#include "Diagnostics.h"

#include "platform/Platform.h"
#include "platform/SystemLog.h"

namespace quorvane {

void Diagnostics::log(const QString &line) {
    platform::Platform::current().log->write(line);
}

void Diagnostics::logAlways(const QString &line) {
    platform::Platform::current().log->writeAlways(line);
}

QString Diagnostics::shown(const QString &text) {
    return text.isNull() ? QStringLiteral("(null)") : text;
}

} // namespace quorvane
