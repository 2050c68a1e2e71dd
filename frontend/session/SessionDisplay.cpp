#include "SessionDisplay.h"

namespace quorvane {

SessionDisplay::SessionDisplay(QObject *parent) : QObject(parent) {}

QString SessionDisplay::hideTitle() {
    return QStringLiteral("Quorvane");
}

QString SessionDisplay::stopTitle() {
    return tr("Stop Hiding IP");
}

void SessionDisplay::publish() {
    Q_EMIT changed(current);
}

void SessionDisplay::warn() {
    current.line1 = {tr("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"), Tone::Warning, true};
}

void SessionDisplay::starting() {
    current = DisplayState{};
    warn();
    current.stateImage = QStringLiteral("appmain");
    current.trayImage = QStringLiteral("Tray");
    current.hideButton.title = hideTitle();
    current.hideItem.title = hideTitle();
    current.spinning = true;
    publish();
}

void SessionDisplay::currentIpKnown(const QString &address) {
    current.currentIp = address;
    publish();
}

void SessionDisplay::controlsReady() {
    current.hideButton.enabled = true;
    current.changeItemEnabled = true;
    current.hideItem.enabled = true;
    publish();
}

void SessionDisplay::answerHandled() {
    current.spinning = false;
    controlsReady();
}

void SessionDisplay::trayImage(const QString &name) {
    current.trayImage = name;
    publish();
}

void SessionDisplay::switchedOn(bool on) {
    current.hideButton.on = on;
    publish();
}

void SessionDisplay::switchingOn() {
    current.advancedEnabled = false;
    current.hideButton.enabled = false;
    current.changeItemEnabled = false;
    current.hideItem.enabled = false;
    publish();
}

void SessionDisplay::searching() {
    current.line1 = {tr("Searching for an available IP..."), Tone::Quiet, true};
    current.line21.visible = false;
    current.line22.visible = false;
    current.flagVisible = false;
    current.line3.visible = false;
    current.hideButton.enabled = false;
    current.changeItemEnabled = false;
    current.stateImage = QStringLiteral("appwait");
    current.discardIpVisible = false;
    current.changeIpVisible = false;
    current.hideItem.enabled = false;
    publish();
}

void SessionDisplay::fetching() {
    switchingOn();
}

void SessionDisplay::advancedEnabled(bool enabled) {
    current.advancedEnabled = enabled;
    publish();
}

void SessionDisplay::tunnelStarting() {
    current.hideItem.title = stopTitle();
    current.hideButton.on = true;
    publish();
}

void SessionDisplay::hidden(const QString &lentIp, const QString &originalIp, const QString &flagImage,
                            const QString &location) {
    current.flagImage = flagImage;
    current.flagVisible = true;
    current.currentIp = lentIp;
    current.line1 = {tr("You are currently hiding your real IP %1").arg(originalIp), Tone::Plain, true};
    if (!location.isEmpty()) {
        current.line22.text = location;
    }
    current.stateImage = QStringLiteral("applock");
    current.trayImage = QStringLiteral("TrayLock");
    current.line21.visible = true;
    current.line22.visible = true;
    current.hideItem.enabled = true;
    current.hideButton.title = stopTitle();
    current.hideButton.enabled = true;
    current.changeItemEnabled = true;
    current.changeIpVisible = true;
    current.discardIpVisible = true;
    publish();
}

void SessionDisplay::backToNotHidden(const QString &originalIp) {
    current.trayImage = QStringLiteral("Tray");
    current.advancedEnabled = true;
    current.hideButton = {hideTitle(), true, false};
    current.hideItem = {hideTitle(), true};
    current.changeItemEnabled = true;
    current.line21.visible = false;
    current.line22.visible = false;
    warn();
    current.stateImage = QStringLiteral("appmain");
    current.currentIp = originalIp;
    current.flagImage = QString();
}

void SessionDisplay::failed(const QString &originalIp) {
    backToNotHidden(originalIp);
    publish();
}

void SessionDisplay::notHidden(const QString &originalIp) {
    backToNotHidden(originalIp);
    current.flagVisible = false;
    current.discardIpVisible = false;
    current.changeIpVisible = false;
    current.line3.visible = false;
    current.copyItemEnabled = false;
    publish();
}

void SessionDisplay::hideRotationButtons() {
    current.changeIpVisible = false;
    current.discardIpVisible = false;
    publish();
}

void SessionDisplay::interval(int minutes, bool enabled) {
    current.interval = minutes;
    current.intervalEnabled = enabled;
    publish();
}

void SessionDisplay::waitingForLocation(const QString &text) {
    current.line3 = {text, Tone::Quiet, true};
    current.hideButton.title = stopTitle();
    current.hideButton.enabled = true;
    current.hideButton.on = true;
    current.hideItem = {stopTitle(), true};
    publish();
}

void SessionDisplay::waitingEnded() {
    current.line3.visible = false;
    current.hideButton.enabled = false;
    current.hideItem.enabled = false;
    publish();
}

} // namespace quorvane
