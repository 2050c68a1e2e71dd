#include "IpAddressesPane.h"

#include "DefaultsBinding.h"
#include "frontend/privileges/NameServers.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/TextNumbers.h"
#include "frontend/ui/shared/IntervalField.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "ui_SettingsIpAddresses.h"

#include <QButtonGroup>

namespace quorvane {

namespace {

void postUpdateServerList() {
    platform::Platform::current().notifications->post(Notifications::updateServerList);
}

} // namespace

IpAddressesPane::IpAddressesPane(DefaultsBinding &binding, QrvTableDataSource &discarded, QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::SettingsIpAddresses>()) {
    m_ui->setupUi(this);
    m_ui->tableDiscardIp->setDataSource(&discarded);
    binding.bindBoolean(*m_ui->checkboxChangeIpInterval, Preference::ChangeIpEvery);
    binding.bindBoolean(*m_ui->checkboxHide, Preference::Hide);
    binding.bindInverse(*m_ui->checkboxReconnect, Preference::NoReconnect);
    binding.bindBoolean(*m_ui->checkboxRestoreDns, Preference::RestoresDns);
    binding.bindBoolean(*m_ui->checkboxLock, Preference::NetworkLock);
    binding.bindInverse(*m_ui->checkboxLockHome, Preference::LockHomeNetwork);
    auto *appearance = new QButtonGroup(this);
    for (QRadioButton *choice : {m_ui->appearanceDesktop, m_ui->appearanceDark, m_ui->appearanceLight}) {
        appearance->addButton(choice, static_cast<int>(appearance->buttons().size()));
    }
    binding.bindTag(*appearance, Preference::Appearance);
    m_interval = new IntervalField(*m_ui->fieldChangeIpInterval, *m_ui->stepperChangeIpInterval,
                                   IntervalField::Zero::Accepted, this);
    const auto nameUnit = [this] {
        m_ui->minutesLabel->setText(tr("&minutes", "behind their number", m_interval->minutes()));
    };
    nameUnit();
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::textChanged, this, nameUnit);
    connect(m_ui->deleteButton, &QPushButton::clicked, this,
            &IpAddressesPane::deleteDiscardedIpButtonPressed);
    connect(m_ui->clearButton, &QPushButton::clicked, this, &IpAddressesPane::clearDiscardedIpsButtonPressed);
    connect(m_ui->tableDiscardIp, &QrvDiscardIpTableViewController::deletePressed, this,
            &IpAddressesPane::deleteDiscardedIpButtonPressed);
    connect(m_ui->checkboxChangeIpInterval, &QCheckBox::clicked, this,
            &IpAddressesPane::changeIpEveryButtonPressed);
    connect(m_ui->launchOnStart, &QCheckBox::clicked, this, &IpAddressesPane::launchSwitched);
    connect(m_ui->putBackButton, &QPushButton::clicked, this, &IpAddressesPane::putBackPressed);
}

IpAddressesPane::~IpAddressesPane() = default;

void IpAddressesPane::refresh() {
    const qint64 minutes = Preferences::editedInteger(Preference::ChangeIpInterval);
    m_interval->show(integerValue(QString::number(minutes)));
    changeIpEveryButtonPressed(m_ui->checkboxChangeIpInterval->isChecked());
    refreshNameServers();
}

void IpAddressesPane::refreshNameServers() {
    m_ui->putBackButton->setEnabled(NameServers::isAnythingRemembered());
}

void IpAddressesPane::setLaunchesOnStart(bool on) {
    m_ui->launchOnStart->setChecked(on);
}

int IpAddressesPane::interval() const {
    return m_interval->minutes();
}

void IpAddressesPane::deleteDiscardedIpButtonPressed() {
    m_ui->tableDiscardIp->deleteSelectedRow();
    postUpdateServerList();
}

void IpAddressesPane::clearDiscardedIpsButtonPressed() {
    m_ui->tableDiscardIp->clearAll();
    postUpdateServerList();
}

void IpAddressesPane::changeIpEveryButtonPressed(bool on) {
    m_interval->setEnabled(on);
}

} // namespace quorvane
