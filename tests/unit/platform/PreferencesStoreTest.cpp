#include "fakes/MemoryPreferences.h"

#include <gtest/gtest.h>
#include <limits>

namespace quorvane::platform {

namespace {

const QString key = QStringLiteral("key");

class PreferencesStoreTest : public ::testing::Test {
protected:
    void store(const QVariant &value) { m_preferences.setValue(key, value); }

    fakes::MemoryPreferences m_preferences;
};

TEST_F(PreferencesStoreTest, AbsentValueIsZeroFalseAndNull) {
    EXPECT_EQ(m_preferences.integer(key), 0);
    EXPECT_FALSE(m_preferences.boolean(key));
    EXPECT_TRUE(m_preferences.string(key).isNull());
    EXPECT_FALSE(m_preferences.value(key).isValid());
}

TEST_F(PreferencesStoreTest, IntegerOfEachType) {
    const std::vector<std::pair<QVariant, qint64>> cases{
        {qint64{-7}, -7},
        {7, 7},
        {true, 1},
        {false, 0},
        {2.9, 2},
        {-2.9, -2},
        {1e30, std::numeric_limits<qint64>::max()},
        {-1e30, std::numeric_limits<qint64>::min()},
        {std::numeric_limits<double>::quiet_NaN(), 0},
        {QStringLiteral("12abc"), 12},
        {QStringLiteral("  -5 "), -5},
        {QStringLiteral("+5"), 5},
        {QStringLiteral("-"), 0},
        {QStringLiteral("abc"), 0},
        {QStringLiteral(""), 0},
        {QStringLiteral("99999999999999999999"), std::numeric_limits<qint64>::max()},
        {QStringLiteral("-99999999999999999999"), std::numeric_limits<qint64>::min()},
        {QByteArray("5"), 0}};
    for (const auto &[value, expected] : cases) {
        store(value);
        EXPECT_EQ(m_preferences.integer(key), expected) << value.toString().toStdString();
    }
}

TEST_F(PreferencesStoreTest, BooleanOfEachType) {
    const std::vector<std::pair<QVariant, bool>> cases{{1, true},
                                                       {0, false},
                                                       {-1, true},
                                                       {0.5, true},
                                                       {0.0, false},
                                                       {true, true},
                                                       {QStringLiteral("YES"), true},
                                                       {QStringLiteral("yellow"), true},
                                                       {QStringLiteral("true"), true},
                                                       {QStringLiteral("T"), true},
                                                       {QStringLiteral("5"), true},
                                                       {QStringLiteral("0"), false},
                                                       {QStringLiteral("no"), false},
                                                       {QStringLiteral(""), false},
                                                       {QByteArray("1"), false}};
    for (const auto &[value, expected] : cases) {
        store(value);
        EXPECT_EQ(m_preferences.boolean(key), expected) << value.toString().toStdString();
    }
}

TEST_F(PreferencesStoreTest, StringOfEachType) {
    const std::vector<std::pair<QVariant, QString>> cases{{QStringLiteral("a"), QStringLiteral("a")},
                                                          {-7, QStringLiteral("-7")},
                                                          {0.5, QStringLiteral("0.5")},
                                                          {true, QStringLiteral("1")},
                                                          {false, QStringLiteral("0")}};
    for (const auto &[value, expected] : cases) {
        store(value);
        EXPECT_EQ(m_preferences.string(key), expected);
    }
    store(QByteArray("bytes"));
    EXPECT_TRUE(m_preferences.string(key).isNull());
}

TEST_F(PreferencesStoreTest, EmptyTextIsNotAbsent) {
    store(QStringLiteral(""));
    EXPECT_FALSE(m_preferences.string(key).isNull());
    store(QString());
    EXPECT_TRUE(m_preferences.value(key).isValid());
    EXPECT_FALSE(m_preferences.string(key).isNull());
    m_preferences.remove(key);
    EXPECT_TRUE(m_preferences.string(key).isNull());
}

TEST_F(PreferencesStoreTest, IntegersAreStoredInOneType) {
    store(7U);
    EXPECT_EQ(m_preferences.value(key).typeId(), QMetaType::LongLong);
    store(0.5F);
    EXPECT_EQ(m_preferences.value(key).typeId(), QMetaType::Double);
}

} // namespace

} // namespace quorvane::platform
