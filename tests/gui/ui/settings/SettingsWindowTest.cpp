#include "frontend/ui/settings/SettingsWindow.h"

#include "SettingsTest.h"
#include "frontend/ui/shared/Images.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableView>
#include <QToolButton>

namespace quorvane {

/// The window: toolbar, panes and their places, keyboard, names for assistive tools.
class SettingsWindowTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> m_fixture;

    [[nodiscard]] SettingsWindow &window() const { return m_fixture->window(); }

    [[nodiscard]] QWidget *pane(const char *className) const {
        const QByteArray name = QByteArrayLiteral("quorvane::") + className;
        const QList<QWidget *> all = window().findChildren<QWidget *>();
        for (QWidget *widget : all) {
            if (widget->metaObject()->className() == name) {
                return widget;
            }
        }
        return nullptr;
    }

    void focusAndCollect(QStringList &names, int maximumCount) const {
        for (int i = 0; i < maximumCount; ++i) {
            const QWidget *focus = window().focusWidget();
            names.append(focus->objectName().isEmpty() ? focus->accessibleName() : focus->objectName());
            QTest::keyClick(&window(), Qt::Key_Tab);
        }
    }

    /// The mnemonic letters of the window's visible controls.
    [[nodiscard]] QStringList mnemonics() const {
        QStringList letters;
        const QList<QWidget *> all = window().findChildren<QWidget *>();
        for (QWidget *widget : all) {
            QString caption;
            if (const auto *button = qobject_cast<QAbstractButton *>(widget)) {
                caption = button->text();
            } else if (const auto *label = qobject_cast<QLabel *>(widget); label && label->buddy()) {
                caption = label->text();
            }
            const QKeySequence key = QKeySequence::mnemonic(caption);
            if (widget->isVisible() && !key.isEmpty()) {
                letters.append(key.toString());
            }
        }
        return letters;
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<SettingsFixture>();
        int width = 8; // distinguishes the images
        for (const char *name : {"NSPreferencesGeneral", "NSBonjour", "NSNetwork", "cookies", "advanced"}) {
            m_fixture->addImage(text(name), QSize(width++, 6));
        }
        m_fixture->startAndShow();
    }

    void cleanup() { m_fixture.reset(); }

    void allowedItemsAreTheFiveInTheirOrder() {
        QCOMPARE(SettingsToolbar::toolbarAllowedItemIdentifiers(),
                 (QStringList{text("tbiVpn"), text("tbiIpAddresses"), text("tbiCookieCrumble"),
                              text("tbiHotKeys"), text("tbiAdvanced")}));
    }

