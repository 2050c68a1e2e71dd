#include "frontend/ui/shared/AccessibleButton.h"

#include "frontend/ui/settings/SettingsToolbar.h"
#include "tests/gui/GuiTest.h"

#include <QAccessible>
#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QToolButton>

namespace quorvane {

namespace {

QAccessibleInterface &accessible(QWidget &widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
}

QStringList actionsOf(QWidget &widget) {
    return accessible(widget).actionInterface()->actionNames();
}

/// What an assistive program does with the control: its first action.
void act(QWidget &widget) {
    accessible(widget).actionInterface()->doAction(actionsOf(widget).constFirst());
    QCoreApplication::processEvents();
}

} // namespace

class AccessibleButtonTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;

private Q_SLOTS:

    static void initTestCase() { AccessibleButton::install(); }

    void init() { m_fixture = std::make_unique<GuiFixture>(); }

    void cleanup() { m_fixture.reset(); }

    void actionOfEachKindIsAClick() {
        QPushButton plain;
        QPushButton pushed;
        pushed.setCheckable(true);
        QCheckBox box;
        QRadioButton radio;
        for (QAbstractButton *button :
             std::initializer_list<QAbstractButton *>{&plain, &pushed, &box, &radio}) {
            QSignalSpy clicks(button, &QAbstractButton::clicked);
            const bool toggles = button->isCheckable();
            QCOMPARE(actionsOf(*button).constFirst(), toggles ? text("Toggle") : text("Press"));
            act(*button);
            QCOMPARE(clicks.size(), 1);
            QCOMPARE(clicks.at(0).at(0).toBool(), toggles);
            QCOMPARE(bool(accessible(*button).state().checked), toggles);
            accessible(*button).actionInterface()->doAction(text("Press"));
            QTRY_COMPARE(clicks.size(), 2);
            // A radio button that is on stays on.
            QCOMPARE(button->isChecked(), button == &radio);
        }
    }

    void disabledButtonHasNoActionAndIsNotClicked() {
        QCheckBox box;
        QSignalSpy clicks(&box, &QAbstractButton::clicked);
        box.setEnabled(false);
        QVERIFY(!actionsOf(box).contains(text("Toggle")));
        QVERIFY(!actionsOf(box).contains(text("Press")));
        accessible(box).actionInterface()->doAction(text("Toggle"));
        QCoreApplication::processEvents();
        QCOMPARE(clicks.size(), 0);
        QVERIFY(!box.isChecked());
    }

    void buttonThatIsDeletedBeforeItsClickIsNotPressed() {
        auto box = std::make_unique<QCheckBox>();
        accessible(*box).actionInterface()->doAction(text("Toggle"));
        box.reset();
        QCoreApplication::processEvents();
    }

    void otherActionsAreTheWidgets() {
        QPushButton button;
        QVERIFY(actionsOf(button).contains(text("SetFocus")));
        QSignalSpy clicks(&button, &QAbstractButton::clicked);
        accessible(button).actionInterface()->doAction(text("SetFocus"));
        QCoreApplication::processEvents();
        QCOMPARE(clicks.size(), 0);
    }

    void nameRoleAndShortcutAreThoseOfTheButton() {
        QPushButton button(text("Lift the &Block && more"));
        button.setDefault(true);
        QCOMPARE(accessible(button).role(), QAccessible::Button);
        QCOMPARE(accessible(button).text(QAccessible::Name), text("Lift the Block & more"));
        QCOMPARE(accessible(button).text(QAccessible::Accelerator), text("Alt+B"));
        QCOMPARE(accessible(button).actionInterface()->keyBindingsForAction(text("Press")),
                 QStringList(text("Alt+B")));
        QVERIFY(accessible(button).state().defaultButton);
        button.setAccessibleName(text("Name"));
        button.setAccessibleDescription(text("What it does"));
        QCOMPARE(accessible(button).text(QAccessible::Name), text("Name"));
        QCOMPARE(accessible(button).text(QAccessible::Description), text("What it does"));
        QCheckBox box;
        QCOMPARE(accessible(box).role(), QAccessible::CheckBox);
        QVERIFY(accessible(box).state().checkable);
        QRadioButton radio;
        QCOMPARE(accessible(radio).role(), QAccessible::RadioButton);
    }

    void toolbarShowsAPane() {
        SettingsToolbar toolbar;
        toolbar.showDefaultItems();
        QSignalSpy pressed(&toolbar, &SettingsToolbar::toolbarItemPressed);
        auto *button = qobject_cast<QToolButton *>(toolbar.widgetForAction(toolbar.actions().at(1)));
        QVERIFY(button != nullptr);
        act(*button);
        QCOMPARE(pressed.size(), 1);
        QCOMPARE(pressed.at(0).at(0).toString(), SettingsToolbar::tbiHotKeys());
        QVERIFY(accessible(*button).state().checked);
    }
};

} // namespace quorvane

GUI_TEST(AccessibleButtonTest)
#include "AccessibleButtonTest.moc"
