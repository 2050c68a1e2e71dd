#include "core/PrivateFolder.h"

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

class PrivateFolderTest : public testing::Test {
protected:
    PrivateFolderTest() {
        std::filesystem::create_directories(m_folder);
        EXPECT_EQ(chmod(m_folder.c_str(), 0700), 0);
    }

    ~PrivateFolderTest() override { std::filesystem::remove_all(m_base); }

    void setMode(mode_t mode) const { ASSERT_EQ(chmod(m_folder.c_str(), mode), 0); }

    [[nodiscard]] mode_t mode() const {
        struct stat state {};

        EXPECT_EQ(stat(m_folder.c_str(), &state), 0);
        return state.st_mode & 07777U;
    }

    void expectRefused(const Result<> &result) const {
        ASSERT_FALSE(result);
        EXPECT_THAT(result.error(), HasSubstr(m_folder));
    }

    std::string m_base = testing::TempDir() + "private-folder-" + std::to_string(getpid());
    std::string m_folder = m_base + "/folder";
};

TEST_F(PrivateFolderTest, WhatOthersCanReadButNotChangeIsUsed) {
    for (const mode_t mode : {0700U, 0750U, 0755U}) {
        setMode(mode);
        EXPECT_TRUE(checkPrivateFolder(m_folder)) << std::oct << mode;
        EXPECT_TRUE(makePrivateFolder(m_folder)) << std::oct << mode;
        EXPECT_EQ(this->mode(), 0700U) << "others cannot read it any more";
    }
}

TEST_F(PrivateFolderTest, WhereOthersCouldWriteIsRefusedAndLeftAsItIs) {
    for (const mode_t mode : {0770U, 0720U, 0702U, 0777U, 01777U}) {
        setMode(mode);
        expectRefused(checkPrivateFolder(m_folder));
        expectRefused(makePrivateFolder(m_folder));
        EXPECT_EQ(this->mode(), mode);
    }
}

TEST_F(PrivateFolderTest, OfAnotherUserIsRefusedAndLeftAsItIs) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can make such a folder";
    }
    setMode(0750);
    ASSERT_EQ(chown(m_folder.c_str(), someUser, 0), 0);
    expectRefused(checkPrivateFolder(m_folder));
    expectRefused(makePrivateFolder(m_folder));
    EXPECT_EQ(mode(), 0750U);
}

TEST_F(PrivateFolderTest, OfRootIsCheckedButNotMadeOnesOwn) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can change its user";
    }
    setMode(0755);
    ASSERT_EQ(seteuid(someUser), 0);
    const auto checked = checkPrivateFolder(m_folder);
    const auto made = makePrivateFolder(m_folder);
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_TRUE(checked);
    expectRefused(made);
}

TEST_F(PrivateFolderTest, AMissingOneIsMadeForItsUserAlone) {
    std::filesystem::remove(m_folder);
    EXPECT_TRUE(checkPrivateFolder(m_folder));
    EXPECT_FALSE(std::filesystem::exists(m_folder));
    EXPECT_TRUE(makePrivateFolder(m_folder));
    EXPECT_EQ(mode(), 0700U);
}

TEST_F(PrivateFolderTest, ALinkToAFolderIsNotChanged) {
    const std::string link = m_base + "/link";
    setMode(0755);
    std::filesystem::create_symlink(m_folder, link);
    EXPECT_FALSE(makePrivateFolder(link));
    EXPECT_EQ(mode(), 0755U);
    EXPECT_TRUE(checkPrivateFolder(link));
}

TEST_F(PrivateFolderTest, AFileIsRefused) {
    std::filesystem::remove(m_folder);
    std::ofstream(m_folder) << "content";
    expectRefused(checkPrivateFolder(m_folder));
    expectRefused(makePrivateFolder(m_folder));
}

} // namespace

} // namespace quorvane::service