    void toolbarShowsIpAddressesAndHotKeysOnly() {
        SettingsToolbar &toolbar = window().toolbar();
        QCOMPARE(SettingsToolbar::toolbarDefaultItemIdentifiers(),
                 (QStringList{text("tbiIpAddresses"), text("tbiHotKeys")}));
        QStringList labels;
        const QList<QAction *> shown = toolbar.actions();
        for (const QAction *action : shown) {
            labels.append(action->text());
        }
        QCOMPARE(labels, (QStringList{text("IP Addresses"), text("Hot Keys")}));
        QCOMPARE(toolbar.objectName(), text("settingsToolbar"));
        QCOMPARE(toolbar.toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
        QVERIFY(!toolbar.isMovable());
        QVERIFY(!toolbar.isFloatable());
        QCOMPARE(toolbar.contextMenuPolicy(), Qt::PreventContextMenu);
        QCOMPARE(toolbar.firstToolbarItem()->objectName(), text("tbiIpAddresses"));
    }

    void everyAllowedItemHasItsLabelAndImage_data() {
        QTest::addColumn<QString>("identifier");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("image");
        const auto row = [](const char *identifier, const char *label, const char *image) {
            QTest::newRow(identifier) << text(identifier) << text(label) << text(image);
        };
        row("tbiIpAddresses", "IP Addresses", "NSPreferencesGeneral");
        row("tbiCookieCrumble", "Cookie Crumble", "cookies");
        row("tbiHotKeys", "Hot Keys", "NSBonjour");
        row("tbiAdvanced", "Advanced", "advanced");
        row("tbiVpn", "Test VPN", "NSNetwork");
        row("tbiBrowsers", "", ""); // no such item
    }

    void everyAllowedItemHasItsLabelAndImage() {
        QFETCH(QString, identifier);
        QFETCH(QString, label);
        QFETCH(QString, image);
        SettingsToolbar toolbar;
        const QAction *item = toolbar.itemForItemIdentifier(identifier);
        QCOMPARE(item != nullptr, !label.isEmpty());
        if (item != nullptr) {
            QCOMPARE(item->objectName(), identifier);
            QCOMPARE(item->text(), label);
            QVERIFY(!item->icon().isNull());
            QCOMPARE(item->icon().availableSizes(), Images::icon(image).availableSizes());
            QVERIFY(toolbar.actions().isEmpty()); // created, but not shown
        }
    }

    void allSixPanesAreBuiltAndTheFirstItemsIsShown() {
        for (const char *name : {"BrowsersPane", "IpAddressesPane", "CookieCrumblePane", "HotKeysPane",
                                 "AdvancedPane", "VpnPane"}) {
            QVERIFY2(pane(name) != nullptr, name);
            QCOMPARE(pane(name)->isVisible(), qstrcmp(name, "IpAddressesPane") == 0);
        }
        QCOMPARE(window().currentSettings(), pane("IpAddressesPane"));
    }

    void pressingAnItemShowsItsPaneAndMarksTheItem() {
        const auto buttons = window().toolbar().findChildren<QToolButton *>();
        for (QToolButton *button : buttons) {
            if (button->text() == text("Hot Keys")) {
                QTest::mouseClick(button, Qt::LeftButton);
                QVERIFY(button->isChecked());
            }
        }
        QCOMPARE(window().currentSettings(), pane("HotKeysPane"));
        QVERIFY(!pane("IpAddressesPane")->isVisible());
        QVERIFY(pane("HotKeysPane")->isVisible());
    }

    void unknownIdentifierKeepsThePane() {
        window().toolbarItemPressed(text("tbiHotKeys"));
        const QRect frame = window().frameGeometry();
        window().toolbarItemPressed(text("tbiBrowsers"));
        QCOMPARE(window().currentSettings(), pane("HotKeysPane"));
        QVERIFY(pane("HotKeysPane")->isVisible());
        QCOMPARE(window().frameGeometry(), frame);
    }

    void buttonsLieAtTheLowerEdgeFromTheFirstShowing() {
        const QWidget *content = m_fixture->find<QWidget>("contentView");
        const QWidget *band = m_fixture->find<QWidget>("buttonBand");
        QCOMPARE(band->geometry().bottom(), content->rect().bottom());
        QCOMPARE(band->width(), content->width());
        QVERIFY(!window().currentSettings()->geometry().intersects(
            QRect(band->mapTo(content, m_fixture->find<QWidget>("buttonOk")->pos()),
                  m_fixture->find<QWidget>("buttonOk")->size())));
    }

    void switchingKeepsTheUpperEdgeAndPlacesThePane() {
        const QWidget *content = m_fixture->find<QWidget>("contentView");
        const QWidget *ok = m_fixture->find<QWidget>("buttonOk");
        window().move(60, 40);
        const QRect before = window().frameGeometry();
        const QStringList all = SettingsToolbar::toolbarAllowedItemIdentifiers();
        QSet<int> heights;
        for (const QString &from : all) {
            for (const QString &to : all) {
                window().toolbarItemPressed(from);
                window().toolbarItemPressed(to);
                const QWidget *shown = window().currentSettings();
                const int chrome = window().frameGeometry().height() - content->height();
                const int okLower = content->height() - ok->mapTo(content, QPoint(0, ok->height())).y();
                const int bottom = 2 * okLower + ok->height();
                QCOMPARE(window().frameGeometry().topLeft(), before.topLeft());
                QCOMPARE(window().frameGeometry().width(), before.width());
                QCOMPARE(window().frameGeometry().height(), chrome + bottom + shown->height());
                QCOMPARE(shown->x(), (window().width() - shown->width()) / 2);
                QCOMPARE(content->height() - (shown->y() + shown->height()), bottom - 10);
                heights.insert(window().height());
            }
        }
        QVERIFY(heights.size() >= 3); // there were tall and short panes
    }

    void paneThatGrowsKeepsTheUpperEdgeItsPlaceAndTheFocus() {
        window().toolbarItemPressed(text("tbiHotKeys"));
        window().move(60, 40);
        auto *dropdown = m_fixture->find<QComboBox>("dropdownDiscardIP");
        dropdown->setFocus();
        const QWidget *content = m_fixture->find<QWidget>("contentView");
        const QWidget *shown = window().currentSettings();
        const QRect before = window().frameGeometry();
        const int below = content->height() - shown->geometry().bottom();
        auto *note = m_fixture->find<QLabel>("noteHideIP");
        note->setText(text("one long note ").repeated(20));
        QTRY_VERIFY(window().frameGeometry().height() > before.height());
        QVERIFY(note->height() >= note->heightForWidth(note->width()));
        QCOMPARE(window().frameGeometry().topLeft(), before.topLeft());
        QCOMPARE(content->height() - shown->geometry().bottom(), below);
        QCOMPARE(window().focusWidget(), dropdown);
        note->clear();
        QTRY_COMPARE(window().frameGeometry(), before);
    }

    void nothingIsCutOffInAnyPane() {
        const QStringList all = SettingsToolbar::toolbarAllowedItemIdentifiers();
        for (const QString &identifier : all) {
            window().toolbarItemPressed(identifier);
            const QWidget *shown = window().currentSettings();
            QVERIFY2(shown->width() >= shown->minimumSizeHint().width(), qPrintable(identifier));
            const QList<QWidget *> inside = shown->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
            for (const QWidget *widget : inside) {
                QVERIFY2(shown->rect().contains(widget->geometry()), qPrintable(widget->objectName()));
            }
        }
    }

    void tabGoesThroughToolbarPaneAndButtons() {
        window().toolbar().findChildren<QToolButton *>().last()->setFocus();
        m_fixture->click("checkboxChangeIpInterval"); // enables the field and the stepper
        const auto buttons = window().toolbar().findChildren<QToolButton *>();
        for (QToolButton *button : buttons) {
            if (button->text() == text("IP Addresses")) {
                button->setFocus();
            }
        }
        QStringList names;
        focusAndCollect(names, 19);
        QCOMPARE(
            names,
            (QStringList{text("IP Addresses"), text("Hot Keys"), text("tableDiscardIp"), text("deleteButton"),
                         text("clearButton"), text("checkboxChangeIpInterval"), text("fieldChangeIpInterval"),
                         text("stepperChangeIpInterval"), text("checkboxHide"), text("launchOnStart"),
                         text("checkboxReconnect"), text("checkboxLock"), text("checkboxLockHome"),
                         text("appearanceDesktop"), text("checkboxRestoreDns"), text("buttonOurWebsite"),
                         text("buttonCancel"), text("buttonApply"), text("buttonOk")}));
        QCOMPARE(window().focusWidget()->accessibleName(), text("IP Addresses")); // back at the first
    }

    void shortcutsSwitchThePanes() {
        QTest::keyClick(&window(), Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(window().currentSettings(), pane("HotKeysPane"));
        QTest::keyClick(&window(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(window().currentSettings(), pane("IpAddressesPane"));
    }

    void mnemonicsAreUniqueInEveryPane() {
        const QStringList all = SettingsToolbar::toolbarAllowedItemIdentifiers();
        for (const QString &identifier : all) {
            window().toolbarItemPressed(identifier);
            QStringList letters = mnemonics();
            QVERIFY2(letters.size() >= 6, qPrintable(identifier));
            const QString allLetters = letters.join(u' ');
            QVERIFY2(letters.removeDuplicates() == 0, qPrintable(identifier + QChar(u' ') + allLetters));
        }
    }

    void mnemonicsReachTheirControls() {
        QTest::keyClick(&window(), Qt::Key_H, Qt::AltModifier);
        QTRY_VERIFY(m_fixture->find<QCheckBox>("checkboxHide")->isChecked());
        QTest::keyClick(&window(), Qt::Key_D, Qt::AltModifier);
        QVERIFY(m_fixture->find<QTableView>("tableDiscardIp")->hasFocus());
        window().toolbarItemPressed(text("tbiHotKeys"));
        QTest::keyClick(&window(), Qt::Key_G, Qt::AltModifier);
        QVERIFY(m_fixture->find<QComboBox>("dropdownChangeIP")->hasFocus());
    }

    void returnIsOkAndEscapeIsCancel() {
        QSignalSpy ok(&window(), &SettingsWindow::okPressed);
        QSignalSpy cancel(&window(), &SettingsWindow::cancelPressed);
        m_fixture->find<QTableView>("tableDiscardIp")->setFocus();
        QVERIFY(m_fixture->find<QPushButton>("buttonOk")->isDefault());
        QTest::keyClick(window().focusWidget(), Qt::Key_Return);
        QCOMPARE(ok.size(), 1);
        QVERIFY(!window().isVisible());
        m_fixture->controller->showWindow();
        QTest::keyClick(&window(), Qt::Key_Escape);
        QCOMPARE(cancel.size(), 1);
        QVERIFY(!window().isVisible());
    }

    void everyControlHasANameForAssistiveTools() {
        int controls = 0;
        const QList<QWidget *> all = window().findChildren<QWidget *>();
        for (QWidget *widget : all) {
            const bool control = qobject_cast<QAbstractButton *>(widget) ||
                                 qobject_cast<QLineEdit *>(widget) || qobject_cast<QComboBox *>(widget) ||
                                 qobject_cast<QSpinBox *>(widget) || qobject_cast<QTableView *>(widget);
            const bool shown = !widget->inherits("QTableCornerButton"); // the headers are hidden
            if (!control || !shown || widget->objectName().startsWith(text("qt_")) ||
                widget->focusProxy() != nullptr) {
                continue;
            }
            QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(widget);
            QVERIFY(interface != nullptr);
            const QString name = interface->text(QAccessible::Name);
            QVERIFY2(!name.trimmed().isEmpty(),
                     qPrintable(QString::fromLatin1(widget->metaObject()->className()) + QChar(u' ') +
                                widget->objectName()));
            QVERIFY2(!name.contains(u'&'), qPrintable(name));
            ++controls;
        }
        QCOMPARE(controls, 45);
    }
};

} // namespace quorvane

GUI_TEST(SettingsWindowTest)
#include "SettingsWindowTest.moc"
