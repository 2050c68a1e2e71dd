#include "frontend/api/ServerModel.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <QRandomGenerator>
#include <QSet>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace quorvane {

namespace {

QrvVpnDataList parse(const QStringList &lines) {
    return ServerModel::parseServers(ServerLines(lines), text("user"), text("pass"), text("key"));
}

QStringList titles(const ServerModel &model) {
    QStringList list;
    for (const QrvLocation &location : model.locations()) {
        list.append(location.countryCode + QChar(u'/') + location.title);
    }
    return list;
}

TEST(ServerRecord, FieldsOfASixFieldLine) {
    const auto groups = parse({text("7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2")});
    ASSERT_EQ(groups.size(), 1);
    const QrvVpnData &group = *groups.first();
    EXPECT_EQ(group.cityCountry, text("Germany Berlin"));
    EXPECT_EQ(group.codeName, text("BER DE"));
    EXPECT_EQ(group.countryCode, text("DE"));
    EXPECT_EQ(group.ipAdressArray, (QStringList{text("10.0.0.1"), text("10.0.0.2")}));
    EXPECT_EQ(group.filteredIpAdressArray, group.ipAdressArray);
    EXPECT_TRUE(group.ipAdressArray.contains(group.ipAdress));
    EXPECT_EQ(group.user, text("user"));
    EXPECT_EQ(group.pass, text("pass"));
    EXPECT_EQ(group.key, text("key"));
}

TEST(ServerRecord, FilteredListIsIndependent) {
    const auto groups = parse({text("7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2")});
    groups.first()->filteredIpAdressArray.removeFirst();
    EXPECT_EQ(groups.first()->ipAdressArray.size(), 2);
    EXPECT_EQ(groups.first()->filteredIpAdressArray.size(), 1);
}

TEST(ServerRecord, LineWithoutBarIsSkipped) {
    EXPECT_TRUE(parse({text("7,Berlin,BER,DE,Germany,x")}).isEmpty());
}

TEST(ServerRecord, LineWithTooFewFieldsIsSkipped) {
    EXPECT_TRUE(parse({text("a,b,c|1.1.1.1"), text("|"), text("")}).isEmpty());
}

TEST(ServerRecord, WholeLineIsSplitSoFiveFieldsContainTheBar) {
    const auto groups = parse({text("a,b,c,d,e|1.1.1.1")});
    ASSERT_EQ(groups.size(), 1);
    EXPECT_EQ(groups.first()->cityCountry, text("e|1.1.1.1 b"));
}

TEST(ServerRecord, OneAddressIsTheAddress) {
    EXPECT_EQ(parse({text("7,Berlin,BER,DE,Germany,x|10.0.0.9")}).first()->ipAdress, text("10.0.0.9"));
}

TEST(ServerRecord, EmptyAddressListHoldsOneEmptyAddress) {
    const auto groups = parse({text("7,Berlin,BER,DE,Germany,x|")});
    EXPECT_EQ(groups.first()->ipAdressArray, QStringList{text("")});
    EXPECT_TRUE(sameText(groups.first()->ipAdress, text("")));
}

TEST(ServerRecord, EveryAddressIsPickedSometimes) {
    QSet<QString> seen;
    for (int i = 0; i < 200; ++i) {
        seen.insert(parse({text("7,Berlin,BER,DE,Germany,x|1.1.1.1,2.2.2.2,3.3.3.3")}).first()->ipAdress);
    }
    EXPECT_EQ(seen.size(), 3); // 200 draws miss one of three with a probability below 1e-34
}

TEST(ServerRecord, AbsentCredentialsStayAbsent) {
    const auto groups = ServerModel::parseServers(ServerLines({text("7,Berlin,BER,DE,Germany,x|1.1.1.1")}),
                                                  QString(), QString(), QString());
    EXPECT_TRUE(groups.first()->user.isNull());
    EXPECT_TRUE(groups.first()->pass.isNull());
}

TEST(ServerRecord, SortedByLabelPlainly) {
    const auto groups = parse({text("1,b,B,BB,zeta,x|1.1.1.1"), text("1,a,A,AA,Alpha,x|1.1.1.2"),
                               text("1,c,C,CC,alpha,x|1.1.1.3")});
    QStringList labels;
    for (const auto &group : groups) {
        labels.append(group->cityCountry);
    }
    EXPECT_EQ(labels, (QStringList{text("Alpha a"), text("alpha c"), text("zeta b")}));
}

/// The content of a line, split in the simple way; empty when it is no record.
QStringList recordOf(const QString &line) {
    const QStringList fields = line.split(u',');
    const qsizetype bar = line.indexOf(u'|');
    if (bar < 0 || fields.size() < 5) {
        return {};
    }
    return {fields[4] + u' ' + fields[1], fields[2] + u' ' + fields[3], fields[3],
            line.sliced(bar + 1).split(u',').join(u'/')};
}

TEST(ServerRecordProperty, RandomLinesAreParsedAsTheSimpleWayParsesThem) {
    // Letters whose order as UTF-8 differs from their order as UTF-16, a mark that starts files, and NUL.
    const QStringList pieces{text(","),         text(","),      text(","),          text("|"),
                             text("a"),         text("B"),      text("Land City"),  text("\uFF5E"),
                             text("\uE000"),    text("\u00e9"), text("\U0001F600"), text("\uFEFF"),
                             QString(QChar(0)), text(" ")};
    std::mt19937 engine(11);
    for (int round = 0; round < 2000; ++round) {
        QStringList lines;
        for (auto left = engine() % 30; left > 0; --left) {
            QString line = text("");
            for (auto units = engine() % 24; units > 0; --units) {
                line += pieces.at(static_cast<qsizetype>(engine() % static_cast<unsigned>(pieces.size())));
            }
            lines.append(line);
        }
        QList<QStringList> expected;
        for (const QString &line : lines) {
            if (const QStringList record = recordOf(line); !record.isEmpty()) {
                expected.append(record);
            }
        }
        std::stable_sort(expected.begin(), expected.end(),
                         [](const auto &a, const auto &b) { return a.first() < b.first(); });
        QList<QStringList> found;
        for (const QrvVpnDataPointer &group : parse(lines)) {
            found.append(
                {group->cityCountry, group->codeName, group->countryCode, group->ipAdressArray.join(u'/')});
            ASSERT_TRUE(group->ipAdressArray.contains(group->ipAdress));
            ASSERT_EQ(group->filteredIpAdressArray, group->ipAdressArray);
        }
        ASSERT_EQ(found, expected) << lines.join(u'\n').toStdString();
    }
}

TEST(ServerRecordProperty, FieldsWithoutAGroupAreThoseOfTheGroup) {
    const auto groups =
        parse({text("7,Berlin,BER,DE,Germany,x|10.0.0.1"), text("a,b,c,d,e|1.1.1.1"), text(",,,,|")});
    for (qsizetype i = 0; i < groups.size(); ++i) {
        const QrvVpnDataPointer group = groups.at(i);
        EXPECT_EQ(QString::fromUtf8(groups.label(i)), group->cityCountry);
        EXPECT_EQ(QString::fromUtf8(groups.countryCode(i)), group->countryCode);
        EXPECT_EQ(groups.codeName(i), group->codeName);
        EXPECT_EQ(groups.at(i), group); // the same group again
    }
    EXPECT_EQ(groups.size(), 3);
}

TEST(ServerRecord, LongLabelsThatBeginAlikeAreSorted) {
    QStringList lines;
    QStringList labels;
    for (int i = 0; i < 300; ++i) {
        const QString city = text("x").repeated(i * 7 % 90) + QString::number(i * 37 % 300);
        lines.append(text("1,") + city + text(",B,BB,Country,x|1.1.1.1"));
        labels.append(text("Country ") + city);
    }
    std::sort(labels.begin(), labels.end());
    QStringList found;
    for (const QrvVpnDataPointer &group : parse(lines)) {
        found.append(group->cityCountry);
    }
    EXPECT_EQ(found, labels);
}

TEST(Discarding, AppliesToGroupsMadeBeforeAndAfter) {
    auto groups = parse({text("7,Berlin,BER,DE,Germany,x|10.0.0.1,10.0.0.2"),
                         text("8,Denver,DEN,US,States,x|10.0.1.1"), text("9,Nowhere,NOW,QQ,Quux,x|")});
    const QrvVpnDataPointer early = groups.at(0);
    groups.setDiscarded({text("10.0.0.1"), text("10.0.1.1")});
    EXPECT_EQ(early->filteredIpAdressArray, QStringList{text("10.0.0.2")});
    EXPECT_EQ(early->ipAdressArray.size(), 2);
    EXPECT_TRUE(groups.isUsable(0));
    EXPECT_TRUE(groups.isUsable(1)); // Quux, whose only address is empty
    EXPECT_FALSE(groups.isUsable(2));
    EXPECT_TRUE(groups.at(2)->filteredIpAdressArray.isEmpty());
    groups.setDiscarded({text("")});
    EXPECT_FALSE(groups.isUsable(1));
    groups.setDiscarded({});
    EXPECT_TRUE(groups.isUsable(2));
    EXPECT_EQ(early->filteredIpAdressArray.size(), 2);
    EXPECT_EQ(groups.at(2)->filteredIpAdressArray.size(), 1);
}

TEST(Locations, PieceNeedsExactlyFourFields) {
    ServerModel model;
    model.setLocations(text("DE;BER;Berlin;0|DE;HAM;Hamburg|DE;MUC;Munich;0;x|FR;PAR;Paris;1"));
    EXPECT_EQ(titles(model), (QStringList{text("DE/Unknown Country"), text("DE/Berlin"),
                                          text("FR/Unknown Country"), text("FR/Paris")}));
    EXPECT_FALSE(model.locations().at(1).full);
    EXPECT_TRUE(model.locations().at(3).full);
}

TEST(Locations, FlagOtherThanOneIsNotFull) {
    ServerModel model;
    model.setLocations(text("DE;BER;Berlin;2|DE;HAM;Hamburg;|DE;MUC;Munich; 1"));
    for (const QrvLocation &location : model.locations()) {
        EXPECT_FALSE(location.full);
    }
}

TEST(Locations, OneCountryEntryPerCodePlacedBySort) {
    ServerModel model;
    model.setLocations(text("DE;MUC;Munich;0|DE;BER;Berlin;0|AT;VIE;Vienna;0"));
    EXPECT_EQ(titles(model), (QStringList{text("AT/Unknown Country"), text("AT/Vienna"),
                                          text("DE/Unknown Country"), text("DE/Berlin"), text("DE/Munich")}));
    EXPECT_TRUE(model.locations().at(0).codeName.isNull());
    EXPECT_EQ(model.locations().at(1).codeName, text("VIE"));
}

TEST(Locations, UnitedStatesThenGreatBritainThenByCode) {
    ServerModel model;
    model.setLocations(text("AA;1;Zed;0|GB;1;London;0|US;1;Denver;0|ZZ;1;Aaa;0|US;2;Austin;0|GB;2;Bath;0"));
    EXPECT_EQ(titles(model), (QStringList{text("US/Unknown Country"), text("US/Austin"), text("US/Denver"),
                                          text("GB/Unknown Country"), text("GB/Bath"), text("GB/London"),
                                          text("AA/Unknown Country"), text("AA/Zed"),
                                          text("ZZ/Unknown Country"), text("ZZ/Aaa")}));
}

TEST(Locations, NewListReplacesTheOld) {
    ServerModel model;
    EXPECT_FALSE(model.hasLocations());
    model.setLocations(text("DE;BER;Berlin;0"));
    model.setLocations(text("FR;PAR;Paris;0"));
    EXPECT_TRUE(model.hasLocations());
    EXPECT_EQ(model.locations().size(), 2);
    EXPECT_EQ(model.locations().first().countryCode, text("FR"));
}

TEST(LocationOrder, IsAStrictWeakOrder) {
    QList<QrvLocation> samples;
    for (const char *code : {"US", "GB", "AA", "ZZ", "us", ""}) {
        for (const char *city : {"", "Austin", "Zed"}) {
            const QString codeName = *city == '\0' ? QString() : text("c");
            samples.append(QrvLocation::location(text(city), text(code), codeName, false));
        }
    }
    for (const auto &a : samples) {
        EXPECT_TRUE(std::is_eq(a.compareLocations(a)));
        for (const auto &b : samples) {
            EXPECT_EQ(std::is_lt(a.compareLocations(b)), std::is_gt(b.compareLocations(a)));
            for (const auto &c : samples) {
                if (std::is_lt(a.compareLocations(b)) && std::is_lt(b.compareLocations(c))) {
                    EXPECT_TRUE(std::is_lt(a.compareLocations(c)));
                }
            }
        }
    }
}

TEST(LocationOrder, CountriesWithoutCodesAreTheSame) {
    const auto a = QrvLocation::location(text("A"), text("DE"), QString(), false);
    const auto b = QrvLocation::location(text("B"), text("DE"), QString(), true);
    EXPECT_TRUE(std::is_eq(a.compareLocations(b)));
}

TEST(Countries, EveryCodeIsUnknown) {
    ServerModel model;
    for (const char *code : {"DE", "XX", "", "us"}) {
        EXPECT_EQ(model.countryByCode(text(code)), text("Unknown Country")) << code;
    }
}

class LookUps : public testing::Test {
protected:
    LookUps() {
        const QStringList lines{text("7,Berlin,BER,DE,Germany,x|10.0.0.12,10.0.0.2"),
                                text("8,Paris,PAR,FR,France,x|10.0.0.1")};
        m_model.setServerList(ServerLines(lines));
        m_model.setServers(parse(lines));
        m_model.setLocations(text("DE;BER;Berlin;0|FR;PAR;Paris;0|AT;BER2;Berlin;0"));
    }

