#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What OpenVPN is started for.
enum class Probe {
    Calls,        ///< the recorder reports all texts that OpenVPN measures
    Settings,     ///< OpenVPN prints its settings, and the recorder reports what it does not print
    Retries,      ///< the recorder reports the times between tries of a server
    OwnVerbosity, ///< it prints what the configuration's own "verb" and "mute" let pass
    Keys,         ///< it prints the keys for the control channel
    Answers,      ///< it answers questions of its management interface, and decrypts its private key
};

struct OpenVpnOutput {
    int status = 0;
    std::string settings;
    std::vector<std::string> recorded; ///< the recorder's lines, without their first word
    std::string answers;               ///< from the management interface
};

struct OpenVpnReadings {
    OpenVpnOutput original;
    OpenVpnOutput copy;
};

/// Starts the real OpenVPN with a configuration and returns its output, without what varies from start to
/// start.
[[nodiscard]] OpenVpnOutput outputOf(std::string_view configuration, Probe probe);

/// The outputs for the original and for the guard's copy, which must be the same.
[[nodiscard]] OpenVpnReadings readingsOf(const std::string &text, const std::string &copy, Probe probe);
