#include "frontend/session/wiring/QrvMainWindowController.h"

#include "frontend/session/LaunchAgent.h"
#include "platform/NotificationCenter.h"
#include "platform/PropertyList.h"
#include "tests/gui/ControllerFixture.h"
#include "tests/gui/ui/settings/SettingsTest.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTimer>

namespace quorvane {

/// The settings window in the whole program, with fake services.
class SettingsMainWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<ControllerFixture> m_fixture;

    [[nodiscard]] fakes::TestPlatform &services() const { return m_fixture->services; }

    [[nodiscard]] SettingsWindow &settings() const { return m_fixture->controller->settings().window(); }

    /// Null while it is not loaded.
    [[nodiscard]] static SettingsWindow *findSettings() {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (QWidget *window : windows) {
            if (auto *found = qobject_cast<SettingsWindow *>(window)) {
                return found;
            }
        }
        return nullptr;
    }

    template <typename Widget>
    [[nodiscard]] Widget *inMain(const char *name) const {
        return m_fixture->find<Widget>(name);
    }

    template <typename Widget>
    [[nodiscard]] Widget *inSettings(const char *name) const {
        return settings().findChild<Widget *>(text(name));
    }

    void openSettings() {
        m_fixture->start();
        auto *button = inMain<QPushButton>("advancedSettingsButton");
        QVERIFY(button->isVisible() && button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(settings().isVisible());
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<ControllerFixture>();
        services().addResource(
            text("com.qrvp.LaunchAtLogin.plist"),
            platform::PropertyList::write({{text("Label"), text("a")}, {text("RunAtLoad"), false}}));
    }

    void cleanup() { m_fixture.reset(); }

    void settingsButtonClosesTheMainWindowAndShowsTheSettings() {
        openSettings();
        QVERIFY(!m_fixture->controller->window().isVisible());
    }

    void menuItemDoesTheSame() {
        m_fixture->start();
        m_fixture->controller->advancedSettingsMenuItemPressed();
        QVERIFY(settings().isVisible());
        QVERIFY(!m_fixture->controller->window().isVisible());
    }

    void notificationShowsTheSettingsAndLeavesTheMainWindow() {
        m_fixture->start();
        services().platform().notifications->post(text("showSettings"));
        QVERIFY(settings().isVisible());
        QVERIFY(m_fixture->controller->window().isVisible());
    }

    void everyWayOfClosingShowsTheMainWindow() {
        for (const char *way : {"buttonOk", "buttonCancel", "close box"}) {
            openSettings();
            if (auto *button = inSettings<QPushButton>(way)) {
                button->click();
            } else {
                settings().close();
            }
            QVERIFY2(!settings().isVisible(), way);
            QVERIFY2(m_fixture->controller->window().isVisible(), way);
            m_fixture->end();
        }
    }

    void hotKeysAreRegisteredWhenTheMainWindowWasDrawn() {
        services().preferences().setValue(text("hideIpHotKey"), 2);
        m_fixture->start();
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 10);
        QVERIFY2(!services().hotKeys().hasEventHandler(), "the main window does not wait for them");
        QTRY_VERIFY(services().hotKeys().hasEventHandler());
        QCOMPARE(services().hotKeys().held().size(), 1);
    }

    void settingsWindowIsMadeWhenItIsFirstUsed() {
        m_fixture->start();
        QTRY_VERIFY(services().hotKeys().hasEventHandler());
        m_fixture->controller->settings().addDiscardedIp(text("203.0.113.7"));
        m_fixture->controller->settings().refreshBoundControls();
        m_fixture->controller->settings().refreshNameServers();
        QVERIFY(findSettings() == nullptr);
        m_fixture->controller->showSettings();
        QVERIFY(settings().isVisible());
        QCOMPARE(inSettings<QTableView>("tableDiscardIp")->model()->rowCount(), 1);
    }

    void appliedRotationReachesTheMainWindow() {
        openSettings();
        inSettings<QCheckBox>("checkboxChangeIpInterval")->click();
        inSettings<QLineEdit>("fieldChangeIpInterval")->setText(text("7"));
        QVERIFY(!inMain<QCheckBox>("checkboxChangeIpInterval")->isChecked());
        inSettings<QPushButton>("buttonOk")->click();
        QVERIFY(inMain<QCheckBox>("checkboxChangeIpInterval")->isChecked());
        QCOMPARE(inMain<QLineEdit>("fieldChangeIpInterval")->text(), text("7"));
        QVERIFY(inMain<QLineEdit>("fieldChangeIpInterval")->isEnabled());
    }

