#include "frontend/session/LocationList.h"
#include "frontend/ui/mainwindow/MainWindow.h"

#include "frontend/ui/shared/QrvFancyIp.h"
#include "tests/gui/MainWindowFixture.h"

#include <QCheckBox>
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
        static const QHash<Tone, QString> colours{
            {Tone::Warning,
             text(
                 "color: rgb(223, 46, 51); background: rgb(2, 2, 2); border-radius: 6px; padding: 4px 8px;")},
            {Tone::Quiet, text("color: rgb(211, 211, 211);")},
            {Tone::Plain, text("color: white;")}};
        if (line.visible) {
            QCOMPARE(label->styleSheet(), colours.value(line.tone));
        }
    }

    /// Every field of the state that the window shows.
    void compare() const {
        const DisplayState state = displayOf(m_fixture->display.facts);
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
        QCOMPARE(find<QCheckBox>("checkboxChangeIpInterval")->isChecked(), state.changesAutomatically);
        QCOMPARE(find<QCheckBox>("checkboxRequireUS")->isChecked(), state.requiresUs);
        const auto *spinner = find<QProgressBar>("viewSpinWeel");
        QCOMPARE(spinner->isVisible(), state.spinning);
        QCOMPARE(spinner->maximum(), state.spinning ? 0 : 100);
        QCOMPARE(find<QLineEdit>("fieldChangeIpInterval")->isEnabled(), state.changesAutomatically);
        QCOMPARE(find<QLineEdit>("fieldChangeIpInterval")->text(), QString::number(state.interval));
        QCOMPARE(find<QSpinBox>("stepperChangeIpInterval")->isEnabled(), state.changesAutomatically);
        QCOMPARE(find<QSpinBox>("stepperChangeIpInterval")->value(), state.interval);
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<MainWindowFixture>();
        m_fixture->display.facts.interval = 10;
        m_fixture->display.draw();
        m_fixture->show();
    }

    void cleanup() { m_fixture.reset(); }

    void everyStateOfASession() {
        SessionFacts &facts = m_fixture->display.facts;
        const QList<std::function<void()>> steps{
            [] {},
            [&] { facts.realAddress = facts.shownAddress = text("198.51.100.10"); },
            [&] {
                facts.answered = facts.controls = true;
                facts.phase = Phase::NotHidden;
            },
            [&] { facts.switchedOn = true; },
            [&] { facts.controls = facts.settingsEnabled = false; },
            [&] { facts.phase = Phase::Checking; },
            [&] {
                facts.phase = Phase::Waiting;
                facts.look = Look::Searching;
                facts.buttonStops = facts.itemStops = true;
            },
            [&] { facts.phase = Phase::Fetching; },
            [&] { facts.phase = Phase::Connecting; },
            [&] { facts.settingsEnabled = true; },
            [&] { m_fixture->showHidden(); },
            [&] {
                facts.interval = 42;
                facts.changesAutomatically = facts.requiresUs = true;
            },
            [&] {
                facts.phase = Phase::Fetching;
                facts.look = Look::Searching;
            },
            [&] { m_fixture->showHidden(); },
            [&] {
                facts.location = text("States Denver");
                facts.shownAddress = text("203.0.113.8\n");
                facts.flag = text("us");
            },
            [&] {
                facts.phase = Phase::NotHidden;
                facts.look = Look::NotHidden;
                facts.shownAddress = facts.realAddress;
                facts.flag = QString();
                facts.switchedOn = facts.buttonStops = facts.itemStops = facts.copyEnabled = false;
            },
        };
        for (qsizetype step = 0; step < steps.size(); ++step) {
            steps.at(step)();
            m_fixture->display.draw();
            compare();
            QVERIFY2(!QTest::currentTestFailed(), qPrintable(text("step %1").arg(step)));
        }
    }
};

} // namespace quorvane

GUI_TEST(MainWindowStatesTest)
#include "MainWindowStatesTest.moc"
