#pragma once

#include <QVariantMap>

namespace quorvane::platform {

class PreferencesStore;

/// Stands between controls and the preferences: edits of bound controls are held here until save()
/// or revert(), or go straight through while appliesImmediately is true (the initial state).
/// Main thread only. Does not own the store, which must outlive it.
class UserDefaultsController {
public:
    explicit UserDefaultsController(PreferencesStore &store);

    void setAppliesImmediately(bool immediately);

    [[nodiscard]] bool appliesImmediately() const { return m_immediate; }

    /// Takes an edit of a bound control.
    void setValue(const QString &key, const QVariant &value);
    /// The pending edit under the key if there is one, else the stored value.
    [[nodiscard]] QVariant value(const QString &key) const;
    /// value(), read as the store reads.
    [[nodiscard]] qint64 integer(const QString &key) const;
    [[nodiscard]] bool boolean(const QString &key) const;
    [[nodiscard]] QString string(const QString &key) const;

    [[nodiscard]] bool hasPendingEdits() const { return !m_pending.isEmpty(); }

    /// Stores every pending edit and has the store write its file.
    void save();
    /// Drops every pending edit.
    void revert();

private:
    PreferencesStore &m_store;
    QVariantMap m_pending;
    bool m_immediate = true;
};

} // namespace quorvane::platform
