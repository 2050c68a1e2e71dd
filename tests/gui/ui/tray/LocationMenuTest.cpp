#include "frontend/ui/tray/LocationMenu.h"

#include "frontend/session/LocationList.h"
#include "tests/gui/GuiTest.h"

#include <QSignalSpy>

namespace quorvane {

/// The submenu of locations in the tray's menu.
class LocationMenuTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<GuiFixture> m_fixture;
    std::unique_ptr<LocationList> m_list;
    std::unique_ptr<LocationMenu> m_menu;

    void fill(const QStringList &lines) {
        m_list->fill(ServerModel::parseServers(ServerLines(lines), QString(), QString(), QString()), {}, {});
    }

    static QString line(const QString &city, const QString &code, const QString &country) {
        return text("1,%1,C,%2,%3,x|10.0.0.1").arg(city, code, country);
    }

    void fillWithMany() {
        QStringList lines;
        for (int i = 10; i < 30; ++i) {
            lines.append(line(text("City %1").arg(i), text("DE"), text("Germany")));
        }
        lines.append(line(text("Denver"), text("us"), text("States")));
        lines.append(line(text("Odd"), text("?"), text("Z")));
        lines.append(line(text("Odder"), text("D1"), text("Z")));
        fill(lines);
    }

    static QStringList textsOf(const QMenu &menu) {
        QStringList texts;
        for (const QAction *entry : menu.actions()) {
            texts.append(entry->isSeparator() ? text("-") : entry->text());
        }
        return texts;
    }

    static QStringList checkedOf(const QMenu &menu) {
        QStringList texts;
        for (const QAction *entry : menu.actions()) {
            if (entry->isChecked()) {
                texts.append(entry->text());
            }
        }
        return texts;
    }

    /// As a panel does before it shows the menu.
    static void show(QMenu &menu) { Q_EMIT menu.aboutToShow(); }

    [[nodiscard]] QMenu &country(int number) const { return *m_menu->actions().at(number + 2)->menu(); }

private Q_SLOTS:

    void init() {
        m_fixture = std::make_unique<GuiFixture>();
        m_list = std::make_unique<LocationList>();
        m_menu = std::make_unique<LocationMenu>(*m_list);
    }

    void cleanup() {
        m_menu.reset();
        m_list.reset();
        m_fixture.reset();
    }

    void beforeItIsShownItHasRandomLocationAlone() {
        QCOMPARE(textsOf(*m_menu), QStringList{text("Random Location")});
        QCOMPARE(checkedOf(*m_menu), QStringList{text("Random Location")});
        fillWithMany();
        QCOMPARE(m_menu->actions().size(), 1);
    }

    void shortListIsShownWithFlags() {
        fill({line(text("Berlin"), text("DE"), text("Germany")), line(text("A&B"), text("QQ"), text("X"))});
        show(*m_menu);
        QCOMPARE(textsOf(*m_menu),
                 (QStringList{text("Random Location"), text("-"), text("Germany Berlin"), text("X A&&B")}));
        QVERIFY(!m_menu->actions().at(0)->icon().isNull());
        QVERIFY(!m_menu->actions().at(2)->icon().isNull());
        QVERIFY(m_menu->actions().at(3)->icon().isNull());
    }

    void fullLocationIsMarked() {
        const auto groups =
            ServerModel::parseServers(ServerLines({line(text("Berlin"), text("DE"), text("Germany"))}),
                                      QString(), QString(), QString());
        ServerModel model;
        model.setLocations(text("DE;C;Berlin;1"));
        m_list->fill(groups, {}, model.locations());
        show(*m_menu);
        QCOMPARE(m_menu->actions().at(2)->text(), text("Germany Berlin, full"));
    }

    void selectedEntryIsChecked() {
        fill(
            {line(text("Berlin"), text("DE"), text("Germany")), line(text("Denver"), text("US"), text("X"))});
        show(*m_menu);
        QCOMPARE(checkedOf(*m_menu), QStringList{text("Random Location")});
        m_list->setCurrentRow(2);
        QCOMPARE(checkedOf(*m_menu), QStringList{text("X Denver")});
        show(*m_menu);
        QCOMPARE(checkedOf(*m_menu), QStringList{text("X Denver")});
    }

