#include "CookieCrumblePane.h"

#include "DefaultsBinding.h"
#include "ui_SettingsCookieCrumble.h"

#include <QApplication>
#include <QUrl>

namespace quorvane {

CookieCrumblePane::CookieCrumblePane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), m_sites(Preference::CookieSites), m_ui(std::make_unique<Ui::SettingsCookieCrumble>()) {
    m_ui->setupUi(this);
    m_sites.awakeFromNib();
    m_ui->tableCookieSites->setDataSource(&m_sites);
    binding.bindInteger(*m_ui->checkboxHideMyCookiesHeaders, Preference::HideMyCookiesHeaders);
    connect(m_ui->addCookieSiteButton, &QPushButton::clicked, this,
            &CookieCrumblePane::addCookieSiteIpButtonPressed);
    connect(m_ui->deleteCookieSiteButton, &QPushButton::clicked, this,
            &CookieCrumblePane::deleteCookieSiteIpButtonPressed);
    connect(m_ui->tableCookieSites, &QrvDiscardIpTableViewController::deletePressed, this,
            &CookieCrumblePane::deleteCookieSiteIpButtonPressed);
    connect(this, &CookieCrumblePane::refused, this, [] { QApplication::beep(); });
}

CookieCrumblePane::~CookieCrumblePane() {
    m_ui->tableCookieSites->setDataSource(nullptr); // the table is destroyed after its rows
}

void CookieCrumblePane::addCookieSiteIpButtonPressed() {
    QString site = m_ui->cookieSiteIP->text();
    if (site.isEmpty() || !validateUrl(site)) {
        Q_EMIT refused();
        return;
    }
    site.remove(QStringLiteral("https://"));
    site.remove(QStringLiteral("http://"));
    m_ui->tableCookieSites->addRow(site);
    m_ui->cookieSiteIP->clear();
}

void CookieCrumblePane::deleteCookieSiteIpButtonPressed() {
    m_ui->tableCookieSites->deleteSelectedRow();
}

bool CookieCrumblePane::validateUrl(const QString &text) {
    return QUrl(text, QUrl::StrictMode).isValid();
}

bool CookieCrumblePane::hidesCookies() const {
    return m_ui->checkboxHideMyCookiesHeaders->isChecked();
}

} // namespace quorvane
