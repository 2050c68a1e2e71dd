#include "frontend/session/LocationChoice.h"

#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QSet>
#include <gtest/gtest.h>
#include <random>

namespace quorvane {

namespace {

using Entry = LocationChoice::Entry;
using Outcome = LocationChoice::Outcome;
using Request = LocationChoice::Request;
using Result = LocationChoice::Result;

Entry location(quint64 id, const char *country,
               const QStringList &addresses = {QStringLiteral("203.0.113.1")}) {
    auto data = std::make_shared<QrvVpnData>();
    data->countryCode = text(country);
    data->ipAdressArray = addresses;
    data->filteredIpAdressArray = addresses;
    return {id, text("Location %1").arg(id), data};
}

class ListedLocations final : public LocationChoice::Locations {
public:
    int count() const override { return static_cast<int>(entries.size()); }

    quint64 idAt(int row) const override { return entries.at(row).id; }

    Entry entryAt(int row) const override { return entries.at(row); }

    bool isAmerican(int row) const override {
        return entries.at(row).data && entries.at(row).data->countryCode == QLatin1String("US");
    }

    QList<Entry> entries;
};

class LocationChoiceTest : public testing::Test {
protected:
    LocationChoiceTest() {
        m_list.entries = {Entry{1, LocationChoice::randomTitle(), nullptr}, location(2, "DE"),
                          location(3, "US"), location(4, "FR")};
        m_request.candidate = m_list.entries.first();
        m_request.isDiscarded = [this](const QString &row) {
            return m_discarded.contains(row);
        };
    }

    Outcome choose() { return m_choice.choose(m_request); }

    std::mt19937 m_engine{7};
    LocationChoice m_choice{[this] {
        return static_cast<quint32>(m_engine());
    }};
    ListedLocations m_list;
    Request m_request{m_list, {}, false, false, {}};
    QStringList m_discarded;
};

TEST_F(LocationChoiceTest, ListWithRandomLocationAloneHasNothingToPick) {
    m_list.entries.resize(1);
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.result, Result::NothingToPick);
    EXPECT_FALSE(outcome.selection.has_value());
}

TEST_F(LocationChoiceTest, FixedLocationIsPickedAsItIs) {
    m_request.candidate = m_list.entries.at(1);
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.result, Result::Picked);
    EXPECT_EQ(outcome.pick.id, 2U);
    EXPECT_FALSE(outcome.selection.has_value());
    EXPECT_FALSE(outcome.updatesLocationText);
    EXPECT_TRUE(m_choice.usedItems().isEmpty());
}

TEST_F(LocationChoiceTest, RandomPickIsSelectedUsedAndNamed) {
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.result, Result::Picked);
    EXPECT_NE(outcome.pick.id, 1U);
    EXPECT_EQ(outcome.selection, outcome.pick.id);
    EXPECT_TRUE(outcome.updatesLocationText);
    EXPECT_EQ(m_choice.usedItems(), QSet<quint64>{outcome.pick.id});
}

TEST_F(LocationChoiceTest, NoCandidateIsARandomRequestToo) {
    m_request.candidate.reset();
    EXPECT_EQ(choose().result, Result::Picked);
}

TEST_F(LocationChoiceTest, ThreeLocationsProduceThreeDifferentPicksThenNone) {
    QSet<quint64> picks;
    for (int i = 0; i < 3; ++i) {
        picks.insert(choose().pick.id);
    }
    EXPECT_EQ(picks, (QSet<quint64>{2, 3, 4}));
    // The used set (3) is compared with the whole list (4), so it is never emptied on this path.
    const Outcome fourth = choose();
    EXPECT_EQ(fourth.result, Result::AllUsed);
    EXPECT_EQ(m_choice.usedItems().size(), 3);
    m_choice.setUsedItems({});
    EXPECT_EQ(choose().result, Result::Picked);
}

TEST_F(LocationChoiceTest, UsedSetOfTheWholeListsSizeIsEmptied) {
    m_choice.setUsedItems({2, 3, 4, 99});
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.result, Result::Picked);
    EXPECT_EQ(m_choice.usedItems(), QSet<quint64>{outcome.pick.id});
}

TEST_F(LocationChoiceTest, UsedFixedLocationTurnsIntoARandomRequest) {
    m_choice.setUsedItems({2});
    m_request.candidate = m_list.entries.at(1);
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.result, Result::Picked);
    EXPECT_NE(outcome.pick.id, 2U);
    EXPECT_EQ(outcome.selection, outcome.pick.id);
}

TEST_F(LocationChoiceTest, DiscardRowIsComparedWithTheCountryCode) {
    m_discarded = {text("203.0.113.1")};
    m_request.candidate = m_list.entries.at(1);
    EXPECT_EQ(choose().pick.id, 2U); // an address discards nothing here
    m_discarded = {text("DE")};
    m_choice.setUsedItems({3, 4});
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.pick.id, 2U); // turned into a random request, which may still pick it
    EXPECT_TRUE(outcome.updatesLocationText);
}

