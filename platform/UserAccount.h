#pragma once

#include <QString>

namespace quorvane::platform {

/// The user that the program runs for.
struct UserAccount {
    QString home;     ///< home folder, absolute, no trailing slash
    QString fullName; ///< as the account database gives it; the login when it gives none
    QString login;

    [[nodiscard]] QString library() const;
    [[nodiscard]] static UserAccount current();
};

} // namespace quorvane::platform
