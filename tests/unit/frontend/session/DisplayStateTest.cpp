#include "frontend/session/DisplayState.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

const QString warning = QStringLiteral("WARNING! YOU ARE CURRENTLY NOT HIDING YOUR REAL IP!");
const QString searching = QStringLiteral("Searching for an available IP...");

SessionFacts factsOf(Phase phase, Look look) {
    SessionFacts facts;
    facts.phase = phase;
    facts.look = look;
    facts.answered = true;
    facts.realAddress = text("198.51.100.10");
    facts.shownAddress = look == Look::Hidden ? text("203.0.113.7\n") : text("198.51.100.10");
    facts.location = text("Germany Berlin");
    facts.flag = text("de");
    return facts;
}

/// One row of the table of states: what the user sees.
struct Row {
    Phase phase;
    Look look;
    const char *stateImage;
    const char *trayImage;
    DisplayState::Line line1;
    bool details; ///< location, flag and the two buttons that change the address
    bool pressableWithoutControls;
    bool refreshes;
};

const DisplayState::Line warningLine{warning, Tone::Warning, true};
const DisplayState::Line searchingLine{searching, Tone::Quiet, true};
const DisplayState::Line hiddenLine{QStringLiteral("You are currently hiding your real IP 198.51.100.10"),
                                    Tone::Plain, true};

const Row rows[] = {
    {Phase::Starting, Look::NotHidden, "appmain", "Tray", warningLine, false, false, true},
    {Phase::NotHidden, Look::NotHidden, "appmain", "Tray", warningLine, false, false, true},
    {Phase::Checking, Look::NotHidden, "appmain", "Tray", warningLine, false, false, false},
    {Phase::Checking, Look::Searching, "appwait", "Tray", searchingLine, false, false, false},
    {Phase::Checking, Look::Hidden, "applock", "TrayLock", hiddenLine, true, false, false},
    {Phase::Dropped, Look::NotHidden, "appmain", "Tray", warningLine, false, false, true},
    {Phase::Dropped, Look::Searching, "appwait", "Tray", searchingLine, false, false, true},
    {Phase::Dropped, Look::Hidden, "applock", "TrayLock", hiddenLine, true, false, false},
    {Phase::Fetching, Look::Searching, "appwait", "Tray", searchingLine, false, false, false},
    {Phase::Waiting, Look::Searching, "appwait", "Tray", searchingLine, false, true, true},
    {Phase::Unusable, Look::Searching, "appwait", "Tray", searchingLine, false, false, true},
    {Phase::Connecting, Look::Searching, "appwait", "Tray", searchingLine, false, false, false},
    {Phase::Unconfigured, Look::Searching, "appwait", "Tray", searchingLine, false, true, true},
    {Phase::Hidden, Look::Hidden, "applock", "TrayLock", hiddenLine, true, false, false},
};

TEST(DisplayState, EveryRowOfTheTableOfStates) {
    for (const Row &row : rows) {
        SCOPED_TRACE(text("phase %1, look %2").arg(int(row.phase)).arg(int(row.look)).toStdString());
        const DisplayState state = displayOf(factsOf(row.phase, row.look));
        EXPECT_EQ(state.look, row.look);
        EXPECT_EQ(state.stateImage, text(row.stateImage));
        EXPECT_EQ(state.trayImage, text(row.trayImage));
        EXPECT_EQ(state.line1, row.line1);
        EXPECT_EQ(state.line21.visible, row.details);
        EXPECT_EQ(state.line22.visible, row.details);
        EXPECT_EQ(state.flagVisible, row.details);
        EXPECT_EQ(state.changeIpVisible, row.details);
        EXPECT_EQ(state.discardIpVisible, row.details);
        EXPECT_EQ(state.line3.visible, row.pressableWithoutControls); // the notice
        EXPECT_FALSE(state.line4.visible);
        EXPECT_EQ(state.hideButton.enabled, row.pressableWithoutControls);
        EXPECT_EQ(state.hideItem.enabled, row.pressableWithoutControls);
        EXPECT_FALSE(state.changeItemEnabled);
        EXPECT_EQ(state.refreshEnabled, row.refreshes);
        EXPECT_EQ(state.refreshHint.isNull(), row.refreshes);
    }
}

TEST(DisplayState, ControlsEnableTheButtonAndBothItems) {
    for (const Row &row : rows) {
        SessionFacts facts = factsOf(row.phase, row.look);
        facts.controls = true;
        const DisplayState state = displayOf(facts);
        EXPECT_TRUE(state.hideButton.enabled);
        EXPECT_TRUE(state.hideItem.enabled);
        EXPECT_TRUE(state.changeItemEnabled);
        EXPECT_TRUE(isPressable(facts));
    }
}

TEST(DisplayState, BeforeTheFirstAnswer) {
    const DisplayState state = displayOf({});
    EXPECT_TRUE(state.spinning);
    EXPECT_TRUE(state.copyItemEnabled);
    EXPECT_TRUE(state.advancedEnabled);
    EXPECT_TRUE(state.currentIp.isNull());
    EXPECT_TRUE(state.flagImage.isNull());
    EXPECT_EQ(state.hideButton, (DisplayState::Button{text("Quorvane"), false, false,
                                                      text("Cannot be pressed at the moment")}));
    EXPECT_EQ(state.hideItem, (DisplayState::Item{text("Quorvane"), false}));
}

