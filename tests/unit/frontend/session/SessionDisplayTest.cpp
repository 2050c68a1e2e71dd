#include "frontend/session/SessionDisplay.h"

#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace {

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

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

TEST(SessionDisplay, EveryChangeIsTold) {
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

TEST(SessionDisplay, WaitingOpensTheWayToStop) {
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
