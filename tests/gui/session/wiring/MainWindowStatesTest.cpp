#include "frontend/ui/mainwindow/MainWindow.h"

#include "frontend/ui/shared/QrvFancyIp.h"
#include "tests/gui/GuiTest.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>

namespace quorvane {

/// What the window shows against the display state, field by field, in every state of a session.
class MainWindowStatesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> fixture;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<SessionDisplay> display;

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return window->findChild<Widget *>(text(name));
    }

    void compareLine(const char *name, const DisplayState::Line &line) const {
        const auto *label = find<QLabel>(name);
        QVERIFY2(label->isVisible() == line.visible, name);
        if (!line.text.isNull()) {
            QCOMPARE(label->text(), line.text);
        }
        static const QHash<Tone, QString> colours{{Tone::Warning, text("color: rgb(223, 46, 51);")},
                                                  {Tone::Quiet, text("color: rgb(211, 211, 211);")},
                                                  {Tone::Plain, text("color: white;")}};
        QCOMPARE(label->styleSheet(), colours.value(line.tone));
    }

    /// Every field of the state that the window shows.
    void compare() const {
        const DisplayState &state = display->state();
        compareLine("fieldLine1", state.line1);
        compareLine("fieldLine21", state.line21);
        compareLine("fieldLine22", state.line22);
        compareLine("fieldLine3", state.line3);
        compareLine("fieldLine4", state.line4);
        QCOMPARE(find<QrvFancyIp>("viewCurrentIP")->stringValue(), state.currentIp);
        const auto *flag = find<QLabel>("imageCountry");
        QCOMPARE(flag->isVisible(), state.flagVisible);
        QCOMPARE(flag->pixmap().isNull(), state.flagImage.isNull());
        QVERIFY(!find<QLabel>("imageAppState")->pixmap().isNull());
        const auto *hide = find<QPushButton>("buttonQuorvane");
        QCOMPARE(hide->text(), state.hideButton.title);
        QCOMPARE(hide->isEnabled(), state.hideButton.enabled);
        QCOMPARE(hide->isChecked(), state.hideButton.on);
        QCOMPARE(find<QPushButton>("advancedSettingsButton")->isEnabled(), state.advancedEnabled);
        QCOMPARE(find<QPushButton>("changeIpButton")->isVisible(), state.changeIpVisible);
        QCOMPARE(find<QPushButton>("discardIpButton")->isVisible(), state.discardIpVisible);
        const auto *spinner = find<QProgressBar>("viewSpinWeel");
        QCOMPARE(spinner->isVisible(), state.spinning);
        QCOMPARE(spinner->maximum(), state.spinning ? 0 : 100);
        QCOMPARE(find<QLineEdit>("fieldChangeIpInterval")->isEnabled(), state.intervalEnabled);
        QCOMPARE(find<QLineEdit>("fieldChangeIpInterval")->text(), QString::number(state.interval));
        QCOMPARE(find<QSpinBox>("stepperChangeIpInterval")->isEnabled(), state.intervalEnabled);
        QCOMPARE(find<QSpinBox>("stepperChangeIpInterval")->value(), state.interval);
    }

private Q_SLOTS:

    void init() {
        fixture = std::make_unique<GuiFixture>();
        window = std::make_unique<MainWindow>();
        display = std::make_unique<SessionDisplay>();
        connect(display.get(), &SessionDisplay::changed, window.get(), &MainWindow::draw);
        display->starting();
        display->interval(10, false);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() {
        window.reset();
        display.reset();
        fixture.reset();
    }

    void everyStateOfASession() {
        const QString real = text("198.51.100.10");
        const QList<std::function<void()>> steps{
            [] {},
            [&] { display->currentIpKnown(real); },
            [&] { display->answerHandled(); },
            [&] { display->switchedOn(true); },
            [&] { display->switchingOn(); },
            [&] { display->searching(); },
            [&] { display->waitingForLocation(text("Every location has been used.")); },
            [&] { display->waitingEnded(); },
            [&] { display->fetching(); },
            [&] { display->tunnelStarting(); },
            [&] { display->advancedEnabled(true); },
            [&] { display->hidden(text("203.0.113.7\n"), real, text("de"), text("Germany Berlin")); },
            [&] { display->interval(42, true); },
            [&] { display->searching(); },
            [&] { display->failed(real); },
            [&] { display->hidden(text("203.0.113.8\n"), real, text("us"), text("")); },
            [&] { display->hideRotationButtons(); },
            [&] { display->notHidden(real); },
        };
        for (qsizetype step = 0; step < steps.size(); ++step) {
            steps.at(step)();
            compare();
            QVERIFY2(!QTest::currentTestFailed(), qPrintable(text("step %1").arg(step)));
        }
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::MainWindowStatesTest)
#include "MainWindowStatesTest.moc"
