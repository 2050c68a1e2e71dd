#include "frontend/ui/settings/CookieCrumblePane.h"
#include "frontend/ui/settings/QrvDiscardIpTableViewController.h"
#include "frontend/ui/settings/VpnPane.h"

#include "SettingsTest.h"
#include "frontend/privileges/QrvCredentials.h"
#include "frontend/privileges/dialog/QrvAuthenticationWindowController.h"
#include "platform/NotificationCenter.h"

#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

namespace quorvane {

/// What each pane does of its own.
class SettingsPanesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> fixture;
    QObject observer;
    int updates = 0;

    void startOver() {
        fixture = std::make_unique<SettingsFixture>();
        updates = 0;
        fixture->services.platform().notifications->addObserver(text("updateServerList"), &observer,
                                                                [this](const QVariant &object) {
                                                                    QVERIFY(!object.isValid());
                                                                    ++updates;
                                                                });
    }

    void showPane(const QString &identifier) {
        fixture->startAndShow();
        fixture->window().toolbarItemPressed(identifier);
    }

    [[nodiscard]] QrvDiscardIpTableViewController *table(const char *name) const {
        return fixture->find<QrvDiscardIpTableViewController>(name);
    }

    void addSite(const char *typed) const {
        fixture->find<QLineEdit>("cookieSiteIP")->setText(text(typed));
        fixture->click("addCookieSiteButton");
    }

    [[nodiscard]] QString credentialsFile() const {
        return fixture->services.home() + text("/Documents/Quorvane/vpnCreds.txt");
    }

    void makeDocuments() const {
        QVERIFY(QDir().mkpath(fixture->services.home() + text("/Documents/Quorvane")));
    }

    void fillVpn() const {
        fixture->find<QLineEdit>("pathTextField")->setText(text("/etc/mine.ovpn"));
        fixture->find<QLineEdit>("usernameTextField")->setText(text("jo\u00e9"));
        fixture->find<QLineEdit>("passwordTextField")->setText(text("p w"));
    }

private Q_SLOTS:

    void init() { startOver(); }

    void cleanup() { fixture.reset(); }

    void discardedAddressesAreAddedAskedForAndListed() {
        fixture->store("discardedIPs", text("1.1.1.1|2.2.2.2"));
        fixture->start();
        fixture->controller->addDiscardedIp(text("3.3.3.3"));
        fixture->controller->addDiscardedIp(text("1.1.1.1"));
        QVERIFY(fixture->controller->hasRow(text("2.2.2.2")));
        QVERIFY(!fixture->controller->hasRow(text("4.4.4.4")));
        QCOMPARE(fixture->controller->getRowData(),
                 (QStringList{text("1.1.1.1"), text("2.2.2.2"), text("3.3.3.3")}));
        QCOMPARE(fixture->stored("discardedIPs"), QVariant(text("1.1.1.1|2.2.2.2|3.3.3.3")));
        QCOMPARE(updates, 0);
    }

    void deletingAndClearingDiscardedAddressesPostAnUpdate() {
        fixture->store("discardedIPs", text("1.1.1.1|2.2.2.2|3.3.3.3"));
        showPane(text("tbiIpAddresses"));
        table("tableDiscardIp")->selectRow(1);
        fixture->click("deleteButton");
        QCOMPARE(fixture->stored("discardedIPs"), QVariant(text("1.1.1.1|3.3.3.3")));
        QCOMPARE(updates, 1);
        fixture->click("clearButton");
        QCOMPARE(fixture->stored("discardedIPs"), QVariant(text("")));
        QCOMPARE(updates, 2);
    }

    void updateIsPostedEvenWhenNothingWasSelected() {
        fixture->store("discardedIPs", text("1.1.1.1"));
        showPane(text("tbiIpAddresses"));
        table("tableDiscardIp")->clearSelection();
        fixture->click("deleteButton");
        QCOMPARE(fixture->controller->getRowData(), QStringList{text("1.1.1.1")});
        QCOMPARE(updates, 1);
        fixture->click("clearButton");
        fixture->click("clearButton");
        QCOMPARE(updates, 3);
    }

    void discardedTableWorksByKeyboard() {
        fixture->store("discardedIPs", text("1.1.1.1|2.2.2.2|3.3.3.3"));
        showPane(text("tbiIpAddresses"));
        auto *addresses = table("tableDiscardIp");
        addresses->setFocus();
        QTest::keyClick(addresses, Qt::Key_Down);
        QTest::keyClick(addresses, Qt::Key_Down);
        QTest::keyClick(addresses, Qt::Key_C, Qt::ControlModifier);
        const QString copied = QGuiApplication::clipboard()->text();
        QVERIFY(fixture->controller->hasRow(copied));
        QTest::keyClick(addresses, Qt::Key_Delete);
        QVERIFY(!fixture->controller->hasRow(copied));
        QCOMPARE(fixture->controller->getRowData().size(), 2);
        QCOMPARE(updates, 1);
        QVERIFY(fixture->window().isVisible());
    }

