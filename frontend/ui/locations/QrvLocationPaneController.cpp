#include "QrvLocationPaneController.h"

#include "LocationRowDelegate.h"
#include "LocationRows.h"
#include "frontend/session/LocationList.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/Preferences.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/PopUpButton.h"

#include <QCheckBox>
#include <QListView>
#include <QVBoxLayout>

namespace quorvane {

QrvLocationPaneController::QrvLocationPaneController(QWidget *parent)
    : QWidget(parent), m_popupCountry(new PopUpButton(this)),
      m_sameIpBox(new QCheckBox(tr("Always Use Same IP &Address"), this)) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(m_popupCountry);
    column->addWidget(m_sameIpBox);
    m_popupCountry->setObjectName(QStringLiteral("popupCountry"));
    m_popupCountry->setAccessibleDescription(tr("Location choice"));
    m_popupCountry->setMaxVisibleItems(16);
    m_popupCountry->setItemDelegate(new LocationRowDelegate(m_popupCountry));
    m_popupCountry->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_popupCountry->setMinimumContentsLength(24);
    if (auto *rows = qobject_cast<QListView *>(m_popupCountry->view())) {
        rows->setUniformItemSizes(true); // opening a long list measures one row
    }
    m_sameIpBox->setObjectName(QStringLiteral("checkSameIP"));
    connect(m_popupCountry, &QComboBox::activated, this, [this] { popupCountrySelected(); });
    connect(m_sameIpBox, &QCheckBox::clicked, this, [this] { checkSameIPSelected(); });
}

QrvLocationPaneController::~QrvLocationPaneController() = default;

void QrvLocationPaneController::setChooser(LocationChooser &chooser) {
    m_chooser = &chooser;
    LocationList &list = chooser.list();
    const auto show = [this](int row) {
        m_popupCountry->setCurrentIndex(row);
    };
    m_popupCountry->setModel(new LocationRows(list, this));
    show(list.currentRow());
    connect(&list, &LocationList::currentRowChanged, this, show);
    // A pop-up without a selection is one whose list is being replaced.
    connect(m_popupCountry, &QComboBox::currentIndexChanged, &list, &LocationList::setCurrentRow);
    connect(&chooser, &LocationChooser::enabledChanged, m_popupCountry, &QWidget::setEnabled);
    connect(&chooser, &LocationChooser::keepsAddressChanged, m_sameIpBox, &QCheckBox::setChecked);
}

void QrvLocationPaneController::connectTo(QrvAPI *api, LocationPaneDelegate *delegate) {
    m_chooser->connectTo(api, delegate);
    refresh();
}

void QrvLocationPaneController::updateServerList() {
    m_chooser->updateServerList();
}

void QrvLocationPaneController::fillCountries(const QrvVpnDataList &servers) {
    m_chooser->fillCountries(servers);
}

void QrvLocationPaneController::checkPopupCountry() {
    m_chooser->checkPopupCountry();
}

void QrvLocationPaneController::popupCountrySelected() {
    m_chooser->popupCountrySelected();
}

bool QrvLocationPaneController::selectPopupItemWithImageNamed(const QString &name) {
    const QString image = name.toLower();
    return Images::exists(image) && m_chooser->list().selectFlag(image);
}

bool QrvLocationPaneController::selectPopupItemWithTitle(const QString &title) {
    return m_chooser->list().selectTitle(title);
}

void QrvLocationPaneController::checkSameIP() {
    m_chooser->setKeepsAddress(m_sameIpBox->isChecked());
}

void QrvLocationPaneController::checkSameIPSelected() {
    if (SessionState::shared().hidden || !m_sameIpBox->isChecked()) {
        checkSameIP();
        return;
    }
    m_sameIpBox->setChecked(false);
    Alerts::shared().critical({QStringLiteral("Quorvane"),
                               tr("Please check \"Always Use Same IP Address\" when you have found a fake "
                                  "IP you would like to reuse"),
                               {}});
}

void QrvLocationPaneController::refresh() {
    selectPopupItemWithImageNamed(Preferences::text(Preference::CountryCode));
    m_sameIpBox->setChecked(Preferences::boolean(Preference::UseSameIp));
}

} // namespace quorvane
