#include "frontend/session/LocationList.h"

#include "fakes/TestPlatform.h"
#include "frontend/api/ServerModel.h"
#include "frontend/session/SessionState.h"
#include "frontend/session/StoredLocation.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

QrvVpnDataList groupsOf(const QStringList &lines) {
    return ServerModel::parseServers(ServerLines(lines), QString(), QString(), QString());
}

/// Records the signals that a view follows.
struct Changes {
    explicit Changes(const LocationList &list) {
        QObject::connect(&list, &LocationList::currentRowChanged, &m_context,
                         [this](int row) { selections.append(row); });
        QObject::connect(&list, &LocationList::modelReset, &m_context, [this] { ++resets; });
        QObject::connect(&list, &LocationList::rowsRemoved, &m_context,
                         [this](const QModelIndex &, int first, int last) {
                             removed.append(first);
                             EXPECT_EQ(first, last);
                         });
    }

    QList<int> selections;
    QList<int> removed;
    int resets = 0;

private:
    QObject m_context;
};

class LocationListTest : public testing::Test {
protected:
    void fill(const QStringList &discarded = {}, const QrvLocationList &locations = {}) {
        m_list.fill(m_groups, discarded, locations);
    }

    [[nodiscard]] QStringList titles() const {
        QStringList titles;
        for (int row = 0; row < m_list.count(); ++row) {
            titles.append(m_list.title(row));
        }
        return titles;
    }

    [[nodiscard]] QVariant at(int row, int role) const { return m_list.index(row).data(role); }

    fakes::TestPlatform m_services;
    QrvVpnDataList m_groups = groupsOf(
        {text("7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2"), text("8,Denver,DEN,US,States,x|10.0.1.1"),
         text("9,Nowhere,NOW,QQ,Quux,x|10.0.2.1"), text("9,Austin,AUS,US,States,x|10.0.3.1")});
    LocationList m_list;
};

TEST_F(LocationListTest, BeginsWithRandomLocationAlone) {
    EXPECT_EQ(titles(), QStringList{text("Random Location")});
    EXPECT_EQ(m_list.currentRow(), 0);
    EXPECT_EQ(m_list.flag(0), text("xx"));
    EXPECT_EQ(m_list.entryAt(0).data, nullptr);
    EXPECT_FALSE(m_list.isFull(0));
    EXPECT_FALSE(m_list.isAmerican(0));
    EXPECT_FALSE(m_list.selectedItem().has_value());
}

TEST_F(LocationListTest, RandomLocationThenTheGroupsInTheirOrder) {
    fill();
    EXPECT_EQ(titles(), (QStringList{text("Random Location"), text("Germany Berlin"), text("Quux Nowhere"),
                                     text("States Austin"), text("States Denver")}));
    EXPECT_EQ(m_list.rowCount(), 5);
    EXPECT_EQ(m_list.rowCount(m_list.index(1)), 0);
    EXPECT_EQ(m_list.entryAt(1).data, m_groups.at(0));
    EXPECT_EQ(m_list.flag(1), text("de"));
    EXPECT_EQ(m_list.countryCode(1), text("DE"));
    EXPECT_EQ(m_list.currentRow(), 0);
}

TEST_F(LocationListTest, EmptyListOfGroupsChangesNothing) {
    fill();
    m_list.selectTitle(text("States Denver"));
    const Changes changes(m_list);
    m_list.fill({}, {}, {});
    EXPECT_EQ(m_list.count(), 5);
    EXPECT_EQ(m_list.currentRow(), 4);
    EXPECT_TRUE(m_list.selectedItem().has_value());
    EXPECT_EQ(changes.resets, 0);
}

TEST_F(LocationListTest, FillingSelectsRandomLocationAndClearsTheSelectedItem) {
    fill();
    m_list.selectTitle(text("States Denver"));
    const Changes changes(m_list);
    fill();
    EXPECT_EQ(m_list.currentRow(), 0);
    EXPECT_FALSE(m_list.selectedItem().has_value());
    EXPECT_EQ(changes.resets, 1);
    EXPECT_EQ(changes.selections, QList<int>{0});
}

