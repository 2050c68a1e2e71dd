#include "frontend/session/LocationChooser.h"
#include "frontend/session/LocationList.h"
#include "frontend/ui/mainwindow/MainWindow.h"
#include "frontend/ui/mainwindow/QrvAboutWindowController.h"

#include "tests/gui/GuiTest.h"
#include "tests/gui/ShownSession.h"

#include <QAccessible>
#include <QLabel>

namespace quorvane {

namespace {

/// Roles of containers and decorations.
bool isContainer(QAccessible::Role role) {
    switch (role) {
    case QAccessible::Client:
    case QAccessible::Grouping:
    case QAccessible::Pane:
    case QAccessible::Border:
    case QAccessible::Separator:
    case QAccessible::Whitespace:
    case QAccessible::LayeredPane:
    case QAccessible::Splitter:
        return true;
    default:
        return false;
    }
}

bool isNamed(const QAccessibleInterface &part) {
    return !part.text(QAccessible::Name).isEmpty() || !part.text(QAccessible::Description).isEmpty();
}

struct Parts {
    QStringList unnamed;
    QList<QAccessible::Role> roles;
};

/// Every visible part, as a screen reader finds it.
void collectParts(const QAccessibleInterface *part, Parts &found, int depth = 0) {
    if (part == nullptr || depth > 20 || part->state().invisible) {
        return;
    }
    found.roles.append(part->role());
    // A combo or spin box has the name for its inner parts.
    const bool namesItsParts = part->role() == QAccessible::ComboBox || part->role() == QAccessible::SpinBox;
    if (!isContainer(part->role()) && !isNamed(*part)) {
        const QObject *object = part->object();
        found.unnamed.append(
            text("%1 (role %2)").arg(object != nullptr ? object->objectName() : QString()).arg(part->role()));
    }
    for (int i = 0; !namesItsParts && i < part->childCount(); ++i) {
        collectParts(part->child(i), found, depth + 1);
    }
}

Parts partsOf(QWidget &window) {
    Parts found;
    collectParts(QAccessible::queryAccessibleInterface(&window), found);
    return found;
}

} // namespace

/// The interface for screen readers. The end-to-end tests examine the running program on a real screen.
class AccessibilityTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

private Q_SLOTS:

    void init() { m_fixture = std::make_unique<GuiFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void mainWindowHasNoUnnamedPartInAnyState() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        ShownSession display(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto check = [&window] {
            const Parts found = partsOf(window);
            QVERIFY2(found.unnamed.isEmpty(), qPrintable(found.unnamed.join(text(", "))));
            for (const auto role :
                 {QAccessible::Button, QAccessible::CheckBox, QAccessible::ComboBox, QAccessible::RadioButton,
                  QAccessible::EditableText, QAccessible::SpinBox, QAccessible::StaticText}) {
                QVERIFY2(found.roles.contains(role), qPrintable(QString::number(role)));
            }
        };
        check();
        display.answerHandled();
        display.searching();
        check();
        display.waitingForLocation();
        check();
        display.hidden(text("203.0.113.7\n"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        check();
        display.notHidden(text("198.51.100.10"));
        check();
    }

    void aboutWindowHasNoUnnamedPart() {
        QrvAPI api;
        QWidget main;
        QrvAboutWindowController about(main, api);
        about.showWindow();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        const Parts found = partsOf(about);
        QVERIFY2(found.unnamed.isEmpty(), qPrintable(found.unnamed.join(text(", "))));
        QVERIFY(found.roles.contains(QAccessible::Button));
    }

    void statePictureAndFlagHaveAccessibleNames() {
        LocationList locations;
        LocationChooser chooser(locations);
        MainWindow window(chooser);
        ShownSession display(window);
        const auto *picture = window.findChild<QLabel *>(text("imageAppState"));
        QCOMPARE(picture->accessibleName(), text("IP not hidden"));
        display.searching();
        QCOMPARE(picture->accessibleName(), text("Searching"));
        display.hidden(text("203.0.113.7"), text("198.51.100.10"), text("de"), text("Germany Berlin"));
        QCOMPARE(picture->accessibleName(), text("IP hidden"));
        QCOMPARE(window.findChild<QLabel *>(text("imageCountry"))->accessibleName(), text("Flag: DE"));
    }
};

} // namespace quorvane

GUI_TEST(AccessibilityTest)
#include "AccessibilityTest.moc"
