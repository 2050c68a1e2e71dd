#include "platform/UserDefaultsController.h"
#include "fakes/MemoryPreferences.h"

#include <gtest/gtest.h>

namespace quorvane::platform {

namespace {

const QString key = QStringLiteral("key");

class UserDefaultsControllerTest : public ::testing::Test {
protected:
    fakes::MemoryPreferences store;
    platform::UserDefaultsController controller{store};
};

TEST_F(UserDefaultsControllerTest, EditsGoStraightThroughAtFirst) {
    EXPECT_TRUE(controller.appliesImmediately());
    controller.setValue(key, 1);
    EXPECT_EQ(store.integer(key), 1);
    EXPECT_FALSE(controller.hasPendingEdits());
}

TEST_F(UserDefaultsControllerTest, HeldEditsAreSeenHereOnly) {
    store.setValue(key, 1);
    controller.setAppliesImmediately(false);
    controller.setValue(key, 2);
    EXPECT_TRUE(controller.hasPendingEdits());
    EXPECT_EQ(controller.value(key).toInt(), 2);
    EXPECT_EQ(store.integer(key), 1);
}

TEST_F(UserDefaultsControllerTest, HeldEditsAreReadAsTheStoreReads) {
    store.setValue(key, QStringLiteral("7 days"));
    EXPECT_EQ(controller.integer(key), 7);
    controller.setAppliesImmediately(false);
    controller.setValue(key, true);
    EXPECT_EQ(controller.integer(key), 1);
    EXPECT_TRUE(controller.boolean(key));
    EXPECT_EQ(controller.string(key), QStringLiteral("1"));
    EXPECT_EQ(store.string(key), QStringLiteral("7 days"));
}

TEST_F(UserDefaultsControllerTest, SaveStoresAllEditsAsOneChangeAndWrites) {
    controller.setAppliesImmediately(false);
    controller.setValue(key, 2);
    controller.setValue(QStringLiteral("other"), 3);
    controller.save();
    EXPECT_EQ(store.integer(key), 2);
    EXPECT_EQ(store.integer(QStringLiteral("other")), 3);
    EXPECT_EQ(store.changes(), 1);
    EXPECT_EQ(store.synchronizations(), 1);
    EXPECT_FALSE(controller.hasPendingEdits());
}

TEST_F(UserDefaultsControllerTest, SaveWithoutEditsStillWrites) {
    controller.save();
    EXPECT_EQ(store.changes(), 0);
    EXPECT_EQ(store.synchronizations(), 1);
}

TEST_F(UserDefaultsControllerTest, RevertDropsEdits) {
    store.setValue(key, 1);
    controller.setAppliesImmediately(false);
    controller.setValue(key, 2);
    controller.revert();
    EXPECT_EQ(controller.value(key).toInt(), 1);
    controller.save();
    EXPECT_EQ(store.integer(key), 1);
}

TEST_F(UserDefaultsControllerTest, HeldRemovalRemovesOnSave) {
    store.setValue(key, 1);
    controller.setAppliesImmediately(false);
    controller.setValue(key, QVariant());
    EXPECT_FALSE(controller.value(key).isValid());
    controller.save();
    EXPECT_FALSE(store.value(key).isValid());
}

} // namespace

} // namespace quorvane::platform
