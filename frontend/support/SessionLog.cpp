#include "SessionLog.h"

#include "platform/Platform.h"

#include <QFile>

namespace quorvane {

namespace {

QString path() {
    return SessionLog::folder() + QStringLiteral("/qrvp.log");
}

} // namespace

QString SessionLog::folder() {
    return platform::Platform::current().account.home + QStringLiteral("/Documents/Quorvane");
}

void SessionLog::ensureExists() {
    QFile file(path());
    if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        file.close();
    }
}

void SessionLog::append(const QString &line) {
    QFile file(path());
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly)) {
        file.write(line.toUtf8());
    }
}

} // namespace quorvane