    void discardedTableShowsSeveralRowsAndSaysWhenItIsEmpty() {
        showPane(text("tbiIpAddresses"));
        auto *addresses = table("tableDiscardIp");
        QVERIFY(addresses->emptyHint().contains(text("Discard IP")));
        QCOMPARE(addresses->accessibleDescription(), addresses->emptyHint());
        const QImage empty = addresses->grab().toImage();
        addresses->setEmptyHint(QString());
        QVERIFY(addresses->grab().toImage() != empty); // the hint was drawn
        for (int i = 1; i <= 6; ++i) {
            fixture->controller->addDiscardedIp(text("203.0.113.%1").arg(i));
        }
        QVERIFY(addresses->rowHeight(0) * 6 <= addresses->viewport()->height());
    }

    void listIsTheSameAfterTheNextStart() {
        fixture->start();
        fixture->controller->addDiscardedIp(text("1.1.1.1"));
        fixture->controller.reset();
        fixture->start();
        QCOMPARE(fixture->controller->getRowData(), QStringList{text("1.1.1.1")});
    }

    void cookieSitesLoseTheirSchemeAndHaveAListOfTheirOwn() {
        fixture->store("discardedIPs", text("1.1.1.1"));
        showPane(text("tbiCookieCrumble"));
        addSite("https://www.example.com/a");
        addSite("http://example.org");
        addSite("example.net/x");
        addSite("https://http://twice.example");
        addSite("hthttps://tp://inner.example"); // the one is taken out before the other is looked for
        addSite("https://example.org");          // listed already
        QCOMPARE(fixture->stored("cookieSites"),
                 QVariant(text("www.example.com/a|example.org|example.net/x|twice.example|inner.example")));
        QCOMPARE(fixture->stored("discardedIPs"), QVariant(text("1.1.1.1")));
        QCOMPARE(fixture->find<QLineEdit>("cookieSiteIP")->text(), text(""));
        QCOMPARE(updates, 0);
    }

    void emptyAndUnusableCookieSitesOnlyBeep() {
        showPane(text("tbiCookieCrumble"));
        auto *pane = fixture->window().findChild<CookieCrumblePane *>();
        QSignalSpy beeps(pane, &CookieCrumblePane::refused);
        addSite("");
        QCOMPARE(beeps.size(), 1);
        addSite("http://[half");
        QCOMPARE(beeps.size(), 2);
        QCOMPARE(fixture->find<QLineEdit>("cookieSiteIP")->text(), text("http://[half"));
        QVERIFY(!fixture->stored("cookieSites").isValid());
        QVERIFY(fixture->alerts.isEmpty());
        addSite("good.example");
        QCOMPARE(beeps.size(), 2);
    }

    void selectedCookieSiteIsDeletedByButtonAndKey() {
        fixture->store("cookieSites", text("a|b|c"));
        showPane(text("tbiCookieCrumble"));
        table("tableCookieSites")->selectRow(1);
        fixture->click("deleteCookieSiteButton");
        QCOMPARE(fixture->stored("cookieSites"), QVariant(text("a|c")));
        table("tableCookieSites")->selectRow(0);
        QTest::keyClick(table("tableCookieSites"), Qt::Key_Delete);
        QCOMPARE(fixture->stored("cookieSites"), QVariant(text("c")));
        table("tableCookieSites")->clearSelection();
        fixture->click("deleteCookieSiteButton");
        QCOMPARE(fixture->stored("cookieSites"), QVariant(text("c")));
        QCOMPARE(updates, 0);
    }

    void vpnFieldsShowWhatIsStoredOnlyIfAPathIs() {
        fixture->store("vpnUsername", text("ada"));
        showPane(text("tbiVpn"));
        QCOMPARE(fixture->find<QLineEdit>("usernameTextField")->text(), text(""));
        fixture->store("vpnConfigPath", text("/a.ovpn"));
        fixture->store("vpnPassword", text("pw"));
        fixture->controller->showWindow();
        QCOMPARE(fixture->find<QLineEdit>("pathTextField")->text(), text("/a.ovpn"));
        QCOMPARE(fixture->find<QLineEdit>("usernameTextField")->text(), text("ada"));
        QCOMPARE(fixture->find<QLineEdit>("passwordTextField")->text(), text("pw"));
        QCOMPARE(fixture->find<QLineEdit>("passwordTextField")->echoMode(), QLineEdit::Password);
    }