TEST_F(LocationChoiceTest, UnitedStatesOnlyLeavesTheSelectionAlone) {
    m_request.usOnly = true;
    const Outcome outcome = choose();
    EXPECT_EQ(outcome.result, Result::Picked);
    EXPECT_EQ(outcome.pick.id, 3U);
    EXPECT_FALSE(outcome.selection.has_value());
    EXPECT_TRUE(outcome.updatesLocationText);
    EXPECT_EQ(m_choice.usedItems(), QSet<quint64>{3});
}

TEST_F(LocationChoiceTest, UnitedStatesOnlyEmptiesItsSetWhenAllAreUsed) {
    m_request.usOnly = true;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(choose().pick.id, 3U);
    }
}

TEST_F(LocationChoiceTest, UnitedStatesOnlyWithForeignUsedItemsRunsOut) {
    m_request.usOnly = true;
    m_choice.setUsedItems({3, 2}); // one candidate, two used: the sizes differ, nothing is emptied
    EXPECT_EQ(choose().result, Result::AllUsed);
}

TEST_F(LocationChoiceTest, LowerCaseCodeIsNoCandidate) {
    m_request.usOnly = true;
    m_list.entries[2] = location(3, "us");
    EXPECT_EQ(choose().result, Result::NoUnitedStates);
}

TEST_F(LocationChoiceTest, AutomaticChangeShowsRandomLocation) {
    m_request.automaticChange = true;
    EXPECT_EQ(choose().selection, 1U);
    m_request.candidate = m_list.entries.at(1);
    m_choice.setUsedItems({});
    EXPECT_EQ(choose().selection, 1U);
}

TEST_F(LocationChoiceTest, PickWithoutAUsableAddressIsNoPick) {
    m_list.entries[1] = location(2, "DE", {});
    m_request.candidate = m_list.entries.at(1);
    EXPECT_EQ(choose().result, Result::NothingToPick);
}

TEST(LocationChoiceProperty, RotationNeverRepeatsAndUnitedStatesMeansUnitedStates) {
    std::mt19937 engine(20);
    for (int round = 0; round < 3000; ++round) {
        LocationChoice choice([&engine] { return static_cast<quint32>(engine()); });
        ListedLocations list;
        Request request{list, {}, false, false, {}};
        list.entries = {Entry{1, LocationChoice::randomTitle(), nullptr}};
        const auto count = 1 + engine() % 12;
        for (quint64 id = 2; id < 2 + count; ++id) {
            list.entries.append(location(id, engine() % 3 == 0 ? "US" : "DE"));
        }
        request.usOnly = engine() % 4 == 0;
        request.automaticChange = engine() % 2 == 0;
        request.isDiscarded = [](const QString &) {
            return false;
        };
        QSet<quint64> seen;
        for (unsigned press = 0; press < count + 2; ++press) {
            request.candidate = list.entries.first();
            const qsizetype american =
                std::count_if(list.entries.begin(), list.entries.end(), [](const Entry &entry) {
                    return entry.data && entry.data->countryCode == QLatin1String("US");
                });
            if (request.usOnly && seen.size() == american) {
                seen.clear();
            }
            const Outcome outcome = choice.choose(request);
            if (outcome.result == Result::AllUsed) {
                ASSERT_FALSE(request.usOnly);
                ASSERT_EQ(seen.size(), static_cast<qsizetype>(count));
                break;
            }
            if (outcome.result == Result::NoUnitedStates) {
                ASSERT_EQ(american, 0);
                break;
            }
            ASSERT_EQ(outcome.result, Result::Picked);
            ASSERT_FALSE(seen.contains(outcome.pick.id));
            ASSERT_NE(outcome.pick.id, 1U);
            if (request.usOnly) {
                ASSERT_EQ(outcome.pick.data->countryCode, text("US"));
            }
            seen.insert(outcome.pick.id);
        }
    }
}

TEST(LocationChoiceProperty, FirstPickIsUniform) {
    std::mt19937 engine(21);
    constexpr int locations = 5;
    constexpr int draws = 20000;
    QHash<quint64, int> hits;
    for (int i = 0; i < draws; ++i) {
        LocationChoice choice([&engine] { return static_cast<quint32>(engine()); });
        ListedLocations list;
        Request request{list, {}, false, false, {}};
        list.entries = {Entry{1, LocationChoice::randomTitle(), nullptr}};
        for (quint64 id = 2; id < 2 + locations; ++id) {
            list.entries.append(location(id, "DE"));
        }
        request.isDiscarded = [](const QString &) {
            return false;
        };
        ++hits[choice.choose(request).pick.id];
    }
    double chiSquare = 0;
    constexpr double expected = static_cast<double>(draws) / locations;
    for (quint64 id = 2; id < 2 + locations; ++id) {
        chiSquare += (hits[id] - expected) * (hits[id] - expected) / expected;
    }
    EXPECT_LT(chiSquare, 27.9); // four degrees of freedom, probability of an error 10^-5
}

} // namespace

} // namespace quorvane
