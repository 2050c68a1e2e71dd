#pragma once

#include "frontend/api/QrvVpnDataList.h"

#include <QStringList>
#include <QWidget>

class QCheckBox;

namespace quorvane {

class LocationList;
class PopUpButton;
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

/// The pane where the user chooses the location: a pop-up that shows the location list, and the box that
/// keeps the same address. Main thread.
class QrvLocationPaneController final : public QWidget {
    Q_OBJECT

public:
    explicit QrvLocationPaneController(QWidget *parent = nullptr);
    ~QrvLocationPaneController() override;

    /// The list that the pop-up shows; not owned, must outlive this. Call it once, before anything else.
    void setList(LocationList &list);
    /// Neither is owned; both must outlive the pane's use. Without an API client the pop-up is disabled. Also
    /// calls refresh().
    void connectTo(QrvAPI *api, LocationPaneDelegate *delegate);

    void updateServerList();
    /// Rebuilds the list. No groups change nothing.
    void fillCountries(const QrvVpnDataList &servers);
    bool selectPopupItemWithTitle(const QString &title);
    bool selectPopupItemWithImageNamed(const QString &name);
    /// Stores the list's choice in the preferences.
    void checkPopupCountry();
    void checkSameIP();
    /// The user chose the selected entry: the session starts anew there.
    void popupCountrySelected();
    /// The same for the entry with this id, if there is one and the pop-up is enabled.
    void choose(quint64 id);
    void checkSameIPSelected();
    /// Selects the first entry with the stored country's flag and sets the box. It must not be called each
    /// time the window is shown, because that entry is not always the chosen one.
    void refresh();

Q_SIGNALS:
    /// The list consists of new entries.
    void rebuilt();

private:
    PopUpButton *m_popupCountry;
    QCheckBox *m_sameIpBox;
    LocationList *m_list = nullptr;
    QrvAPI *m_api = nullptr;
    LocationPaneDelegate *m_delegate = nullptr;
};

} // namespace quorvane
