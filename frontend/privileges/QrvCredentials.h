#pragma once

#include <QString>

namespace quorvane {

/// The administrator's name and password, stored scrambled in the preferences, and the one-time VPN pair,
/// held in memory. Scrambling only avoids plain text; it is no encryption. Reading, writing and masking are
/// safe from any thread.
class QrvCredentials {
public:
    [[nodiscard]] static QrvCredentials &sharedInstance();

    /// Stores both under "un" and "up"; an empty text removes its value.
    void saveUserName(const QString &user, const QString &password);
    /// Null when none is stored.
    [[nodiscard]] QString userName() const;
    [[nodiscard]] QString rootPassword() const;

    void saveVpnUserName(const QString &user, const QString &password);
    [[nodiscard]] QString vpnUserName() const;
    [[nodiscard]] QString vpnPassword() const;

    /// Whether the platform accepts the stored pair for administrator rights. Blocks until the platform has
    /// answered; a refusal returns the session to not hidden.
    [[nodiscard]] bool credentialsIsValid();
    /// The same, and what was asked beside the password, in the words of the prompt; null for nothing.
    [[nodiscard]] bool credentialsIsValid(QString &otherQuestion);
    /// Logs the termination status of a command.
    void getStatus(int terminationStatus) const;

    /// Each unit of the text followed by a random letter or digit, U+0000 at the end. Null for an empty text.
    [[nodiscard]] static QString encode(const QString &text);
    /// Every second unit, from the first. Null for fewer than two units.
    [[nodiscard]] static QString decode(const QString &text);

    /// The text with the stored user name, then the stored password, replaced by "*****". The name is
    /// replaced first: a password that contains the name stays partly visible. The log applies it to every
    /// diagnostic line.
    [[nodiscard]] static QString sanitizeStringByRemovingLoginAndPassword(const QString &text);
};

} // namespace quorvane
