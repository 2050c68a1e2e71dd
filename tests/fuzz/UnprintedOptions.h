#pragma once

#include "OpenVpnRun.h"
#include "guard/Configuration.h"

#include <string>
#include <string_view>
#include <vector>

/// The password of the private key with which Probe::Answers is started.
constexpr std::string_view keyPassword = "password\n";

/// What was compared.
struct Compared {
    unsigned blocks = 0;
    unsigned options = 0; ///< directives that OpenVPN does not print
    bool isWhole = false; ///< OpenVPN has read the whole configuration
};

/// The place of the call in OpenVPN that copies the text of a block, for the recorder.
[[nodiscard]] const std::string &callThatCopiesBlocks();

/// Checks that OpenVPN, started with Probe::Settings, has read each block and each option that it does not
/// print as the guard has read `directives`: from the original, and from the guard's copy.
[[nodiscard]] Compared compareOriginal(const OpenVpnOutput &output,
                                       const std::vector<quorvane::guard::Directive> &directives);
[[nodiscard]] Compared compareCopy(const OpenVpnOutput &output,
                                   const std::vector<quorvane::guard::Directive> &directives);

/// Starts OpenVPN with the lines of `text` with "connect-retry", when there are any, and checks the times.
[[nodiscard]] Compared compareRetries(const std::string &text,
                                      const std::vector<quorvane::guard::Directive> &directives);

/// Starts OpenVPN with the lines of `text` with "auth-retry" and "auth-nocache", when there are any, and
/// checks how it answers and whether it keeps passwords.
[[nodiscard]] Compared compareAnswers(const std::string &text,
                                      const std::vector<quorvane::guard::Directive> &directives);

/// Checks with a configuration with all blocks and all these options that each is compared.
void checkThatAllIsCompared();
