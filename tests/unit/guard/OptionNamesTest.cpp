// The list of hostile configurations is complete: every option that the installed OpenVPN documents is either
// allowed by the guard or in the list, and every allowed directive is there with a dangerous value.

#include "HostileConfigurations.h"
#include "guard/AllowList.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <set>
#include <unistd.h>

namespace quorvane::guard {

namespace {

using Names = std::set<std::string>;

constexpr const char *manualPage = "/usr/share/man/man8/openvpn.8.gz";
/// Both texts name more options than this in every version that is supported; fewer were not read correctly.
constexpr std::size_t minimumCount = 220;

std::string outputOf(const std::string &command) {
    std::string output;
    FILE *const pipe = popen(command.c_str(), "re");
    if (pipe == nullptr) {
        return output;
    }
    std::array<char, 4096> buffer{};
    for (std::size_t count = 0; (count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
        output.append(buffer.data(), count);
    }
    pclose(pipe);
    return output;
}

/// The first parts of all matches.
Names matchesOf(const std::string &text, const std::regex &pattern) {
    Names names;
    for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
        names.insert((*at)[1]);
    }
    return names;
}

/// All names behind two dashes. One before an asterisk is the common beginning of several options.
Names optionsIn(const std::string &text) {
    return matchesOf(text, std::regex("--([a-z0-9][a-z0-9-]*[a-z0-9])(?![a-z0-9*-])"));
}

Names optionsOfHelp() {
    // The status is 1 also when the help was printed.
    return optionsIn(outputOf("/usr/sbin/openvpn --help"));
}

Names optionsOfManual() {
    return optionsIn(
        std::regex_replace(outputOf(std::string("gzip -dc ") + manualPage), std::regex(R"(\\-)"), "-"));
}

Names allowed() {
    const auto names = allowedNames();
    return {names.begin(), names.end()};
}

/// The directives that records of the list are refused for, with the given end of the reason.
Names refusedFor(const std::string &reason) {
    Names names;
    for (const auto &hostile : hostileConfigurations("/bin/true")) {
        names.merge(matchesOf(hostile.refusal, std::regex("^the directive \"([^\"]+)\" " + reason)));
    }
    return names;
}

Names missingIn(const Names &wanted, const Names &all) {
    Names missing;
    std::ranges::set_difference(wanted, all, std::inserter(missing, missing.end()));
    return missing;
}

/// The options that are neither allowed nor in the list.
Names forgotten(const Names &options) {
    Names known = allowed();
    known.merge(refusedFor("is not allowed"));
    return missingIn(options, known);
}

} // namespace

TEST(OptionNames, EveryOptionOfTheHelpIsAllowedOrInTheHostileList) {
    const Names options = optionsOfHelp();
    ASSERT_GE(options.size(), minimumCount) << "is OpenVPN installed?";
    EXPECT_EQ(forgotten(options), Names());
}

TEST(OptionNames, EveryOptionOfTheManualIsAllowedOrInTheHostileList) {
    if (access(manualPage, F_OK) != 0) {
        GTEST_SKIP() << manualPage << " is not installed: only the options of --help were compared";
    }
    const Names options = optionsOfManual();
    ASSERT_GE(options.size(), minimumCount) << "the manual page could not be read";
    EXPECT_EQ(forgotten(options), Names());
}

TEST(OptionNames, AnOptionThatIsNeitherAllowedNorInTheListIsFound) {
    const Names options =
        optionsIn("--client x\n --up cmd : Run. See --no-such-option, --reneg-*, --persist* and --dev.\n");
    EXPECT_EQ(options, (Names{"client", "up", "no-such-option", "dev"}));
    EXPECT_EQ(forgotten(options), (Names{"no-such-option"}));
}

TEST(OptionNames, EveryAllowedDirectiveIsInTheListWithADangerousValue) {
    Names withValue = refusedFor("has a parameter");
    withValue.merge(refusedFor("must be an inline block"));
    EXPECT_EQ(missingIn(allowed(), withValue), Names());
}

} // namespace quorvane::guard
