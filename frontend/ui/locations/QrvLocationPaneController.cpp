#include "QrvLocationPaneController.h"

#include "LocationRowDelegate.h"
#include "LocationRows.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/session/LocationList.h"
#include "frontend/session/SessionState.h"
#include "frontend/session/StoredLocation.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/PopUpButton.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

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
    platform::Platform::current().notifications->addObserver(
        Notifications::updateServerList, this, [this](const QVariant &) { updateServerList(); });
}

QrvLocationPaneController::~QrvLocationPaneController() = default;

void QrvLocationPaneController::setList(LocationList &list) {
    m_list = &list;
    const auto show = [this](int row) {
        m_popupCountry->setCurrentIndex(row);
    };
    m_popupCountry->setModel(new LocationRows(list, this));
    show(list.currentRow());
    connect(m_list, &LocationList::currentRowChanged, this, show);
    // A pop-up without a selection is one whose list is being replaced.
    connect(m_popupCountry, &QComboBox::currentIndexChanged, m_list, &LocationList::setCurrentRow);
}

void QrvLocationPaneController::connectTo(QrvAPI *client, LocationPaneDelegate *newDelegate) {
    m_api = client;
    m_delegate = newDelegate;
    refresh();
}

void QrvLocationPaneController::updateServerList() {
    if (m_api != nullptr) {
        fillCountries(m_api->request().servers);
    }
}

void QrvLocationPaneController::fillCountries(const QrvVpnDataList &servers) {
    if (servers.isEmpty()) {
        return;
    }
    m_list->fill(servers, m_delegate != nullptr ? m_delegate->getDiscardList() : QStringList(),
                 m_api != nullptr ? m_api->model().locations() : QrvLocationList());
    if (m_api != nullptr) {
        StoredLocation::selectIn(*m_list, m_api->model());
    }
    Q_EMIT rebuilt();
}

bool QrvLocationPaneController::selectPopupItemWithImageNamed(const QString &name) {
    const QString image = name.toLower();
    return Images::exists(image) && m_list->selectFlag(image);
}

bool QrvLocationPaneController::selectPopupItemWithTitle(const QString &title) {
    return m_list->selectTitle(title);
}

void QrvLocationPaneController::checkPopupCountry() {
    m_popupCountry->setEnabled(m_api != nullptr);
    if (m_api == nullptr) {
        return;
    }
    m_list->setCurrentAsSelectedItem();
    const QString title = m_list->title(m_list->currentRow());
    if (title != LocationChoice::randomTitle() && m_delegate != nullptr) {
        m_delegate->setRequiredUS(false);
    }
    StoredLocation::store(title, m_api->model());
}

void QrvLocationPaneController::choose(quint64 id) {
    if (m_popupCountry->isEnabled() && m_list->selectId(id)) {
        popupCountrySelected();
    }
}

void QrvLocationPaneController::popupCountrySelected() {
    if (m_delegate != nullptr) {
        QMetaObject::invokeMethod(
            this, [target = m_delegate] { target->terminateVpn(); }, Qt::QueuedConnection);
    }
    if (m_sameIpBox->isChecked()) {
        m_sameIpBox->setChecked(false);
        checkSameIP();
    }
    checkPopupCountry();
    if (m_delegate != nullptr) {
        m_delegate->stopQuorvane();
    }
    platform::Platform::current().notifications->post(Notifications::startVpn);
}

void QrvLocationPaneController::checkSameIP() {
    StoredLocation::storeSameIp(m_sameIpBox->isChecked());
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
