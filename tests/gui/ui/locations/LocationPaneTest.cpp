#include "frontend/ui/locations/LocationRowDelegate.h"
#include "frontend/ui/locations/QrvLocationPaneController.h"

#include "tests/gui/GuiTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPainter>

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
    std::unique_ptr<GuiFixture> fixture;
    std::unique_ptr<QrvAPI> api;
    RecordingPaneDelegate delegate;
    std::unique_ptr<QrvLocationPaneController> pane;
    QrvVpnDataList servers;
    QObject observer;

    [[nodiscard]] QComboBox *popup() const { return pane->findChild<QComboBox *>(text("popupCountry")); }

    [[nodiscard]] QCheckBox *sameIp() const { return pane->findChild<QCheckBox *>(text("checkSameIP")); }

    [[nodiscard]] platform::PreferencesStore &preferences() const { return fixture->services.preferences(); }

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
        fixture = std::make_unique<GuiFixture>();
        delegate = {};
        api = std::make_unique<QrvAPI>();
        const QStringList lines{text("7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2"),
                                text("8,Denver,DEN,US,States,x|10.0.1.1"),
                                text("9,Nowhere,NOW,QQ,Quux,x|10.0.2.1")};
        servers = ServerModel::parseServers(lines, text("u"), text("p"), QString());
        api->model().setServerList(lines);
        api->model().setServers(servers);
        pane = std::make_unique<QrvLocationPaneController>();
        pane->connectTo(api.get(), &delegate);
    }

    void cleanup() {
        pane.reset();
        api.reset();
        fixture.reset();
    }

    void beforeTheFirstListRandomLocationStandsAlone() {
        QCOMPARE(titles(), QStringList{text("Random Location")});
        QVERIFY(pane->currentItem()->vpnData() == nullptr);
        QCOMPARE(pane->currentItem()->imageName(), text("xx"));
        QVERIFY(pane->selectedItem() == nullptr);
    }

    void fullLocationsCarryTheGoldMarkAndSayIt() {
        api->model().setLocations(text("DE;BER;Berlin;1|US;DEN;Denver;0|QQ;BER;Elsewhere;1"));
        pane->fillCountries(servers);
        QCOMPARE(titles().at(1), text("Germany Berlin"));
        for (int row = 0; row < popup()->count(); ++row) {
            const bool full = row == 1;
            QCOMPARE(popup()->itemData(row, LocationRowDelegate::fullRole).toBool(), full);
            QCOMPARE(pane->items().at(static_cast<std::size_t>(row))->isMarkedFull(), full);
            QVERIFY(!pane->items().at(static_cast<std::size_t>(row))->full()); // it has no item view
        }
        QCOMPARE(popup()->itemData(1, Qt::AccessibleTextRole).toString(), text("Germany Berlin, full"));
        QCOMPARE(popup()->itemText(1), text("Germany Berlin"));
    }

    void goldMarkIsDrawnBehindTheTitle() {
        fixture->addImage(text("gold"), QSize(16, 16)); // all red
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
        api->model().setLocations(text("DE;BER;Berlin;1"));
        pane->fillCountries(servers);
        QCOMPARE(redDots(1), 256);
        QCOMPARE(redDots(2), 0);
    }

    void listIsFilledInServerOrderWithFlagsWhereThereAreAny() {
        pane->fillCountries(servers);
        QCOMPARE(titles(), (QStringList{text("Random Location"), text("Germany Berlin"), text("Quux Nowhere"),
                                        text("States Denver")}));
        QCOMPARE(pane->items().at(1)->imageName(), text("de"));
        QVERIFY(pane->items().at(2)->imageName().isNull());
        QVERIFY(!popup()->itemIcon(1).isNull());
        QVERIFY(popup()->itemIcon(2).isNull());
        QCOMPARE(pane->items().at(1)->vpnData(), servers.at(0));
        QCOMPARE(popup()->currentIndex(), 0);
    }

    void emptyListChangesNothing() {
        pane->fillCountries(servers);
        pane->fillCountries({});
        QCOMPARE(popup()->count(), 4);
    }

    void discardedAddressesAreLeftOutOfTheFilteredCopyOnly() {
        delegate.discarded = {text("10.0.0.1"), text("10.0.1.1")};
        pane->fillCountries(servers);
        QCOMPARE(titles(),
                 (QStringList{text("Random Location"), text("Germany Berlin"), text("Quux Nowhere")}));
        QCOMPARE(servers.at(0)->filteredIpAdressArray, QStringList{text("10.0.0.2")});
        QCOMPARE(servers.at(0)->ipAdressArray.size(), 2);
        delegate.discarded.clear();
        pane->fillCountries(servers);
        QCOMPARE(popup()->count(), 4);
        QCOMPARE(servers.at(0)->filteredIpAdressArray.size(), 2);
    }

    void allDiscardedLeavesRandomLocationAlone() {
        delegate.discarded = {text("10.0.0.1"), text("10.0.0.2"), text("10.0.1.1"), text("10.0.2.1")};
        pane->fillCountries(servers);
        QCOMPARE(titles(), QStringList{text("Random Location")});
    }

    void storedLocationIsSelectedByItsTitleLiterally() {
        preferences().setValue(text("location"), text("States Denver"));
        pane->fillCountries(servers);
        QCOMPARE(popup()->currentText(), text("States Denver"));
        QCOMPARE(pane->selectedItem(), pane->currentItem());
        preferences().setValue(text("location"), text("DEN US"));
        pane->fillCountries(servers);
        QCOMPARE(popup()->currentIndex(), 0);
        QVERIFY(pane->selectedItem() == nullptr);
    }

    void rebuiltEntriesAreNewOnes() {
        pane->fillCountries(servers);
        const quint64 before = pane->items().at(1)->id();
        pane->fillCountries(servers);
        QVERIFY(pane->items().at(1)->id() != before);
    }

    void choiceIsStored() {
        pane->fillCountries(servers);
        popup()->setCurrentIndex(1);
        pane->checkPopupCountry();
        QCOMPARE(preferences().string(text("countryCode")), text("DE"));
        QCOMPARE(preferences().string(text("location")), text("BER DE"));
        QCOMPARE(delegate.events, QStringList{text("US off")});
        popup()->setCurrentIndex(0);
        pane->checkPopupCountry();
        QCOMPARE(preferences().string(text("countryCode")), text("xx"));
        QCOMPARE(preferences().value(text("location")), QVariant(text("")));
        QCOMPARE(delegate.events.size(), 1); // random choice leaves the US-only box alone
    }

    void keptAddressDecidesTheStoredLocation() {
        pane->fillCountries(servers);
        preferences().setValues({{text("useSameIP"), true}, {text("lastIP"), text("10.0.1.1\n")}});
        pane->checkPopupCountry();
        QCOMPARE(preferences().string(text("location")), text("Denver DEN"));
    }

    void withoutAnApiClientThePopupIsDisabled() {
        pane->connectTo(nullptr, &delegate);
        pane->checkPopupCountry();
        QVERIFY(!popup()->isEnabled());
        QVERIFY(preferences().value(text("location")).isNull());
        pane->connectTo(api.get(), &delegate);
        pane->checkPopupCountry();
        QVERIFY(popup()->isEnabled());
    }

    void choosingRestartsTheSession() {
        pane->fillCountries(servers);
        QStringList posted;
        fixture->services.platform().notifications->addObserver(
            text("startVpn"), &observer, [this](const QVariant &object) {
                delegate.events.append(object.isValid() ? text("start with object") : text("start"));
            });
        choose(1);
        QCOMPARE(delegate.events, (QStringList{text("US off"), text("stop"), text("start")}));
        QCoreApplication::processEvents();
        QCOMPARE(delegate.events.last(), text("terminate")); // asked for without waiting
        QCOMPARE(preferences().string(text("location")), text("BER DE"));
    }

    void choosingTurnsTheSameAddressBoxOff() {
        pane->fillCountries(servers);
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
        QCOMPARE(fixture->alerts.size(), 1);
        QCOMPARE(fixture->alerts.first().title, text("Quorvane"));
        QCOMPARE(
            fixture->alerts.first().text,
            text("Please check \"Always Use Same IP Address\" when you have found a fake IP you would like "
                 "to reuse"));
        QVERIFY(!preferences().value(text("useSameIP")).isValid());
    }

    void sameAddressBoxMayAlwaysBeTurnedOff() {
        sameIp()->setChecked(true);
        QTest::mouseClick(sameIp(), Qt::LeftButton);
        QVERIFY(!sameIp()->isChecked());
        QVERIFY(fixture->alerts.isEmpty());
        QCOMPARE(preferences().value(text("useSameIP")), QVariant(false));
    }

    void selectingByImageNeedsAnImageAndAnEntry() {
        pane->fillCountries(servers);
        QVERIFY(pane->selectPopupItemWithImageNamed(text("DE")));
        QCOMPARE(popup()->currentIndex(), 1);
        QVERIFY(pane->selectedItem() == nullptr);
        QVERIFY(!pane->selectPopupItemWithImageNamed(text("qq")));
        QVERIFY(!pane->selectPopupItemWithImageNamed(text("applock")));
        QVERIFY(!pane->selectPopupItemWithImageNamed(text("../images/de")));
        QCOMPARE(popup()->currentIndex(), 1);
    }

    void removedEntryIsGone() {
        pane->fillCountries(servers);
        pane->selectPopupItemWithTitle(text("Germany Berlin"));
        pane->removeItemWithTitle(text("Germany Berlin"));
        QVERIFY(!titles().contains(text("Germany Berlin")));
        QVERIFY(pane->selectedItem() == nullptr);
        QCOMPARE(pane->currentItem()->text(), popup()->currentText());
    }

    void comingIntoViewSelectsTheStoredFlag() {
        pane->fillCountries(servers);
        preferences().setValues({{text("countryCode"), text("US")}, {text("useSameIP"), true}});
        pane->refresh();
        QCOMPARE(popup()->currentText(), text("States Denver"));
        QVERIFY(sameIp()->isChecked());
    }

    void keptAddressShowsFromTheStart() {
        preferences().setValue(text("useSameIP"), true);
        QrvLocationPaneController another;
        another.connectTo(api.get(), &delegate);
        QVERIFY(another.findChild<QCheckBox *>(text("checkSameIP"))->isChecked());
    }

    void updateNotificationRebuilds() {
        api->setInetConnect(true);
        api->cmdAuth(QString());
        QVERIFY(fixture->services.urls().finishNext("Server: 7,Berlin,BER,DE,Germany,x|10.0.0.1"));
        fixture->services.platform().notifications->post(text("updateServerList"));
        QCOMPARE(titles(), (QStringList{text("Random Location"), text("Germany Berlin")}));
    }
};

} // namespace quorvane

QTEST_MAIN(quorvane::LocationPaneTest)
#include "LocationPaneTest.moc"
