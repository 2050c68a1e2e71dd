#include "ConfigurationFetch.h"

#include "ConfigurationAnswer.h"
#include "QrvAPI.h"
#include "RequestUrls.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/SessionLog.h"
#include "frontend/support/TextFile.h"
#include "platform/Platform.h"
#include "platform/UrlLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>
#include <QRandomGenerator>
#include <QStringDecoder>
#include <QThreadPool>

namespace quorvane {

namespace {

/// A copy of the group's fields that the task needs: the main thread may change the group's lists meanwhile.
struct Task {
    QByteArray url;
    QString title;
    QString user;
    QString password;
    QString countryCode;
    std::shared_ptr<const std::atomic<quint64>> lastRequest;
    quint64 number;

    [[nodiscard]] bool superseded() const { return number != *lastRequest; }
};

QString textOf(const std::optional<QByteArray> &body) {
    if (!body || body->isEmpty()) {
        return {};
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(*body);
    return decoder.hasError() ? QString() : text;
}

QVariant storedText(const QString &text) {
    return text.isNull() ? QVariant() : QVariant(text);
}

void storeAnswer(const Task &task, const QString &configuration) {
    const QString folder = platform::Platform::current().account.documents();
    const QString path = folder + QStringLiteral("/qrvp.ovpn");
    QDir().mkpath(folder);
    TextFile::replace(path, configuration.toUtf8());
    SessionLog::ensureExists();
    SessionLog::append(QStringLiteral("trying to connect ") + task.title + QChar(u'\n'));
    Preferences::store({{Preference::VpnConfigPath, path},
                        {Preference::VpnUsername, storedText(task.user)},
                        {Preference::VpnPassword, storedText(task.password)},
                        {Preference::CountryCode, storedText(task.countryCode)}});
    QrvCredentials::sharedInstance().saveVpnUserName(task.user, task.password);
}

/// True when a configuration was stored.
bool runTask(const Task &task) {
    const QString text = textOf(platform::Platform::current().urls->fetch(task.url));
    if (task.superseded()) {
        return false;
    }
    if (ConfigurationAnswer::isArgumentError(text)) {
        return false;
    }
    const QString configuration = ConfigurationAnswer::getCertificate(text);
    if (configuration.isNull()) {
        Diagnostics::log(QStringLiteral("Certificate nil"));
        return false;
    }
    Diagnostics::log(QStringLiteral("Certificate is downloaded"));
    storeAnswer(task, configuration);
    return true;
}

} // namespace

ConfigurationFetch::ConfigurationFetch(QrvAPI &api, QObject *parent) : QObject(parent), m_api(api) {}

void ConfigurationFetch::start(const QString &title, const QrvVpnDataPointer &data,
                               const QString &transport) {
    const QStringList &usable = data->filteredIpAdressArray;
    const QString address = usable.at(QRandomGenerator::global()->bounded(usable.size()));
    const QString url = RequestUrls::configuration(
        platform::Platform::current().service.apiHost, platform::Platform::current().bundle->version(),
        address, Diagnostics::shown(data->user), m_api.macSerial(), transport);
    Diagnostics::log(QStringLiteral("downloadCertificateForSelectedItem url: ") + url);
    Q_EMIT prepared();
    const Task task{url.toUtf8(),      title,         data->user,      data->pass,
                    data->countryCode, m_lastRequest, ++*m_lastRequest};
    // The context lives on the main thread: a result that arrives after this object was destroyed is dropped
    // there.
    QThreadPool::globalInstance()->start([task, self = QPointer(this)] {
        const bool success = runTask(task);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [task, self, success] {
                if (!self || task.superseded()) {
                    return;
                }
                if (success) {
                    Q_EMIT self->stored();
                    Q_EMIT self->finished();
                } else {
                    Q_EMIT self->failed();
                }
            },
            Qt::QueuedConnection);
    });
}

} // namespace quorvane
