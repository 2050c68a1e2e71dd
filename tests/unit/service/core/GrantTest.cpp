#include "core/Grant.h"

#include <gtest/gtest.h>

#include <map>

namespace quorvane::service {

namespace {

using std::chrono::microseconds;

const Grant someGrant{"user1", *Ipv4Address::parse("203.0.113.5"), Protocol::Tcp,
                      Grant::TimePoint(microseconds(1700000000000001)),
                      Grant::TimePoint(microseconds(1700000060000000))};

/// The variables of a login, which a test can change.
class GrantTest : public testing::Test {
protected:
    GrantTest() {
        for (const SubjectAttribute &attribute : subjectOf(someGrant)) {
            m_variables[std::string("X509_0_") + attribute.name] = attribute.text;
        }
    }

    [[nodiscard]] std::optional<Grant> read() const {
        return grantOf([this](std::string_view name) {
            const auto found = m_variables.find(name);
            return found == m_variables.end() ? std::string() : found->second;
        });
    }

    std::map<std::string, std::string, std::less<>> m_variables;
};

TEST_F(GrantTest, IsReadAsItWasWritten) {
    EXPECT_EQ(m_variables.at("X509_0_CN"), "user1");
    EXPECT_EQ(m_variables.at("X509_0_O"), "203.0.113.5");
    EXPECT_EQ(m_variables.at("X509_0_OU"), "tcp");
    EXPECT_EQ(m_variables.at("X509_0_serialNumber"), "1700000000000001");
    EXPECT_EQ(m_variables.at("X509_0_dnQualifier"), "1700000060000000");
    EXPECT_EQ(read(), someGrant);
}

TEST_F(GrantTest, NamesTheVariablesOfALogin) {
    ASSERT_EQ(grantVariables().size(), m_variables.size());
    for (const std::string_view name : grantVariables()) {
        EXPECT_TRUE(m_variables.contains(name)) << name;
    }
}

TEST_F(GrantTest, IsReadOnlyWhenItIsWhole) {
    for (const std::string_view name : grantVariables()) {
        const std::string kept = std::exchange(m_variables[std::string(name)], "");
        EXPECT_EQ(read(), std::nullopt) << name;
        m_variables[std::string(name)] = kept;
    }
    EXPECT_EQ(read(), someGrant);
}

TEST_F(GrantTest, IsReadOnlyWhenItIsWellFormed) {
    const std::map<std::string, std::vector<std::string>> malformed = {
        {"X509_0_O", {"203.0.113", "203.0.113.5 ", "::1"}},
        {"X509_0_OU", {"TCP", "sctp", "tcp "}},
        {"X509_0_serialNumber", {"-1", "+1", " 1", "1 ", "1.5", "99999999999999999999", "x"}},
        {"X509_0_dnQualifier", {"-1", "0x1", "1e9", "99999999999999999999"}}};
    for (const auto &[name, texts] : malformed) {
        const std::string kept = m_variables[name];
        for (const std::string &text : texts) {
            m_variables[name] = text;
            EXPECT_EQ(read(), std::nullopt) << name << ' ' << text;
        }
        m_variables[name] = kept;
    }
    EXPECT_EQ(read(), someGrant);
}

} // namespace

} // namespace quorvane::service