TEST(DisplayState, HintSaysWhatAPressDoesNow) {
    SessionFacts facts = factsOf(Phase::NotHidden, Look::NotHidden);
    facts.controls = true;
    EXPECT_EQ(displayOf(facts).hideButton.hint, text("Hides your real IP"));
    facts = factsOf(Phase::Hidden, Look::Hidden);
    facts.controls = facts.switchedOn = true;
    EXPECT_EQ(displayOf(facts).hideButton.hint, text("Stops hiding your real IP"));
    facts = factsOf(Phase::Waiting, Look::Searching);
    facts.switchedOn = true;
    EXPECT_EQ(displayOf(facts).hideButton.hint, text("Stops hiding your real IP"));
    facts = factsOf(Phase::Fetching, Look::Searching);
    EXPECT_EQ(displayOf(facts).hideButton.hint, text("Cannot be pressed at the moment"));
}

TEST(DisplayState, StepOfAnAttemptIsShownUnlessAnAddressIsHidden) {
    const auto stepLine = [](Phase phase, Look look) {
        const DisplayState state = displayOf(factsOf(phase, look));
        EXPECT_EQ(state.timed, state.stepLine.visible);
        return state.stepLine.text;
    };
    EXPECT_EQ(stepLine(Phase::Checking, Look::NotHidden), text("Step 1 of 3: checking the administrator"));
    EXPECT_EQ(stepLine(Phase::Fetching, Look::Searching), text("Step 2 of 3: getting a configuration"));
    EXPECT_EQ(stepLine(Phase::Connecting, Look::Searching), text("Step 3 of 3: starting the tunnel"));
    EXPECT_TRUE(stepLine(Phase::Checking, Look::Hidden).isNull());
    for (const Phase phase : {Phase::Starting, Phase::NotHidden, Phase::Dropped, Phase::Waiting,
                              Phase::Unusable, Phase::Unconfigured, Phase::Hidden, Phase::Ended}) {
        EXPECT_TRUE(stepLine(phase, Look::Searching).isNull());
    }
}

TEST(DisplayState, FirstUseSaysWhatToDoWhileNothingIsUnderWay) {
    for (const Row &row : rows) {
        SessionFacts facts = factsOf(row.phase, row.look);
        facts.firstUse = true;
        const bool isShown =
            displayOf(facts).stepLine.text == text("Choose a location, then press Quorvane.");
        EXPECT_EQ(isShown, row.phase == Phase::NotHidden);
    }
}

TEST(DisplayState, NoticesNameWhatTheUserCanDo) {
    EXPECT_EQ(displayOf(factsOf(Phase::Waiting, Look::Searching)).line3,
              (DisplayState::Line{text("Every location has been used in this rotation. Refresh the locations "
                                       "or switch \"US only\" to begin a new one."),
                                  Tone::Quiet, true}));
    EXPECT_EQ(displayOf(factsOf(Phase::Unconfigured, Look::Searching)).line3,
              (DisplayState::Line{text("There is no VPN configuration to connect with. Choose a location to "
                                       "get a new one."),
                                  Tone::Quiet, true}));
}

TEST(DisplayState, FrameOfTheAnimationReplacesTheTraysImage) {
    for (const Row &row : rows) {
        SessionFacts facts = factsOf(row.phase, row.look);
        facts.frame = text("A07");
        EXPECT_EQ(displayOf(facts).trayImage, text("A07"));
    }
}

TEST(DisplayState, TunnelThatWasLostHidesNothing) {
    SessionFacts facts = factsOf(Phase::Hidden, Look::Hidden);
    facts.lost = true;
    facts.addressMissing = true;
    DisplayState expected = displayOf(factsOf(Phase::Hidden, Look::NotHidden));
    expected.flagImage = QString();
    EXPECT_EQ(displayOf(facts), expected);
}

TEST(DisplayState, MissingAddressIsNoticedWhileHidden) {
    for (const Look look : {Look::NotHidden, Look::Searching, Look::Hidden}) {
        SessionFacts facts = factsOf(Phase::Checking, look);
        facts.addressMissing = true;
        EXPECT_EQ(displayOf(facts).addressNotice.visible, look == Look::Hidden);
    }
}

TEST(DisplayState, TitlesFollowTheirFacts) {
    SessionFacts facts = factsOf(Phase::Connecting, Look::Searching);
    facts.itemStops = true;
    facts.switchedOn = true;
    EXPECT_EQ(displayOf(facts).hideItem.title, text("Stop Hiding IP"));
    EXPECT_EQ(displayOf(facts).hideButton,
              (DisplayState::Button{text("Quorvane"), false, true, text("Cannot be pressed at the moment")}));
    facts.buttonStops = true;
    EXPECT_EQ(displayOf(facts).hideButton.title, text("Stop Hiding IP"));
}

TEST(DisplayState, AddressIsShownExactlyAndTheLocationShortened) {
    SessionFacts facts = factsOf(Phase::Hidden, Look::Hidden);
    facts.location = QString(5000, u'x');
    EXPECT_EQ(displayOf(facts).currentIp, text("203.0.113.7\n"));
    EXPECT_EQ(displayOf(facts).line22.text.size(), 200);
    EXPECT_EQ(displayOf(facts).flagImage, text("de"));
}

TEST(DisplayState, SettingsAreShown) {
    SessionFacts facts;
    facts.interval = 25;
    facts.changesAutomatically = true;
    facts.requiresUs = true;
    facts.copyEnabled = false;
    facts.settingsEnabled = false;
    const DisplayState state = displayOf(facts);
    EXPECT_EQ(state.interval, 25);
    EXPECT_TRUE(state.changesAutomatically);
    EXPECT_TRUE(state.requiresUs);
    EXPECT_FALSE(state.copyItemEnabled);
    EXPECT_FALSE(state.advancedEnabled);
}

} // namespace

} // namespace quorvane
