#include "LocationChooser.h"

#include "LocationList.h"
#include "SessionState.h"
#include "StoredLocation.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

namespace quorvane {

LocationChooser::LocationChooser(LocationList &list, QObject *parent) : QObject(parent), m_list(list) {
    platform::Platform::current().notifications->addObserver(
        Notifications::updateServerList, this, [this](const QVariant &) { updateServerList(); });
}

void LocationChooser::connectTo(QrvAPI *api, LocationPaneDelegate *delegate) {
    m_api = api;
    m_delegate = delegate;
}

void LocationChooser::setEnabled(bool enabled) {
    m_enabled = enabled;
    Q_EMIT enabledChanged(enabled);
}

void LocationChooser::updateServerList() {
    if (m_api != nullptr) {
        fillCountries(m_api->request().servers);
    }
}

void LocationChooser::fillCountries(const QrvVpnDataList &servers) {
    fill(servers, [this] {
        if (m_api != nullptr) {
            StoredLocation::selectIn(m_list, m_api->model());
        }
    });
}

void LocationChooser::renew(const QrvVpnDataList &servers) {
    const LocationChoice::Entry chosen = m_list.entryAt(m_list.currentRow());
    fill(servers, [this, &chosen] { m_list.selectAgain(chosen); });
}

void LocationChooser::fill(const QrvVpnDataList &servers, const std::function<void()> &select) {
    if (servers.isEmpty()) {
        return;
    }
    m_list.fill(servers, m_delegate != nullptr ? m_delegate->getDiscardList() : QStringList(),
                m_api != nullptr ? m_api->model().locations() : QrvLocationList());
    select();
    Q_EMIT rebuilt();
}

void LocationChooser::checkPopupCountry() {
    setEnabled(m_api != nullptr);
    if (m_api == nullptr) {
        return;
    }
    m_list.setCurrentAsSelectedItem();
    const QString title = m_list.title(m_list.currentRow());
    if (title != LocationChoice::randomTitle() && m_delegate != nullptr) {
        m_delegate->setRequiredUS(false);
    }
    StoredLocation::store(title, m_api->model());
}

void LocationChooser::choose(quint64 id) {
    if (m_enabled && m_list.selectId(id)) {
        popupCountrySelected();
    }
}

void LocationChooser::popupCountrySelected() {
    if (m_delegate != nullptr) {
        QMetaObject::invokeMethod(
            this, [target = m_delegate] { target->terminateVpn(); }, Qt::QueuedConnection);
    }
    if (Preferences::boolean(Preference::UseSameIp)) {
        setKeepsAddress(false);
        Q_EMIT keepsAddressChanged(false);
    }
    checkPopupCountry();
    if (m_delegate != nullptr) {
        m_delegate->stopQuorvane();
    }
    platform::Platform::current().notifications->post(Notifications::startVpn);
}

void LocationChooser::setKeepsAddress(bool keeps) {
    StoredLocation::storeSameIp(keeps);
}

} // namespace quorvane
