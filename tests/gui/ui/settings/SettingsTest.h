#pragma once

#include "frontend/api/QrvAPI.h"
#include "frontend/ui/settings/QrvSettingsWindowController.h"
#include "frontend/ui/settings/SettingsToolbar.h"
#include "frontend/ui/settings/SettingsWindow.h"
#include "platform/UserDefaultsController.h"
#include "tests/gui/GuiTest.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>

namespace quorvane {

/// A fake of the main window's controller.
class RecordingSettingsDelegate final : public SettingsDelegate {
public:
    void showMainWindow() override { calls.append(text("show")); }

    void settingsDidChange() override { calls.append(text("changed")); }

    void hotKeyFired(quint32 identifier) override { fired.append(identifier); }

    [[nodiscard]] bool launchesOnStartup() const override { return launches; }

    void startupLaunchButtonPressed(bool on) override {
        calls.append(on ? text("launch on") : text("launch off"));
        launches = on;
    }

    void checkAdministrator(QWidget &window) override { checkedFor.append(&window); }

    void putBackNameServers() override { calls.append(text("put back")); }

    QStringList calls;
    QList<QWidget *> checkedFor;
    QList<quint32> fired;
    bool launches = false;
};

/// The settings window with fake services. Preferences are set before start().
class SettingsFixture : public GuiFixture {
public:
    void start() {
        api = std::make_unique<QrvAPI>();
        controller = std::make_unique<QrvSettingsWindowController>(delegate, *api);
        controller->awakeFromNib();
    }

    void startAndShow() {
        start();
        controller->showWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window()));
    }

    [[nodiscard]] SettingsWindow &window() const { return controller->window(); }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return window().findChild<Widget *>(text(name));
    }

    [[nodiscard]] QVariant stored(const char *key) const { return services.preferences().value(text(key)); }

    void store(const char *key, const QVariant &value) const {
        services.preferences().setValue(text(key), value);
    }

    void click(const char *button) const { find<QAbstractButton>(button)->click(); }

    /// Chooses an entry in the open list, as the user does.
    static void choose(QComboBox *box, const QString &entry) {
        box->showPopup();
        const int row = box->findText(entry);
        QVERIFY2(row >= 0, qPrintable(entry));
        box->view()->setCurrentIndex(box->model()->index(row, 0));
        QTest::keyClick(box->view(), Qt::Key_Return);
        QCOMPARE(box->currentIndex() >= 0, true);
    }

    RecordingSettingsDelegate delegate;
    std::unique_ptr<QrvAPI> api;
    std::unique_ptr<QrvSettingsWindowController> controller;
};

} // namespace quorvane
