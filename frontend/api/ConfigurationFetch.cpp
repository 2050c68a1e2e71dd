#include "ConfigurationFetch.h"

#include "ConfigurationAnswer.h"
#include "QrvAPI.h"
#include "RequestUrls.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/Diagnostics.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/SessionLog.h"
#include "frontend/support/TextFile.h"
#include "platform/BackgroundWork.h"
#include "platform/Platform.h"
#include "platform/UrlLoader.h"

#include <QDir>
#include <QRandomGenerator>
#include <QStringDecoder>
#include <mutex>

namespace quorvane {

/// The number of the last request. It is locked while an answer is stored, so that no request begins between
/// the check and the writing.
struct ConfigurationFetch::Newest {
    std::mutex mutex;
    quint64 number = 0;
};

namespace {

/// A copy of the group's fields that the work needs: the main thread may change the group's lists meanwhile.
struct Request {
    QByteArray url;
    QString title;
    QString user;
    QString password;
    QString countryCode;
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

void storeAnswer(const Request &request, const QString &configuration) {
    const QString folder = platform::Platform::current().account.documents();
    const QString path = folder + QStringLiteral("/qrvp.ovpn");
    QDir().mkpath(folder);
    TextFile::replace(path, configuration.toUtf8());
    SessionLog::ensureExists();
    SessionLog::append(QStringLiteral("trying to connect"), request.title);
    Preferences::store({{Preference::VpnConfigPath, path},
                        {Preference::VpnUsername, storedText(request.user)},
                        {Preference::VpnPassword, storedText(request.password)},
                        {Preference::CountryCode, storedText(request.countryCode)}});
    QrvCredentials::sharedInstance().saveVpnUserName(request.user, request.password);
}

/// True when the answer contained a configuration, which is stored then.
bool accept(const Request &request, const QString &answer) {
    if (ConfigurationAnswer::isArgumentError(answer)) {
        return false;
    }
    const QString configuration = ConfigurationAnswer::getCertificate(answer);
    if (configuration.isNull()) {
        Diagnostics::log(QStringLiteral("Certificate nil"));
        return false;
    }
    Diagnostics::log(QStringLiteral("Certificate is downloaded"));
    storeAnswer(request, configuration);
    return true;
}

} // namespace

ConfigurationFetch::ConfigurationFetch(QrvAPI &api, QObject *parent)
    : QObject(parent), m_api(api), m_newest(std::make_shared<Newest>()) {}

ConfigurationFetch::~ConfigurationFetch() = default;

void ConfigurationFetch::start(const QString &title, const QrvVpnDataPointer &data,
                               const QString &transport) {
    const QStringList &usable = data->filteredIpAdressArray;
    const QString address = usable.at(QRandomGenerator::global()->bounded(usable.size()));
    const QString url = RequestUrls::configuration(
        platform::Platform::current().service.apiHost, platform::Platform::current().bundle->version(),
        address, Diagnostics::shown(data->user), m_api.macSerial(), transport);
    Diagnostics::log(QStringLiteral("downloadCertificateForSelectedItem url: ") + url);
    Q_EMIT prepared();
    const std::lock_guard lock(m_newest->mutex);
    const quint64 number = ++m_newest->number;
    const Request request{url.toUtf8(), title, data->user, data->pass, data->countryCode};
    const auto success = std::make_shared<bool>(false);
    platform::Platform::current().background->run(
        [request, number, newest = m_newest, success] {
            const QString answer = textOf(platform::Platform::current().urls->fetch(request.url));
            const std::lock_guard storing(newest->mutex);
            *success = number == newest->number && accept(request, answer);
        },
        this,
        [this, number, success] {
            if (number == m_newest->number) {
                report(*success);
            }
        });
}

void ConfigurationFetch::report(bool success) {
    if (success) {
        Q_EMIT stored();
        Q_EMIT finished();
    } else {
        Q_EMIT failed();
    }
}

} // namespace quorvane
