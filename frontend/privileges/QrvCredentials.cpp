#include "QrvCredentials.h"

#include "OneTimeSecrets.h"
#include "ScriptUtil.h"
#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"

#include <ctime>
#include <mutex>
#include <random>

namespace {

const QString userKey = QStringLiteral("un");
const QString passwordKey = QStringLiteral("up");

struct VpnPair {
    std::mutex mutex;
    QString user;
    QString password;
};

VpnPair &vpnPair() {
    static VpnPair pair;
    return pair;
}

/// The generator that is never seeded: it only chooses between the three families of characters.
std::uint_fast32_t drawFamily() {
    static std::mutex mutex;
    static std::mt19937 engine; // NOLINT(bugprone-random-generator-seed): unseeded by design
    const std::lock_guard lock(mutex);
    return engine() % 3;
}

QChar randomAlphaNumeric(std::mt19937 &engine) {
    switch (drawFamily()) {
    case 2:
        return QChar(static_cast<char16_t>(u'a' + engine() % 26));
    case 1:
        return QChar(static_cast<char16_t>(u'A' + engine() % 26));
    default:
        return QChar(static_cast<char16_t>(u'0' + engine() % 10));
    }
}

QVariant stored(const QString &scrambled) {
    return scrambled.isNull() ? QVariant() : QVariant(scrambled);
}

} // namespace

QrvCredentials &QrvCredentials::sharedInstance() {
    static QrvCredentials instance;
    return instance;
}

void QrvCredentials::saveUserName(const QString &user, const QString &password) {
    auto &services = platform::Platform::current();
    services.preferences->setValues(
        {{userKey, stored(encode(user))}, {passwordKey, stored(encode(password))}});
    services.userDefaults->save();
}

QString QrvCredentials::userName() const {
    return decode(platform::Platform::current().preferences->string(userKey));
}

QString QrvCredentials::rootPassword() const {
    return decode(platform::Platform::current().preferences->string(passwordKey));
}

void QrvCredentials::saveVpnUserName(const QString &user, const QString &password) {
    OneTimeSecrets::shared().add(user);
    OneTimeSecrets::shared().add(password);
    const std::lock_guard lock(vpnPair().mutex);
    vpnPair().user = user;
    vpnPair().password = password;
}

QString QrvCredentials::vpnUserName() const {
    const std::lock_guard lock(vpnPair().mutex);
    return vpnPair().user;
}

QString QrvCredentials::vpnPassword() const {
    const std::lock_guard lock(vpnPair().mutex);
    return vpnPair().password;
}

bool QrvCredentials::credentialsIsValid() {
    const QString path = platform::Platform::current().bundle->pathForResource(
        QStringLiteral("test_credentials"), QStringLiteral("sh"));
    const QString quoted = QChar(u'\'') + Diagnostics::shown(path) + QChar(u'\'');
    QString output;
    QString error;
    const bool valid = ScriptUtil().runProcessAsAdministrator(QStringLiteral("ls"), {quoted}, output, error);
    Diagnostics::log(valid ? QStringLiteral("credentials Is Valid")
                           : QStringLiteral("credentials Is Not Valid"));
    return valid;
}

void QrvCredentials::getStatus(int terminationStatus) const {
    Diagnostics::log(QStringLiteral("term stat %1").arg(terminationStatus));
}

QString QrvCredentials::encode(const QString &text) {
    if (text.isEmpty()) {
        return {};
    }
    std::mt19937 engine(static_cast<std::mt19937::result_type>(std::time(nullptr)));
    QString scrambled;
    scrambled.reserve(2 * text.size() + 1);
    for (const QChar unit : text) {
        scrambled += unit;
        scrambled += randomAlphaNumeric(engine);
    }
    scrambled += QChar(u'\0');
    return scrambled;
}

QString QrvCredentials::decode(const QString &text) {
    if (text.size() < 2) {
        return {};
    }
    QString plain;
    for (qsizetype i = 0; i < text.size() / 2; ++i) {
        plain += text.at(2 * i);
    }
    return plain;
}

QString QrvCredentials::sanitizeStringByRemovingLoginAndPassword(const QString &text) {
    QString result = text;
    const QrvCredentials &credentials = sharedInstance();
    for (const QString &secret : {credentials.userName(), credentials.rootPassword()}) {
        if (!secret.isEmpty()) {
            result.replace(secret, QStringLiteral("*****"));
        }
    }
    return result;
}

QString QrvCredentials::maskForLog(const QString &text) {
    return OneTimeSecrets::shared().masked(sanitizeStringByRemovingLoginAndPassword(text));
}
