#include "frontend/support/Preferences.h"

#include "fakes/TestPlatform.h"
#include "tests/unit/Printing.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <gtest/gtest.h>

namespace quorvane {

using platform::keyOf;
using platform::PreferenceEntry;
using platform::preferenceTable;
using platform::PreferenceType;

namespace {

class PreferencesTest : public testing::Test {
protected:
    [[nodiscard]] QVariant stored(Preference preference) const {
        return m_services.preferences().value(keyOf(preference));
    }

    void put(Preference preference, const QVariant &value) const {
        m_services.preferences().setValue(keyOf(preference), value);
    }

    fakes::TestPlatform m_services;
};

QVariant number(qint64 value) {
    return QVariant::fromValue(value);
}

QVariant sampleOf(PreferenceType type) {
    switch (type) {
    case PreferenceType::Text:
        return QStringLiteral("sample");
    case PreferenceType::Integer:
        return number(7);
    case PreferenceType::Boolean:
        return true;
    }
    return {};
}

/// One function for each type of preference.
struct Getters {
    QString (*text)(Preference);
    qint64 (*integer)(Preference);
    bool (*boolean)(Preference);
};

constexpr Getters storedValues{Preferences::text, Preferences::integer, Preferences::boolean};
constexpr Getters editedValues{Preferences::editedText, Preferences::editedInteger,
                               Preferences::editedBoolean};

QVariant valueOf(const PreferenceEntry &entry, const Getters &getters) {
    switch (entry.type) {
    case PreferenceType::Text:
        return getters.text(entry.preference);
    case PreferenceType::Integer:
        return number(getters.integer(entry.preference));
    case PreferenceType::Boolean:
        return getters.boolean(entry.preference);
    }
    return {};
}

QString typeName(PreferenceType type) {
    switch (type) {
    case PreferenceType::Text:
        return QStringLiteral("text");
    case PreferenceType::Integer:
        return QStringLiteral("integer");
    case PreferenceType::Boolean:
        return QStringLiteral("boolean");
    }
    return {};
}

QString startValueText(const PreferenceEntry &entry) {
    if (const int *integer = std::get_if<int>(&entry.startValue)) {
        return QString::number(*integer);
    }
    return std::holds_alternative<const char *>(entry.startValue) ? QStringLiteral("empty") : QString();
}

TEST_F(PreferencesTest, KeysAreThoseOfEarlierVersions) {
    QStringList keys;
    for (const PreferenceEntry &entry : preferenceTable) {
        keys.append(QString::fromLatin1(entry.key));
    }
    keys.sort();
    const QString expected = QStringLiteral(
        "appearance bringUpWindowHotKey changeIpEvery changeIpHotKey changeIpInterval cookieSites "
        "countryCode "
        "discardIpHotKey discardedIPs dnsBefore hide hideIpHotKey hideMyCookiesHeaders hideMyReferrerHeader "
        "ipNonRepeat lastIP location lockHomeNetwork modeUserAgent networkLock noReconnect quorvane "
        "requireUS restoreDns showLogs "
        "stopHideIpHotKey "
        "tcpUdp un up "
        "useSameIP userAgent vpnConfigPath vpnPassword vpnUsername");
    EXPECT_EQ(keys, expected.split(u' '));
}

TEST_F(PreferencesTest, EveryPreferenceIsWrittenAndReadUnderItsKeyWithItsType) {
    for (const PreferenceEntry &entry : preferenceTable) {
        const QVariant sample = sampleOf(entry.type);
        Preferences::store({{entry.preference, sample}});
        EXPECT_EQ(m_services.preferences().value(QLatin1String(entry.key)), sample) << entry.key;
        EXPECT_EQ(valueOf(entry, storedValues), sample) << entry.key;
    }
}

TEST_F(PreferencesTest, AbsentReadsAsZeroFalseOrNoText) {
    for (const PreferenceEntry &entry : preferenceTable) {
        switch (entry.type) {
        case PreferenceType::Text:
            EXPECT_TRUE(Preferences::text(entry.preference).isNull()) << entry.key;
            break;
        case PreferenceType::Integer:
            EXPECT_EQ(Preferences::integer(entry.preference), 0) << entry.key;
            break;
        case PreferenceType::Boolean:
            EXPECT_FALSE(Preferences::boolean(entry.preference)) << entry.key;
            break;
        }
    }
}

TEST_F(PreferencesTest, EveryEditIsHeldUntilItIsSavedOrReverted) {
    Preferences::holdEdits();
    for (const PreferenceEntry &entry : preferenceTable) {
        const QVariant sample = sampleOf(entry.type);
        Preferences::edit(entry.preference, sample);
        EXPECT_EQ(valueOf(entry, editedValues), sample) << entry.key;
        EXPECT_FALSE(stored(entry.preference).isValid()) << entry.key;
    }
    Preferences::revert();
    EXPECT_FALSE(Preferences::editedBoolean(Preference::Hide));
    Preferences::edit(Preference::Hide, true);
    Preferences::save();
    EXPECT_EQ(stored(Preference::Hide), QVariant(true));
    EXPECT_FALSE(stored(Preference::Location).isValid());
}

TEST_F(PreferencesTest, StoringPassesEditsThatAreHeld) {
    Preferences::holdEdits();
    Preferences::edit(Preference::RequireUs, true);
    Preferences::store({{Preference::RequireUs, false}});
    EXPECT_EQ(stored(Preference::RequireUs), QVariant(false));
    EXPECT_TRUE(Preferences::editedBoolean(Preference::RequireUs));
}

TEST_F(PreferencesTest, AChoiceReplacesTheHeldEditAndSavesTheOthers) {
    Preferences::holdEdits();
    Preferences::edit(Preference::ChangeIpInterval, 25);
    Preferences::edit(Preference::Hide, true);
    Preferences::choose({{Preference::ChangeIpInterval, 3}});
    EXPECT_EQ(stored(Preference::ChangeIpInterval), number(3));
    EXPECT_EQ(stored(Preference::Hide), QVariant(true));
    EXPECT_EQ(m_services.preferences().synchronizations(), 1);
}

TEST_F(PreferencesTest, AnInvalidValueRemovesItsPreference) {
    Preferences::store({{Preference::AdministratorName, QStringLiteral("x")}});
    Preferences::store({{Preference::AdministratorName, QVariant()}});
    EXPECT_FALSE(stored(Preference::AdministratorName).isValid());
}

TEST_F(PreferencesTest, MissingValuesBecomeTheirStartValuesAndOthersStayAbsent) {
    Preferences::storeStartValues();
    for (const PreferenceEntry &entry : preferenceTable) {
        const QVariant value = stored(entry.preference);
        if (const int *integer = std::get_if<int>(&entry.startValue)) {
            EXPECT_EQ(value, number(*integer)) << entry.key;
        } else if (std::holds_alternative<const char *>(entry.startValue)) {
            EXPECT_EQ(value, QVariant(QStringLiteral(""))) << entry.key;
        } else {
            EXPECT_FALSE(value.isValid()) << entry.key;
        }
    }
    EXPECT_EQ(stored(Preference::HideIpHotKey), number(-1));
    EXPECT_EQ(stored(Preference::ChangeIpInterval), number(10));
    EXPECT_EQ(stored(Preference::HideMyReferrerHeader), number(0));
    EXPECT_EQ(m_services.preferences().synchronizations(), 1);
}

TEST_F(PreferencesTest, StartValuesCanBeReadBeforeTheyAreStored) {
    Preferences::setStartValues();
    EXPECT_EQ(Preferences::integer(Preference::ChangeIpInterval), 10);
    EXPECT_TRUE(m_services.preferences().isUnwritten());
    EXPECT_EQ(m_services.preferences().changes(), 0);
    Preferences::storeStartValues();
    EXPECT_FALSE(m_services.preferences().isUnwritten());
}

TEST_F(PreferencesTest, StoredZeroDoesNotSurviveAStart) {
    put(Preference::StopHideIpHotKey, 0);
    put(Preference::ChangeIpInterval, 0);
    Preferences::storeStartValues();
    EXPECT_EQ(stored(Preference::StopHideIpHotKey), number(-1));
    EXPECT_EQ(stored(Preference::ChangeIpInterval), number(10));
}

TEST_F(PreferencesTest, WhatReadsAsZeroCountsAsZero) {
    put(Preference::ChangeIpInterval, QStringLiteral("soon"));
    put(Preference::HideIpHotKey, false);
    Preferences::storeStartValues();
    EXPECT_EQ(stored(Preference::ChangeIpInterval), number(10));
    EXPECT_EQ(stored(Preference::HideIpHotKey), number(-1));
}

TEST_F(PreferencesTest, StoredValuesSurviveAStart) {
    put(Preference::HideIpHotKey, 2);
    put(Preference::ChangeIpInterval, 25);
    put(Preference::UserAgent, QStringLiteral("mine"));
    put(Preference::HideMyReferrerHeader, 1);
    Preferences::storeStartValues();
    EXPECT_EQ(stored(Preference::HideIpHotKey), number(2));
    EXPECT_EQ(stored(Preference::ChangeIpInterval), number(25));
    EXPECT_EQ(stored(Preference::UserAgent), QVariant(QStringLiteral("mine")));
    EXPECT_EQ(stored(Preference::HideMyReferrerHeader), number(1));
}

TEST_F(PreferencesTest, TheDocumentListsThemAsTheTableDoes) {
    QFile document(QStringLiteral(QUORVANE_DOCUMENTS "/configuration.md"));
    ASSERT_TRUE(document.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(document.readAll());
    QStringList found;
    const QRegularExpression line(QStringLiteral("^\\| `\\w+` \\| (text|integer|boolean) .*$"),
                                  QRegularExpression::MultilineOption);
    for (const QRegularExpressionMatch &match : line.globalMatch(text)) {
        found.append(match.captured());
    }
    QStringList expected;
    for (const PreferenceEntry &entry : preferenceTable) {
        const QString purpose = QString::fromLatin1(entry.purpose).replace(u'|', QStringLiteral("\\|"));
        expected.append(QStringLiteral("| `%1` | %2 | %3 | %4 | %5 |")
                            .arg(QString::fromLatin1(entry.key), typeName(entry.type), startValueText(entry),
                                 entry.secret ? QStringLiteral("yes") : QString(), purpose)
                            .replace(QStringLiteral("|  |"), QStringLiteral("| |"))
                            .replace(QStringLiteral("|  |"), QStringLiteral("| |")));
    }
    EXPECT_EQ(found.join(u'\n').toStdString(), expected.join(u'\n').toStdString());
}

} // namespace

} // namespace quorvane
