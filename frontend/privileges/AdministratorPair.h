#pragma once

#include <QString>

namespace quorvane {

/// The administrator's name and password as the preferences store them: scrambled, so that they cannot be
/// read at a glance. Scrambling is no encryption. Any thread.
struct AdministratorPair {
    /// Null when none is stored.
    QString user;
    QString password;

    /// Reads the stored pair.
    [[nodiscard]] static AdministratorPair stored();
    /// Stores both, and saves the pending edits of the user-defaults controller; an empty text removes its
    /// value.
    static void store(const QString &user, const QString &password);

    /// Each unit of the text followed by a random letter or digit, U+0000 at the end. Null for an empty text.
    [[nodiscard]] static QString encode(const QString &text);
    /// Every second unit, from the first. Null for fewer than two units.
    [[nodiscard]] static QString decode(const QString &text);
};

} // namespace quorvane