    void appliedIntervalReplacesOneThatWasTypedInTheMainWindow() {
        services().preferences().setValue(text("changeIpEvery"), true);
        openSettings();
        auto *field = inMain<QLineEdit>("fieldChangeIpInterval");
        field->selectAll();
        QTest::keyClicks(field, text("25"));
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 25);
        inSettings<QLineEdit>("fieldChangeIpInterval")->setText(text("10")); // what the start stored
        inSettings<QPushButton>("buttonOk")->click();
        QCOMPARE(services().preferences().integer(text("changeIpInterval")), 10);
        QCOMPARE(field->text(), text("10"));
        QCOMPARE(inMain<QSpinBox>("stepperChangeIpInterval")->value(), 10);
    }

    void mainWindowsBoxIsShownAndOverridesAnOlderPendingEdit() {
        m_fixture->start();
        m_fixture->controller->showSettings();
        inSettings<QCheckBox>("checkboxChangeIpInterval")->click(); // pending: on
        settings().close();
        inMain<QCheckBox>("checkboxChangeIpInterval")->click();
        inMain<QCheckBox>("checkboxChangeIpInterval")->click(); // on, then off again
        QCOMPARE(services().preferences().value(text("changeIpEvery")), QVariant(false));
        QVERIFY(!inSettings<QCheckBox>("checkboxChangeIpInterval")->isChecked());
    }

    void sessionResetLeavesPendingEditsPending() {
        openSettings();
        inSettings<QCheckBox>("checkboxHide")->click();
        m_fixture->controller->session().setDefaultControls();
        QVERIFY(!services().preferences().value(text("hide")).isValid());
        inSettings<QPushButton>("buttonCancel")->click();
        QVERIFY(!services().preferences().value(text("hide")).isValid());
    }

    void launchBoxWritesTheAgentAtOnceAfterSavingPendingEdits() {
        openSettings();
        inSettings<QCheckBox>("checkboxHide")->click();
        inSettings<QCheckBox>("launchOnStart")->click();
        QVERIFY(LaunchAgent::launchesOnStartup());
        QCOMPARE(services().preferences().value(text("hide")), QVariant(true));
        inSettings<QPushButton>("buttonCancel")->click();
        m_fixture->controller->showSettings();
        QVERIFY(inSettings<QCheckBox>("launchOnStart")->isChecked());
    }

    void hotKeysActOnTheSharedWindowAndNotBeforeThereIsOne() {
        services().preferences().setValue(text("bringUpWindowHotKey"), 1);
        m_fixture->createAndAwake();
        QTRY_COMPARE(services().hotKeys().held().size(), 1);
        m_fixture->controller->window().hide();
        QCOMPARE(services().hotKeys().press(29, 256), 1);
        QVERIFY(!m_fixture->controller->window().isVisible());
        m_fixture->application->applicationDidFinishLaunching();
        QCOMPARE(services().hotKeys().press(29, 256), 1);
        QVERIFY(m_fixture->controller->window().isVisible());
    }

    void foreignIdentifiersDoNothing() {
        m_fixture->start();
        QTRY_VERIFY(services().hotKeys().hasEventHandler());
        m_fixture->controller->window().hide();
        for (const quint32 id : {0U, 6U, 4294967295U}) {
            services().hotKeys().deliver({0x73696735, id});
        }
        QVERIFY(!m_fixture->controller->window().isVisible());
    }

    void discardedListIsHeldByTheSettingsWindow() {
        m_fixture->start();
        m_fixture->controller->settings().addDiscardedIp(text("203.0.113.7"));
        QCOMPARE(m_fixture->controller->session().getDiscardList(), QStringList{text("203.0.113.7")});
    }

    void discardedListIsReadBeforeTheSettingsWindowExists() {
        services().preferences().setValue(text("discardedIPs"), text("203.0.113.7|203.0.113.9"));
        m_fixture->start();
        QVERIFY(findSettings() == nullptr);
        const QStringList rows{text("203.0.113.7"), text("203.0.113.9")};
        QCOMPARE(m_fixture->controller->session().getDiscardList(), rows);
        QVERIFY(findSettings() == nullptr);
        QCOMPARE(m_fixture->controller->settings().getRowData(), rows);
        QCOMPARE(m_fixture->controller->session().getDiscardList(), rows);
    }

    void hotKeysAreRegisteredWithTheStartUpChecksWhenNothingWasDrawn() {
        m_fixture->createAndAwake();
        QVERIFY(!services().hotKeys().hasEventHandler());
        services().delayedCalls().advance(QrvMainWindowController::checkDelaySeconds);
        QVERIFY(services().hotKeys().hasEventHandler());
    }

    void notificationOpensTheMainWindowsDialogWhateverElseIsOpen() {
        bool valid = true;
        services().scripting().setHandler([&valid](const fakes::FakeScriptingService::Call &) {
            return valid ? fakes::FakeScriptingService::success(text(""))
                         : fakes::FakeScriptingService::failure(1, text("no"));
        });
        openSettings();
        const auto check = [this] {
            services().platform().notifications->post(text("checkCredential"));
            services().background().finishAll();
        };
        check();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        valid = false;
        check();
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        QCOMPARE(dialog->parentWidget(), &m_fixture->controller->window());
        check(); // only one dialog is open
        QCOMPARE(QApplication::activeModalWidget(), dialog);
        dialog->reject();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void settingsWindowOpensItsOwnDialogAndKeepsIt() {
        services().scripting().setHandler([](const fakes::FakeScriptingService::Call &) {
            return fakes::FakeScriptingService::failure(1, text("no"));
        });
        openSettings();
        QWidget *first = nullptr;
        for (int i = 0; i < 2; ++i) {
            m_fixture->controller->settings().authWindow();
            services().background().finishAll();
            auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            QVERIFY(dialog != nullptr);
            QCOMPARE(dialog->parentWidget(), &settings());
            first = first == nullptr ? dialog : first;
            QCOMPARE(dialog, first);
            dialog->reject();
        }
    }
};

} // namespace quorvane

GUI_TEST(SettingsMainWindowTest)
#include "SettingsMainWindowTest.moc"
