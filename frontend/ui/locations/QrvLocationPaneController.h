#pragma once

#include "QrvMenuItem.h"
#include "frontend/api/QrvLocation.h"
#include "frontend/api/QrvVpnDataList.h"

#include <QSet>
#include <QStringList>
#include <QWidget>
#include <memory>
#include <vector>

class QCheckBox;
class QComboBox;

namespace quorvane {

class QrvAPI;

/// The operations of the session that the location pane uses. Main thread.
class LocationPaneDelegate {
public:
    virtual ~LocationPaneDelegate() = default;
    [[nodiscard]] virtual QStringList getDiscardList() const = 0;
    virtual void setRequiredUS(bool required) = 0;
    virtual void terminateVpn() = 0;
    virtual void stopQuorvane() = 0;
};

/// The pane where the user chooses the location: a pop-up with the service's server list without the
/// discarded addresses, and the box that keeps the same address. Main thread.
class QrvLocationPaneController final : public QWidget {
    Q_OBJECT

public:
    explicit QrvLocationPaneController(QWidget *parent = nullptr);
    ~QrvLocationPaneController() override;

    /// Neither is owned; both must outlive the pane's use. Without an API client the pop-up is disabled. Also
    /// calls refresh().
    void connectTo(QrvAPI *api, LocationPaneDelegate *delegate);

    void updateServerList();
    /// Rebuilds the pop-up. An empty list changes nothing.
    void fillCountries(const QrvVpnDataList &servers);
    bool selectPopupItemWithTitle(const QString &title);
    bool selectPopupItemWithImageNamed(const QString &name);
    void selectItem(int index);
    /// Stores the pop-up's choice in the preferences.
    void checkPopupCountry();
    void checkSameIP();
    void popupCountrySelected();
    void checkSameIPSelected();
    void removeItemWithTitle(const QString &title);
    /// Selects the first entry with the stored country's flag and sets the box. It must not be called each
    /// time the window is shown, because that entry is not always the chosen one.
    void refresh();

    [[nodiscard]] const std::vector<std::unique_ptr<QrvMenuItem>> &items() const { return m_entries; }

    /// The pop-up's selected entry, never null.
    [[nodiscard]] QrvMenuItem *currentItem() const;

    /// The entry last selected by title or by the user; null after a rebuild.
    [[nodiscard]] QrvMenuItem *selectedItem() const { return m_chosen; }

Q_SIGNALS:
    /// The list consists of new entries.
    void rebuilt();

private:
    void addPopupLocationMenuItem(const QrvLocation &location);
    void addVPN(const QrvVpnDataPointer &server);
    void append(std::unique_ptr<QrvMenuItem> item);
    void clear();
    [[nodiscard]] QSet<QString> locationsMarkedFull() const;

    QComboBox *m_popupCountry;
    QCheckBox *m_sameIpBox;
    QrvAPI *m_api = nullptr;
    LocationPaneDelegate *m_delegate = nullptr;
    std::vector<std::unique_ptr<QrvMenuItem>> m_entries;
    QrvMenuItem *m_chosen = nullptr;
    QSet<QString> m_fullLocations;
};

} // namespace quorvane
