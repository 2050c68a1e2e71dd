#include "CookieCrumblePane.h"

#include "DefaultsBinding.h"
#include "frontend/session/SettingsDefaults.h"
#include "ui_SettingsCookieCrumble.h"

#include <QApplication>
#include <QUrl>

namespace quorvane {

CookieCrumblePane::CookieCrumblePane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), sites(SettingsDefaults::cookieSites()),
      ui(std::make_unique<Ui::SettingsCookieCrumble>()) {
    ui->setupUi(this);
    sites.awakeFromNib();
    ui->tableCookieSites->setDataSource(&sites);
    binding.bindInteger(*ui->checkboxHideMyCookiesHeaders, SettingsDefaults::hideMyCookiesHeaders());
    connect(ui->addCookieSiteButton, &QPushButton::clicked, this,
            &CookieCrumblePane::addCookieSiteIpButtonPressed);
    connect(ui->deleteCookieSiteButton, &QPushButton::clicked, this,
            &CookieCrumblePane::deleteCookieSiteIpButtonPressed);
    connect(ui->tableCookieSites, &QrvDiscardIpTableViewController::deletePressed, this,
            &CookieCrumblePane::deleteCookieSiteIpButtonPressed);
    connect(this, &CookieCrumblePane::refused, this, [] { QApplication::beep(); });
}

CookieCrumblePane::~CookieCrumblePane() {
    ui->tableCookieSites->setDataSource(nullptr); // the table outlives its rows by a moment
}

void CookieCrumblePane::addCookieSiteIpButtonPressed() {
    QString site = ui->cookieSiteIP->text();
    if (site.isEmpty() || !validateUrl(site)) {
        Q_EMIT refused();
        return;
    }
    site.remove(QStringLiteral("https://"));
    site.remove(QStringLiteral("http://"));
    ui->tableCookieSites->addRow(site);
    ui->cookieSiteIP->clear();
}

void CookieCrumblePane::deleteCookieSiteIpButtonPressed() {
    ui->tableCookieSites->deleteSelectedRow();
}

bool CookieCrumblePane::validateUrl(const QString &text) {
    return QUrl(text, QUrl::StrictMode).isValid();
}

bool CookieCrumblePane::hidesCookies() const {
    return ui->checkboxHideMyCookiesHeaders->isChecked();
}

} // namespace quorvane