TEST_F(LocationListTest, DiscardedAddressesAreLeftOutOfTheFilteredCopyOnly) {
    fill({text("10.0.0.1"), text("10.0.1.1"), text("10.0.3.1")});
    EXPECT_EQ(titles(), (QStringList{text("Random Location"), text("Germany Berlin"), text("Quux Nowhere")}));
    EXPECT_EQ(m_list.entryAt(1).data->filteredIpAdressArray, QStringList{text("10.0.0.2")});
    EXPECT_EQ(m_list.entryAt(1).data->ipAdressArray.size(), 2);
    fill();
    EXPECT_EQ(m_list.count(), 5);
    EXPECT_EQ(m_list.entryAt(1).data->filteredIpAdressArray.size(), 2);
}

TEST_F(LocationListTest, AllAddressesDiscardedLeaveRandomLocationAlone) {
    fill({text("10.0.0.1"), text("10.0.0.2"), text("10.0.1.1"), text("10.0.2.1"), text("10.0.3.1")});
    EXPECT_EQ(titles(), QStringList{text("Random Location")});
}

TEST_F(LocationListTest, NoTwoEntriesOfARunHaveTheSameId) {
    QSet<quint64> ids;
    const LocationList other;
    ids.insert(other.idAt(0));
    for (int round = 0; round < 3; ++round) {
        fill();
        for (int row = 0; row < m_list.count(); ++row) {
            ids.insert(m_list.idAt(row));
        }
    }
    EXPECT_EQ(ids.size(), 16);
}

TEST_F(LocationListTest, TitleIsSelectedLiterallyAndBecomesTheSelectedItem) {
    fill();
    EXPECT_FALSE(m_list.selectTitle(text("states denver")));
    EXPECT_FALSE(m_list.selectTitle(text("States Denver ")));
    EXPECT_FALSE(m_list.selectTitle(QString()));
    EXPECT_EQ(m_list.currentRow(), 0);
    EXPECT_FALSE(m_list.selectedItem().has_value());
    EXPECT_TRUE(m_list.selectTitle(text("States Denver")));
    EXPECT_EQ(m_list.currentRow(), 4);
    EXPECT_EQ(m_list.selectedItem()->title, text("States Denver"));
    EXPECT_TRUE(m_list.selectTitle(text("Random Location")));
    EXPECT_EQ(m_list.selectedItem()->id, m_list.idAt(0));
}

TEST_F(LocationListTest, FlagSelectsTheFirstRowThatHasIt) {
    fill();
    EXPECT_TRUE(m_list.selectFlag(text("us")));
    EXPECT_EQ(m_list.currentRow(), 3);
    EXPECT_FALSE(m_list.selectedItem().has_value());
    EXPECT_FALSE(m_list.selectFlag(text("fr")));
    EXPECT_FALSE(m_list.selectFlag(text("US")));
    EXPECT_EQ(m_list.currentRow(), 3);
    EXPECT_TRUE(m_list.selectFlag(text("xx")));
    EXPECT_EQ(m_list.currentRow(), 0);
}

TEST_F(LocationListTest, IdSelectsItsRowAndNoOther) {
    fill();
    const quint64 old = m_list.idAt(2);
    EXPECT_TRUE(m_list.selectId(m_list.idAt(3)));
    EXPECT_EQ(m_list.currentRow(), 3);
    fill();
    EXPECT_FALSE(m_list.selectId(old));
    EXPECT_FALSE(m_list.selectId(0));
    EXPECT_FALSE(m_list.selectId(~quint64{0}));
    EXPECT_EQ(m_list.currentRow(), 0);
}

TEST_F(LocationListTest, SelectionIsReportedOnce) {
    fill();
    const Changes changes(m_list);
    m_list.setCurrentRow(2);
    m_list.setCurrentRow(2);
    m_list.setCurrentRow(-1);
    m_list.setCurrentRow(5);
    EXPECT_EQ(changes.selections, QList<int>{2});
}

