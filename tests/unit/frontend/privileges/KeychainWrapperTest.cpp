#include "frontend/privileges/KeychainWrapper.h"

#include "fakes/TestPlatform.h"
#include "tests/Text.h"
#include "tests/unit/Printing.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

class KeychainWrapperTest : public testing::Test {
protected:
    fakes::TestPlatform m_services;
};

TEST_F(KeychainWrapperTest, SearchRecordNamesTheItemThreeTimes) {
    const QVariantMap record = KeychainWrapper::newSearchDictionary(text("id"));
    EXPECT_EQ(record.value(text("class")).toString(), text("internet password"));
    for (const char *key : {"generic", "label", "service"}) {
        EXPECT_EQ(record.value(text(key)).toString(), text("id")) << key;
    }
}

TEST_F(KeychainWrapperTest, FormattedRecordRequestsTheDataOfAGenericItem) {
    const QVariantMap record = KeychainWrapper::newSearchDictionary(text("id"));
    const QVariantMap formatted = KeychainWrapper::secItemFormatToDictionary(record);
    EXPECT_EQ(formatted.value(text("class")).toString(), text("generic password"));
    EXPECT_TRUE(formatted.value(text("return data")).toBool());
    EXPECT_EQ(record.value(text("class")).toString(), text("internet password"));
}

TEST_F(KeychainWrapperTest, CreateOnlyWhenThereIsNone) {
    EXPECT_TRUE(KeychainWrapper::createKeychainValue(text("p\xC3\xBC"), text("u"), text("id")));
    EXPECT_FALSE(KeychainWrapper::createKeychainValue(text("q"), text("v"), text("id")));
    EXPECT_EQ(KeychainWrapper::searchKeychainCopyMatching(text("id")), QByteArray("p\xC3\xBC"));
    EXPECT_EQ(KeychainWrapper::getKeychainUserName(text("id")), text("u"));
}

TEST_F(KeychainWrapperTest, UpdateOnlyWhenThereIsOne) {
    EXPECT_FALSE(KeychainWrapper::updateKeychainValue(text("q"), text("v"), text("id")));
    KeychainWrapper::createKeychainValue(text("p"), text("u"), text("id"));
    EXPECT_TRUE(KeychainWrapper::updateKeychainValue(text("q"), text("v"), text("id")));
    EXPECT_EQ(KeychainWrapper::searchKeychainCopyMatching(text("id")), QByteArray("q"));
    EXPECT_EQ(KeychainWrapper::getKeychainUserName(text("id")), text("v"));
}

TEST_F(KeychainWrapperTest, DeleteRemoves) {
    KeychainWrapper::createKeychainValue(text("p"), text("u"), text("id"));
    KeychainWrapper::deleteKeychainValue(text("id"));
    EXPECT_FALSE(KeychainWrapper::searchKeychainCopyMatching(text("id")).has_value());
}

TEST_F(KeychainWrapperTest, LastAccountOfALabelCounts) {
    m_services.keyStore().add({text("id"), text("first"), "a"});
    m_services.keyStore().add({text("id"), text("last"), "b"});
    EXPECT_EQ(KeychainWrapper::getKeychainUserName(text("id")), text("last"));
}

TEST_F(KeychainWrapperTest, FailuresReadAsNothing) {
    EXPECT_TRUE(sameText(KeychainWrapper::getKeychainUserName(text("none")), text("")));
    m_services.keyStore().setFailing(true);
    EXPECT_TRUE(sameText(KeychainWrapper::getKeychainUserName(text("id")), text("")));
    EXPECT_FALSE(KeychainWrapper::searchKeychainCopyMatching(text("id")).has_value());
    EXPECT_FALSE(KeychainWrapper::createKeychainValue(text("p"), text("u"), text("id")));
}

} // namespace

} // namespace quorvane
