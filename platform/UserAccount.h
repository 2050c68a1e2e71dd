#pragma once

#include <QString>

namespace quorvane::platform {

/// The user that the program runs for.
struct UserAccount {
    QString home;     ///< home folder, absolute, no trailing slash
    QString fullName; ///< from the account database; the login when it contains none
    QString login;

    [[nodiscard]] QString library() const;
    /// The program's documents: configuration, credentials and logs.
    [[nodiscard]] QString documents() const;
    /// The property list that holds the preferences.
    [[nodiscard]] QString preferencesFile() const;
    [[nodiscard]] static UserAccount current();
};

} // namespace quorvane::platform
