#pragma once

#include "frontend/session/DisplayState.h"
#include "frontend/ui/mainwindow/MainWindow.h"

namespace quorvane {

/// The facts of a session, shown by a main window: the test makes them what they are in a state.
class ShownSession {
public:
    explicit ShownSession(MainWindow &window) : m_window(window) { draw(); }

    void draw() { m_window.draw(displayOf(facts)); }

    void answerHandled() {
        facts.phase = Phase::NotHidden;
        facts.answered = facts.controls = true;
        draw();
    }

    void currentIpKnown(const QString &address) {
        facts.realAddress = facts.shownAddress = address;
        draw();
    }

    void searching() {
        facts.phase = Phase::Fetching;
        facts.look = Look::Searching;
        facts.controls = false;
        draw();
    }

    void waitingForLocation() {
        facts.phase = Phase::Waiting;
        facts.switchedOn = facts.buttonStops = facts.itemStops = true;
        draw();
    }

    void hidden(const QString &lentIp, const QString &realIp, const QString &flag, const QString &location) {
        facts.phase = Phase::Hidden;
        facts.look = Look::Hidden;
        facts.answered = facts.controls = true;
        facts.switchedOn = facts.buttonStops = facts.itemStops = true;
        facts.shownAddress = lentIp;
        facts.realAddress = realIp;
        facts.flag = flag;
        facts.location = location;
        draw();
    }

    void notHidden(const QString &realIp) {
        facts.phase = Phase::NotHidden;
        facts.look = Look::NotHidden;
        facts.controls = true;
        facts.switchedOn = facts.buttonStops = facts.itemStops = facts.copyEnabled = false;
        facts.shownAddress = facts.realAddress = realIp;
        facts.flag = QString();
        draw();
    }

    void interval(int minutes, bool enabled) {
        facts.interval = minutes;
        facts.changesAutomatically = enabled;
        draw();
    }

    SessionFacts facts;

private:
    MainWindow &m_window;
};

} // namespace quorvane
