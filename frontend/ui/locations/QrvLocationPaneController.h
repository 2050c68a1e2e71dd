#pragma once

#include "frontend/session/LocationChooser.h"

#include <QWidget>

class QCheckBox;

namespace quorvane {

class PopUpButton;

/// The pane where the user chooses the location: a pop-up that shows the location list, and the box that
/// keeps the same address. Main thread.
class QrvLocationPaneController final : public QWidget {
    Q_OBJECT

public:
    explicit QrvLocationPaneController(QWidget *parent = nullptr);
    ~QrvLocationPaneController() override;

    /// What the pane shows and changes; not owned, must outlive this. Call it once, before anything else.
    void setChooser(LocationChooser &chooser);
    /// Connects the chooser, and shows the stored choice.
    void connectTo(QrvAPI *api, LocationPaneDelegate *delegate);

    // The chooser's operations.
    void updateServerList();
    void fillCountries(const QrvVpnDataList &servers);
    void checkPopupCountry();
    void popupCountrySelected();

    bool selectPopupItemWithTitle(const QString &title);
    bool selectPopupItemWithImageNamed(const QString &name);
    void checkSameIP();
    void checkSameIPSelected();
    /// Selects the first entry with the stored country's flag and sets the box. It must not be called each
    /// time the window is shown, because that entry is not always the chosen one.
    void refresh();

private:
    PopUpButton *m_popupCountry;
    QCheckBox *m_sameIpBox;
    LocationChooser *m_chooser = nullptr;
};

} // namespace quorvane
