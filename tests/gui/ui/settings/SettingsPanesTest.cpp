#include "frontend/ui/settings/CookieCrumblePane.h"
#include "frontend/ui/settings/QrvDiscardIpTableViewController.h"
#include "frontend/ui/settings/VpnPane.h"

#include "SettingsTest.h"
#include "frontend/privileges/QrvCredentials.h"
#include "platform/NotificationCenter.h"

#include <QCheckBox>
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

/// The functions of the single panes.
class SettingsPanesTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<SettingsFixture> m_fixture;
    QObject m_observer;
    int m_updates = 0;

    void restart() {
        m_fixture = std::make_unique<SettingsFixture>();
        m_updates = 0;
        m_fixture->services.platform().notifications->addObserver(text("updateServerList"), &m_observer,
                                                                  [this](const QVariant &object) {
                                                                      QVERIFY(!object.isValid());
                                                                      ++m_updates;
                                                                  });
    }

    void showPane(const QString &identifier) {
        m_fixture->startAndShow();
        m_fixture->window().toolbarItemPressed(identifier);
    }

    [[nodiscard]] QrvDiscardIpTableViewController *table(const char *name) const {
        return m_fixture->find<QrvDiscardIpTableViewController>(name);
    }

    void addSite(const char *typed) const {
        m_fixture->find<QLineEdit>("cookieSiteIP")->setText(text(typed));
        m_fixture->click("addCookieSiteButton");
    }

    [[nodiscard]] QString credentialsFile() const {
        return m_fixture->services.home() + text("/Documents/Quorvane/vpnCreds.txt");
    }

    void makeDocuments() const {
        QVERIFY(QDir().mkpath(m_fixture->services.home() + text("/Documents/Quorvane")));
    }

    void fillVpn() const {
        m_fixture->find<QLineEdit>("pathTextField")->setText(text("/etc/mine.ovpn"));
        m_fixture->find<QLineEdit>("usernameTextField")->setText(text("jo\u00e9"));
        m_fixture->find<QLineEdit>("passwordTextField")->setText(text("p w"));
    }

