#include "ZqPrivilegedTask.h"

#include "platform/AuthorizationService.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

#include <QDir>
#include <QFile>
#include <QVariant>

namespace quorvane {

namespace {

constexpr int checkIntervalMs = 100;

platform::AuthorizationService &service() {
    return *platform::Platform::current().authorization;
}

} // namespace

ZqPrivilegedTask::ZqPrivilegedTask() : ZqPrivilegedTask(QStringLiteral("")) {}

ZqPrivilegedTask::ZqPrivilegedTask(const QString &launchPath, const QStringList &arguments)
    : argumentList(arguments), cwd(QDir::currentPath()), path(launchPath) {
    checkStatusTimer.setInterval(checkIntervalMs);
    connect(&checkStatusTimer, &QTimer::timeout, this, &ZqPrivilegedTask::checkTaskStatus);
}

ZqPrivilegedTask::~ZqPrivilegedTask() = default;

std::unique_ptr<ZqPrivilegedTask>
ZqPrivilegedTask::launchedPrivilegedTaskWithLaunchPath(const QString &launchPath,
                                                       const QStringList &arguments) {
    auto task = std::make_unique<ZqPrivilegedTask>(launchPath, arguments);
    task->launch();
    task->waitUntilExit();
    return task;
}

int ZqPrivilegedTask::launch() {
    if (!service().lookUp()) {
        return platform::AuthorizationService::toolMissing;
    }
    const platform::PrivilegedProcess process = service().launch(path, argumentList, cwd);
    if (process.status != 0) {
        return process.status;
    }
    running = true;
    pid = process.pid;
    output = std::make_unique<QFile>();
    if (!output->open(process.outputDescriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        output.reset();
    }
    checkStatusTimer.start();
    return 0;
}

void ZqPrivilegedTask::terminate() {}

void ZqPrivilegedTask::waitUntilExit() {
    if (!running) {
        return;
    }
    if (const auto ended = service().wait(pid, true)) {
        status = *ended;
    }
    running = false;
}

void ZqPrivilegedTask::checkTaskStatus() {
    if (running) {
        const auto ended = service().wait(pid, false);
        if (!ended) {
            return;
        }
        status = *ended;
        running = false;
    }
    checkStatusTimer.stop();
    platform::Platform::current().notifications->post(
        QStringLiteral("ZqPrivilegedTaskDidTerminateNotification"),
        QVariant::fromValue(static_cast<QObject *>(this)));
}

QString ZqPrivilegedTask::description() const {
    QString text = QStringLiteral("<ZqPrivilegedTask: 0x%1> %2")
                       .arg(QString::number(reinterpret_cast<quintptr>(this), 16), path);
    for (const QString &argument : argumentList) {
        text += QChar(u' ') + argument;
    }
    return text;
}

} // namespace quorvane
