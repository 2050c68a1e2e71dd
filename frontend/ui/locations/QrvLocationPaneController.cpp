#include "QrvLocationPaneController.h"

#include "LocationRowDelegate.h"
#include "frontend/api/QrvAPI.h"
#include "frontend/session/SessionState.h"
#include "frontend/ui/shared/Alerts.h"
#include "frontend/ui/shared/Images.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "platform/UserDefaultsController.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

namespace quorvane {

namespace {

const QString countryKey = QStringLiteral("countryCode");
const QString locationKey = QStringLiteral("location");
const QString sameIpKey = QStringLiteral("useSameIP");
const QString lastIpKey = QStringLiteral("lastIP");

platform::PreferencesStore &preferences() {
    return *platform::Platform::current().preferences;
}

QString randomTitle() {
    return QStringLiteral("Random Location");
}

QString present(const QString &text) {
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

QrvLocationPaneController::QrvLocationPaneController(QWidget *parent)
    : QWidget(parent), popupCountry(new QComboBox(this)),
      sameIpBox(new QCheckBox(tr("Always Use Same IP &Address"), this)) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(popupCountry);
    column->addWidget(sameIpBox);
    popupCountry->setObjectName(QStringLiteral("popupCountry"));
    popupCountry->setAccessibleDescription(tr("Location choice"));
    popupCountry->setMaxVisibleItems(16);
    popupCountry->setItemDelegate(new LocationRowDelegate(popupCountry));
    popupCountry->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    popupCountry->setMinimumContentsLength(24);
    sameIpBox->setObjectName(QStringLiteral("checkSameIP"));
    connect(popupCountry, &QComboBox::activated, this, [this] { popupCountrySelected(); });
    connect(sameIpBox, &QCheckBox::clicked, this, [this] { checkSameIPSelected(); });
    platform::Platform::current().notifications->addObserver(
        QStringLiteral("updateServerList"), this, [this](const QVariant &) { updateServerList(); });
    addPopupLocationMenuItem(QrvLocation::location(randomTitle(), QStringLiteral("XX"), QString(), false));
    popupCountry->setCurrentIndex(0);
}

QrvLocationPaneController::~QrvLocationPaneController() = default;

void QrvLocationPaneController::connectTo(QrvAPI *client, LocationPaneDelegate *newDelegate) {
    api = client;
    delegate = newDelegate;
    refresh();
}

void QrvLocationPaneController::append(std::unique_ptr<QrvMenuItem> item) {
    const QSignalBlocker quiet(popupCountry);
    // The entry keeps its English title, which it is known by; only what is shown is translated.
    const QString shown = item->text() == randomTitle() ? tr("Random Location") : item->text();
    popupCountry->addItem(Images::icon(item->imageName()), shown);
    if (item->isMarkedFull()) {
        const int row = popupCountry->count() - 1;
        popupCountry->setItemData(row, true, LocationRowDelegate::fullRole);
        popupCountry->setItemData(row, tr("This location is full."), Qt::ToolTipRole);
        popupCountry->setItemData(row, tr("%1, full").arg(item->text()), Qt::AccessibleTextRole);
    }
    entries.push_back(std::move(item));
}

void QrvLocationPaneController::clear() {
    const QSignalBlocker quiet(popupCountry);
    popupCountry->clear();
    entries.clear();
    chosen = nullptr;
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
    item->setFull(fullLocations.contains(server->codeName));
    append(std::move(item));
}

void QrvLocationPaneController::updateServerList() {
    if (api != nullptr) {
        fillCountries(api->request().servers);
    }
}

void QrvLocationPaneController::fillCountries(const QrvVpnDataList &servers) {
    if (servers.isEmpty()) {
        return;
    }
    clear();
    const QStringList discardList = delegate != nullptr ? delegate->getDiscardList() : QStringList();
    const QSet<QString> discarded(discardList.begin(), discardList.end());
    addPopupLocationMenuItem(QrvLocation::location(randomTitle(), QStringLiteral("XX"), QString(), false));
    selectPopupItemWithImageNamed(QStringLiteral("XX"));
    fullLocations = locationsMarkedFull();
    for (const QrvVpnDataPointer &server : servers) {
        server->filteredIpAdressArray = server->ipAdressArray;
        server->filteredIpAdressArray.removeIf(
            [&discarded](const QString &address) { return discarded.contains(address); });
        if (!server->filteredIpAdressArray.isEmpty()) {
            addVPN(server);
        }
    }
    QString title = preferences().string(locationKey);
    if (title.isNull() && api != nullptr) {
        title = api->model().countryByCode(preferences().string(countryKey));
    }
    selectPopupItemWithTitle(title);
    Q_EMIT rebuilt();
}

QSet<QString> QrvLocationPaneController::locationsMarkedFull() const {
    QSet<QString> codes;
    if (api != nullptr) {
        for (const QrvLocation &location : api->model().locations()) {
            if (location.full) {
                codes.insert(location.codeName + u' ' + location.countryCode); // as a group names its place
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
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&image](const auto &item) { return item->imageName() == image; });
    if (found == entries.end()) {
        return false;
    }
    popupCountry->setCurrentIndex(static_cast<int>(found - entries.begin()));
    return true;
}

bool QrvLocationPaneController::selectPopupItemWithTitle(const QString &title) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&title](const auto &item) { return item->text() == title; });
    if (found == entries.end()) {
        return false;
    }
    selectItem(static_cast<int>(found - entries.begin()));
    chosen = found->get();
    return true;
}

