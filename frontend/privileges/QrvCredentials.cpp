#include "QrvCredentials.h"

#include "AdministratorPair.h"
#include "ScriptUtil.h"
#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"

#include <mutex>

namespace quorvane {

namespace {

struct VpnPair {
    std::mutex mutex;
    QString user;
    QString password;
};

VpnPair &vpnPair() {
    static VpnPair pair;
    return pair;
}

} // namespace

QrvCredentials &QrvCredentials::sharedInstance() {
    static QrvCredentials instance;
    return instance;
}

void QrvCredentials::saveUserName(const QString &user, const QString &password) {
    AdministratorPair::store(user, password);
}

QString QrvCredentials::userName() const {
    return AdministratorPair::stored().user;
}

QString QrvCredentials::rootPassword() const {
    return AdministratorPair::stored().password;
}

void QrvCredentials::saveVpnUserName(const QString &user, const QString &password) {
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
    QString otherQuestion;
    return credentialsIsValid(otherQuestion);
}

bool QrvCredentials::credentialsIsValid(QString &otherQuestion) {
    const QString path = platform::Platform::current().bundle->pathForResource(
        QStringLiteral("test_credentials"), QStringLiteral("sh"));
    if (path.contains(u'\'')) {
        // Nothing is escaped between the quotes: root's shell would run the text behind the apostrophe as
        // commands.
        Diagnostics::log(QStringLiteral("credentials Is Not Valid: there is an apostrophe in %1").arg(path));
        return false;
    }
    const QString quoted = QChar(u'\'') + Diagnostics::shown(path) + QChar(u'\'');
    QString output;
    QString error;
    ScriptUtil script;
    const bool valid = script.runProcessAsAdministrator(QStringLiteral("ls"), {quoted}, output, error);
    otherQuestion = script.otherQuestion();
    Diagnostics::log(valid ? QStringLiteral("credentials Is Valid")
                           : QStringLiteral("credentials Is Not Valid"));
    return valid;
}

void QrvCredentials::getStatus(int terminationStatus) const {
    Diagnostics::log(QStringLiteral("term stat %1").arg(terminationStatus));
}

QString QrvCredentials::encode(const QString &text) {
    return AdministratorPair::encode(text);
}

QString QrvCredentials::decode(const QString &text) {
    return AdministratorPair::decode(text);
}

QString QrvCredentials::sanitizeStringByRemovingLoginAndPassword(const QString &text) {
    QString result = text;
    const auto [user, password] = AdministratorPair::stored();
    for (const QString &secret : {user, password}) {
        if (!secret.isEmpty()) {
            result.replace(secret, QStringLiteral("*****"));
        }
    }
    return result;
}

} // namespace quorvane
