#pragma once

#include <QVariantMap>

namespace quorvane::platform {

class PreferencesStore;

/// The layer between controls and the preferences: edits of bound controls are held here until save() or
/// revert(), or are stored at once while appliesImmediately is true (the initial state). Main thread only.
/// Does not own the store, which must outlive it.
class UserDefaultsController {
public:
    explicit UserDefaultsController(PreferencesStore &store);

    void setAppliesImmediately(bool immediately);

    [[nodiscard]] bool appliesImmediately() const { return m_immediate; }

    /// Receives an edit of a bound control.
    void setValue(const QString &key, const QVariant &value);
    /// The pending edit under the key if there is one, else the stored value.
    [[nodiscard]] QVariant value(const QString &key) const;
    /// value(), converted as the store converts.
    [[nodiscard]] qint64 integer(const QString &key) const;
    [[nodiscard]] bool boolean(const QString &key) const;
    [[nodiscard]] QString string(const QString &key) const;

    [[nodiscard]] bool hasPendingEdits() const { return !m_pending.isEmpty(); }

    /// Stores every pending edit and makes the store write its file.
    void save();
    /// Drops every pending edit.
    void revert();

private:
    PreferencesStore &m_store;
    QVariantMap m_pending;
    bool m_immediate = true;
};

} // namespace quorvane::platform
