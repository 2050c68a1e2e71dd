#pragma once

#include <QByteArray>
#include <optional>
#include <sys/types.h>

namespace quorvane::platform {

/// An account of this machine.
struct Account {
    uid_t id = 0;
    QByteArray login;
};

/// The account with this login, else the first one with this full name (the first field of its comment).
/// Any thread.
[[nodiscard]] std::optional<Account> findAccount(const QByteArray &name);

} // namespace quorvane::platform
