#include "DiagnosticReport.h"

#include "frontend/privileges/QrvCredentials.h"
#include "frontend/support/Preferences.h"
#include "frontend/support/TextFile.h"
#include "frontend/tunnel/LogVerdict.h"
#include "platform/HotKeyService.h"
#include "platform/Platform.h"
#include "platform/SystemFacts.h"
#include "platform/TrayHosts.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace quorvane::DiagnosticReport {

namespace {

constexpr qsizetype logLines = 20;
constexpr qsizetype longestLine = 200;
/// A shorter name is a part of too many words.
constexpr qsizetype shortestName = 3;
const QString hidden = QStringLiteral("*****");

platform::Platform &services() {
    return platform::Platform::current();
}

QString tray() {
    const platform::TrayHosts &hosts = *services().trayHosts;
    if (hosts.notifierHost()) {
        return QStringLiteral("shows status notifier items");
    }
    return hosts.embeddingTray() ? QStringLiteral("embeds windows") : QStringLiteral("none");
}

QString verdict(const QString &log) {
    switch (LogVerdict::of(log).outcome) {
    case LogVerdict::Outcome::Undecided:
        return QStringLiteral("undecided");
    case LogVerdict::Outcome::Up:
        return QStringLiteral("came up");
    case LogVerdict::Outcome::WithErrors:
        return QStringLiteral("came up with errors");
    case LogVerdict::Outcome::Failed:
        return QStringLiteral("failed");
    }
    return {};
}

QStringList lastLines(const QString &log) {
    QStringList lines = log.split(u'\n', Qt::SkipEmptyParts);
    lines = lines.mid(std::max<qsizetype>(0, lines.size() - logLines));
    for (QString &line : lines) {
        line.truncate(longestLine);
    }
    return lines;
}

QStringList preferences() {
    QStringList lines;
    for (const platform::PreferenceEntry &entry : platform::preferenceTable) {
        if (entry.secret) {
            continue;
        }
        QString value;
        switch (entry.type) {
        case platform::PreferenceType::Text:
            value = Preferences::text(entry.preference);
            break;
        case platform::PreferenceType::Integer:
            value = QString::number(Preferences::integer(entry.preference));
            break;
        case platform::PreferenceType::Boolean:
            value = Preferences::boolean(entry.preference) ? QStringLiteral("true") : QStringLiteral("false");
            break;
        }
        value.truncate(longestLine);
        lines.append(QString::fromLatin1(entry.key) + QStringLiteral(" = ") + value.simplified());
    }
    return lines;
}

/// Longer ones first: a secret may be a part of another one.
QStringList secrets() {
    const QrvCredentials &credentials = QrvCredentials::sharedInstance();
    QStringList found{credentials.userName(),
                      credentials.rootPassword(),
                      credentials.vpnUserName(),
                      credentials.vpnPassword(),
                      Preferences::text(Preference::VpnUsername),
                      Preferences::text(Preference::VpnPassword)};
    found.removeIf([](const QString &secret) { return secret.isEmpty(); });
    std::sort(found.begin(), found.end(),
              [](const QString &one, const QString &other) { return one.size() > other.size(); });
    return found;
}

void replaceName(QString &text, const QString &name) {
    if (name.size() >= shortestName) {
        static const QString word = QStringLiteral("(?<![\\w])%1(?![\\w])");
        text.replace(QRegularExpression(word.arg(QRegularExpression::escape(name)),
                                        QRegularExpression::UseUnicodePropertiesOption),
                     QStringLiteral("(user)"));
    }
}

} // namespace

QString masked(const QString &text) {
    QString result = text;
    const QStringList hiddenTexts = secrets();
    for (const QString &secret : hiddenTexts) {
        result.replace(secret, hidden);
    }
    const platform::UserAccount &account = services().account;
    if (account.home.size() > 1) {
        result.replace(account.home, QStringLiteral("~"));
    }
    replaceName(result, account.fullName);
    replaceName(result, account.login);
    static const QRegularExpression ipv4(QStringLiteral("\\b(\\d{1,3}\\.\\d{1,3})\\.\\d{1,3}\\.\\d{1,3}\\b"));
    result.replace(ipv4, QStringLiteral("\\1.x.x"));
    // Also hardware addresses. Times of a day have fewer colons.
    static const QRegularExpression colons(
        QStringLiteral("(?<![\\w:])([0-9A-Fa-f]{1,4}):(?:[0-9A-Fa-f]{0,4}:){2,7}[0-9A-Fa-f]{0,4}(?![\\w:])"));
    result.replace(colons, QStringLiteral("\\1:x"));
    static const QRegularExpression shortened(
        QStringLiteral("(?<![\\w:])([0-9A-Fa-f]{1,4})(?::[0-9A-Fa-f]{1,4})*::(?:[0-9A-Fa-f]{1,4}:?)*"));
    result.replace(shortened, QStringLiteral("\\1:x"));
    return result;
}

QString text() {
    const QString openVpn = TextFile::read(services().account.documents() + QStringLiteral("/openvpn.log"));
    const QString sessions = TextFile::read(services().account.documents() + QStringLiteral("/qrvp.log"));
    QStringList lines{QStringLiteral("Quorvane: ") + services().bundle->version()};
    lines += platform::systemFacts();
    lines.append(QStringLiteral("Tray: ") + tray());
    lines.append(QStringLiteral("Global hot keys: ") +
                 (services().hotKeys->isAvailable() ? QStringLiteral("yes") : QStringLiteral("no")));
    lines.append(QStringLiteral("\nPreferences:"));
    lines += preferences();
    lines.append(QStringLiteral("\nLast attempt: ") + verdict(openVpn));
    lines += lastLines(openVpn);
    lines.append(QStringLiteral("\nEarlier attempts:"));
    lines += lastLines(sessions);
    return masked(lines.join(u'\n') + u'\n');
}

} // namespace quorvane::DiagnosticReport
