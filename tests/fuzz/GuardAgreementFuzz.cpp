// The real OpenVPN must read an allowed configuration as the guard did. The configurations are generated from
// the fuzzer's bytes, so that nearly all of them reach OpenVPN; how many did is printed at the end of a run.
//
// OpenVPN is started with the original and with the guard's copy, and both outputs must be the same.
// - First it prints all its settings and ends at a management socket that cannot be made, before it opens
//   anything. None of them may be one that the guard did not read. A library that is loaded into it reports
//   the text of each block and the options that OpenVPN does not print (OpenVpnRecorder.cpp): all must be as
//   the guard has read them.
// - The configuration's own "verb" and "mute" decide what is printed.
// - OpenVPN receives the blocks with keys for the control channel: it prints the keys that it has read from
//   them, which must be those that the guard has read, and ends at an unknown user before it sends anything.
// - With "auth-retry" or "auth-nocache" it answers a question about the first, and its warnings say whether
// it
//   keeps passwords.

#include "Fuzz.h"
#include "GeneratedConfiguration.h"
#include "OpenVpnRun.h"
#include "UnprintedOptions.h"
#include "guard/AllowList.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <vector>

using namespace quorvane::guard;

namespace {

constexpr std::size_t longestLine = 254; ///< in bytes, without its line feed

/// Counts for the last line of a run; run-fuzz compares them.
struct Counts {
    unsigned inputs = 0;
    unsigned reached = 0;  ///< OpenVPN has read the whole configuration
    unsigned settings = 0; ///< OpenVPN has also accepted it and printed its settings
    unsigned keys = 0;     ///< OpenVPN has printed keys of a block
    unsigned blocks = 0;   ///< texts of blocks compared
    unsigned options = 0;  ///< directives compared that OpenVPN does not print
    unsigned largest = 0;  ///< reached, of the largest size that is allowed
    unsigned longest = 0;  ///< reached, with a line of the largest length
};

Counts counts;

void count(const Compared &compared) {
    counts.blocks += compared.blocks;
    counts.options += compared.options;
}

void checkNothingElseIsSet(const std::string &settings) {
    for (const char *name : {"up_script",
                             "down_script",
                             "chroot_dir",
                             "cd_dir",
                             "writepid",
                             "status_file",
                             "username",
                             "groupname",
                             "route_script",
                             "route_pre_down_script",
                             "ipchange",
                             "tls_verify",
                             "tls_export_peer_cert_dir",
                             "auth_user_pass_verify_script",
                             "client_connect_script",
                             "client_disconnect_script",
                             "learn_address_script",
                             "tmp_dir",
                             "packet_id_file",
                             "shared_secret_file",
                             "ca_path",
                             "dh_file",
                             "pkcs12_file",
                             "crl_file",
                             "key_pass_file",
                             "genkey_filename",
                             "http_proxy_server",
                             "socks_proxy_server",
                             "management_client_user"}) {
        const std::string set = std::string("  ") + name + " = ";
        const auto at = settings.find(set);
        must(at == std::string::npos || settings.compare(at + set.size(), 9, "'[UNDEF]'") == 0 ||
                 settings.compare(at + set.size(), 6, "'/tmp'") == 0 || // OpenVPN's own default of tmp_dir
                 settings.compare(at + set.size(), 7, "[UNDEF]") == 0,
             "nothing is set that runs, reads or writes");
    }
}

/// The values of a setting in the order of their lines.
std::set<std::string> valuesOf(const std::string &settings, const std::string &name) {
    std::set<std::string> values;
    const std::string begin = "  " + name + " = '";
    for (auto at = settings.find(begin); at != std::string::npos; at = settings.find(begin, at + 1)) {
        const auto from = at + begin.size();
        values.insert(settings.substr(from, settings.find('\'', from) - from));
    }
    return values;
}

bool isNamed(const Directive &directive, const std::string &name) {
    return directive.name() == name;
}

void checkServers(const std::string &settings, const std::vector<Directive> &directives) {
    std::set<std::string> hosts;
    bool hasConnection = false;
    const auto collect = [&hosts](const std::vector<Directive> &from) {
        for (const Directive &directive : from) {
            if (isNamed(directive, "remote")) {
                hosts.insert(directive.tokens[1]);
            }
        }
    };
    collect(directives);
    for (const Directive &directive : directives) {
        if (isNamed(directive, "connection")) {
            hasConnection = true;
            collect(parseBlock(directive).value());
        }
    }
    if (settings.find("Current Parameter Settings:") != std::string::npos) {
        const auto contacted = valuesOf(settings, "remote");
        must(std::includes(hosts.begin(), hosts.end(), contacted.begin(), contacted.end()),
             "OpenVPN would contact no servers but those that the guard read");
        // With connection blocks OpenVPN does not use the servers outside of them.
        must(hasConnection || contacted == hosts, "OpenVPN would contact the servers that the guard read");
    }
}

/// OpenVPN for other systems than Windows does not know these, and the copy is without them.
bool isLeftOutOfCopy(const Directive &directive) {
    return isNamed(directive, "block-outside-dns") || isNamed(directive, "setenv") ||
           isNamed(directive, "ignore-unknown-option");
}

bool hasSettings(const OpenVpnOutput &output) {
    return output.settings.find("Current Parameter Settings:") != std::string::npos;
}

/// The level and the limit of repeated lines are set by the last directive of each.
void checkVerbosity(const std::string &text, const std::vector<Directive> &directives) {
    std::string level = "4";
    std::string limit = "0";
    for (const Directive &directive : directives) {
        if (isNamed(directive, "verb")) {
            level = directive.tokens[1];
        } else if (isNamed(directive, "mute")) {
            limit = directive.tokens[1];
        }
    }
    if (level == "4" && limit == "0") {
        return;
    }
    const OpenVpnOutput output = readingsOf(text, privateCopy(directives), Probe::OwnVerbosity).original;
    // A low limit can suppress them at that level, too.
    must(!hasSettings(output) || level == "4",
         "OpenVPN prints its settings at the level that the guard read");
}

/// The hexadecimal digits of a key for the control channel, in lower case.
std::string digitsOfKey(const std::string &block) {
    const auto begin = block.find("-----BEGIN OpenVPN Static key V1-----");
    const auto end = block.find("-----END OpenVPN Static key V1-----");
    std::string digits;
    for (auto at = block.find('\n', begin); at < end; ++at) {
        if (std::isxdigit(static_cast<unsigned char>(block[at])) != 0) {
            digits += static_cast<char>(std::tolower(static_cast<unsigned char>(block[at])));
        }
    }
    return digits;
}

/// Every key that OpenVPN prints must be a part of a block as the guard has read it.
void checkKeys(const std::string &blocks) {
    if (blocks.find("tls-") == std::string::npos) {
        return;
    }
    const std::string text = "client\nremote 192.0.2.1\n" + blocks;
    const auto parsed = parse(text);
    must(parsed && check(parsed.value()), "the blocks alone are allowed");
    const OpenVpnOutput output = readingsOf(text, privateCopy(parsed.value()), Probe::Keys).original;
    must(output.settings.find("Cannot load CA") == std::string::npos, "OpenVPN can use the certificate");
    std::set<std::string> keys;
    for (const Directive &directive : parsed.value()) {
        if (directive.block && directive.name().starts_with("tls-")) {
            keys.insert(digitsOfKey(*directive.block));
        }
    }
    const std::string begin = " KEY: ";
    for (auto at = output.settings.find(begin); at != std::string::npos;
         at = output.settings.find(begin, at + 1)) {
        const auto from = at + begin.size();
        std::string printed = output.settings.substr(from, output.settings.find('\n', from) - from);
        std::erase(printed, ' ');
        must(printed.size() >= 40 && std::ranges::any_of(keys,
                                                         [&printed](const std::string &key) {
                                                             return key.size() == 512 &&
                                                                    key.find(printed) % 128 == 0;
                                                         }),
             "OpenVPN has the key that the guard read");
        ++counts.keys;
    }
}

/// True when one more byte would make a line too long.
bool hasLongestLine(const std::string &text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        const auto end = std::min(text.find('\n', begin), text.size());
        if (end - begin == longestLine) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

/// `compared`: the comparison with the configuration itself.
void countReached(const std::string &text, const Compared &compared) {
    count(compared);
    if (compared.isWhole) {
        ++counts.reached;
        counts.largest += text.size() == maximumConfigurationSize ? 1 : 0;
        counts.longest += hasLongestLine(text) ? 1 : 0;
    }
}

/// The generator must know every directive that may pass, and the counts be printed at the end.
void prepareOnce() {
    static const bool isPrepared = [] {
        const auto generated = generatedNames();
        for (const auto name : allowedNames()) {
            must(std::ranges::find(generated, name) != generated.end(),
                 "every allowed directive is generated");
        }
        checkThatAllIsCompared();
        return std::atexit([] {
                   std::fprintf(stderr,
                                "reached: %u of %u inputs, %u with settings, %u keys, %u blocks, "
                                "%u unprinted options, %u largest, %u with the longest line\n",
                                counts.reached, counts.inputs, counts.settings, counts.keys, counts.blocks,
                                counts.options, counts.largest, counts.longest);
               }) == 0;
    }();
    must(isPrepared, "the counts can be printed");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    prepareOnce();
    ++counts.inputs;
    const GeneratedConfiguration made = generateConfiguration(bytes);
    const auto parsed = parse(made.text);
    if (!parsed || !check(parsed.value())) {
        return;
    }
    const std::string copy = privateCopy(parsed.value());
    if (std::ranges::any_of(parsed.value(), isLeftOutOfCopy)) {
        const OpenVpnOutput output = outputOf(copy, Probe::Settings);
        countReached(made.text, compareCopy(output, parsed.value()));
        checkServers(output.settings, parsed.value());
        return;
    }
    const OpenVpnReadings readings = readingsOf(made.text, copy, Probe::Settings);
    const OpenVpnOutput &original = readings.original;
    counts.settings += hasSettings(original) ? 1 : 0;
    countReached(made.text, compareOriginal(original, parsed.value()));
    count(compareCopy(readings.copy, parsed.value()));
    count(compareRetries(made.text, parsed.value()));
    count(compareAnswers(made.text, parsed.value()));
    must(original.settings.find("Options error: Unrecognized option") == std::string::npos,
         "OpenVPN knows every allowed directive");
    checkNothingElseIsSet(original.settings);
    checkServers(original.settings, parsed.value());
    if (hasSettings(original)) {
        checkVerbosity(made.text, parsed.value());
    }
    checkKeys(made.keyBlocks);
}