void QrvLocationPaneController::selectItem(int index) {
    popupCountry->setCurrentIndex(index);
}

QrvMenuItem *QrvLocationPaneController::currentItem() const {
    const int index = std::max(0, popupCountry->currentIndex());
    return entries.at(static_cast<std::size_t>(index)).get();
}

void QrvLocationPaneController::removeItemWithTitle(const QString &title) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&title](const auto &item) { return item->text() == title; });
    if (found == entries.end()) {
        return;
    }
    if (chosen == found->get()) {
        chosen = nullptr;
    }
    popupCountry->removeItem(static_cast<int>(found - entries.begin()));
    entries.erase(found);
}

void QrvLocationPaneController::checkPopupCountry() {
    popupCountry->setEnabled(api != nullptr);
    if (api == nullptr) {
        return;
    }
    chosen = currentItem();
    const QString title = chosen->text();
    const QString country = api->model().getCountryByLocationForVPN(title);
    QString code = api->model().getCodeByLocationForVPN(title);
    if (title != randomTitle() && delegate != nullptr) {
        delegate->setRequiredUS(false);
    }
    const QString lastIp = preferences().string(lastIpKey);
    if (preferences().boolean(sameIpKey) && !lastIp.isEmpty()) {
        code = api->model().getLocationByIP(lastIp);
    }
    preferences().setValues({{countryKey, present(country)}, {locationKey, present(code)}});
}

void QrvLocationPaneController::popupCountrySelected() {
    if (delegate != nullptr) {
        QMetaObject::invokeMethod(
            this, [target = delegate] { target->terminateVpn(); }, Qt::QueuedConnection);
    }
    if (sameIpBox->isChecked()) {
        sameIpBox->setChecked(false);
        checkSameIP();
    }
    checkPopupCountry();
    if (delegate != nullptr) {
        delegate->stopQuorvane();
    }
    platform::Platform::current().notifications->post(QStringLiteral("startVpn"));
}

void QrvLocationPaneController::checkSameIP() {
    const bool keeps = sameIpBox->isChecked();
    const bool lent = keeps && SessionState::shared().hidden;
    preferences().setValues(
        {{sameIpKey, keeps},
         {lastIpKey, lent ? present(SessionState::shared().currentIp) : QStringLiteral("")}});
    platform::Platform::current().userDefaults->save();
}

void QrvLocationPaneController::checkSameIPSelected() {
    if (SessionState::shared().hidden || !sameIpBox->isChecked()) {
        checkSameIP();
        return;
    }
    sameIpBox->setChecked(false);
    Alerts::shared().critical({QStringLiteral("Quorvane"),
                               tr("Please check \"Always Use Same IP Address\" when you have found a fake "
                                  "IP you would like to reuse"),
                               {}});
}

void QrvLocationPaneController::refresh() {
    selectPopupItemWithImageNamed(preferences().string(countryKey));
    sameIpBox->setChecked(preferences().boolean(sameIpKey));
}

} // namespace quorvane
