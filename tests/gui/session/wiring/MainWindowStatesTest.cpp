#include "frontend/session/LocationList.h"
#include "frontend/ui/mainwindow/MainWindow.h"

#include "frontend/ui/shared/QrvFancyIp.h"
#include "tests/gui/MainWindowFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>

namespace quorvane {

/// Compares the window with the display state, field by field, in every state of a session.
class MainWindowStatesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<MainWindowFixture> m_fixture;

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return m_fixture->find<Widget>(name);
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
        const DisplayState &state = m_fixture->display.state();
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
        m_fixture = std::make_unique<MainWindowFixture>();
        m_fixture->display.interval(10, false);
        m_fixture->show();
    }

    void cleanup() { m_fixture.reset(); }

    void everyStateOfASession() {
        const QString real = text("198.51.100.10");
        const QList<std::function<void()>> steps{
            [] {},
            [&] { m_fixture->display.currentIpKnown(real); },
            [&] { m_fixture->display.answerHandled(); },
            [&] { m_fixture->display.switchedOn(true); },
            [&] { m_fixture->display.switchingOn(); },
            [&] { m_fixture->display.searching(); },
            [&] { m_fixture->display.waitingForLocation(text("Every location has been used.")); },
            [&] { m_fixture->display.waitingEnded(); },
            [&] { m_fixture->display.fetching(); },
            [&] { m_fixture->display.tunnelStarting(); },
            [&] { m_fixture->display.advancedEnabled(true); },
            [&] {
                m_fixture->display.hidden(text("203.0.113.7\n"), real, text("de"), text("Germany Berlin"));
            },
            [&] { m_fixture->display.interval(42, true); },
            [&] { m_fixture->display.searching(); },
            [&] { m_fixture->display.failed(real); },
            [&] { m_fixture->display.hidden(text("203.0.113.8\n"), real, text("us"), text("")); },
            [&] { m_fixture->display.hideRotationButtons(); },
            [&] { m_fixture->display.notHidden(real); },
        };
        for (qsizetype step = 0; step < steps.size(); ++step) {
            steps.at(step)();
            compare();
            QVERIFY2(!QTest::currentTestFailed(), qPrintable(text("step %1").arg(step)));
        }
    }
};

} // namespace quorvane

GUI_TEST(MainWindowStatesTest)
#include "MainWindowStatesTest.moc"
