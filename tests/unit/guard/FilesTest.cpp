#include "guard/Files.h"

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvane::guard;

namespace {

class GuardFiles : public testing::Test {
protected:
    GuardFiles() {
        EXPECT_NE(mkdtemp(folder.data()), nullptr);
        std::ofstream(folder + "/plain") << "text";
    }

    ~GuardFiles() override {
        for (const char *name : {"/plain", "/link", "/second", "/pipe"}) {
            unlink((folder + name).c_str());
        }
        rmdir(folder.c_str());
    }

    std::string reasonFor(const std::string &name) const {
        return openPlainFile(folder + name, O_RDONLY).reason;
    }

    std::string folder = testing::TempDir() + "guard-files-XXXXXX";
};

} // namespace

TEST_F(GuardFiles, APlainFileIsOpenedWithItsOwner) {
    const OpenedFile file = openPlainFile(folder + "/plain", O_RDONLY);
    ASSERT_TRUE(file.descriptor.isOpen()) << file.reason;
    EXPECT_EQ(file.owner, getuid());
    std::string bytes;
    EXPECT_TRUE(readAll(file.descriptor, 4, bytes));
    EXPECT_EQ(bytes, "text");
}

TEST_F(GuardFiles, LinksAreNotFollowed) {
    ASSERT_EQ(symlink("plain", (folder + "/link").c_str()), 0);
    EXPECT_EQ(reasonFor("/link"), "it is not a plain file");
    ASSERT_EQ(link((folder + "/plain").c_str(), (folder + "/second").c_str()), 0);
    EXPECT_EQ(reasonFor("/plain"), "it has more than one name");
}

TEST_F(GuardFiles, PipesFoldersAndDevicesAreLeftAlone) {
    ASSERT_EQ(mkfifo((folder + "/pipe").c_str(), 0600), 0);
    EXPECT_EQ(reasonFor("/pipe"), "it is not a plain file") << "and it does not wait for a writer";
    EXPECT_EQ(reasonFor(""), "it is not a plain file");
    EXPECT_EQ(openPlainFile("/dev/zero", O_RDONLY).reason, "it is not a plain file");
}

TEST_F(GuardFiles, WhatIsNotThereOrHasARelativePathIsRefused) {
    EXPECT_EQ(reasonFor("/nothing"), "No such file or directory");
    EXPECT_EQ(openPlainFile("stdin", O_RDONLY).reason, "the path does not begin at the root");
}

TEST_F(GuardFiles, ReadingIsBounded) {
    const OpenedFile file = openPlainFile(folder + "/plain", O_RDONLY);
    std::string bytes;
    EXPECT_FALSE(readAll(file.descriptor, 3, bytes));
}

TEST_F(GuardFiles, TheCopyCanBeOpenedAgainAndNotBeChanged) {
    const auto copy = sealedCopy("x", "secret");
    ASSERT_TRUE(copy.isOpen());
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
