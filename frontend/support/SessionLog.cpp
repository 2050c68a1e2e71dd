#include "SessionLog.h"

#include "platform/Platform.h"

#include <QFile>

namespace quorvane {

namespace {

QString path() {
    return platform::Platform::current().account.documents() + QStringLiteral("/qrvp.log");
}

} // namespace

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
