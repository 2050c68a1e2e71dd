#include "AccountLookup.h"

#include <QByteArrayList>

#include <cerrno>
#include <mutex>
#include <pwd.h>
#include <vector>

namespace quorvane::platform {

namespace {

constexpr std::size_t maximumEntrySize = std::size_t{1} << 20U;

std::optional<Account> byLogin(const QByteArray &name) {
    std::vector<char> buffer(4096);
    passwd entry{};
    passwd *found = nullptr;
    while (::getpwnam_r(name.constData(), &entry, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < maximumEntrySize) {
        buffer.resize(buffer.size() * 2);
    }
    if (found == nullptr) {
        return std::nullopt;
    }
    return Account{found->pw_uid, QByteArray(found->pw_name)};
}

std::optional<Account> byFullName(const QByteArray &name) {
    // The iteration over the accounts has one position for the whole process.
    static std::mutex walking;
    const std::lock_guard lock(walking);
    std::vector<char> buffer(4096);
    passwd entry{};
    passwd *found = nullptr;
    std::optional<Account> result;
    ::setpwent();
    for (;;) {
        const int outcome = ::getpwent_r(&entry, buffer.data(), buffer.size(), &found);
        if (outcome == ERANGE && buffer.size() < maximumEntrySize) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (outcome != 0 || found == nullptr) {
            break;
        }
        const QByteArray comment = found->pw_gecos != nullptr ? QByteArray(found->pw_gecos) : QByteArray();
        if (comment.split(',').first() == name) {
            result = Account{found->pw_uid, QByteArray(found->pw_name)};
            break;
        }
    }
    ::endpwent();
    return result;
}

} // namespace

std::optional<Account> findAccount(const QByteArray &name) {
    if (name.isEmpty() || name.contains('\0')) {
        return std::nullopt;
    }
    const auto account = byLogin(name);
    return account ? account : byFullName(name);
}

} // namespace quorvane::platform
