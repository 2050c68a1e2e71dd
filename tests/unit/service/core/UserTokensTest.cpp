#include "core/UserTokens.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

using testing::HasSubstr;

constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
const UserTokens::Key firstKey{1, 2, 3};
const UserTokens::Key secondKey{4, 5, 6};
const UserTokens::TimePoint someEnd{std::chrono::seconds(1700000000)};

TEST(UserTokens, ATokenIsOpenedWithItsEndAndPassword) {
    const UserTokens tokens({firstKey});
    const auto sealed = tokens.seal(someEnd);
    const auto opened = tokens.open(sealed.token);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->end, someEnd);
    EXPECT_EQ(opened->password, sealed.password);
}

TEST(UserTokens, TokensAreDifferentLettersAndDigitsThatFitOpenVpn) {
    const UserTokens tokens({firstKey});
    std::set<std::string> texts;
    for (int i = 0; i < 200; ++i) {
        const auto sealed = tokens.seal(someEnd);
        EXPECT_EQ(sealed.token.size(), 55U);
        EXPECT_EQ(sealed.password.size(), 44U);
        EXPECT_EQ(sealed.token.find_first_not_of(letters), std::string::npos);
        EXPECT_EQ(sealed.password.find_first_not_of(letters), std::string::npos);
        texts.insert(sealed.token);
        texts.insert(sealed.password);
    }
    EXPECT_EQ(texts.size(), 400U);
}

TEST(UserTokens, EveryChangeOfOneCharacterIsRefused) {
    const UserTokens tokens({firstKey});
    const std::string token = tokens.seal(someEnd).token;
    for (std::size_t i = 0; i < token.size(); ++i) {
        for (const char letter : std::string(letters) + '-' + '\0') {
            std::string forged = token;
            forged[i] = letter;
            EXPECT_EQ(tokens.open(forged).has_value(), forged == token) << forged;
        }
    }
}

TEST(UserTokens, TextsOfOtherLengthsAreRefused) {
    const UserTokens tokens({firstKey});
    const std::string token = tokens.seal(someEnd).token;
    for (std::size_t length = 0; length < token.size(); ++length) {
        EXPECT_FALSE(tokens.open(token.substr(0, length)));
    }
    EXPECT_FALSE(tokens.open(token + 'A'));
    EXPECT_FALSE(tokens.open(token + token));
    EXPECT_FALSE(tokens.open(std::string(55, '9'))) << "each word is more than 64 bits";
    EXPECT_FALSE(tokens.open(std::string(55, 'A')));
}

TEST(UserTokens, PartsOfTwoTokensAreNoToken) {
    const UserTokens tokens({firstKey});
    const std::string one = tokens.seal(someEnd).token;
    const std::string other = tokens.seal(someEnd + std::chrono::hours(1)).token;
    for (std::size_t word = 11; word < one.size(); word += 11) {
        EXPECT_FALSE(tokens.open(one.substr(0, word) + other.substr(word)));
    }
}

TEST(UserTokens, AnotherKeyRefusesAToken) {
    EXPECT_FALSE(UserTokens({secondKey}).open(UserTokens({firstKey}).seal(someEnd).token));
    EXPECT_FALSE(UserTokens().open(UserTokens({firstKey}).seal(someEnd).token));
    EXPECT_THROW((void)UserTokens().seal(someEnd), std::runtime_error);
}

TEST(UserTokens, AnOldKeyIsAcceptedAndTheFirstOneSeals) {
    const auto old = UserTokens({firstKey}).seal(someEnd);
    const UserTokens rotated({secondKey, firstKey});
    const auto opened = rotated.open(old.token);
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->password, old.password);
    EXPECT_TRUE(UserTokens({secondKey}).open(rotated.seal(someEnd).token));
    EXPECT_FALSE(UserTokens({firstKey}).open(rotated.seal(someEnd).token));
}

TEST(UserTokens, AKeyFileHasLinesOfHexadecimalDigits) {
    const std::string zeros(64, '0');
    const std::string line = zeros + '\n';
    EXPECT_TRUE(UserTokens::parse(line).ok());
    EXPECT_TRUE(UserTokens::parse(zeros).ok());
    EXPECT_TRUE(UserTokens::parse(line + std::string(64, 'f') + '\n').ok());
    std::string sixteen;
    for (int i = 0; i < 16; ++i) {
        sixteen += line;
    }
    EXPECT_TRUE(UserTokens::parse(sixteen).ok());
    for (const std::string &bad : {std::string(), std::string("\n"), zeros + '0', zeros.substr(1),
                                   line + '\n', std::string(64, 'F'), zeros + ' ', sixteen + line}) {
        EXPECT_FALSE(UserTokens::parse(bad).ok()) << bad;
    }
    const auto tokens = UserTokens::parse("010203" + zeros.substr(6) + '\n');
    ASSERT_TRUE(tokens.ok());
    EXPECT_TRUE(tokens.value().open(UserTokens({firstKey}).seal(someEnd).token));
}

class UserKeysFile : public testing::Test {
protected:
    UserKeysFile() { std::filesystem::create_directories(m_folder); }

    ~UserKeysFile() override { std::filesystem::remove_all(m_folder); }

    std::string m_folder = testing::TempDir() + "user-keys-" + std::to_string(getpid());
    std::string m_path = m_folder + "/user.keys";
};

TEST_F(UserKeysFile, IsMadeOnceAndForItsOwnerOnly) {
    const auto made = UserTokens::loadOrMake(m_path);
    ASSERT_TRUE(made.ok());

    struct stat state {};

    ASSERT_EQ(stat(m_path.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0600U);
    const auto again = UserTokens::loadOrMake(m_path);
    ASSERT_TRUE(again.ok());
    EXPECT_TRUE(again.value().open(made.value().seal(someEnd).token));
}

TEST_F(UserKeysFile, ThatOthersCanReadOrThatIsMissingIsRefused) {
    EXPECT_FALSE(UserTokens::load(m_path).ok());
    ASSERT_TRUE(UserTokens::loadOrMake(m_path).ok());
    ASSERT_EQ(chmod(m_path.c_str(), 0604), 0);
    const auto refused = UserTokens::load(m_path);
    ASSERT_FALSE(refused.ok());
    EXPECT_THAT(refused.error(), HasSubstr("mode 600"));
}

TEST_F(UserKeysFile, OfAnotherOwnerIsRefused) {
    ASSERT_TRUE(UserTokens::loadOrMake(m_path).ok());
    if (chown(m_path.c_str(), 65534, 65534) != 0) {
        GTEST_SKIP() << "only root can make a file of another owner";
    }
    EXPECT_FALSE(UserTokens::load(m_path).ok());
}

} // namespace

} // namespace quorvane::service
