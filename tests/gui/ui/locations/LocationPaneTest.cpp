#include "frontend/session/LocationList.h"
#include "frontend/ui/locations/LocationRowDelegate.h"
#include "frontend/ui/locations/QrvLocationPaneController.h"

#include "tests/gui/GuiTest.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QPainter>
#include <QSignalSpy>

namespace quorvane {

namespace {

class RecordingPaneDelegate final : public LocationPaneDelegate {
public:
    QStringList getDiscardList() const override { return discarded; }

    void setRequiredUS(bool required) override { events.append(text(required ? "US on" : "US off")); }

    void terminateVpn() override { events.append(text("terminate")); }

    void stopQuorvane() override { events.append(text("stop")); }

    QStringList discarded;
    QStringList events;
};

} // namespace

class LocationPaneTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    std::unique_ptr<QrvAPI> m_api;
    RecordingPaneDelegate m_delegate;
    std::unique_ptr<LocationList> m_list;
    std::unique_ptr<LocationChooser> m_chooser;
    std::unique_ptr<QrvLocationPaneController> m_pane;
    QrvVpnDataList m_servers;
    QObject m_observer;

    [[nodiscard]] QComboBox *popup() const { return m_pane->findChild<QComboBox *>(text("popupCountry")); }

    [[nodiscard]] QCheckBox *sameIp() const { return m_pane->findChild<QCheckBox *>(text("checkSameIP")); }

    [[nodiscard]] platform::PreferencesStore &preferences() const {
        return m_fixture->services.preferences();
    }

    [[nodiscard]] QStringList titles() const {
        QStringList list;
        for (int i = 0; i < popup()->count(); ++i) {
            list.append(popup()->itemText(i));
        }
        return list;
    }