    ServerModel m_model;
};

TEST_F(LookUps, BeforeAnyAnswerNothingIsFound) {
    ServerModel fresh;
    EXPECT_FALSE(fresh.isServerListValid());
    EXPECT_FALSE(fresh.locationValid(QrvLocation::location(text("a"), text("b"), QString(), false)));
    EXPECT_EQ(fresh.getCountryByLocation(text("Berlin")), text("xx"));
    EXPECT_TRUE(fresh.getCodeByLocation(text("Berlin")).isNull());
    EXPECT_EQ(fresh.getCountryByLocationForVPN(text("Germany Berlin")), text("xx"));
    EXPECT_TRUE(fresh.getCodeByLocationForVPN(text("Germany Berlin")).isNull());
    EXPECT_TRUE(fresh.getLocationByIP(text("10.0.0.1")).isNull());
    EXPECT_TRUE(fresh.getCodeByIP(text("10.0.0.1")).isNull());
}

TEST_F(LookUps, TitleUnderTwoCodesReturnsTheFirstInSortedOrder) {
    EXPECT_EQ(m_model.getCountryByLocation(text("Berlin")), text("AT"));
    EXPECT_EQ(m_model.getCodeByLocation(text("Berlin")), text("BER2"));
}

TEST_F(LookUps, CountryEntryHasNoCode) {
    EXPECT_TRUE(m_model.getCodeByLocation(text("Unknown Country")).isNull());
    EXPECT_EQ(m_model.getCountryByLocation(text("Unknown Country")), text("AT"));
}

TEST_F(LookUps, RandomLocationIsNoEntry) {
    EXPECT_EQ(m_model.getCountryByLocation(text("Random Location")), text("xx"));
    EXPECT_TRUE(m_model.getCodeByLocation(text("Random Location")).isNull());
}

TEST_F(LookUps, LocationValidNeedsTitleAndCode) {
    EXPECT_TRUE(m_model.locationValid(QrvLocation::location(text("Paris"), text("FR"), QString(), false)));
    EXPECT_FALSE(m_model.locationValid(QrvLocation::location(text("Paris"), text("DE"), QString(), false)));
    EXPECT_FALSE(m_model.locationValid(QrvLocation::location(text("Rome"), text("FR"), QString(), false)));
}

TEST_F(LookUps, GroupLabelMayHaveASuffix) {
    EXPECT_EQ(m_model.getCountryByLocationForVPN(text("Germany Berlin (full)")), text("DE"));
    EXPECT_EQ(m_model.getCodeByLocationForVPN(text("Germany Berlin (full)")), text("BER DE"));
    EXPECT_EQ(m_model.getCountryByLocationForVPN(text("Germany Ber")), text("xx"));
}

TEST_F(LookUps, AddressMatchesAsSubstringFirstLineWins) {
    EXPECT_EQ(m_model.getCodeByIP(text("10.0.0.1")), text("DE"));
    EXPECT_EQ(m_model.getLocationByIP(text("10.0.0.1")), text("Berlin BER"));
    EXPECT_TRUE(m_model.getCodeByIP(text("10.9.9.9")).isNull());
}

TEST_F(LookUps, LineFeedsInTheAddressAreIgnored) {
    EXPECT_EQ(m_model.getCodeByIP(text("10.0\n.0.2\n")), text("DE"));
}

TEST_F(LookUps, EmptyAddressFindsNothing) {
    EXPECT_TRUE(m_model.getCodeByIP(text("")).isNull());
    EXPECT_TRUE(m_model.getCodeByIP(text("\n")).isNull());
    EXPECT_TRUE(m_model.getLocationByIP(QString()).isNull());
}

TEST_F(LookUps, LineTooShortForALookUpIsSkipped) {
    m_model.setServerList(ServerLines({text("10.0.0.1,short"), text("8,Paris,PAR,FR,France,x|10.0.0.1")}));
    EXPECT_EQ(m_model.getCodeByIP(text("10.0.0.1")), text("FR"));
}

} // namespace

} // namespace quorvane
