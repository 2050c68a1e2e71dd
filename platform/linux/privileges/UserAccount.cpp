#include "platform/UserAccount.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace quorvane::platform {

namespace {

UserAccount fromDatabase() {
    std::vector<char> buffer(4096);
    passwd entry{};
    passwd *found = nullptr;
    constexpr std::size_t maximumSize = std::size_t{1} << 20U;
    while (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < maximumSize) {
        buffer.resize(buffer.size() * 2);
    }
    if (found == nullptr) {
        return {QStringLiteral("/"), QString(), QString::number(::getuid())};
    }
    const QString gecos = QString::fromUtf8(entry.pw_gecos != nullptr ? entry.pw_gecos : "");
    return {QFile::decodeName(entry.pw_dir), gecos.section(u',', 0, 0), QString::fromUtf8(entry.pw_name)};
}

} // namespace

QString UserAccount::library() const {
    return home + QStringLiteral("/Library");
}

QString UserAccount::documents() const {
    return home + QStringLiteral("/Documents/Quorvane");
}

QString UserAccount::preferencesFile() const {
    return library() + QStringLiteral("/Preferences/com.tallowind.Quorvane.plist");
}

UserAccount UserAccount::current() {
    UserAccount account = fromDatabase();
    if (account.fullName.isEmpty()) {
        account.fullName = account.login;
    }
    const QString environment = QFile::decodeName(qgetenv("HOME"));
    if (environment.startsWith(u'/')) {
        account.home = environment;
    }
    account.home = QDir::cleanPath(account.home);
    return account;
}

} // namespace quorvane::platform
