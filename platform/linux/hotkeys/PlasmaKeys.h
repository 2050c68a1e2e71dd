#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace quorvane::platform {

/// Plasma's table of global keys (org.kde.kglobalaccel on the session bus), read only. Its portal lists a
/// shortcut as bound also when another program holds the keys; only this table shows that it has none. Main
/// thread; nothing waits, and on other desktops nothing is reported.
class PlasmaKeys {
public:
    using Found = std::function<void(const QStringList &)>;

    PlasmaKeys();
    ~PlasmaKeys();
    PlasmaKeys(const PlasmaKeys &) = delete;
    PlasmaKeys &operator=(const PlasmaKeys &) = delete;

    /// Calls `found` once with the shortcuts (keys of `triggers`, whose values are such as "LOGO+1") that
    /// have no keys of their own while another program holds those of their trigger, if there are any.
    /// `components` are the names under which the program's shortcuts may be stored. Replaces an earlier
    /// search.
    void findTaken(const QDBusConnection &bus, const QStringList &components,
                   const QHash<QString, QString> &triggers, Found found);
    /// Ends the search without a result.
    void cancel();

private:
    class Search;

    std::unique_ptr<Search> m_search;
};

} // namespace quorvane::platform