TEST_F(LocationListTest, RemovedRowIsGone) {
    fill();
    m_list.selectTitle(text("Quux Nowhere"));
    const Changes changes(m_list);
    m_list.removeTitle(text("Quux Nowhere"));
    EXPECT_EQ(titles(), (QStringList{text("Random Location"), text("Germany Berlin"), text("States Austin"),
                                     text("States Denver")}));
    EXPECT_EQ(changes.removed, QList<int>{2});
    EXPECT_EQ(m_list.currentRow(), 1); // the row before it
    EXPECT_FALSE(m_list.selectedItem().has_value());
    m_list.removeTitle(text("Quux Nowhere"));
    EXPECT_EQ(m_list.count(), 4);
    EXPECT_TRUE(m_list.selectId(m_list.idAt(3)));
}

TEST_F(LocationListTest, RemovingAnotherRowKeepsTheSelectedEntry) {
    fill();
    m_list.selectTitle(text("States Denver"));
    const quint64 selected = m_list.idAt(4);
    m_list.removeTitle(text("Germany Berlin"));
    EXPECT_EQ(m_list.idAt(m_list.currentRow()), selected);
    EXPECT_EQ(m_list.selectedItem()->id, selected);
    m_list.setCurrentRow(1);
    m_list.removeTitle(text("States Denver"));
    EXPECT_EQ(m_list.currentRow(), 1);
    EXPECT_FALSE(m_list.selectedItem().has_value());
}

TEST_F(LocationListTest, RandomLocationIsNeverRemoved) {
    m_groups = groupsOf({text("1,Location,A,DE,Random,x|10.0.0.1")});
    fill();
    EXPECT_EQ(titles(), (QStringList{text("Random Location"), text("Random Location")}));
    m_list.removeTitle(text("Random Location"));
    m_list.removeTitle(text("Random Location"));
    EXPECT_EQ(m_list.count(), 1);
    EXPECT_EQ(m_list.entryAt(0).data, nullptr);
}

TEST_F(LocationListTest, FullLocationsAreMarked) {
    ServerModel model;
    model.setLocations(text("DE;BER;Berlin;1|US;DEN;Denver;0|QQ;BER;Elsewhere;1"));
    fill({}, model.locations());
    for (int row = 0; row < m_list.count(); ++row) {
        const bool full = row == 1;
        EXPECT_EQ(at(row, LocationList::FullRole).toBool(), full) << row;
        EXPECT_EQ(at(row, Qt::ToolTipRole).isValid(), full) << row;
        EXPECT_EQ(at(row, Qt::AccessibleTextRole).isValid(), full) << row;
    }
    EXPECT_EQ(at(1, Qt::AccessibleTextRole).toString(), text("Germany Berlin, full"));
    EXPECT_EQ(at(1, Qt::ToolTipRole).toString(), text("This location is full."));
}

TEST_F(LocationListTest, RolesOfARow) {
    fill();
    EXPECT_EQ(at(4, Qt::DisplayRole).toString(), text("States Denver"));
    EXPECT_EQ(at(4, LocationList::TitleRole).toString(), text("States Denver"));
    EXPECT_EQ(at(4, LocationList::FlagRole).toString(), text("us"));
    EXPECT_EQ(at(4, LocationList::EntryIdRole).toULongLong(), m_list.idAt(4));
    EXPECT_FALSE(at(4, Qt::UserRole + 100).isValid());
    EXPECT_TRUE(m_list.isAmerican(4));
    EXPECT_FALSE(m_list.isAmerican(1));
    EXPECT_FALSE(m_list.data(QModelIndex(), Qt::DisplayRole).isValid());
}

TEST_F(LocationListTest, LowerCaseCodeIsNotAmerican) {
    m_groups = groupsOf({text("1,Austin,AUS,us,States,x|10.0.0.1")});
    fill();
    EXPECT_FALSE(m_list.isAmerican(1));
    EXPECT_EQ(m_list.flag(1), text("us"));
}

