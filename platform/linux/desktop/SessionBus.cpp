#include "SessionBus.h"

#include <QFile>
#include <QFileInfo>

namespace quorvane::platform {

bool isSessionBusThere() {
    const QString runtime = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR"));
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           (runtime.startsWith(u'/') && QFileInfo::exists(runtime + QStringLiteral("/bus")));
}

} // namespace quorvane::platform