private Q_SLOTS:

    void init() { restart(); }

    void cleanup() { m_fixture.reset(); }

    void discardedAddressesAreAddedFoundAndListed() {
        m_fixture->store("discardedIPs", text("1.1.1.1|2.2.2.2"));
        m_fixture->start();
        m_fixture->controller->addDiscardedIp(text("3.3.3.3"));
        m_fixture->controller->addDiscardedIp(text("1.1.1.1"));
        QVERIFY(m_fixture->controller->hasRow(text("2.2.2.2")));
        QVERIFY(!m_fixture->controller->hasRow(text("4.4.4.4")));
        QCOMPARE(m_fixture->controller->getRowData(),
                 (QStringList{text("1.1.1.1"), text("2.2.2.2"), text("3.3.3.3")}));
        QCOMPARE(m_fixture->stored("discardedIPs"), QVariant(text("1.1.1.1|2.2.2.2|3.3.3.3")));
        QCOMPARE(m_updates, 0);
    }

    void nameServersArePutBackByTheButton() {
        showPane(text("tbiIpAddresses"));
        QVERIFY(!m_fixture->find<QPushButton>("putBackButton")->isEnabled());
        m_fixture->services.preferences().setValue(text("dnsBefore"), text("Wi-Fi=192.168.1.1"));
        m_fixture->controller->refreshNameServers();
        QVERIFY(m_fixture->find<QPushButton>("putBackButton")->isEnabled());
        m_fixture->click("putBackButton");
        QCOMPARE(m_fixture->delegate.calls.count(text("put back")), 1);
        QVERIFY(!m_fixture->find<QCheckBox>("checkboxRestoreDns")->isChecked());
        QVERIFY(m_fixture->find<QCheckBox>("checkboxReconnect")->isChecked());
        QVERIFY(!m_fixture->services.preferences().value(text("restoreDns")).isValid());
    }

    void lockIsOffAndTheHomeNetworkAllowedUntilTheUserChangesThem() {
        showPane(text("tbiIpAddresses"));
        QVERIFY(!m_fixture->find<QCheckBox>("checkboxLock")->isChecked());
        QVERIFY(m_fixture->find<QCheckBox>("checkboxLockHome")->isChecked());
        QVERIFY(!m_fixture->services.preferences().value(text("networkLock")).isValid());
        QVERIFY(!m_fixture->services.preferences().value(text("lockHomeNetwork")).isValid());
    }

    void deletingAndClearingDiscardedAddressesPostAnUpdate() {
        m_fixture->store("discardedIPs", text("1.1.1.1|2.2.2.2|3.3.3.3"));
        showPane(text("tbiIpAddresses"));
        table("tableDiscardIp")->selectRow(1);
        m_fixture->click("deleteButton");
        QCOMPARE(m_fixture->stored("discardedIPs"), QVariant(text("1.1.1.1|3.3.3.3")));
        QCOMPARE(m_updates, 1);
        m_fixture->click("clearButton");
        QCOMPARE(m_fixture->stored("discardedIPs"), QVariant(text("")));
        QCOMPARE(m_updates, 2);
    }

    void updateIsPostedEvenWhenNothingWasSelected() {
        m_fixture->store("discardedIPs", text("1.1.1.1"));
        showPane(text("tbiIpAddresses"));
        table("tableDiscardIp")->clearSelection();
        m_fixture->click("deleteButton");
        QCOMPARE(m_fixture->controller->getRowData(), QStringList{text("1.1.1.1")});
        QCOMPARE(m_updates, 1);
        m_fixture->click("clearButton");
        m_fixture->click("clearButton");
        QCOMPARE(m_updates, 3);
    }

    void discardedTableWorksByKeyboard() {
        m_fixture->store("discardedIPs", text("1.1.1.1|2.2.2.2|3.3.3.3"));
        showPane(text("tbiIpAddresses"));
        auto *addresses = table("tableDiscardIp");
        addresses->setFocus();
        QTest::keyClick(addresses, Qt::Key_Down);
        QTest::keyClick(addresses, Qt::Key_Down);
        QTest::keyClick(addresses, Qt::Key_C, Qt::ControlModifier);
        const QString copied = QGuiApplication::clipboard()->text();
        QVERIFY(m_fixture->controller->hasRow(copied));
        QTest::keyClick(addresses, Qt::Key_Delete);
        QVERIFY(!m_fixture->controller->hasRow(copied));
        QCOMPARE(m_fixture->controller->getRowData().size(), 2);
        QCOMPARE(m_updates, 1);
        QVERIFY(m_fixture->window().isVisible());
    }

    void discardedTableShowsSeveralRowsAndAHintWhenItIsEmpty() {
        showPane(text("tbiIpAddresses"));
        auto *addresses = table("tableDiscardIp");
        QVERIFY(addresses->emptyHint().contains(text("Discard IP")));
        QCOMPARE(addresses->accessibleDescription(), addresses->emptyHint());
        const QImage empty = addresses->grab().toImage();
        addresses->setEmptyHint(QString());
        QVERIFY(addresses->grab().toImage() != empty); // the hint was drawn
        for (int i = 1; i <= 6; ++i) {
            m_fixture->controller->addDiscardedIp(text("203.0.113.%1").arg(i));
        }
        QVERIFY(addresses->rowHeight(0) * 6 <= addresses->viewport()->height());
    }

    void listIsTheSameAfterTheNextStart() {
        m_fixture->start();
        m_fixture->controller->addDiscardedIp(text("1.1.1.1"));
        m_fixture->controller.reset();
        m_fixture->start();
        QCOMPARE(m_fixture->controller->getRowData(), QStringList{text("1.1.1.1")});
    }

    void cookieSitesLoseTheirSchemeAndHaveTheirOwnList() {
        m_fixture->store("discardedIPs", text("1.1.1.1"));
        showPane(text("tbiCookieCrumble"));
        addSite("https://www.example.com/a");
        addSite("http://example.org");
        addSite("example.net/x");
        addSite("https://http://twice.example");
        addSite("hthttps://tp://inner.example"); // one is removed before the other is searched
        addSite("https://example.org");          // listed already
        QCOMPARE(m_fixture->stored("cookieSites"),
                 QVariant(text("www.example.com/a|example.org|example.net/x|twice.example|inner.example")));
        QCOMPARE(m_fixture->stored("discardedIPs"), QVariant(text("1.1.1.1")));
        QCOMPARE(m_fixture->find<QLineEdit>("cookieSiteIP")->text(), text(""));
        QCOMPARE(m_updates, 0);
    }

    void emptyAndUnusableCookieSitesOnlyBeep() {
        showPane(text("tbiCookieCrumble"));
        auto *pane = m_fixture->window().findChild<CookieCrumblePane *>();
        QSignalSpy beeps(pane, &CookieCrumblePane::refused);
        addSite("");
        QCOMPARE(beeps.size(), 1);
        addSite("http://[half");
        QCOMPARE(beeps.size(), 2);
        QCOMPARE(m_fixture->find<QLineEdit>("cookieSiteIP")->text(), text("http://[half"));
        QVERIFY(!m_fixture->stored("cookieSites").isValid());
        QVERIFY(m_fixture->alerts.isEmpty());
        addSite("good.example");
        QCOMPARE(beeps.size(), 2);
    }

    void selectedCookieSiteIsDeletedByButtonAndKey() {
        m_fixture->store("cookieSites", text("a|b|c"));
        showPane(text("tbiCookieCrumble"));
        table("tableCookieSites")->selectRow(1);
        m_fixture->click("deleteCookieSiteButton");
        QCOMPARE(m_fixture->stored("cookieSites"), QVariant(text("a|c")));
        table("tableCookieSites")->selectRow(0);
        QTest::keyClick(table("tableCookieSites"), Qt::Key_Delete);
        QCOMPARE(m_fixture->stored("cookieSites"), QVariant(text("c")));
        table("tableCookieSites")->clearSelection();
        m_fixture->click("deleteCookieSiteButton");
        QCOMPARE(m_fixture->stored("cookieSites"), QVariant(text("c")));
        QCOMPARE(m_updates, 0);
    }

    void vpnFieldsShowWhatIsStoredOnlyIfAPathIs() {
        m_fixture->store("vpnUsername", text("ada"));
        showPane(text("tbiVpn"));
        QCOMPARE(m_fixture->find<QLineEdit>("usernameTextField")->text(), text(""));
        m_fixture->store("vpnConfigPath", text("/a.ovpn"));
        m_fixture->store("vpnPassword", text("pw"));
        m_fixture->controller->showWindow();
        QCOMPARE(m_fixture->find<QLineEdit>("pathTextField")->text(), text("/a.ovpn"));
        QCOMPARE(m_fixture->find<QLineEdit>("usernameTextField")->text(), text("ada"));
        QCOMPARE(m_fixture->find<QLineEdit>("passwordTextField")->text(), text("pw"));
        QCOMPARE(m_fixture->find<QLineEdit>("passwordTextField")->echoMode(), QLineEdit::Password);
    }

    void emptyStoredPathIsAPathToo() {
        m_fixture->store("vpnConfigPath", text(""));
        m_fixture->store("vpnUsername", text("ada"));
        showPane(text("tbiVpn"));
        QCOMPARE(m_fixture->find<QLineEdit>("usernameTextField")->text(), text("ada"));
    }

    void vpnSettingsAreStoredWithAPrivateFile() {
        makeDocuments();
        showPane(text("tbiVpn"));
        fillVpn();
        m_fixture->click("saveButton");
        QCOMPARE(m_fixture->stored("vpnConfigPath"), QVariant(text("/etc/mine.ovpn")));
        QCOMPARE(m_fixture->stored("vpnUsername"), QVariant(text("jo\u00e9")));
        QCOMPARE(m_fixture->stored("vpnPassword"), QVariant(text("p w")));
        QFile file(credentialsFile());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text("jo\u00e9\np w").toUtf8());
        const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther |
                            QFileDevice::WriteOther;
        QVERIFY((QFileInfo(file).permissions() & others) == 0);
        QVERIFY(!QFile::exists(m_fixture->services.home() + text("/Documents/Quorvane/.vpnCreds.txt")));
    }

    void failedWriteOfTheVpnFileIsSilent() {
        showPane(text("tbiVpn")); // the folder for the file does not exist
        fillVpn();
        m_fixture->click("saveButton");
        QVERIFY(!QFile::exists(credentialsFile()));
        QCOMPARE(m_fixture->stored("vpnUsername"), QVariant(text("jo\u00e9")));
        QVERIFY(m_fixture->alerts.isEmpty());
    }

    void okDoesNotStoreTheVpnFields() {
        showPane(text("tbiVpn"));
        fillVpn();
        m_fixture->click("buttonOk");
        QVERIFY(!m_fixture->stored("vpnConfigPath").isValid());
    }

    void filePanelIsModelessAndAcceptsOneConfigurationFile() {
        const QString path = m_fixture->services.home() + text("/my \xc3\xbc tunnel 100%.ovpn");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        showPane(text("tbiVpn"));
        m_fixture->click("browseButton");
        auto *panel = m_fixture->find<QFileDialog>("openPanel");
        QVERIFY(panel->isVisible());
        QVERIFY(!panel->isModal());
        QCOMPARE(panel->fileMode(), QFileDialog::ExistingFile);
        QVERIFY(panel->nameFilters().size() == 1 && panel->nameFilters().first().contains(text("*.ovpn")));
        m_fixture->click("browseButton");
        QCOMPARE(m_fixture->window().findChildren<QFileDialog *>().size(), 1);
        panel->setDirectory(m_fixture->services.home());
        panel->selectFile(path);
        QMetaObject::invokeMethod(panel, "accept");
        QCOMPARE(m_fixture->find<QLineEdit>("pathTextField")->text(),
                 m_fixture->services.home() + text("/my%20%C3%BC%20tunnel%20100%25.ovpn"));
    }

    void filePanelCancelledOrWithAnotherTypeChangesNothing() {
        const QString path = m_fixture->services.home() + text("/notes.txt");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        showPane(text("tbiVpn"));
        m_fixture->find<QLineEdit>("pathTextField")->setText(text("/before"));
        m_fixture->click("browseButton");
        m_fixture->find<QFileDialog>("openPanel")->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(m_fixture->find<QLineEdit>("pathTextField")->text(), text("/before"));
        m_fixture->click("browseButton");
        auto *panel = m_fixture->find<QFileDialog>("openPanel");
        panel->setDirectory(m_fixture->services.home());
        m_fixture->find<QFileDialog>("openPanel")->findChild<QLineEdit *>()->setText(text("notes.txt"));
        QMetaObject::invokeMethod(panel, "accept");
        QCOMPARE(m_fixture->find<QLineEdit>("pathTextField")->text(), text("/before"));
    }

    void administratorIsCheckedForTheSettingsWindow() {
        m_fixture->startAndShow();
        m_fixture->controller->authWindow();
        QCOMPARE(m_fixture->delegate.checkedFor, QList<QWidget *>{&m_fixture->window()});
    }
};

} // namespace quorvane

GUI_TEST(SettingsPanesTest)
#include "SettingsPanesTest.moc"
