#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

namespace quorvane::platform {

/// The user's preferences: a flat table of typed values under text keys.
///
/// Values are texts (any UTF-16, U+0000 included), integers (qint64), booleans, reals and raw bytes. Every
/// later read in the process returns a value that was set. It may not be on the disk yet; synchronize() waits
/// until it is. All operations may be called from any thread.
class PreferencesStore {
public:
    virtual ~PreferencesStore() = default;

    /// The value under the key, or an invalid variant when there is none.
    [[nodiscard]] virtual QVariant value(const QString &key) const = 0;
    /// Stores several values as one change of the file. An invalid variant removes its key.
    virtual void setValues(const QVariantMap &values) = 0;
    /// The same without the file: the next change or synchronize() stores them there.
    virtual void setValuesUnwritten(const QVariantMap &values) = 0;
    /// Reads what other processes wrote and writes pending changes. False when the file could not be read or
    /// written; the values remain available in memory.
    virtual bool synchronize() = 0;
    /// Full path of the file that holds the preferences.
    [[nodiscard]] virtual QString filePath() const = 0;

    void setValue(const QString &key, const QVariant &value);
    void remove(const QString &key);

    /// The integer under the key; 0 when absent. Booleans are converted to 0 or 1, reals are truncated, a
    /// text is converted to the integer that it begins with (0 when it begins with none).
    [[nodiscard]] qint64 integer(const QString &key) const;
    /// Whether the value converts to an integer other than 0; true also for a text that begins with Y, y, T,
    /// t or a digit 1 to 9.
    [[nodiscard]] bool boolean(const QString &key) const;
    /// The text under the key, numbers converted to text; a null text when absent or of another type.
    [[nodiscard]] QString string(const QString &key) const;

    /// The same conversions for a given value.
    [[nodiscard]] static qint64 integerOf(const QVariant &value);
    [[nodiscard]] static bool booleanOf(const QVariant &value);
    [[nodiscard]] static QString stringOf(const QVariant &value);

protected:
    /// The value as stores hold it: every integer type as qint64, float as double, a null text or null bytes
    /// as empty ones, others unchanged.
    [[nodiscard]] static QVariant canonical(const QVariant &value);
};

} // namespace quorvane::platform