    void choiceIsReportedAndCheckedOnlyWhenTheListFollows() {
        fill({line(text("Berlin"), text("DE"), text("Germany"))});
        show(*m_menu);
        QSignalSpy chosen(m_menu.get(), &LocationMenu::chosen);
        m_menu->actions().at(2)->trigger();
        QCOMPARE(chosen.size(), 1);
        QCOMPARE(chosen.first().first().toULongLong(), m_list->idAt(1));
        QCOMPARE(checkedOf(*m_menu), QStringList{text("Random Location")});
        m_list->selectId(m_list->idAt(1));
        QCOMPARE(checkedOf(*m_menu), QStringList{text("Germany Berlin")});
        m_menu->actions().at(2)->trigger(); // the checked one again
        QCOMPARE(chosen.size(), 2);
        QCOMPARE(checkedOf(*m_menu), QStringList{text("Germany Berlin")});
    }

    void newListReplacesTheEntriesWhenTheMenuIsShown() {
        fill({line(text("Berlin"), text("DE"), text("Germany"))});
        show(*m_menu);
        const QList<QAction *> before = m_menu->actions();
        show(*m_menu);
        QCOMPARE(m_menu->actions(), before); // nothing is made anew for the same list
        fill({line(text("Denver"), text("US"), text("X"))});
        QCOMPARE(m_menu->actions(), before);
        show(*m_menu);
        QCOMPARE(textsOf(*m_menu), (QStringList{text("Random Location"), text("-"), text("X Denver")}));
        m_list->removeTitle(text("X Denver"));
        show(*m_menu);
        QCOMPARE(textsOf(*m_menu), QStringList{text("Random Location")});
    }

    void twentyLocationsAreNotGrouped() {
        QStringList lines;
        for (int i = 10; i < 30; ++i) {
            lines.append(line(text("City %1").arg(i), text("DE"), text("Germany")));
        }
        fill(lines);
        show(*m_menu);
        QCOMPARE(m_menu->actions().size(), 22);
        QVERIFY(m_menu->actions().at(2)->menu() == nullptr);
    }

    void moreThanTwentyAreGroupedByCountryAndFilledWhenShown() {
        fillWithMany();
        show(*m_menu);
        QCOMPARE(textsOf(*m_menu), (QStringList{text("Random Location"), text("-"), text("Germany"),
                                                text("United States"), text("Other")}));
        QVERIFY(!m_menu->actions().at(2)->icon().isNull());
        QVERIFY(m_menu->actions().at(4)->icon().isNull());
        QVERIFY(country(0).isEmpty());
        show(country(0));
        QCOMPARE(country(0).actions().size(), 20);
        QCOMPARE(country(0).actions().first()->text(), text("Germany City 10"));
        show(country(0));
        QCOMPARE(country(0).actions().size(), 20);
        show(country(1));
        QCOMPARE(textsOf(country(1)), QStringList{text("States Denver")});
        show(country(2));
        QCOMPARE(textsOf(country(2)), (QStringList{text("Z Odd"), text("Z Odder")}));
    }

    void entryOfACountryIsChosenAndChecked() {
        fillWithMany();
        show(*m_menu);
        show(country(1));
        QSignalSpy chosen(m_menu.get(), &LocationMenu::chosen);
        country(1).actions().first()->trigger();
        QCOMPARE(chosen.first().first().toULongLong(), m_list->idAt(21));
        m_list->selectId(m_list->idAt(21));
        QCOMPARE(checkedOf(country(1)), QStringList{text("States Denver")});
        QVERIFY(checkedOf(*m_menu).isEmpty());
    }

    void submenuOfAnOldListIsNotFilled() {
        fillWithMany();
        show(*m_menu);
        fill({line(text("Denver"), text("US"), text("X"))});
        show(country(0));
        QVERIFY(country(0).isEmpty());
    }

    void countryWithThousandsIsCut() {
        QStringList lines;
        for (int i = 0; i < LocationMenu::maximumOfCountry + 2; ++i) {
            lines.append(line(QString::number(i), text("DE"), text("Germany")));
        }
        fill(lines);
        show(*m_menu);
        show(country(0));
        QCOMPARE(country(0).actions().size(), LocationMenu::maximumOfCountry + 1);
        QCOMPARE(country(0).actions().last()->text(), text("More locations are in the window"));
        QVERIFY(!country(0).actions().last()->isEnabled());
    }
};

} // namespace quorvane

GUI_TEST(LocationMenuTest)
#include "LocationMenuTest.moc"
