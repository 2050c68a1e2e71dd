#include "core/PrivateFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

using testing::HasSubstr;

constexpr uid_t someUser = 65534;

class PrivateFileTest : public testing::Test {
protected:
    PrivateFileTest() {
        std::filesystem::create_directories(m_folder);
        std::ofstream(m_path) << "content";
    }

    ~PrivateFileTest() override { std::filesystem::remove_all(m_folder); }

    /// Whether the file is read when it has this mode.
    bool isReadWith(mode_t mode) {
        EXPECT_EQ(chmod(m_path.c_str(), mode), 0);
        const auto text = privateFileText(m_path);
        if (!text) {
            EXPECT_THAT(text.error(), HasSubstr(m_path));
        }
        return text.ok() && text.value() == "content";
    }

    std::string m_folder = testing::TempDir() + "private-file-" + std::to_string(getpid());
    std::string m_path = m_folder + "/file";
};

TEST_F(PrivateFileTest, OfItsOwnUserIsReadWhenNoOtherUserCanReadIt) {
    for (const mode_t mode : {0600U, 0400U}) {
        EXPECT_TRUE(isReadWith(mode)) << std::oct << mode;
    }
    for (const mode_t mode : {0604U, 0602U, 0644U, 0660U, 0620U, 0610U, 0666U}) {
        EXPECT_FALSE(isReadWith(mode)) << std::oct << mode;
    }
}

TEST_F(PrivateFileTest, OfRootMayBeReadByAGroup) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can make such a file";
    }
    EXPECT_TRUE(isReadWith(0640));
    EXPECT_TRUE(isReadWith(0440));
    EXPECT_FALSE(isReadWith(0660));
    EXPECT_FALSE(isReadWith(0644));
}

TEST_F(PrivateFileTest, OfAnotherUserIsRefused) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can make such a file";
    }
    ASSERT_EQ(chown(m_path.c_str(), someUser, 0), 0);
    EXPECT_FALSE(isReadWith(0600));
    EXPECT_FALSE(isReadWith(0640));
}

TEST_F(PrivateFileTest, OfAUserWhoIsNotRootMustNotBeReadByItsGroup) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can change its user";
    }
    ASSERT_EQ(chown(m_path.c_str(), someUser, 0), 0);
    ASSERT_EQ(chown(m_folder.c_str(), someUser, 0), 0);
    ASSERT_EQ(seteuid(someUser), 0);
    EXPECT_TRUE(isReadWith(0600));
    EXPECT_FALSE(isReadWith(0640));
    ASSERT_EQ(seteuid(0), 0);
}

TEST_F(PrivateFileTest, LongerThanExpectedIsRefused) {
    ASSERT_EQ(chmod(m_path.c_str(), 0600), 0);
    EXPECT_TRUE(privateFileText(m_path, 7).ok());
    EXPECT_FALSE(privateFileText(m_path, 6).ok());
}

} // namespace

} // namespace quorvane::service
