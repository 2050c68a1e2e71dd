#include "ZqPrivilegedTask.h"

#include "frontend/support/Notifications.h"
#include "platform/AuthorizationService.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

#include <QDir>
#include <QFile>
#include <QVariant>

namespace quorvane {

namespace {

constexpr int checkIntervalMs = 100;

/// The arguments as the program receives them: the bytes of the file-system form, as many as the argument has
/// characters.
QByteArrayList buffersOf(const QStringList &arguments) {
    QByteArrayList buffers;
    for (const QString &argument : arguments) {
        const QByteArray form = QFile::encodeName(argument);
        const auto length = qstrnlen(form.constData(), static_cast<std::size_t>(argument.size()));
        buffers.append(form.left(static_cast<qsizetype>(length)));
    }
    return buffers;
}

platform::AuthorizationService &service() {
    return *platform::Platform::current().authorization;
}

} // namespace

ZqPrivilegedTask::ZqPrivilegedTask() : ZqPrivilegedTask(QStringLiteral("")) {}

ZqPrivilegedTask::ZqPrivilegedTask(const QString &path, const QStringList &argumentList)
    : m_argumentList(argumentList), m_cwd(QDir::currentPath()), m_path(path) {
    m_checkStatusTimer.setInterval(checkIntervalMs);
    connect(&m_checkStatusTimer, &QTimer::timeout, this, &ZqPrivilegedTask::checkTaskStatus);
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
    const platform::PrivilegedProcess process = service().launch(m_path, buffersOf(m_argumentList), m_cwd);
    if (process.status != 0) {
        return process.status;
    }
    m_running = true;
    m_pid = process.pid;
    m_output = std::make_unique<QFile>();
    if (!m_output->open(process.outputDescriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        m_output.reset();
    }
    m_checkStatusTimer.start();
    return 0;
}

void ZqPrivilegedTask::terminate() {}

void ZqPrivilegedTask::waitUntilExit() {
    if (!m_running) {
        return;
    }
    if (const auto ended = service().wait(m_pid, true)) {
        m_status = *ended;
    }
    m_running = false;
}

void ZqPrivilegedTask::checkTaskStatus() {
    if (m_running) {
        const auto ended = service().wait(m_pid, false);
        if (!ended) {
            return;
        }
        m_status = *ended;
        m_running = false;
    }
    m_checkStatusTimer.stop();
    platform::Platform::current().notifications->post(Notifications::privilegedTaskDidTerminate,
                                                      QVariant::fromValue(static_cast<QObject *>(this)));
}

QString ZqPrivilegedTask::description() const {
    QString text = QStringLiteral("<ZqPrivilegedTask: 0x%1> %2")
                       .arg(QString::number(reinterpret_cast<quintptr>(this), 16), m_path);
    for (const QString &argument : m_argumentList) {
        text += QChar(u' ') + argument;
    }
    return text;
}

} // namespace quorvane
