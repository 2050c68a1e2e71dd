#include "frontend/session/SessionDisplay.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

TEST(SessionDisplay, Starting) {
    SessionDisplay display;
    display.starting();
    const DisplayState &state = display.state();
    EXPECT_EQ(state.line1, (DisplayState::Line{text("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"),
                                               Tone::Warning, true}));
    for (const auto *line : {&state.line21, &state.line22, &state.line3, &state.line4}) {
        EXPECT_FALSE(line->visible);
    }
    EXPECT_FALSE(state.flagVisible);
    EXPECT_EQ(state.hideButton, (DisplayState::Button{text("Quorvane"), false, false}));
    EXPECT_EQ(state.hideItem, (DisplayState::Item{text("Quorvane"), false}));
    EXPECT_FALSE(state.changeItemEnabled);
    EXPECT_TRUE(state.copyItemEnabled);
    EXPECT_FALSE(state.changeIpVisible);
    EXPECT_FALSE(state.discardIpVisible);
    EXPECT_TRUE(state.spinning);
    EXPECT_EQ(state.stateImage, text("appmain"));
    EXPECT_EQ(state.trayImage, text("Tray"));
}

/// The state before any attempt, with the controls enabled by the first answer.
DisplayState notHiddenState(const char *address) {
    DisplayState state;
    state.line1 = {text("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!"), Tone::Warning, true};
    state.currentIp = text(address);
    state.stateImage = text("appmain");
    state.trayImage = text("Tray");
    state.hideButton = {text("Quorvane"), true, false};
    state.hideItem = {text("Quorvane"), true};
    state.changeItemEnabled = true;
    return state;
}

/// A display after the first answer.
void makeReady(SessionDisplay &display) {
    display.starting();
    display.currentIpKnown(text("198.51.100.10"));
    display.answerHandled();
}

TEST(SessionDisplay, NotHiddenFieldByField) {
    SessionDisplay display;
    makeReady(display);
    EXPECT_EQ(display.state(), notHiddenState("198.51.100.10"));
}

TEST(SessionDisplay, SearchingFieldByField) {
    SessionDisplay display;
    makeReady(display);
    display.switchedOn(true);
    display.switchingOn();
    display.searching();
    DisplayState expected = notHiddenState("198.51.100.10");
    expected.line1 = {text("Searching for an available IP..."), Tone::Quiet, true};
    expected.stateImage = text("appwait");
    expected.hideButton = {text("Quorvane"), false, true};
    expected.hideItem.enabled = false;
    expected.changeItemEnabled = false;
    expected.advancedEnabled = false;
    EXPECT_EQ(display.state(), expected);
}

DisplayState hiddenState() {
    DisplayState state;
    state.line1 = {text("You are currently hiding your real IP 198.51.100.10"), Tone::Plain, true};
    state.line21 = {QString(), Tone::Plain, true};
    state.line22 = {text("Germany Berlin"), Tone::Plain, true};
    state.currentIp = text("203.0.113.7\n");
    state.flagImage = text("de");
    state.flagVisible = true;
    state.stateImage = text("applock");
    state.trayImage = text("TrayLock");
    state.hideButton = {text("Stop Hiding IP"), true, true};
    state.hideItem = {text("Stop Hiding IP"), true};
    state.changeItemEnabled = true;
    state.changeIpVisible = true;
    state.discardIpVisible = true;
    return state;
}

void hide(SessionDisplay &display) {
    makeReady(display);
    display.switchedOn(true);
    display.switchingOn();
    display.searching();
    display.tunnelStarting();
    display.advancedEnabled(true);
    display.hidden(text("203.0.113.7\n"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
}

TEST(SessionDisplay, HiddenFieldByField) {
    SessionDisplay display;
    hide(display);
    EXPECT_EQ(display.state(), hiddenState());
}

TEST(SessionDisplay, ResetFieldByField) {
    SessionDisplay display;
    hide(display);
    display.notHidden(text("198.51.100.10"));
    DisplayState expected = notHiddenState("198.51.100.10");
    expected.line22.text = text("Germany Berlin"); // kept, but not shown
    expected.copyItemEnabled = false;
    EXPECT_EQ(display.state(), expected);
}

TEST(SessionDisplay, EveryChangeIsEmitted) {
    SessionDisplay display;
    int changes = 0;
    QObject::connect(&display, &SessionDisplay::changed, [&](const DisplayState &state) {
        EXPECT_EQ(state, display.state());
        ++changes;
    });
    display.starting();
    display.searching();
    display.notHidden(text("1.2.3.4"));
    EXPECT_EQ(changes, 3);
}

TEST(SessionDisplay, FailureLeavesCopyItemFlagVisibilityAndNotice) {
    SessionDisplay display;
    display.starting();
    display.hidden(text("2.2.2.2"), text("1.1.1.1"), text("de"), text("Germany Berlin"));
    display.waitingForLocation(text("note"));
    display.failed(text("1.1.1.1"));
    EXPECT_TRUE(display.state().copyItemEnabled);
    EXPECT_TRUE(display.state().flagVisible);
    EXPECT_TRUE(display.state().flagImage.isNull());
    EXPECT_TRUE(display.state().line3.visible);
    EXPECT_EQ(display.state().currentIp, text("1.1.1.1"));
}

TEST(SessionDisplay, CopyItemIsNeverEnabledAgain) {
    SessionDisplay display;
    display.starting();
    display.notHidden(text("1.1.1.1"));
    display.answerHandled();
    display.hidden(text("2.2.2.2"), text("1.1.1.1"), text("de"), text("x"));
    EXPECT_FALSE(display.state().copyItemEnabled);
}

TEST(SessionDisplay, EmptyLocationLeavesTheLine) {
    SessionDisplay display;
    display.hidden(text("2.2.2.2"), text("1.1.1.1"), text("de"), text("Germany Berlin"));
    display.hidden(text("2.2.2.3"), text("1.1.1.1"), text("de"), text(""));
    EXPECT_EQ(display.state().line22.text, text("Germany Berlin"));
}

TEST(SessionDisplay, LongLocationIsCut) {
    SessionDisplay display;
    display.hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), QString(20000, u'W'));
    EXPECT_EQ(display.state().line22.text, QString(200, u'W'));
}

TEST(SessionDisplay, WaitingEnablesStopping) {
    SessionDisplay display;
    display.starting();
    display.searching();
    display.waitingForLocation(text("note"));
    EXPECT_EQ(display.state().line3, (DisplayState::Line{text("note"), Tone::Quiet, true}));
    EXPECT_EQ(display.state().hideButton, (DisplayState::Button{text("Stop Hiding IP"), true, true}));
    EXPECT_EQ(display.state().hideItem, (DisplayState::Item{text("Stop Hiding IP"), true}));
    display.waitingEnded();
    EXPECT_FALSE(display.state().line3.visible);
    EXPECT_FALSE(display.state().hideButton.enabled);
    EXPECT_FALSE(display.state().hideItem.enabled);
}

} // namespace

} // namespace quorvane
