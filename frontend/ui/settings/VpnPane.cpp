#include "VpnPane.h"

#include "frontend/session/SettingsDefaults.h"
#include "frontend/support/TextFile.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "ui_SettingsVpn.h"

#include <QFileDialog>
#include <QUrl>

namespace quorvane {

namespace {

const QLatin1String fileType(".ovpn");

platform::PreferencesStore &preferences() {
    return *platform::Platform::current().preferences;
}

/// The path in a file's address: what follows the scheme's slashes.
QString pathOf(const QUrl &file) {
    const QString address = QStringLiteral("file://") + file.toLocalFile();
    return address.split(QStringLiteral("//")).value(1);
}

} // namespace

VpnPane::VpnPane(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::SettingsVpn>()) {
    ui->setupUi(this);
    connect(ui->browseButton, &QPushButton::clicked, this, &VpnPane::pushBrowse);
    connect(ui->saveButton, &QPushButton::clicked, this, &VpnPane::setVpnSettings);
}

VpnPane::~VpnPane() = default;

void VpnPane::refresh() {
    const QString path = preferences().string(SettingsDefaults::vpnConfigPath());
    if (path.isNull()) {
        return;
    }
    ui->pathTextField->setText(path);
    ui->usernameTextField->setText(preferences().string(SettingsDefaults::vpnUsername()));
    ui->passwordTextField->setText(preferences().string(SettingsDefaults::vpnPassword()));
}

void VpnPane::setVpnSettings() {
    const QString user = ui->usernameTextField->text();
    const QString password = ui->passwordTextField->text();
    preferences().setValues({{SettingsDefaults::vpnConfigPath(), ui->pathTextField->text()},
                             {SettingsDefaults::vpnUsername(), user},
                             {SettingsDefaults::vpnPassword(), password}});
    // Not the hidden file that the tunnel's launch reads; whether it could be written changes nothing.
    const QString content = user + QChar(u'\n') + password;
    TextFile::replace(platform::Platform::current().account.home +
                          QStringLiteral("/Documents/Quorvane/vpnCreds.txt"),
                      content.toUtf8());
}

void VpnPane::pushBrowse() {
    if (!panel) {
        panel = new QFileDialog(this, tr("Open OpenVPN Configuration"));
        panel->setObjectName(QStringLiteral("openPanel"));
        panel->setAttribute(Qt::WA_DeleteOnClose);
        panel->setModal(false);
        panel->setFileMode(QFileDialog::ExistingFile);
        panel->setNameFilter(tr("OpenVPN configurations (%1)").arg(QStringLiteral("*.ovpn")));
        connect(panel, &QFileDialog::accepted, this, &VpnPane::panelConfirmed);
    }
    panel->show();
    panel->raise();
    panel->activateWindow();
}

void VpnPane::panelConfirmed() {
    const QList<QUrl> chosen = panel->selectedUrls();
    // A name can be typed past the filter.
    if (!chosen.isEmpty() && chosen.first().fileName().endsWith(fileType)) {
        ui->pathTextField->setText(pathOf(chosen.first()));
    }
}

} // namespace quorvane
