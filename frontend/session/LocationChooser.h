#pragma once

#include "frontend/api/QrvVpnDataList.h"

#include <QObject>
#include <QStringList>
#include <functional>

namespace quorvane {

class LocationList;
class QrvAPI;

/// The operations of the session that choosing a location uses. Main thread.
class LocationPaneDelegate {
public:
    virtual ~LocationPaneDelegate() = default;
    [[nodiscard]] virtual QStringList getDiscardList() const = 0;
    virtual void setRequiredUS(bool required) = 0;
    virtual void terminateVpn() = 0;
    virtual void stopQuorvane() = 0;
};

/// The user's choice in the location list: fills the list, keeps the choice in the preferences, and starts
/// the session anew where the user chose. Main thread.
class LocationChooser final : public QObject {
    Q_OBJECT

public:
    /// The list is not owned and must outlive this.
    explicit LocationChooser(LocationList &list, QObject *parent = nullptr);

    /// Neither is owned; both must outlive the use of this. Without an API client nothing can be chosen.
    void connectTo(QrvAPI *api, LocationPaneDelegate *delegate);

    [[nodiscard]] LocationList &list() const { return m_list; }

    /// Fills the list with the servers of the last answer.
    void updateServerList();
    /// Rebuilds the list and selects the stored location. No groups change nothing.
    void fillCountries(const QrvVpnDataList &servers);
    /// Rebuilds the list and keeps the selected location: the one with the same title and first address, else
    /// the first with the same title.
    void renew(const QrvVpnDataList &servers);
    /// Stores the list's choice in the preferences.
    void checkPopupCountry();
    /// The user chose the selected entry: the session starts anew there.
    void popupCountrySelected();
    /// The same for the entry with this id, if there is one and anything can be chosen.
    void choose(quint64 id);
    void setKeepsAddress(bool keeps);

Q_SIGNALS:
    /// The list consists of new entries.
    void rebuilt();
    void enabledChanged(bool enabled);
    /// The choice of keeping the same address was changed by the program.
    void keepsAddressChanged(bool keeps);

private:
    void fill(const QrvVpnDataList &servers, const std::function<void()> &select);
    void setEnabled(bool enabled);

    LocationList &m_list;
    QrvAPI *m_api = nullptr;
    LocationPaneDelegate *m_delegate = nullptr;
    bool m_enabled = true;
};

} // namespace quorvane
