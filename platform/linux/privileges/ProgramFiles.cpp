#include "platform/ProgramFiles.h"

#include "common/ProgramFiles.h"

#include <QFile>

namespace quorvane::platform {

QString changeableProgramFile(const QString &resourcesFolder) {
    if constexpr (!QUORVANE_INSTALLED) {
        return {};
    }
    const QByteArray guard = QFile::encodeName(resourcesFolder) + "/openvpn";
    const auto checked = checkProgramFiles(guard.toStdString(), 0);
    return checked ? QString() : QFile::decodeName(QByteArray::fromStdString(checked.error()));
}

} // namespace quorvane::platform
