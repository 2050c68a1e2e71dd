#include "frontend/session/SettingsDefaults.h"

#include "fakes/TestPlatform.h"
#include "frontend/session/HotKeys.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

class SettingsDefaultsTest : public testing::Test {
protected:
    [[nodiscard]] QVariant stored(const QString &key) const { return m_services.preferences().value(key); }

    void store(const QString &key, const QVariant &value) const {
        m_services.preferences().setValue(key, value);
    }

    fakes::TestPlatform m_services;
};

TEST_F(SettingsDefaultsTest, AbsentValuesBecomeTheirDefaultsWithTheirTypes) {
    SettingsDefaults::initialize();
    const QVariant none = QVariant::fromValue<qint64>(-1);
    for (const HotKeys::Action action : HotKeys::actions) {
        EXPECT_EQ(stored(HotKeys::preferenceKey(action)), none);
    }
    EXPECT_EQ(stored(SettingsDefaults::changeIpInterval()), QVariant::fromValue<qint64>(10));
    EXPECT_EQ(stored(SettingsDefaults::userAgent()), QVariant(QStringLiteral("")));
    EXPECT_EQ(stored(SettingsDefaults::hideMyReferrerHeader()), QVariant::fromValue<qint64>(0));
    EXPECT_EQ(m_services.preferences().synchronizations(), 1);
}

TEST_F(SettingsDefaultsTest, OtherKeysReceiveNoDefault) {
    SettingsDefaults::initialize();
    for (const QString &key :
         {SettingsDefaults::hideMyCookiesHeaders(), SettingsDefaults::modeUserAgent(),
          SettingsDefaults::vpnConfigPath(), SettingsDefaults::vpnUsername(), SettingsDefaults::vpnPassword(),
          SettingsDefaults::hide(), SettingsDefaults::changeIpEvery(), SettingsDefaults::cookieSites()}) {
        EXPECT_FALSE(stored(key).isValid()) << key.toStdString();
    }
}

TEST_F(SettingsDefaultsTest, StoredZeroDoesNotSurviveAStart) {
    store(HotKeys::preferenceKey(HotKeys::Action::StopHidingIp), 0);
    store(SettingsDefaults::changeIpInterval(), 0);
    SettingsDefaults::initialize();
    EXPECT_EQ(m_services.preferences().integer(HotKeys::preferenceKey(HotKeys::Action::StopHidingIp)), -1);
    EXPECT_EQ(m_services.preferences().integer(SettingsDefaults::changeIpInterval()), 10);
}

TEST_F(SettingsDefaultsTest, WhatReadsAsZeroCountsAsZero) {
    store(SettingsDefaults::changeIpInterval(), QStringLiteral("soon"));
    store(HotKeys::preferenceKey(HotKeys::Action::HideIp), false);
    SettingsDefaults::initialize();
    EXPECT_EQ(stored(SettingsDefaults::changeIpInterval()), QVariant::fromValue<qint64>(10));
    EXPECT_EQ(stored(HotKeys::preferenceKey(HotKeys::Action::HideIp)), QVariant::fromValue<qint64>(-1));
}

TEST_F(SettingsDefaultsTest, StoredValuesStay) {
    store(HotKeys::preferenceKey(HotKeys::Action::HideIp), 2);
    store(SettingsDefaults::changeIpInterval(), 25);
    store(SettingsDefaults::userAgent(), QStringLiteral("mine"));
    store(SettingsDefaults::hideMyReferrerHeader(), 1);
    SettingsDefaults::initialize();
    EXPECT_EQ(m_services.preferences().integer(HotKeys::preferenceKey(HotKeys::Action::HideIp)), 2);
    EXPECT_EQ(m_services.preferences().integer(SettingsDefaults::changeIpInterval()), 25);
    EXPECT_EQ(m_services.preferences().string(SettingsDefaults::userAgent()), QStringLiteral("mine"));
    EXPECT_EQ(m_services.preferences().integer(SettingsDefaults::hideMyReferrerHeader()), 1);
}

} // namespace

} // namespace quorvane
