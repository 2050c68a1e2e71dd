#include "QrvAPI.h"

#include "RequestUrls.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/TextFile.h"
#include "frontend/support/TextNumbers.h"
#include "platform/HardwareRegistry.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/UrlLoader.h"
#include "platform/Workspace.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <utility>

namespace quorvane {

namespace {

struct ProcessWide {
    QString alternativeSerial;
    bool serverListRequested = false;
};

ProcessWide &processWide() {
    static ProcessWide values;
    return values;
}

platform::Platform &services() {
    return platform::Platform::current();
}

bool isPlaceholder(const QString &serial) {
    return serial == QLatin1String("unknown") || serial.startsWith(QLatin1String("System")) ||
           serial.contains(u' ') || serial.contains(QLatin1String("Serial"));
}

} // namespace

void QrvApiProtocol::qrvAnswer(QrvAPI & /*api*/) {}

void QrvApiProtocol::qrvFailed(const platform::UrlError & /*error*/) {}

QString QrvApiRequest::kindName(quint32 kind) {
    switch (kind) {
    case None:
        return QStringLiteral("none");
    case Auth:
        return QStringLiteral("auth");
    case Locations:
        return QStringLiteral("locations");
    case Browser:
        return QStringLiteral("browser");
    case Programs:
        return QStringLiteral("programs");
    case Parameters:
        return QStringLiteral("parameters");
    default:
        return QStringLiteral("unknown");
    }
}

QrvAPI::QrvAPI() = default;
QrvAPI::~QrvAPI() = default;

QrvAPI &QrvAPI::sharedApi() {
    static QrvAPI api;
    return api;
}

void QrvAPI::forgetProcessWideValues() {
    processWide() = {};
}

QrvAPI &QrvAPI::initWithDelegate(QrvApiProtocol *newDelegate) {
    m_delegate = newDelegate;
    m_serial = platformSerialNumber();
    m_servers.clearLocations();
    services().notifications->addObserver(Notifications::inetStatus, this,
                                          [this](const QVariant &number) { inetStatus(number); });
    return *this;
}

void QrvAPI::inetStatus(const QVariant &number) {
    const qlonglong status = number.toLongLong();
    Diagnostics::log(QStringLiteral("inetStatus: %1").arg(status));
    if (status < 1) {
        m_connected = false;
        return;
    }
    m_connected = true;
    if (!processWide().serverListRequested) {
        processWide().serverListRequested = cmdAuth(QString());
    }
}

QString QrvAPI::macSerial() {
    if (m_serial.isEmpty()) {
        m_serial = platformSerialNumber();
    }
    return m_serial;
}

QString QrvAPI::platformSerialNumber() const {
    QString machine = services().hardware->platformSerialNumber().value_or(QStringLiteral("unknown"));
    if (isPlaceholder(machine)) {
        machine = alternativePlatformSerialNumber();
    }
    return Diagnostics::shown(machine) + QChar(u'-') + services().bundle->version();
}

QString QrvAPI::alternativePlatformSerialNumber() {
    QString &kept = processWide().alternativeSerial;
    if (kept.isNull()) {
        if (const auto address = services().hardware->firstEthernetAddress()) {
            kept = QString::fromLatin1(address->toHex().toUpper());
        }
    }
    return kept;
}

QString QrvAPI::baseUrl() {
    return RequestUrls::base(services().service.apiHost, services().bundle->version(), macSerial());
}

bool QrvAPI::apiRequest(const QString &url) {
    if (!m_connected) {
        return false;
    }
    const auto escaped = RequestUrls::escaped(url);
    if (!escaped) {
        return false;
    }
    m_requestedKind = m_record.kind;
    // The answer of another request may have cleared it.
    const auto asRequested = [this] {
        m_record.kind = m_requestedKind;
    };
    const bool started = services().urls->download(
        *escaped, this,
        [this, asRequested, refused = false]() mutable {
            asRequested();
            return std::exchange(refused, true) ? decideOtherDestination() : decideDestination();
        },
        [this, asRequested] {
            asRequested();
            downloadDidFinish();
            downloadEnded();
        },
        [this, asRequested](const platform::UrlError &error) {
            asRequested();
            downloadDidFail(error);
            downloadEnded();
        });
    m_openDownloads += started ? 1 : 0;
    return started;
}

void QrvAPI::downloadEnded() {
    --m_openDownloads;
    m_answers.inOrder([this] {
        if (m_openDownloads == 0 && std::exchange(m_listWanted, false)) {
            cmdAuth(QString());
        }
    });
}

void QrvAPI::requestListAgain() {
    m_listWanted = m_openDownloads > 0;
    if (!m_listWanted) {
        cmdAuth(QString());
    }
}

bool QrvAPI::cmdAuth(const QString & /*text*/) {
    const QString version = services().bundle->version();
    m_record.kind = QrvApiRequest::Auth;
    const QString url = RequestUrls::base(services().service.apiHost, version, macSerial());
    Diagnostics::log(QStringLiteral("version is ") + version);
    Diagnostics::log(QStringLiteral("new url ") + url);
    return apiRequest(url);
}

bool QrvAPI::setParameters(const QString & /*text*/, const QString &parameters) {
    m_record.kind = QrvApiRequest::Parameters;
    return apiRequest(RequestUrls::parameters(baseUrl(), parameters));
}

void QrvAPI::getLease(const QString & /*text*/) {}

void QrvAPI::freeRequest() {
    if (m_record.kind == QrvApiRequest::Auth) {
        m_record.clientIP = QString();
        m_record.clientCountry = QString();
        m_record.hasLocations = false;
    }
    m_record.kind = QrvApiRequest::None;
}

QString QrvAPI::decideDestination() {
    m_destinationFile = services().temporaryFolder + QChar(u'/') + QrvApiRequest::kindName(m_record.kind) +
                        QChar(u'-') +
                        QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    return m_destinationFile;
}

QString QrvAPI::decideOtherDestination() {
    const QString folder = services().account.library() + QStringLiteral("/Caches/com.tallowind.Quorvane");
    QDir().mkpath(folder);
    m_destinationFile = folder + QChar(u'/') + QFileInfo(m_destinationFile).fileName();
    return m_destinationFile;
}

void QrvAPI::downloadDidFinish() {
    const QString path = std::exchange(m_destinationFile, QString());
    // Read now: a request of the same kind within the same second has the same file.
    const QByteArray text = path.isEmpty() ? QByteArray() : TextFile::readBytes(path);
    m_answers.read(
        text, [this, kind = m_record.kind, path](const auto &answer) { answerRead(kind, path, answer); });
}

void QrvAPI::answerRead(quint32 kind, const QString &path, const std::optional<ReadAnswer> &answer) {
    m_record.kind = kind;
    if (!answer) {
        freeRequest();
        return;
    }
    m_attemptCount = 0;
    recordAnswer(*answer);
    QFile::remove(path);
    if (m_delegate != nullptr) {
        const std::lock_guard lock(m_answerLock);
        m_delegate->qrvAnswer(*this);
    }
}

void QrvAPI::recordAnswer(const ReadAnswer &answer) {
    const AnswerTable &table = answer.table;
    if (const QString status = table.value(QStringLiteral("STATUS")); !status.isNull()) {
        m_record.status = static_cast<qint8>(integerValue(status));
    }
    m_record.hasClientIP = false;
    if (m_record.kind == QrvApiRequest::Auth) {
        if (const QString code = table.value(QStringLiteral("CC")); !code.isNull()) {
            m_record.clientCountry = code;
        }
        if (const QString address = table.value(QStringLiteral("ClientIP")); !address.isNull()) {
            m_record.clientIP = address;
            m_record.hasClientIP = true;
        }
        if (!table.value(QStringLiteral("LOCATIONS")).isNull()) {
            m_servers.setLocations(answer.locations);
            m_record.hasLocations = true;
        }
    }
    if (table.servers.isEmpty()) {
        return;
    }
    if (const qsizetype leftOut = table.servers.leftOut(); leftOut > 0) {
        Diagnostics::log(QStringLiteral("server list: %1 lines beyond the first %2 are left out")
                             .arg(leftOut)
                             .arg(ServerLines::maximumLines));
    }
    m_servers.setServerList(table.servers);
    m_record.servers = answer.servers;
    m_servers.setServers(m_record.servers);
}

void QrvAPI::downloadDidFail(const platform::UrlError &error) {
    m_answers.inOrder([this, error] {
        if (m_delegate != nullptr) {
            m_delegate->qrvFailed(error);
        }
    });
}

void QrvAPI::showNotification(const QString &title) {
    services().workspace->notify(title, QStringLiteral("Quorvane"));
}

} // namespace quorvane
