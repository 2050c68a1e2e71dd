#include "platform/UserDefaultsController.h"
#include "fakes/MemoryPreferences.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

const QString key = QStringLiteral("key");

class UserDefaultsControllerTest : public ::testing::Test {
protected:
    fakes::MemoryPreferences m_store;
    platform::UserDefaultsController m_controller{m_store};
};

TEST_F(UserDefaultsControllerTest, EditsAreStoredAtOnceAtFirst) {
    EXPECT_TRUE(m_controller.appliesImmediately());
    m_controller.setValue(key, 1);
    EXPECT_EQ(m_store.integer(key), 1);
    EXPECT_FALSE(m_controller.hasPendingEdits());
}

TEST_F(UserDefaultsControllerTest, HeldEditsAreReturnedOnlyByTheController) {
    m_store.setValue(key, 1);
    m_controller.setAppliesImmediately(false);
    m_controller.setValue(key, 2);
    EXPECT_TRUE(m_controller.hasPendingEdits());
    EXPECT_EQ(m_controller.value(key).toInt(), 2);
    EXPECT_EQ(m_store.integer(key), 1);
}

TEST_F(UserDefaultsControllerTest, HeldEditsAreConvertedAsInTheStore) {
    m_store.setValue(key, QStringLiteral("7 days"));
    EXPECT_EQ(m_controller.integer(key), 7);
    m_controller.setAppliesImmediately(false);
    m_controller.setValue(key, true);
    EXPECT_EQ(m_controller.integer(key), 1);
    EXPECT_TRUE(m_controller.boolean(key));
    EXPECT_EQ(m_controller.string(key), QStringLiteral("1"));
    EXPECT_EQ(m_store.string(key), QStringLiteral("7 days"));
}

TEST_F(UserDefaultsControllerTest, SaveStoresAllEditsAsOneChangeAndWrites) {
    m_controller.setAppliesImmediately(false);
    m_controller.setValue(key, 2);
    m_controller.setValue(QStringLiteral("other"), 3);
    m_controller.save();
    EXPECT_EQ(m_store.integer(key), 2);
    EXPECT_EQ(m_store.integer(QStringLiteral("other")), 3);
    EXPECT_EQ(m_store.changes(), 1);
    EXPECT_EQ(m_store.synchronizations(), 1);
    EXPECT_FALSE(m_controller.hasPendingEdits());
}

TEST_F(UserDefaultsControllerTest, SaveWithoutEditsStillWrites) {
    m_controller.save();
    EXPECT_EQ(m_store.changes(), 0);
    EXPECT_EQ(m_store.synchronizations(), 1);
}

TEST_F(UserDefaultsControllerTest, RevertDropsEdits) {
    m_store.setValue(key, 1);
    m_controller.setAppliesImmediately(false);
    m_controller.setValue(key, 2);
    m_controller.revert();
    EXPECT_EQ(m_controller.value(key).toInt(), 1);
    m_controller.save();
    EXPECT_EQ(m_store.integer(key), 1);
}

TEST_F(UserDefaultsControllerTest, HeldRemovalRemovesOnSave) {
    m_store.setValue(key, 1);
    m_controller.setAppliesImmediately(false);
    m_controller.setValue(key, QVariant());
    EXPECT_FALSE(m_controller.value(key).isValid());
    m_controller.save();
    EXPECT_FALSE(m_store.value(key).isValid());
}

} // namespace

} // namespace quorvane::platform
