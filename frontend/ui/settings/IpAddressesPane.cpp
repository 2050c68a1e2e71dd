#include "IpAddressesPane.h"

#include "DefaultsBinding.h"
#include "frontend/session/SettingsDefaults.h"
#include "frontend/support/TextNumbers.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/UserDefaultsController.h"
#include "ui_SettingsIpAddresses.h"

#include <QLineEdit>
#include <QSignalBlocker>

namespace quorvane {

namespace {

constexpr int longestInterval = 2;

void postUpdateServerList() {
    platform::Platform::current().notifications->post(QStringLiteral("updateServerList"));
}

} // namespace

IpAddressesPane::IpAddressesPane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::SettingsIpAddresses>()) {
    ui->setupUi(this);
    discarded.awakeFromNib();
    ui->tableDiscardIp->setDataSource(&discarded);
    binding.bindBoolean(*ui->checkboxChangeIpInterval, SettingsDefaults::changeIpEvery());
    binding.bindBoolean(*ui->checkboxHide, SettingsDefaults::hide());
    // The field beside it shows the number; of the stepper only its two buttons are wanted.
    if (auto *number = ui->stepperChangeIpInterval->findChild<QLineEdit *>()) {
        number->hide();
    }
    connect(ui->deleteButton, &QPushButton::clicked, this, &IpAddressesPane::deleteDiscardedIpButtonPressed);
    connect(ui->clearButton, &QPushButton::clicked, this, &IpAddressesPane::clearDiscardedIpsButtonPressed);
    connect(ui->tableDiscardIp, &QrvDiscardIpTableViewController::deletePressed, this,
            &IpAddressesPane::deleteDiscardedIpButtonPressed);
    connect(ui->checkboxChangeIpInterval, &QCheckBox::clicked, this,
            &IpAddressesPane::changeIpEveryButtonPressed);
    connect(ui->fieldChangeIpInterval, &QLineEdit::textEdited, this, &IpAddressesPane::intervalTyped);
    connect(ui->stepperChangeIpInterval, &QSpinBox::valueChanged, this, &IpAddressesPane::intervalStepped);
    connect(ui->launchOnStart, &QCheckBox::clicked, this, &IpAddressesPane::launchSwitched);
}

IpAddressesPane::~IpAddressesPane() {
    ui->tableDiscardIp->setDataSource(nullptr); // the table outlives its rows by a moment
}

void IpAddressesPane::refresh() {
    const qint64 minutes =
        platform::Platform::current().userDefaults->integer(SettingsDefaults::changeIpInterval());
    ui->fieldChangeIpInterval->setText(QString::number(minutes));
    {
        const QSignalBlocker quiet(ui->stepperChangeIpInterval);
        ui->stepperChangeIpInterval->setValue(integerValue(QString::number(minutes)));
    }
    changeIpEveryButtonPressed(ui->checkboxChangeIpInterval->isChecked());
}

void IpAddressesPane::setLaunchesOnStart(bool on) {
    ui->launchOnStart->setChecked(on);
}

int IpAddressesPane::interval() const {
    return integerValue(ui->fieldChangeIpInterval->text());
}

QrvDiscardIpTableViewController &IpAddressesPane::tableDiscardIp() const {
    return *ui->tableDiscardIp;
}

void IpAddressesPane::deleteDiscardedIpButtonPressed() {
    ui->tableDiscardIp->deleteSelectedRow();
    postUpdateServerList();
}

void IpAddressesPane::clearDiscardedIpsButtonPressed() {
    ui->tableDiscardIp->clearAll();
    postUpdateServerList();
}

void IpAddressesPane::changeIpEveryButtonPressed(bool on) {
    ui->fieldChangeIpInterval->setEnabled(on);
    ui->stepperChangeIpInterval->setEnabled(on);
}

void IpAddressesPane::intervalTyped() {
    QString typed = ui->fieldChangeIpInterval->text();
    if (!pureInteger(typed, longestInterval)) {
        // The cleaned text is another edit, and goes on from there.
        ui->fieldChangeIpInterval->setText(typed);
        intervalTyped();
        return;
    }
    const QSignalBlocker quiet(ui->stepperChangeIpInterval);
    ui->stepperChangeIpInterval->setValue(integerValue(typed));
}

void IpAddressesPane::intervalStepped(int minutes) {
    ui->fieldChangeIpInterval->setText(QString::number(minutes));
}

} // namespace quorvane
