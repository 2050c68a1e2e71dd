#pragma once

#include "frontend/session/LocationChooser.h"
#include "frontend/session/LocationList.h"
#include "tests/gui/GuiTest.h"
#include "tests/gui/ShownSession.h"

namespace quorvane {

/// The main window, which shows the facts of a session from its start.
class MainWindowFixture : public GuiFixture {
public:
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
    LocationChooser chooser{locations};
    MainWindow window{chooser};
    ShownSession display{window};
};

} // namespace quorvane
