#include "common/ProgramFiles.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

class ProgramFiles : public testing::Test {
protected:
    ProgramFiles() {
        EXPECT_NE(mkdtemp(m_folder.data()), nullptr);
        std::filesystem::create_directory(m_folder + "/Resources");
        for (const std::string &name : {program(), beside()}) {
            std::ofstream(name) << "";
            change(name, 0755);
        }
        change(m_folder + "/Resources", 0755);
        change(m_folder, 0755);
    }

    ~ProgramFiles() override { std::filesystem::remove_all(m_folder); }

    [[nodiscard]] std::string program() const { return m_folder + "/Resources/openvpn"; }

    [[nodiscard]] std::string beside() const { return m_folder + "/Resources/networksetup"; }

    static void change(const std::string &path, mode_t mode) { EXPECT_EQ(chmod(path.c_str(), mode), 0); }

    [[nodiscard]] std::string error() const {
        const auto checked = checkProgramFiles(program(), getuid());
        return checked ? "" : checked.error();
    }

    std::string m_folder = testing::TempDir() + "program-files-XXXXXX";
};

TEST_F(ProgramFiles, ThoseOfRootAndTheCallerAreAccepted) {
    EXPECT_EQ(error(), "");
}

TEST_F(ProgramFiles, WhatEveryUserCanWriteIsRefused) {
    for (const std::string &path : {program(), beside(), m_folder + "/Resources", m_folder}) {
        struct stat state {};

        ASSERT_EQ(stat(path.c_str(), &state), 0);
        change(path, 0757);
        EXPECT_NE(error(), "") << path;
        change(path, 0755);
        EXPECT_EQ(error(), "") << path;
    }
}

TEST_F(ProgramFiles, AFolderAboveMayBeStickyAndTheProgramsOwnNot) {
    change(m_folder, 01777);
    EXPECT_EQ(error(), "");
    change(m_folder + "/Resources", 01777);
    EXPECT_NE(error(), "");
}

TEST_F(ProgramFiles, AnotherOwnersFileAndAnotherGroupsAreRefused) {
    if (getuid() != 0) {
        GTEST_SKIP() << "only root can change the owner of a file";
    }
    for (const std::string &path : {program(), beside(), m_folder + "/Resources", m_folder}) {
        ASSERT_EQ(chown(path.c_str(), 65534, 0), 0);
        EXPECT_NE(error(), "") << path;
        EXPECT_TRUE(checkProgramFiles(program(), 65534).ok()) << "its own";
        ASSERT_EQ(chown(path.c_str(), 0, 65534), 0);
        EXPECT_EQ(error(), "") << path;
        change(path, 0775);
        EXPECT_NE(error(), "") << path;
        ASSERT_EQ(chown(path.c_str(), 0, 0), 0);
        EXPECT_EQ(error(), "") << "root's group";
        change(path, 0755);
    }
}

TEST_F(ProgramFiles, InstalledOnesBelongToRootAlone) {
    const auto checked = checkProgramFiles(program(), 0);
    EXPECT_EQ(checked.ok(), getuid() == 0);
    if (getuid() != 0) {
        EXPECT_EQ(checked.error(), std::filesystem::canonical(m_folder + "/Resources"));
        return;
    }
    for (const std::string &path : {program(), beside(), m_folder + "/Resources", m_folder}) {
        ASSERT_EQ(chown(path.c_str(), 65534, 0), 0);
        EXPECT_EQ(checkProgramFiles(program(), 0).error(), std::filesystem::canonical(path)) << path;
        ASSERT_EQ(chown(path.c_str(), 0, 0), 0);
    }
}

TEST_F(ProgramFiles, AMissingProgramIsRefused) {
    EXPECT_FALSE(checkProgramFiles(m_folder + "/missing", getuid()).ok());
}

} // namespace quorvane
