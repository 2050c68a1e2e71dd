#include "SessionDisplay.h"

#include "LocationList.h"

namespace quorvane {

SessionDisplay::SessionDisplay(QObject *parent) : QObject(parent) {}

QString SessionDisplay::hideTitle() {
    return QStringLiteral("Quorvane");
}

QString SessionDisplay::stopTitle() {
    return tr("Stop Hiding IP");
}

void SessionDisplay::publish() {
    Q_EMIT changed(m_current);
}

void SessionDisplay::warn() {
    m_current.line1 = {tr("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"), Tone::Warning, true};
}

void SessionDisplay::starting() {
    m_current = DisplayState{};
    warn();
    m_current.stateImage = QStringLiteral("appmain");
    m_current.trayImage = QStringLiteral("Tray");
    m_current.hideButton.title = hideTitle();
    m_current.hideItem.title = hideTitle();
    m_current.spinning = true;
    publish();
}

void SessionDisplay::currentIpKnown(const QString &address) {
    m_current.currentIp = address;
    publish();
}

void SessionDisplay::controlsReady() {
    m_current.hideButton.enabled = true;
    m_current.changeItemEnabled = true;
    m_current.hideItem.enabled = true;
    publish();
}

void SessionDisplay::answerHandled() {
    m_current.spinning = false;
    controlsReady();
}

void SessionDisplay::trayImage(const QString &name) {
    m_current.trayImage = name;
    publish();
}

void SessionDisplay::switchedOn(bool on) {
    m_current.hideButton.on = on;
    publish();
}

void SessionDisplay::switchingOn() {
    m_current.advancedEnabled = false;
    m_current.hideButton.enabled = false;
    m_current.changeItemEnabled = false;
    m_current.hideItem.enabled = false;
    publish();
}

void SessionDisplay::searching() {
    m_current.line1 = {tr("Searching for an available IP..."), Tone::Quiet, true};
    m_current.line21.visible = false;
    m_current.line22.visible = false;
    m_current.flagVisible = false;
    m_current.line3.visible = false;
    m_current.hideButton.enabled = false;
    m_current.changeItemEnabled = false;
    m_current.stateImage = QStringLiteral("appwait");
    m_current.discardIpVisible = false;
    m_current.changeIpVisible = false;
    m_current.hideItem.enabled = false;
    publish();
}

void SessionDisplay::fetching() {
    switchingOn();
}

void SessionDisplay::advancedEnabled(bool enabled) {
    m_current.advancedEnabled = enabled;
    publish();
}

void SessionDisplay::tunnelStarting() {
    m_current.hideItem.title = stopTitle();
    m_current.hideButton.on = true;
    publish();
}

void SessionDisplay::hidden(const QString &lentIp, const QString &originalIp, const QString &flagImage,
                            const QString &location) {
    m_current.flagImage = flagImage;
    m_current.flagVisible = true;
    m_current.currentIp = lentIp;
    m_current.line1 = {tr("You are currently hiding your real IP %1").arg(originalIp), Tone::Plain, true};
    if (!location.isEmpty()) {
        m_current.line22.text = LocationList::shownTitle(location);
    }
    m_current.stateImage = QStringLiteral("applock");
    m_current.trayImage = QStringLiteral("TrayLock");
    m_current.line21.visible = true;
    m_current.line22.visible = true;
    m_current.hideItem.enabled = true;
    m_current.hideButton.title = stopTitle();
    m_current.hideButton.enabled = true;
    m_current.changeItemEnabled = true;
    m_current.changeIpVisible = true;
    m_current.discardIpVisible = true;
    publish();
}

void SessionDisplay::backToNotHidden(const QString &originalIp) {
    m_current.trayImage = QStringLiteral("Tray");
    m_current.advancedEnabled = true;
    m_current.hideButton = {hideTitle(), true, false};
    m_current.hideItem = {hideTitle(), true};
    m_current.changeItemEnabled = true;
    m_current.line21.visible = false;
    m_current.line22.visible = false;
    warn();
    m_current.stateImage = QStringLiteral("appmain");
    m_current.currentIp = originalIp;
    m_current.flagImage = QString();
}

void SessionDisplay::failed(const QString &originalIp) {
    backToNotHidden(originalIp);
    publish();
}

void SessionDisplay::notHidden(const QString &originalIp) {
    backToNotHidden(originalIp);
    m_current.flagVisible = false;
    m_current.discardIpVisible = false;
    m_current.changeIpVisible = false;
    m_current.line3.visible = false;
    m_current.copyItemEnabled = false;
    publish();
}

void SessionDisplay::hideRotationButtons() {
    m_current.changeIpVisible = false;
    m_current.discardIpVisible = false;
    publish();
}

void SessionDisplay::interval(int minutes, bool enabled) {
    m_current.interval = minutes;
    m_current.intervalEnabled = enabled;
    publish();
}

void SessionDisplay::waitingForLocation(const QString &text) {
    m_current.line3 = {text, Tone::Quiet, true};
    m_current.hideButton.title = stopTitle();
    m_current.hideButton.enabled = true;
    m_current.hideButton.on = true;
    m_current.hideItem = {stopTitle(), true};
    publish();
}

void SessionDisplay::waitingEnded() {
    m_current.line3.visible = false;
    m_current.hideButton.enabled = false;
    m_current.hideItem.enabled = false;
    publish();
}

} // namespace quorvane
