#pragma once

#include <QString>
#include <QVariantMap>

namespace quorvane::platform {

/// The program's contents folder: bin/quorvane, Info.plist and Resources/. Read once, then constant;
/// safe from any thread.
class Bundle {
public:
    /// `contents` is the folder's path; its Info.plist is read.
    explicit Bundle(const QString &contents);
    /// The contents folder of the running program: its real path with the last two components removed.
    [[nodiscard]] static Bundle ofExecutable();

    [[nodiscard]] QString contentsPath() const { return m_contents; }

    [[nodiscard]] QString resourcesPath() const;
    /// Path of the resource "name.type" (or "name" with an empty type); null when there is no such file.
    [[nodiscard]] QString pathForResource(const QString &name, const QString &type) const;
    /// A text from the information dictionary; null when absent.
    [[nodiscard]] QString info(const QString &key) const;
    /// "CFBundleVersion"; the empty text when absent.
    [[nodiscard]] QString version() const;
    /// "CFBundleIdentifier".
    [[nodiscard]] QString identifier() const;

private:
    QString m_contents;
    QVariantMap m_dictionary;
};

} // namespace quorvane::platform