TEST_F(LocationListTest, LongTitleIsCutForDisplayOnly) {
    const QString city = text("x").repeated(192) + text("\U0001F600") + text("y").repeated(50);
    m_groups = groupsOf({text("1,") + city + text(",A,DE,Germany,x|10.0.0.1")});
    fill();
    const QString title = text("Germany ") + city;
    EXPECT_EQ(m_list.title(1), title);
    EXPECT_EQ(m_list.shownText(1), title.left(200)); // the character of two units ends at 202
    EXPECT_TRUE(m_list.selectTitle(title));
    m_groups = groupsOf({text("1,x") + city.mid(2) + text(",A,DE,Germany,x|10.0.0.1")});
    fill();
    EXPECT_EQ(m_list.shownText(1).size(), 199); // no half of a character
}

class StoredLocationTest : public LocationListTest {
protected:
    StoredLocationTest() {
        m_model.setServers(m_groups);
        m_model.setServerList(ServerLines({text("8,Denver,DEN,US,States,x|10.0.1.1")}));
        fill();
    }

    ~StoredLocationTest() override { SessionState::shared() = {}; }

    [[nodiscard]] QVariant stored(const char *key) { return m_services.preferences().value(text(key)); }

    ServerModel m_model;
};

TEST_F(StoredLocationTest, CountryAndCodeOfTheGroupAreStored) {
    StoredLocation::store(text("Germany Berlin"), m_model);
    EXPECT_EQ(stored("countryCode"), QVariant(text("DE")));
    EXPECT_EQ(stored("location"), QVariant(text("BER DE")));
}

TEST_F(StoredLocationTest, RandomLocationIsStoredAsNoPlace) {
    StoredLocation::store(text("Random Location"), m_model);
    EXPECT_EQ(stored("countryCode"), QVariant(text("xx")));
    EXPECT_EQ(stored("location"), QVariant(text("")));
}

TEST_F(StoredLocationTest, KeptAddressDecidesTheLocation) {
    m_services.preferences().setValues({{text("useSameIP"), true}, {text("lastIP"), text("10.0.1.1\n")}});
    StoredLocation::store(text("Germany Berlin"), m_model);
    EXPECT_EQ(stored("countryCode"), QVariant(text("DE")));
    EXPECT_EQ(stored("location"), QVariant(text("Denver DEN")));
    m_services.preferences().setValue(text("lastIP"), text(""));
    StoredLocation::store(text("Germany Berlin"), m_model);
    EXPECT_EQ(stored("location"), QVariant(text("BER DE")));
}

TEST_F(StoredLocationTest, StoredTitleIsSelected) {
    m_services.preferences().setValue(text("location"), text("States Denver"));
    StoredLocation::selectIn(m_list, m_model);
    EXPECT_EQ(m_list.title(m_list.currentRow()), text("States Denver"));
}

TEST_F(StoredLocationTest, UnknownStoredTitleLeavesSelectionAndPreferences) {
    m_services.preferences().setValue(text("location"), text("BER DE"));
    StoredLocation::selectIn(m_list, m_model);
    EXPECT_EQ(m_list.currentRow(), 0);
    EXPECT_EQ(stored("location"), QVariant(text("BER DE")));
}

TEST_F(StoredLocationTest, WithoutALocationTheNameOfTheCountryIsLookedFor) {
    m_groups = groupsOf({text("1,Country,A,DE,Unknown,x|10.0.0.1")});
    fill();
    m_services.preferences().setValue(text("countryCode"), text("DE"));
    StoredLocation::selectIn(m_list, m_model);
    EXPECT_EQ(m_list.currentRow(), 1);
}

TEST_F(StoredLocationTest, AddressIsKeptOnlyWhileHidden) {
    SessionState::shared().currentIp = text("10.0.1.1");
    StoredLocation::storeSameIp(true);
    EXPECT_EQ(stored("useSameIP"), QVariant(true));
    EXPECT_EQ(stored("lastIP"), QVariant(text("")));
    SessionState::shared().hidden = true;
    StoredLocation::storeSameIp(true);
    EXPECT_EQ(stored("lastIP"), QVariant(text("10.0.1.1")));
    StoredLocation::storeSameIp(false);
    EXPECT_EQ(stored("useSameIP"), QVariant(false));
    EXPECT_EQ(stored("lastIP"), QVariant(text("")));
}

} // namespace

} // namespace quorvane
