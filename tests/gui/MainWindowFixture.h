#pragma once

#include "frontend/session/LocationList.h"
#include "frontend/session/SessionDisplay.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "tests/gui/GuiTest.h"

namespace quorvane {

/// The main window, which shows a session's display from its start.
class MainWindowFixture : public GuiFixture {
public:
    MainWindowFixture() {
        QObject::connect(&display, &SessionDisplay::changed, &window, &MainWindow::draw);
        display.starting();
    }

    void show() {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }

    void showHidden() {
        display.hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
    }

    template <typename Widget>
    [[nodiscard]] Widget *find(const char *name) const {
        return window.findChild<Widget *>(text(name));
    }

    LocationList locations;
    MainWindow window{locations};
    SessionDisplay display;
};

} // namespace quorvane
