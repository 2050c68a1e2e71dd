#include "setup/FileStore.h"

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

namespace quorvane::service {

namespace {

struct stat stateOf(const std::string &path) {
    struct stat state {};

    EXPECT_EQ(stat(path.c_str(), &state), 0);
    return state;
}

TEST(FileStore, WritesWithTheModeOfTheReaders) {
    const test::TemporaryFolder folder;
    FileStore files = test::ownFiles();
    const std::vector<std::pair<Readers, mode_t>> modes = {{Readers::All, 0644},
                                                           {Readers::Members, 0640},
                                                           {Readers::Api, 0600},
                                                           {Readers::Gateway, 0600},
                                                           {Readers::Root, 0600}};
    for (const auto &[readers, mode] : modes) {
        const std::string path =
            folder.file(std::to_string(mode) + std::to_string(static_cast<int>(readers)));
        ASSERT_TRUE(files.put(path, "text", readers));
        EXPECT_EQ(stateOf(path).st_mode & 07777U, mode);
        EXPECT_EQ(FileStore::text(path).value(), "text");
    }
    EXPECT_EQ(files.written().size(), modes.size());
}

TEST(FileStore, AFileWithTheSameContentIsNotWritten) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("x");
    ASSERT_TRUE(test::ownFiles().put(path, "text", Readers::All));
    const auto before = stateOf(path);
    FileStore files = test::ownFiles();
    ASSERT_TRUE(files.put(path, "text", Readers::All));
    EXPECT_TRUE(files.written().empty());
    EXPECT_EQ(stateOf(path).st_ino, before.st_ino);
    EXPECT_EQ(stateOf(path).st_ctim.tv_nsec, before.st_ctim.tv_nsec);
    ASSERT_TRUE(files.put(path, "other", Readers::All));
    EXPECT_EQ(files.written(), std::vector<std::string>{path});
}

TEST(FileStore, AWrongModeIsCorrected) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("x");
    FileStore files = test::ownFiles();
    ASSERT_TRUE(files.put(path, "text", Readers::All));
    ASSERT_TRUE(files.put(path, "text", Readers::Root));
    EXPECT_EQ(stateOf(path).st_mode & 07777U, 0600U);
}

TEST(FileStore, AnInterruptedRunIsNoObstacleAndAFailureLeavesNothing) {
    const test::TemporaryFolder folder;
    const std::string path = folder.file("x");
    std::ofstream(path + ".new") << "half";
    FileStore files = test::ownFiles();
    ASSERT_TRUE(files.put(path, "text", Readers::Root));
    EXPECT_FALSE(FileStore::exists(path + ".new"));
    EXPECT_FALSE(files.put(folder.file("missing/x"), "text", Readers::All));
    ASSERT_TRUE(std::filesystem::create_directory(folder.file("d")));
    EXPECT_FALSE(files.put(folder.file("d"), "text", Readers::All)) << "a folder has the name";
    EXPECT_FALSE(FileStore::exists(folder.file("d.new")));
    EXPECT_FALSE(FileStore::text(folder.file("d")));
}

TEST(FileStore, ALinkIsReplacedAndNotFollowed) {
    const test::TemporaryFolder folder;
    FileStore files = test::ownFiles();
    ASSERT_TRUE(files.put(folder.file("target"), "kept", Readers::All));
    std::filesystem::create_symlink(folder.file("target"), folder.file("link"));
    ASSERT_TRUE(files.put(folder.file("link"), "text", Readers::Root));
    EXPECT_EQ(FileStore::text(folder.file("target")).value(), "kept");
    EXPECT_FALSE(std::filesystem::is_symlink(folder.file("link")));
}

} // namespace

} // namespace quorvane::service
