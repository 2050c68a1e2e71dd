#include "IpAddressesPane.h"

#include "DefaultsBinding.h"
#include "frontend/privileges/NameServers.h"
#include "frontend/support/Notifications.h"
#include "frontend/support/TextNumbers.h"
#include "frontend/ui/shared/IntervalField.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "ui_SettingsIpAddresses.h"

namespace quorvane {

namespace {

void postUpdateServerList() {
    platform::Platform::current().notifications->post(Notifications::updateServerList);
}

} // namespace

IpAddressesPane::IpAddressesPane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::SettingsIpAddresses>()) {
    m_ui->setupUi(this);
    m_discarded.awakeFromNib();
    m_ui->tableDiscardIp->setDataSource(&m_discarded);
    binding.bindBoolean(*m_ui->checkboxChangeIpInterval, Preference::ChangeIpEvery);
    binding.bindBoolean(*m_ui->checkboxHide, Preference::Hide);
    binding.bindInverse(*m_ui->checkboxReconnect, Preference::NoReconnect);
    binding.bindBoolean(*m_ui->checkboxRestoreDns, Preference::RestoresDns);
    m_interval = new IntervalField(*m_ui->fieldChangeIpInterval, *m_ui->stepperChangeIpInterval,
                                   IntervalField::Zero::Accepted, this);
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

IpAddressesPane::~IpAddressesPane() {
    m_ui->tableDiscardIp->setDataSource(nullptr); // the table is destroyed after its rows
}

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

QrvDiscardIpTableViewController &IpAddressesPane::tableDiscardIp() const {
    return *m_ui->tableDiscardIp;
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
