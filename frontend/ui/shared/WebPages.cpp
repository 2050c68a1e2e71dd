#include "WebPages.h"

#include "Alerts.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

QString page(const QString &path, const QString &identifier) {
    return QStringLiteral("https://") + platform::Platform::current().service.webHost + path +
           QStringLiteral("?utm_source=905-quorvane-mac&utm_medium=in-app&uid=") + identifier;
}

void reportNoBrowser(const QString &page) {
    Alerts::shared().critical(
        {QStringLiteral("Quorvane"),
         QCoreApplication::translate("quorvane::WebPages", "No web browser could be opened."),
         QCoreApplication::translate("quorvane::WebPages", "The page is %1").arg(page)});
}

} // namespace

QString WebPages::root(const QString &identifier) {
    return page(QStringLiteral("/"), identifier);
}

void WebPages::open(const QString &address) {
    if (!platform::Platform::current().workspace->openUrl(address)) {
        reportNoBrowser(address);
    }
}

void WebPages::openGuide() {
    const platform::Platform &services = platform::Platform::current();
    const QString guide = services.bundle->resourcesPath() + QStringLiteral("/help/guide.html");
    if (!services.workspace->openPage(guide)) {
        reportNoBrowser(guide);
    }
}

QString WebPages::ipCheck(const QString &identifier) {
    return page(QStringLiteral("/ip"), identifier);
}

} // namespace quorvane
