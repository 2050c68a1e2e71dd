#include "VpnPane.h"

#include "frontend/support/Preferences.h"
#include "frontend/support/TextFile.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "platform/Platform.h"
#include "ui_SettingsVpn.h"

#include <QFileDialog>
#include <QUrl>

namespace quorvane {

namespace {

const QLatin1String fileType(".ovpn");

/// The path in the text of a file's address: the part behind the scheme's slashes, with the percent escapes
/// that the address has.
QString pathOf(const QUrl &file) {
    const QString address = QString::fromLatin1(file.toEncoded());
    return address.split(QStringLiteral("//")).value(1);
}

} // namespace

VpnPane::VpnPane(QWidget *parent) : QWidget(parent), m_ui(std::make_unique<Ui::SettingsVpn>()) {
    m_ui->setupUi(this);
    connect(m_ui->browseButton, &QPushButton::clicked, this, &VpnPane::pushBrowse);
    connect(m_ui->saveButton, &QPushButton::clicked, this, &VpnPane::setVpnSettings);
}

VpnPane::~VpnPane() = default;

void VpnPane::refresh() {
    const QString path = Preferences::text(Preference::VpnConfigPath);
    if (path.isNull()) {
        return;
    }
    m_ui->pathTextField->setText(path);
    m_ui->usernameTextField->setText(Preferences::text(Preference::VpnUsername));
    m_ui->passwordTextField->setText(Preferences::text(Preference::VpnPassword));
}

void VpnPane::setVpnSettings() {
    const QString user = m_ui->usernameTextField->text();
    const QString password = m_ui->passwordTextField->text();
    Preferences::store({{Preference::VpnConfigPath, m_ui->pathTextField->text()},
                        {Preference::VpnUsername, user},
                        {Preference::VpnPassword, password}});
    // This is not the hidden file that the tunnel's launch reads; a failed write has no consequence.
    const QString content = user + QChar(u'\n') + password;
    TextFile::replace(platform::Platform::current().account.documents() + QStringLiteral("/vpnCreds.txt"),
                      content.toUtf8());
}

void VpnPane::pushBrowse() {
    if (!m_panel) {
        m_panel = new QFileDialog(this, tr("Open OpenVPN Configuration"));
        m_panel->setObjectName(QStringLiteral("openPanel"));
        m_panel->setAttribute(Qt::WA_DeleteOnClose);
        m_panel->setModal(false);
        m_panel->setFileMode(QFileDialog::ExistingFile);
        m_panel->setNameFilter(tr("OpenVPN configurations (%1)").arg(QStringLiteral("*.ovpn")));
        connect(m_panel, &QFileDialog::accepted, this, &VpnPane::panelConfirmed);
    }
    bringForward(*m_panel);
}

void VpnPane::panelConfirmed() {
    const QList<QUrl> chosen = m_panel->selectedUrls();
    // The user can type a name that the filter would not list.
    if (!chosen.isEmpty() && chosen.first().fileName().endsWith(fileType)) {
        m_ui->pathTextField->setText(pathOf(chosen.first()));
    }
}

} // namespace quorvane
