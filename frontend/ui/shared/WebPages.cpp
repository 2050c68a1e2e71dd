#include "WebPages.h"

#include "platform/Platform.h"

namespace quorvane {

namespace {

QString page(const QString &path, const QString &identifier) {
    return QStringLiteral("https://") + platform::Platform::current().service.webHost + path +
           QStringLiteral("?utm_source=905-quorvane-mac&utm_medium=in-app&uid=") + identifier;
}

} // namespace

QString WebPages::root(const QString &identifier) {
    return page(QStringLiteral("/"), identifier);
}

QString WebPages::ipCheck(const QString &identifier) {
    return page(QStringLiteral("/ip"), identifier);
}

} // namespace quorvane