    /// The user opens the pop-up and chooses.
    void choose(int index) {
        popup()->setCurrentIndex(index);
        Q_EMIT popup()->activated(index);
    }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_delegate = {};
        m_api = std::make_unique<QrvAPI>();
        const ServerLines lines(QStringList{text("7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2"),
                                            text("8,Denver,DEN,US,States,x|10.0.1.1"),
                                            text("9,Nowhere,NOW,QQ,Quux,x|10.0.2.1")});
        m_servers = ServerModel::parseServers(lines, text("u"), text("p"), QString());
        m_api->model().setServerList(lines);
        m_api->model().setServers(m_servers);
        m_list = std::make_unique<LocationList>();
        m_chooser = std::make_unique<LocationChooser>(*m_list);
        m_pane = std::make_unique<QrvLocationPaneController>();
        m_pane->setChooser(*m_chooser);
        m_pane->connectTo(m_api.get(), &m_delegate);
    }

    void cleanup() {
        m_pane.reset();
        m_chooser.reset();
        m_list.reset();
        m_api.reset();
        m_fixture.reset();
    }

    void beforeTheFirstListThereIsOnlyRandomLocation() {
        QCOMPARE(titles(), QStringList{text("Random Location")});
        QVERIFY(m_list->entryAt(0).data == nullptr);
        QCOMPARE(m_list->flag(0), text("xx"));
        QVERIFY(!popup()->itemIcon(0).isNull());
        QVERIFY(!m_list->selectedItem());
    }

    void fullLocationsHaveTheGoldMarkAndAnAccessibleText() {
        m_api->model().setLocations(text("DE;BER;Berlin;1|US;DEN;Denver;0|QQ;BER;Elsewhere;1"));
        m_pane->fillCountries(m_servers);
        QCOMPARE(titles().at(1), text("Germany Berlin"));
        for (int row = 0; row < popup()->count(); ++row) {
            const bool full = row == 1;
            QCOMPARE(popup()->itemData(row, LocationList::FullRole).toBool(), full);
            QCOMPARE(popup()->itemData(row, Qt::ToolTipRole).isValid(), full);
        }
        QCOMPARE(popup()->itemData(1, Qt::AccessibleTextRole).toString(), text("Germany Berlin, full"));
        QCOMPARE(popup()->itemText(1), text("Germany Berlin"));
    }

    void goldMarkIsDrawnBehindTheTitle() {
        m_fixture->addImage(text("gold"), QSize(16, 16)); // all red
        const auto redDots = [this](int row) {
            QStyleOptionViewItem option;
            option.initFrom(popup());
            option.rect = QRect(0, 0, 300, 28);
            const QModelIndex index = popup()->model()->index(row, 0);
            QImage image(option.rect.size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::white);
            QPainter painter(&image);
            popup()->itemDelegate()->paint(&painter, option, index);
            painter.end();
            const QRect mark = LocationRowDelegate::goldRect(option, index);
            int dots = 0;
            for (int y = mark.top(); y <= mark.bottom(); ++y) {
                for (int x = mark.left(); x <= mark.right(); ++x) {
                    dots += image.pixelColor(x, y) == QColor(Qt::red) ? 1 : 0;
                }
            }
            return dots;
        };
        m_api->model().setLocations(text("DE;BER;Berlin;1"));
        m_pane->fillCountries(m_servers);
        QCOMPARE(redDots(1), 256);
        QCOMPARE(redDots(2), 0);
    }

    void listIsFilledInServerOrderWithFlagsWhereThereAreAny() {
        m_pane->fillCountries(m_servers);
        QCOMPARE(titles(), (QStringList{text("Random Location"), text("Germany Berlin"), text("Quux Nowhere"),
                                        text("States Denver")}));
        QVERIFY(!popup()->itemIcon(1).isNull());
        QVERIFY(popup()->itemIcon(2).isNull());
        QCOMPARE(m_list->entryAt(1).data, m_servers.at(0));
        QCOMPARE(popup()->currentIndex(), 0);
    }

    void emptyListChangesNothing() {
        m_pane->fillCountries(m_servers);
        m_pane->fillCountries({});
        QCOMPARE(popup()->count(), 4);
    }

    void discardedAddressesAreLeftOutOfTheFilteredCopyOnly() {
        m_delegate.discarded = {text("10.0.0.1"), text("10.0.1.1")};
        m_pane->fillCountries(m_servers);
        QCOMPARE(titles(),
                 (QStringList{text("Random Location"), text("Germany Berlin"), text("Quux Nowhere")}));
        QCOMPARE(m_servers.at(0)->filteredIpAdressArray, QStringList{text("10.0.0.2")});
        QCOMPARE(m_servers.at(0)->ipAdressArray.size(), 2);
        m_delegate.discarded.clear();
        m_pane->fillCountries(m_servers);
        QCOMPARE(popup()->count(), 4);
        QCOMPARE(m_servers.at(0)->filteredIpAdressArray.size(), 2);
    }

    void allDiscardedLeavesRandomLocationAlone() {
        m_delegate.discarded = {text("10.0.0.1"), text("10.0.0.2"), text("10.0.1.1"), text("10.0.2.1")};
        m_pane->fillCountries(m_servers);
        QCOMPARE(titles(), QStringList{text("Random Location")});
    }

    void storedLocationIsSelectedByItsTitleLiterally() {
        preferences().setValue(text("location"), text("States Denver"));
        m_pane->fillCountries(m_servers);
        QCOMPARE(popup()->currentText(), text("States Denver"));
        QCOMPARE(m_list->selectedItem()->title, text("States Denver"));
        preferences().setValue(text("location"), text("DEN US"));
        m_pane->fillCountries(m_servers);
        QCOMPARE(popup()->currentIndex(), 0);
        QVERIFY(!m_list->selectedItem());
    }

    void rebuiltEntriesAreNewOnes() {
        m_pane->fillCountries(m_servers);
        const quint64 before = m_list->idAt(1);
        m_pane->fillCountries(m_servers);
        QVERIFY(m_list->idAt(1) != before);
    }

    void choiceIsStored() {
        m_pane->fillCountries(m_servers);
        popup()->setCurrentIndex(1);
        m_pane->checkPopupCountry();
        QCOMPARE(preferences().string(text("countryCode")), text("DE"));
        QCOMPARE(preferences().string(text("location")), text("BER DE"));
        QCOMPARE(m_delegate.events, QStringList{text("US off")});
        popup()->setCurrentIndex(0);
        m_pane->checkPopupCountry();
        QCOMPARE(preferences().string(text("countryCode")), text("xx"));
        QCOMPARE(preferences().value(text("location")), QVariant(text("")));
        QCOMPARE(m_delegate.events.size(), 1); // the random choice does not change the US-only box
    }

    void keptAddressDecidesTheStoredLocation() {
        m_pane->fillCountries(m_servers);
        preferences().setValues({{text("useSameIP"), true}, {text("lastIP"), text("10.0.1.1\n")}});
        m_pane->checkPopupCountry();
        QCOMPARE(preferences().string(text("location")), text("Denver DEN"));
    }

    void withoutAnApiClientThePopupIsDisabled() {
        m_pane->connectTo(nullptr, &m_delegate);
        m_pane->checkPopupCountry();
        QVERIFY(!popup()->isEnabled());
        QVERIFY(preferences().value(text("location")).isNull());
        m_pane->connectTo(m_api.get(), &m_delegate);
        m_pane->checkPopupCountry();
        QVERIFY(popup()->isEnabled());
    }

    void choosingRestartsTheSession() {
        m_pane->fillCountries(m_servers);
        QStringList posted;
        m_fixture->services.platform().notifications->addObserver(
            text("startVpn"), &m_observer, [this](const QVariant &object) {
                m_delegate.events.append(object.isValid() ? text("start with object") : text("start"));
            });
        choose(1);
        QCOMPARE(m_delegate.events, (QStringList{text("US off"), text("stop"), text("start")}));
        QCoreApplication::processEvents();
        QCOMPARE(m_delegate.events.last(), text("terminate")); // queued, not waited for
        QCOMPARE(preferences().string(text("location")), text("BER DE"));
    }

    void choosingTurnsTheSameAddressBoxOff() {
        m_pane->fillCountries(m_servers);
        SessionState::shared().hidden = true;
        SessionState::shared().currentIp = text("10.0.1.1");
        QTest::mouseClick(sameIp(), Qt::LeftButton);
        QVERIFY(preferences().boolean(text("useSameIP")));
        QCOMPARE(preferences().string(text("lastIP")), text("10.0.1.1"));
        choose(1);
        QVERIFY(!sameIp()->isChecked());
        QVERIFY(!preferences().boolean(text("useSameIP")));
        QCOMPARE(preferences().value(text("lastIP")), QVariant(text("")));
    }

    void sameAddressBoxWhileNotHiddenAlertsAndStaysOff() {
        QTest::mouseClick(sameIp(), Qt::LeftButton);
        QVERIFY(!sameIp()->isChecked());
        QCOMPARE(m_fixture->alerts.size(), 1);
        QCOMPARE(m_fixture->alerts.first().title, text("Quorvane"));
        QCOMPARE(
            m_fixture->alerts.first().text,
            text("Please check \"Always Use Same IP Address\" when you have found a fake IP you would like "
                 "to reuse"));
        QVERIFY(!preferences().value(text("useSameIP")).isValid());
    }

    void sameAddressBoxMayAlwaysBeTurnedOff() {
        sameIp()->setChecked(true);
        QTest::mouseClick(sameIp(), Qt::LeftButton);
        QVERIFY(!sameIp()->isChecked());
        QVERIFY(m_fixture->alerts.isEmpty());
        QCOMPARE(preferences().value(text("useSameIP")), QVariant(false));
    }

    void selectingByImageNeedsAnImageAndAnEntry() {
        m_pane->fillCountries(m_servers);
        QVERIFY(m_pane->selectPopupItemWithImageNamed(text("DE")));
        QCOMPARE(popup()->currentIndex(), 1);
        QVERIFY(!m_list->selectedItem());
        QVERIFY(!m_pane->selectPopupItemWithImageNamed(text("qq")));
        QVERIFY(!m_pane->selectPopupItemWithImageNamed(text("applock")));
        QVERIFY(!m_pane->selectPopupItemWithImageNamed(text("../images/de")));
        QCOMPARE(popup()->currentIndex(), 1);
    }

    void removedEntryIsGone() {
        m_pane->fillCountries(m_servers);
        m_pane->selectPopupItemWithTitle(text("Germany Berlin"));
        m_list->removeTitle(text("Germany Berlin"));
        QVERIFY(!titles().contains(text("Germany Berlin")));
        QVERIFY(!m_list->selectedItem());
        QCOMPARE(m_list->title(m_list->currentRow()), popup()->currentText());
    }

    void refreshSelectsTheStoredFlag() {
        m_pane->fillCountries(m_servers);
        preferences().setValues({{text("countryCode"), text("US")}, {text("useSameIP"), true}});
        m_pane->refresh();
        QCOMPARE(popup()->currentText(), text("States Denver"));
        QVERIFY(sameIp()->isChecked());
    }

    void keptAddressIsShownAfterConnecting() {
        preferences().setValue(text("useSameIP"), true);
        QrvLocationPaneController another;
        another.setChooser(*m_chooser);
        another.connectTo(m_api.get(), &m_delegate);
        QVERIFY(another.findChild<QCheckBox *>(text("checkSameIP"))->isChecked());
    }

    void listAndPopUpFollowEachOther() {
        m_pane->fillCountries(m_servers);
        popup()->setCurrentIndex(2);
        QCOMPARE(m_list->currentRow(), 2);
        m_list->setCurrentRow(1);
        QCOMPARE(popup()->currentIndex(), 1);
        m_list->selectTitle(text("States Denver"));
        QCOMPARE(popup()->currentText(), text("States Denver"));
        m_list->removeTitle(text("States Denver"));
        QCOMPARE(popup()->currentIndex(), m_list->currentRow());
        QCOMPARE(popup()->count(), m_list->count());
        m_pane->fillCountries(m_servers);
        QCOMPARE(popup()->currentIndex(), 0);
        QCOMPARE(m_list->currentRow(), 0);
    }

    void closedPopUpStaysWhereItIsAndItsOpenListChooses() {
        m_pane->fillCountries(m_servers);
        m_pane->show();
        popup()->setFocus();
        QSignalSpy chosen(popup(), &QComboBox::activated);
        QTest::keyClick(popup(), Qt::Key_End);
        QVERIFY(popup()->view()->isVisible());
        QCOMPARE(popup()->currentIndex(), 0);
        QTest::keyClick(popup()->view(), Qt::Key_Down);
        QCOMPARE(chosen.size(), 0);
        QVERIFY(m_delegate.events.isEmpty());
        QTest::keyClick(popup()->view(), Qt::Key_Return);
        QCOMPARE(chosen.size(), 1);
        QCOMPARE(m_list->currentRow(), 1);
        QCOMPARE(m_delegate.events, (QStringList{text("US off"), text("stop")}));
        QCOMPARE(m_list->selectedItem()->title, text("Germany Berlin"));
    }

    void entryOfAnotherViewIsChosenAsInThePopUp() {
        m_pane->fillCountries(m_servers);
        m_chooser->choose(m_list->idAt(1));
        QCOMPARE(popup()->currentIndex(), 1);
        QCOMPARE(m_delegate.events, (QStringList{text("US off"), text("stop")}));
        QCOMPARE(preferences().string(text("location")), text("BER DE"));
        QCoreApplication::processEvents();
        QCOMPARE(m_delegate.events.last(), text("terminate"));
        m_delegate.events.clear();
        m_chooser->choose(0); // no entry has this id
        m_pane->connectTo(nullptr, &m_delegate);
        m_pane->checkPopupCountry();
        m_chooser->choose(m_list->idAt(2)); // the pop-up is disabled
        QCoreApplication::processEvents();
        QVERIFY(m_delegate.events.isEmpty());
        QCOMPARE(popup()->currentIndex(), 1);
    }

    void updateNotificationRebuilds() {
        m_api->setInetConnect(true);
        m_api->cmdAuth(QString());
        QVERIFY(m_fixture->services.urls().finishNext("Server: 7,Berlin,BER,DE,Germany,x|10.0.0.1"));
        m_fixture->services.platform().notifications->post(text("updateServerList"));
        QCOMPARE(titles(), (QStringList{text("Random Location"), text("Germany Berlin")}));
    }
};

} // namespace quorvane

GUI_TEST(LocationPaneTest)
#include "LocationPaneTest.moc"
