#include "IpAddressesPane.h"

#include "DefaultsBinding.h"
#include "frontend/support/TextNumbers.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "ui_SettingsIpAddresses.h"

#include <QLineEdit>
#include <QSignalBlocker>

namespace quorvane {

namespace {

constexpr int maximumIntervalDigits = 2;

void postUpdateServerList() {
    platform::Platform::current().notifications->post(QStringLiteral("updateServerList"));
}

} // namespace

IpAddressesPane::IpAddressesPane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::SettingsIpAddresses>()) {
    m_ui->setupUi(this);
    m_discarded.awakeFromNib();
    m_ui->tableDiscardIp->setDataSource(&m_discarded);
    binding.bindBoolean(*m_ui->checkboxChangeIpInterval, Preference::ChangeIpEvery);
    binding.bindBoolean(*m_ui->checkboxHide, Preference::Hide);
    // The field beside the stepper shows the number, so only the stepper's two buttons are shown.
    if (auto *number = m_ui->stepperChangeIpInterval->findChild<QLineEdit *>()) {
        number->hide();
    }
    connect(m_ui->deleteButton, &QPushButton::clicked, this,
            &IpAddressesPane::deleteDiscardedIpButtonPressed);
    connect(m_ui->clearButton, &QPushButton::clicked, this, &IpAddressesPane::clearDiscardedIpsButtonPressed);
    connect(m_ui->tableDiscardIp, &QrvDiscardIpTableViewController::deletePressed, this,
            &IpAddressesPane::deleteDiscardedIpButtonPressed);
    connect(m_ui->checkboxChangeIpInterval, &QCheckBox::clicked, this,
            &IpAddressesPane::changeIpEveryButtonPressed);
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::textEdited, this, &IpAddressesPane::intervalTyped);
    connect(m_ui->stepperChangeIpInterval, &QSpinBox::valueChanged, this, &IpAddressesPane::intervalStepped);
    connect(m_ui->launchOnStart, &QCheckBox::clicked, this, &IpAddressesPane::launchSwitched);
}

IpAddressesPane::~IpAddressesPane() {
    m_ui->tableDiscardIp->setDataSource(nullptr); // the table is destroyed after its rows
}

void IpAddressesPane::refresh() {
    const qint64 minutes = Preferences::editedInteger(Preference::ChangeIpInterval);
    m_ui->fieldChangeIpInterval->setText(QString::number(minutes));
    {
        const QSignalBlocker quiet(m_ui->stepperChangeIpInterval);
        m_ui->stepperChangeIpInterval->setValue(integerValue(QString::number(minutes)));
    }
    changeIpEveryButtonPressed(m_ui->checkboxChangeIpInterval->isChecked());
}

void IpAddressesPane::setLaunchesOnStart(bool on) {
    m_ui->launchOnStart->setChecked(on);
}

int IpAddressesPane::interval() const {
    return integerValue(m_ui->fieldChangeIpInterval->text());
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
    m_ui->fieldChangeIpInterval->setEnabled(on);
    m_ui->stepperChangeIpInterval->setEnabled(on);
}

void IpAddressesPane::intervalTyped() {
    QString typed = m_ui->fieldChangeIpInterval->text();
    if (!pureInteger(typed, maximumIntervalDigits)) {
        // The cleaned text is handled as another edit.
        m_ui->fieldChangeIpInterval->setText(typed);
        intervalTyped();
        return;
    }
    const QSignalBlocker quiet(m_ui->stepperChangeIpInterval);
    m_ui->stepperChangeIpInterval->setValue(integerValue(typed));
}

void IpAddressesPane::intervalStepped(int minutes) {
    m_ui->fieldChangeIpInterval->setText(QString::number(minutes));
}

} // namespace quorvane
