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

/// Writes the property list of one file to another, with the switch set. False when nothing was written.
bool switchAgent(const QString &source, const QString &target, bool enabled) {
    auto list = platform::PropertyList::readFile(source);
    if (!list) {
        return false;
    }
    list->insert(runKey, enabled);
    return platform::PropertyList::writeFile(target, *list);
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
    const bool before = launchesOnStartup();
    if (!switchAgent(source, agent, enabled)) {
        return; // the desktop's entry stays as it is, too
    }
    const QString program = services.bundle->contentsPath() + QStringLiteral("/bin/quorvane");
    if (!services.workspace->setAutostart(program, enabled)) {
        switchAgent(agent, agent, before);
    }
}

} // namespace quorvane
