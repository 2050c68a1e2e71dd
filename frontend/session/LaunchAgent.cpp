#include "LaunchAgent.h"

#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"
#include "platform/PropertyList.h"
#include "platform/Workspace.h"

#include <QFile>
#include <filesystem>

namespace quorvane {

namespace {

const QString name = QStringLiteral("com.qrvp.LaunchAtLogin.plist");
const QString runKey = QStringLiteral("RunAtLoad");

QString agentFolder() {
    return platform::Platform::current().account.library() + QStringLiteral("/LaunchAgents/");
}

} // namespace

bool LaunchAgent::launchesOnStartup() {
    const auto list = platform::PropertyList::readFile(agentFolder() + name);
    return list && list->value(runKey).toBool();
}

void LaunchAgent::launchOnStartup(bool enabled) {
    auto &services = platform::Platform::current();
    const QString folder = agentFolder();
    std::error_code error;
    std::filesystem::create_directories(folder.toStdString(), error);
    if (error) {
        Diagnostics::log(QStringLiteral("create LaunchAgents failed ") +
                         QString::fromStdString(error.message()));
    }
    const QString agent = folder + name;
    const QString source =
        QFile::exists(agent) ? agent : QString(services.bundle->resourcesPath() + QChar(u'/') + name);
    if (auto list = platform::PropertyList::readFile(source)) {
        list->insert(runKey, enabled);
        platform::PropertyList::writeFile(agent, *list);
    }
    services.workspace->setAutostart(services.bundle->contentsPath() + QStringLiteral("/bin/quorvane"),
                                     enabled);
}

} // namespace quorvane