    void emptyStoredPathIsAPathToo() {
        fixture->store("vpnConfigPath", text(""));
        fixture->store("vpnUsername", text("ada"));
        showPane(text("tbiVpn"));
        QCOMPARE(fixture->find<QLineEdit>("usernameTextField")->text(), text("ada"));
    }

    void vpnSettingsAreStoredWithAPrivateFile() {
        makeDocuments();
        showPane(text("tbiVpn"));
        fillVpn();
        fixture->click("saveButton");
        QCOMPARE(fixture->stored("vpnConfigPath"), QVariant(text("/etc/mine.ovpn")));
        QCOMPARE(fixture->stored("vpnUsername"), QVariant(text("jo\u00e9")));
        QCOMPARE(fixture->stored("vpnPassword"), QVariant(text("p w")));
        QFile file(credentialsFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text("jo\u00e9\np w").toUtf8());
        const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther |
                            QFileDevice::WriteOther;
        QVERIFY((QFileInfo(file).permissions() & others) == 0);
        QVERIFY(!QFile::exists(fixture->services.home() + text("/Documents/Quorvane/.vpnCreds.txt")));
    }

    void failedWriteOfTheVpnFileIsSilent() {
        showPane(text("tbiVpn")); // there is no folder to write into
        fillVpn();
        fixture->click("saveButton");
        QVERIFY(!QFile::exists(credentialsFile()));
        QCOMPARE(fixture->stored("vpnUsername"), QVariant(text("jo\u00e9")));
        QVERIFY(fixture->alerts.isEmpty());
    }

    void okDoesNotStoreTheVpnFields() {
        showPane(text("tbiVpn"));
        fillVpn();
        fixture->click("buttonOk");
        QVERIFY(!fixture->stored("vpnConfigPath").isValid());
    }

    void filePanelIsModelessAndTakesOneConfigurationFile() {
        const QString path = fixture->services.home() + text("/my tunnel 100%.ovpn");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        showPane(text("tbiVpn"));
        fixture->click("browseButton");
        auto *panel = fixture->find<QFileDialog>("openPanel");
        QVERIFY(panel->isVisible());
        QVERIFY(!panel->isModal());
        QCOMPARE(panel->fileMode(), QFileDialog::ExistingFile);
        QVERIFY(panel->nameFilters().size() == 1 && panel->nameFilters().first().contains(text("*.ovpn")));
        fixture->click("browseButton");
        QCOMPARE(fixture->window().findChildren<QFileDialog *>().size(), 1);
        panel->setDirectory(fixture->services.home());
        panel->selectFile(path);
        QMetaObject::invokeMethod(panel, "accept");
        QCOMPARE(fixture->find<QLineEdit>("pathTextField")->text(), path);
    }

    void filePanelCancelledOrWithAnotherTypeChangesNothing() {
        const QString path = fixture->services.home() + text("/notes.txt");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        showPane(text("tbiVpn"));
        fixture->find<QLineEdit>("pathTextField")->setText(text("/before"));
        fixture->click("browseButton");
        fixture->find<QFileDialog>("openPanel")->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(fixture->find<QLineEdit>("pathTextField")->text(), text("/before"));
        fixture->click("browseButton");
        auto *panel = fixture->find<QFileDialog>("openPanel");
        panel->setDirectory(fixture->services.home());
        fixture->find<QFileDialog>("openPanel")->findChild<QLineEdit *>()->setText(text("notes.txt"));
        QMetaObject::invokeMethod(panel, "accept");
        QCOMPARE(fixture->find<QLineEdit>("pathTextField")->text(), text("/before"));
    }

    void administratorDialogRunsOnlyForAnInvalidPairAndIsKept() {
        using fakes::FakeScriptingService;
        bool accepted = true;
        fixture->services.scripting().setHandler([&accepted](const FakeScriptingService::Call &) {
            return accepted ? FakeScriptingService::success(text(""))
                            : FakeScriptingService::failure(1, text("no"));
        });
        QrvCredentials::sharedInstance().saveUserName(text("ada"), text("pw"));
        fixture->startAndShow();
        fixture->controller->authWindow(); // returns at once
        QVERIFY(fixture->find<QrvAuthenticationWindowController>("AuthenticaionView") == nullptr);
        accepted = false;
        QList<QWidget *> dialogs;
        QTimer closer;
        connect(&closer, &QTimer::timeout, this, [&] {
            if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
                dialogs.append(dialog);
                fixture->controller->authWindow(); // one at a time
                dialog->reject();
            }
        });
        closer.start(10);
        fixture->controller->authWindow();
        fixture->controller->authWindow();
        QCOMPARE(dialogs.size(), 2);
        QCOMPARE(dialogs[0], dialogs[1]);
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::SettingsPanesTest)
#include "SettingsPanesTest.moc"
