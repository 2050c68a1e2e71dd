#include "guard/Files.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::guard {

namespace {

class GuardFiles : public testing::Test {
protected:
    GuardFiles() {
        EXPECT_NE(mkdtemp(m_folder.data()), nullptr);
        std::ofstream(m_folder + "/plain") << "text";
    }

    ~GuardFiles() override {
        for (const char *name : {"/plain", "/link", "/second", "/pipe"}) {
            unlink((m_folder + name).c_str());
        }
        rmdir(m_folder.c_str());
    }

    [[nodiscard]] std::string reasonFor(const std::string &name) const {
        const auto opened = openPlainFile(m_folder + name, O_RDONLY);
        return opened ? "" : opened.error();
    }

    std::string m_folder = testing::TempDir() + "guard-files-XXXXXX";
};

} // namespace

TEST_F(GuardFiles, APlainFileIsOpenedWithItsOwner) {
    const auto file = openPlainFile(m_folder + "/plain", O_RDONLY);
    ASSERT_TRUE(file) << file.error();
    EXPECT_EQ(file.value().owner, getuid());
    const auto bytes = readAll(file.value().descriptor, 4);
    ASSERT_TRUE(bytes) << bytes.error();
    EXPECT_EQ(bytes.value(), "text");
}

TEST_F(GuardFiles, LinksAreNotFollowed) {
    ASSERT_EQ(symlink("plain", (m_folder + "/link").c_str()), 0);
    EXPECT_EQ(reasonFor("/link"), "it is not a plain file");
    ASSERT_EQ(link((m_folder + "/plain").c_str(), (m_folder + "/second").c_str()), 0);
    EXPECT_EQ(reasonFor("/plain"), "it has more than one name");
}

TEST_F(GuardFiles, PipesFoldersAndDevicesAreNotOpened) {
    ASSERT_EQ(mkfifo((m_folder + "/pipe").c_str(), 0600), 0);
    EXPECT_EQ(reasonFor("/pipe"), "it is not a plain file") << "and it does not wait for a writer";
    EXPECT_EQ(reasonFor(""), "it is not a plain file");
    EXPECT_EQ(openPlainFile("/dev/zero", O_RDONLY).error(), "it is not a plain file");
}

TEST_F(GuardFiles, MissingFilesAndRelativePathsAreRefused) {
    EXPECT_EQ(reasonFor("/nothing"), "No such file or directory");
    EXPECT_EQ(openPlainFile("stdin", O_RDONLY).error(), "the path is not absolute");
}

TEST_F(GuardFiles, ReadingIsBounded) {
    const auto file = openPlainFile(m_folder + "/plain", O_RDONLY);
    ASSERT_TRUE(file) << file.error();
    EXPECT_FALSE(readAll(file.value().descriptor, 3));
}

TEST_F(GuardFiles, TheCopyCanBeOpenedAgainButNotChanged) {
    const auto sealed = sealedCopy("x", "secret");
    ASSERT_TRUE(sealed) << sealed.error();
    const auto &copy = sealed.value();
    std::ifstream again(pathOf(copy));
    std::string text;
    EXPECT_TRUE(again >> text);
    EXPECT_EQ(text, "secret");
    EXPECT_EQ(write(copy.get(), "x", 1), -1);
    EXPECT_EQ(ftruncate(copy.get(), 0), -1);

    struct stat state {};

    ASSERT_EQ(fstat(copy.get(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0400U);
}

} // namespace quorvane::guard
