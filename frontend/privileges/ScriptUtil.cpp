#include "ScriptUtil.h"

#include "AdministratorPair.h"
#include "RememberedDns.h"
#include "SessionReset.h"
#include "frontend/support/Diagnostics.h"
#include "platform/Platform.h"
#include "platform/ScriptingService.h"

#include <exception>

namespace quorvane {

namespace {

const QString &firstResolver() {
    static const QString address = QStringLiteral("8.8.8.8");
    return address;
}

const QString &secondResolver() {
    static const QString address = QStringLiteral("8.8.4.4");
    return address;
}

bool isPresentButEmpty(const QString &text) {
    return text.isEmpty() && !text.isNull();
}

QString describe(const platform::ScriptResult &result) {
    if (result.errorNumber == platform::ScriptingService::refused) {
        return QStringLiteral("The administrator password is required to do this.");
    }
    return result.errorMessage;
}

} // namespace

bool ScriptUtil::runProcessAsAdministrator(const QString &launchPath, const QStringList &arguments,
                                           QString &output, QString &errorDescription) {
    const QString line = launchPath + QChar(u' ') + arguments.join(u' ');
    const auto [user, password] = AdministratorPair::stored();
    if (isPresentButEmpty(user) || isPresentButEmpty(password)) {
        return false;
    }
    platform::ScriptResult result;
    try {
        if (m_knownRefusal.isNull()) {
            Diagnostics::log(QStringLiteral("execute script"));
        }
        result = platform::Platform::current().scripting->runAsAdministrator(line, user, password);
        m_refusal = result.succeeded ? QString() : Diagnostics::shown(result.errorMessage);
        m_otherQuestion = result.otherQuestion;
        m_openOutput = result.openOutput;
        const bool logged = m_knownRefusal.isNull() || m_refusal != m_knownRefusal;
        if (!m_knownRefusal.isNull() && logged) {
            Diagnostics::log(QStringLiteral("execute script"));
        }
        if (logged) {
            Diagnostics::log(QStringLiteral("Apple script error: ") +
                             Diagnostics::shown(result.errorMessage));
        }
    } catch (const std::exception &) {
        return false; // by design without a report and without a reset
    }
    if (result.succeeded) {
        output = result.text;
        return true;
    }
    errorDescription = describe(result);
    SessionReset::request();
    return false;
}

bool ScriptUtil::getSystemDns() {
    return getEthernetDns() && getWifiDns();
}

bool ScriptUtil::getEthernetDns() {
    return listsResolvers(QStringLiteral("networksetup -getdnsservers Ethernet"));
}

bool ScriptUtil::getWifiDns() {
    return listsResolvers(QStringLiteral("networksetup -getdnsservers Wi-Fi"));
}

bool ScriptUtil::listsResolvers(const QString &command) {
    Diagnostics::log(QStringLiteral("getSystemDns"));
    Diagnostics::log(QStringLiteral("script: do shell script \"") + command + QStringLiteral("\" "));
    const platform::ScriptResult result = platform::Platform::current().scripting->runAsUser(command);
    Diagnostics::log(QStringLiteral("error: ") + Diagnostics::shown(result.errorMessage));
    if (!result.succeeded || result.text.isNull()) {
        return false;
    }
    // A plain substring test: the order, further servers, and longer addresses that contain these do not
    // matter.
    for (const QString &address : {firstResolver(), secondResolver()}) {
        if (!result.text.contains(address)) {
            Diagnostics::log(QStringLiteral("ip not found ") + address);
            return false;
        }
        Diagnostics::log(QStringLiteral("ip found ") + address);
    }
    return true;
}

bool ScriptUtil::setSystemDns() {
    const QString servers = firstResolver() + QChar(u' ') + secondResolver();
    const RememberedDns before = RememberedDns::stored();
    RememberedDns present = before;
    present.update(servers);
    present.store(); // now: the program may be ended while the servers are set
    QString output;
    QString error;
    bool last = false;
    bool isAnySet = false;
    // Only the last result counts, so a machine without one of the services still counts as set.
    for (const QString &service : RememberedDns::services()) {
        const QString command =
            QStringLiteral("networksetup -setdnsservers ") + service + QChar(u' ') + servers;
        last = runProcessAsAdministrator(command, {}, output, error);
        isAnySet = isAnySet || last;
    }
    if (!isAnySet) {
        before.store();
    }
    Diagnostics::log(QStringLiteral("output: ") + Diagnostics::shown(output));
    return last;
}

bool ScriptUtil::restoreSystemDns(QString &problem) {
    RememberedDns remembered = RememberedDns::stored();
    bool areAllSet = true;
    for (const QString &service : RememberedDns::services()) {
        const QString words = remembered.words(service);
        if (words.isNull()) {
            continue;
        }
        QString output;
        QString error;
        const QString command =
            QStringLiteral("networksetup -setdnsservers ") + service + QChar(u' ') + words;
        if (runProcessAsAdministrator(command, {}, output, error)) {
            remembered.forget(service);
        } else {
            areAllSet = false;
            problem = Diagnostics::shown(error);
        }
    }
    remembered.store();
    Diagnostics::log(areAllSet ? QStringLiteral("name servers are put back")
                               : QStringLiteral("name servers are not put back"));
    return areAllSet;
}

} // namespace quorvane
