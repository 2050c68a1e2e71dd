#include "QrvLocationPaneController.h"

#include "LocationRowDelegate.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/session/LocationChoice.h"
#include "frontend/session/SessionState.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/Preferences.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/PopUpButton.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvane {

namespace {

QString nonNull(const QString &text) {
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

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
    m_sameIpBox->setObjectName(QStringLiteral("checkSameIP"));
    connect(m_popupCountry, &QComboBox::activated, this, [this] { popupCountrySelected(); });
    connect(m_sameIpBox, &QCheckBox::clicked, this, [this] { checkSameIPSelected(); });
    platform::Platform::current().notifications->addObserver(
        Notifications::updateServerList, this, [this](const QVariant &) { updateServerList(); });
    addPopupLocationMenuItem(
        QrvLocation::location(LocationChoice::randomTitle(), QStringLiteral("XX"), QString(), false));
    m_popupCountry->setCurrentIndex(0);
}

QrvLocationPaneController::~QrvLocationPaneController() = default;

void QrvLocationPaneController::connectTo(QrvAPI *client, LocationPaneDelegate *newDelegate) {
    m_api = client;
    m_delegate = newDelegate;
    refresh();
}

void QrvLocationPaneController::append(std::unique_ptr<QrvMenuItem> item) {
    const QSignalBlocker quiet(m_popupCountry);
    // The entry keeps its English title, which identifies it; only the shown text is translated.
    const QString shown =
        item->text() == LocationChoice::randomTitle() ? tr("Random Location") : item->text();
    m_popupCountry->addItem(Images::icon(item->imageName()), shown);
    if (item->isMarkedFull()) {
        const int row = m_popupCountry->count() - 1;
        m_popupCountry->setItemData(row, true, LocationRowDelegate::fullRole);
        m_popupCountry->setItemData(row, tr("This location is full."), Qt::ToolTipRole);
        m_popupCountry->setItemData(row, tr("%1, full").arg(item->text()), Qt::AccessibleTextRole);
    }
    m_entries.push_back(std::move(item));
}

void QrvLocationPaneController::clear() {
    const QSignalBlocker quiet(m_popupCountry);
    m_popupCountry->clear();
    m_entries.clear();
    m_chosen = nullptr;
}

void QrvLocationPaneController::addPopupLocationMenuItem(const QrvLocation &location) {
    auto item = std::make_unique<QrvMenuItem>(location.title);
    const QString name = location.countryCode.toLower();
    if (location.codeName.isNull() && Images::exists(name)) {
        item->setImageName(name);
    }
    if (location.full) {
        item->setFull(true);
    }
    append(std::move(item));
}

void QrvLocationPaneController::addVPN(const QrvVpnDataPointer &server) {
    auto item = std::make_unique<QrvMenuItem>(server->cityCountry);
    item->setVpnData(server);
    if (const QString name = server->countryCode.toLower(); Images::exists(name)) {
        item->setImageName(name);
    }
    item->setFull(m_fullLocations.contains(server->codeName));
    append(std::move(item));
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
    clear();
    const QStringList discardList = m_delegate != nullptr ? m_delegate->getDiscardList() : QStringList();
    const QSet<QString> discarded(discardList.begin(), discardList.end());
    addPopupLocationMenuItem(
        QrvLocation::location(LocationChoice::randomTitle(), QStringLiteral("XX"), QString(), false));
    selectPopupItemWithImageNamed(QStringLiteral("XX"));
    m_fullLocations = locationsMarkedFull();
    for (const QrvVpnDataPointer &server : servers) {
        server->filteredIpAdressArray = server->ipAdressArray;
        server->filteredIpAdressArray.removeIf(
            [&discarded](const QString &address) { return discarded.contains(address); });
        if (!server->filteredIpAdressArray.isEmpty()) {
            addVPN(server);
        }
    }
    QString title = Preferences::text(Preference::Location);
    if (title.isNull() && m_api != nullptr) {
        title = m_api->model().countryByCode(Preferences::text(Preference::CountryCode));
    }
    selectPopupItemWithTitle(title);
    Q_EMIT rebuilt();
}

QSet<QString> QrvLocationPaneController::locationsMarkedFull() const {
    QSet<QString> codes;
    if (m_api != nullptr) {
        for (const QrvLocation &location : m_api->model().locations()) {
            if (location.full) {
                codes.insert(location.codeName + u' ' + location.countryCode); // a group's codeName
            }
        }
    }
    return codes;
}

bool QrvLocationPaneController::selectPopupItemWithImageNamed(const QString &name) {
    const QString image = name.toLower();
    if (!Images::exists(image)) {
        return false;
    }
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&image](const auto &item) { return item->imageName() == image; });
    if (found == m_entries.end()) {
        return false;
    }
    m_popupCountry->setCurrentIndex(static_cast<int>(found - m_entries.begin()));
    return true;
}

bool QrvLocationPaneController::selectPopupItemWithTitle(const QString &title) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&title](const auto &item) { return item->text() == title; });
    if (found == m_entries.end()) {
        return false;
    }
    selectItem(static_cast<int>(found - m_entries.begin()));
    m_chosen = found->get();
    return true;
}

void QrvLocationPaneController::selectItem(int index) {
    m_popupCountry->setCurrentIndex(index);
}

QrvMenuItem *QrvLocationPaneController::currentItem() const {
    const int index = std::max(0, m_popupCountry->currentIndex());
    return m_entries.at(static_cast<std::size_t>(index)).get();
}

void QrvLocationPaneController::removeItemWithTitle(const QString &title) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&title](const auto &item) { return item->text() == title; });
    if (found == m_entries.end()) {
        return;
    }
    if (m_chosen == found->get()) {
        m_chosen = nullptr;
    }
    m_popupCountry->removeItem(static_cast<int>(found - m_entries.begin()));
    m_entries.erase(found);
}

void QrvLocationPaneController::checkPopupCountry() {
    m_popupCountry->setEnabled(m_api != nullptr);
    if (m_api == nullptr) {
        return;
    }
    m_chosen = currentItem();
    const QString title = m_chosen->text();
    const QString country = m_api->model().getCountryByLocationForVPN(title);
    QString code = m_api->model().getCodeByLocationForVPN(title);
    if (title != LocationChoice::randomTitle() && m_delegate != nullptr) {
        m_delegate->setRequiredUS(false);
    }
    const QString lastIp = Preferences::text(Preference::LastIp);
    if (Preferences::boolean(Preference::UseSameIp) && !lastIp.isEmpty()) {
        code = m_api->model().getLocationByIP(lastIp);
    }
    Preferences::store({{Preference::CountryCode, nonNull(country)}, {Preference::Location, nonNull(code)}});
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
    const bool keeps = m_sameIpBox->isChecked();
    const bool lent = keeps && SessionState::shared().hidden;
    Preferences::choose(
        {{Preference::UseSameIp, keeps},
         {Preference::LastIp, lent ? nonNull(SessionState::shared().currentIp) : QStringLiteral("")}});
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
