#include "AllowList.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <charconv>
#include <span>
#include <string_view>

namespace quorvane::guard {

namespace {

using Parameters = std::span<const std::string>;

enum class Values {
    None,    ///< a flag
    Numbers, ///< each a decimal number from `minimum` to `maximum`
    Choices, ///< each one of `choices`
    Names,   ///< each one of `choices`, in any case
    List,    ///< some of `choices`, in any case, joined by colons
    Retry,   ///< a number, or "infinite"
    Server,  ///< host, port, protocol
    CommonName,
    Interface, ///< "tun" and up to three digits
    Ipv6Pair,  ///< address/bits and address
    NameServer,
    TlsVersion,  ///< one of `choices`, and "or-highest"
    ServerUsage, ///< the extended key usage of a server
    ReplayWindow,
    Ignored,       ///< a flag without an effect on this system
    IgnoredNames,  ///< names of directives without an effect on this system
    IgnoredOption, ///< "opt" and one such name
    Connection,    ///< an inline block with directives about one server
    Block,         ///< an inline block; a file in its place would be read with root's rights
};

struct Rule {
    std::string_view name;
    Values values = Values::None;
    std::size_t minimumCount = 0; ///< of parameters
    std::size_t maximumCount = 0;
    std::string_view choices = {}; ///< separated by blanks
    unsigned minimum = 0;
    unsigned maximum = 0;
};

constexpr std::string_view protocols = "udp udp4 udp6 tcp tcp4 tcp6 tcp-client tcp4-client tcp6-client";
constexpr std::string_view ciphers =
    "AES-256-GCM AES-192-GCM AES-128-GCM CHACHA20-POLY1305 AES-256-CBC AES-192-CBC AES-128-CBC";
constexpr std::string_view digests = "SHA1 SHA224 SHA256 SHA384 SHA512";
/// Key exchanges that keep recorded traffic safe when the server's key becomes known later.
constexpr std::string_view tlsCiphers =
    "TLS-ECDHE-ECDSA-WITH-AES-256-GCM-SHA384 TLS-ECDHE-RSA-WITH-AES-256-GCM-SHA384 "
    "TLS-ECDHE-ECDSA-WITH-AES-128-GCM-SHA256 TLS-ECDHE-RSA-WITH-AES-128-GCM-SHA256 "
    "TLS-ECDHE-ECDSA-WITH-CHACHA20-POLY1305-SHA256 TLS-ECDHE-RSA-WITH-CHACHA20-POLY1305-SHA256 "
    "TLS-DHE-RSA-WITH-AES-256-GCM-SHA384 TLS-DHE-RSA-WITH-AES-128-GCM-SHA256 "
    "TLS-DHE-RSA-WITH-CHACHA20-POLY1305-SHA256 TLS-ECDHE-ECDSA-WITH-AES-256-CBC-SHA384 "
    "TLS-ECDHE-RSA-WITH-AES-256-CBC-SHA384 TLS-ECDHE-ECDSA-WITH-AES-128-CBC-SHA256 "
    "TLS-ECDHE-RSA-WITH-AES-128-CBC-SHA256 TLS-ECDHE-RSA-WITH-AES-256-CBC-SHA "
    "TLS-ECDHE-RSA-WITH-AES-128-CBC-SHA TLS-DHE-RSA-WITH-AES-256-CBC-SHA256 "
    "TLS-DHE-RSA-WITH-AES-128-CBC-SHA256 TLS-DHE-RSA-WITH-AES-256-CBC-SHA TLS-DHE-RSA-WITH-AES-128-CBC-SHA";
constexpr std::string_view tlsSuites =
    "TLS_AES_256_GCM_SHA384 TLS_AES_128_GCM_SHA256 TLS_CHACHA20_POLY1305_SHA256";
/// Directives of OpenVPN for Windows.
constexpr std::string_view ignoredNames =
    "block-outside-dns register-dns dhcp-renew dhcp-release dhcp-pre-release";
/// What a connection block may contain: directives about the way to one server.
constexpr std::string_view connectionNames =
    "remote proto port rport nobind float connect-retry connect-retry-max connect-timeout "
    "explicit-exit-notify tun-mtu mssfix fragment key-direction";
constexpr unsigned secondsPerDay = 86400;

constexpr Rule flag(std::string_view name) {
    return {name};
}

constexpr Rule number(std::string_view name, unsigned minimum, unsigned maximum, std::size_t minimumCount = 1,
                      std::size_t maximumCount = 1) {
    return {name, Values::Numbers, minimumCount, maximumCount, {}, minimum, maximum};
}

constexpr Rule choice(std::string_view name, std::string_view choices, std::size_t maximumCount = 1) {
    return {name, Values::Choices, 1, maximumCount, choices};
}

constexpr Rule names(std::string_view name, std::string_view choices) {
    return {name, Values::Names, 1, 1, choices};
}

constexpr Rule list(std::string_view name, std::string_view choices) {
    return {name, Values::List, 1, 1, choices};
}

constexpr Rule block(std::string_view name) {
    return {name, Values::Block};
}

constexpr std::array rules{
    // The kind of tunnel
    flag("client"),
    flag("tls-client"),
    flag("pull"),
    Rule{"dev", Values::Interface, 1, 1},
    choice("dev-type", "tun"),
    choice("topology", "subnet net30 p2p"),
    // The servers, and how long to try them
    Rule{"remote", Values::Server, 1, 3},
    flag("remote-random"),
    Rule{"connection", Values::Connection},
    choice("proto", protocols),
    number("port", 1, 65535),
    number("rport", 1, 65535),
    flag("nobind"),
    flag("float"),
    Rule{"resolv-retry", Values::Retry, 1, 1, {}, 0, secondsPerDay},
    number("connect-retry", 1, secondsPerDay, 1, 2),
    number("connect-retry-max", 1, 1000),
    number("connect-timeout", 1, secondsPerDay),
    number("server-poll-timeout", 1, secondsPerDay),
    number("hand-window", 1, secondsPerDay),
    number("tran-window", 1, secondsPerDay),
    number("tls-timeout", 1, secondsPerDay),
    number("ping", 1, secondsPerDay),
    number("ping-exit", 1, secondsPerDay),
    number("ping-restart", 0, secondsPerDay),
    flag("ping-timer-rem"),
    number("keepalive", 1, secondsPerDay, 2, 2),
    number("explicit-exit-notify", 0, 10, 0, 1),
    // Authentication and encryption. Nothing that switches a protection off.
    flag("auth-user-pass"),
    flag("auth-nocache"),
    choice("auth-retry", "none nointeract"),
    choice("remote-cert-tls", "server"),
    Rule{"remote-cert-eku", Values::ServerUsage, 1, 1},
    Rule{"verify-x509-name", Values::CommonName, 1, 2},
    block("ca"),
    block("cert"),
    block("key"),
    block("extra-certs"),
    block("tls-auth"),
    block("tls-crypt"),
    block("tls-crypt-v2"),
    choice("key-direction", "0 1"),
    names("cipher", ciphers),
    list("data-ciphers", ciphers),
    names("data-ciphers-fallback", ciphers),
    names("auth", digests),
    list("tls-cipher", tlsCiphers),
    list("tls-ciphersuites", tlsSuites),
    Rule{"tls-version-min", Values::TlsVersion, 1, 2, "1.2 1.3"},
    choice("tls-version-max", "1.2 1.3"),
    Rule{"replay-window", Values::ReplayWindow, 1, 2},
    number("reneg-sec", 0, 7 * secondsPerDay, 1, 2),
    // Compression leaks what was sent; these switch it off.
    choice("comp-lzo", "no"),
    choice("allow-compression", "no"),
    // The traffic
    choice("redirect-gateway", "def1 ipv6 bypass-dhcp block-local", 4),
    flag("block-ipv6"),
    Rule{"ifconfig-ipv6", Values::Ipv6Pair, 2, 2},
    Rule{"dhcp-option", Values::NameServer, 2, 2},
    number("tun-mtu", 576, 9000),
    number("mssfix", 0, 9000),
    number("fragment", 576, 9000),
    number("sndbuf", 0, 16777216),
    number("rcvbuf", 0, 16777216),
    flag("persist-key"),
    flag("persist-tun"),
    flag("fast-io"),
    flag("mute-replay-warnings"),
    // Without a level the end of the start is not logged; above 4 the log is for OpenVPN's own developers.
    number("verb", 1, 4),
    number("mute", 1, 1000),
    // Without an effect here; left out of what OpenVPN receives.
    Rule{"block-outside-dns", Values::Ignored},
    Rule{"setenv", Values::IgnoredOption, 2, 2},
    Rule{"ignore-unknown-option", Values::IgnoredNames, 1, 8},
};

bool isOneOf(std::string_view parameter, std::string_view choices) {
    while (!choices.empty()) {
        const auto end = choices.find(' ');
        if (parameter == choices.substr(0, end)) {
            return true;
        }
        choices.remove_prefix(end == std::string_view::npos ? choices.size() : end + 1);
    }
    return false;
}

char upperCase(char character) {
    return static_cast<char>(character >= 'a' && character <= 'z' ? character - 'a' + 'A' : character);
}

bool isNameOf(std::string_view parameter, std::string_view choices) {
    std::string upper(parameter);
    std::ranges::transform(upper, upper.begin(), upperCase);
    return isOneOf(upper, choices);
}

bool isNumber(std::string_view parameter, unsigned minimum, unsigned maximum) {
    unsigned value = 0;
    const char *const end = parameter.data() + parameter.size();
    const auto read = std::from_chars(parameter.data(), end, value);
    return read.ec == std::errc() && read.ptr == end && value >= minimum && value <= maximum;
}

/// True for a text that is not empty, not longer than `maximumLength` and has the given characters only.
bool isMadeOf(std::string_view parameter, std::string_view characters, std::size_t maximumLength) {
    return !parameter.empty() && parameter.size() <= maximumLength &&
           parameter.find_first_not_of(characters) == std::string_view::npos;
}

constexpr std::string_view digits = "0123456789";
constexpr std::string_view hostCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-:";
constexpr std::string_view nameCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_:@ /=,+*()";

bool isServer(Parameters given) {
    return isMadeOf(given[0], hostCharacters, 253) && given[0].front() != '-' &&
           (given.size() < 2 || isNumber(given[1], 1, 65535)) &&
           (given.size() < 3 || isOneOf(given[2], protocols));
}

bool isInterface(std::string_view parameter) {
    return parameter == "tun" || (parameter.starts_with("tun") && isMadeOf(parameter.substr(3), digits, 3));
}

bool isAddress(int family, const std::string &text) {
    std::array<unsigned char, sizeof(in6_addr)> address{};
    return inet_pton(family, text.c_str(), address.data()) == 1;
}

bool isIpv6Pair(Parameters given) {
    const auto slash = given[0].find('/');
    return slash != std::string::npos && isAddress(AF_INET6, given[0].substr(0, slash)) &&
           isNumber(std::string_view(given[0]).substr(slash + 1), 0, 124) && isAddress(AF_INET6, given[1]);
}

bool isList(std::string_view parameter, std::string_view choices) {
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = parameter.find(':');
        if (!isNameOf(parameter.substr(0, end), choices)) {
            return false;
        }
        parameter.remove_prefix(end == std::string_view::npos ? parameter.size() : end + 1);
    }
    return true;
}

bool valuesFit(const Rule &rule, Parameters given) {
    switch (rule.values) {
    case Values::None:
    case Values::Block:
    case Values::Connection:
    case Values::Ignored:
        return true;
    case Values::Numbers:
        return std::ranges::all_of(
            given, [&](const auto &parameter) { return isNumber(parameter, rule.minimum, rule.maximum); });
    case Values::Choices:
        return std::ranges::all_of(given,
                                   [&](const auto &parameter) { return isOneOf(parameter, rule.choices); });
    case Values::Names:
        return isNameOf(given[0], rule.choices);
    case Values::TlsVersion:
        return isOneOf(given[0], rule.choices) && (given.size() < 2 || given[1] == "or-highest");
    case Values::ServerUsage:
        return given[0] == "TLS Web Server Authentication" || given[0] == "1.3.6.1.5.5.7.3.1";
    case Values::ReplayWindow:
        return isNumber(given[0], 1, 65536) && (given.size() < 2 || isNumber(given[1], 1, 600));
    case Values::IgnoredNames:
        return std::ranges::all_of(given,
                                   [](const auto &parameter) { return isOneOf(parameter, ignoredNames); });
    case Values::IgnoredOption:
        return given[0] == "opt" && isOneOf(given[1], ignoredNames);
    case Values::List:
        return isList(given[0], rule.choices);
    case Values::Retry:
        return given[0] == "infinite" || isNumber(given[0], rule.minimum, rule.maximum);
    case Values::Server:
        return isServer(given);
    case Values::CommonName:
        return isMadeOf(given[0], nameCharacters, 200) && given[0].front() != '-' &&
               (given.size() < 2 || isOneOf(given[1], "name name-prefix subject"));
    case Values::Interface:
        return isInterface(given[0]);
    case Values::Ipv6Pair:
        return isIpv6Pair(given);
    case Values::NameServer:
        return given[0] == "DNS" && (isAddress(AF_INET, given[1]) || isAddress(AF_INET6, given[1]));
    }
    return false;
}

/// True for a parameter that OpenVPN reads as one word without quotes. Quotes where there were none could
/// make a line too long for OpenVPN's buffer.
bool isPlain(std::string_view parameter) {
    return !parameter.empty() && parameter.front() != '#' && parameter.front() != ';' &&
           parameter.find_first_of(" \t\"'") == std::string_view::npos;
}

const Rule *ruleOf(const Directive &directive) {
    const auto *rule = std::ranges::find(rules, directive.name(), &Rule::name);
    return rule == rules.end() ? nullptr : rule;
}

bool isIgnored(const Rule &rule) {
    return rule.values == Values::Ignored || rule.values == Values::IgnoredNames ||
           rule.values == Values::IgnoredOption;
}

bool isInlineBlock(const Rule &rule) {
    return rule.values == Values::Block || rule.values == Values::Connection;
}

Failure refused(const Directive &directive, const std::string &reason) {
    return refusal(directive.line, "the directive " + quotedForLog(directive.name()) + reason);
}

Result<> checkOne(const Directive &directive) {
    const Rule *rule = ruleOf(directive);
    if (rule == nullptr) {
        return refused(directive, " is not allowed");
    }
    if (directive.block.has_value() != isInlineBlock(*rule)) {
        return refused(directive,
                       std::string(directive.block ? " may not be" : " must be") + " an inline block");
    }
    const Parameters given = Parameters(directive.tokens).subspan(1);
    if (given.size() < rule->minimumCount || given.size() > rule->maximumCount || !valuesFit(*rule, given)) {
        return refused(directive, " has a parameter that is not allowed");
    }
    return {};
}

Result<> checkConnection(const Directive &connection) {
    const auto directives = parseBlock(connection);
    if (!directives) {
        return Failure{directives.error()};
    }
    for (const Directive &directive : directives.value()) {
        if (auto checked = checkOne(directive); !checked) {
            return checked;
        }
        if (!isOneOf(directive.name(), connectionNames)) {
            return refused(directive, " is not allowed in a connection block");
        }
    }
    return {};
}

} // namespace

Result<> check(const std::vector<Directive> &directives) {
    for (const Directive &directive : directives) {
        auto checked = checkOne(directive);
        if (checked && ruleOf(directive)->values == Values::Connection) {
            checked = checkConnection(directive);
        }
        if (!checked) {
            return checked;
        }
    }
    return {};
}

std::vector<std::string_view> allowedNames() {
    std::vector<std::string_view> all;
    for (const Rule &rule : rules) {
        all.push_back(rule.name);
    }
    return all;
}

std::string privateCopy(const std::vector<Directive> &directives) {
    std::string text;
    for (const Directive &directive : directives) {
        const Rule *rule = ruleOf(directive);
        if (rule != nullptr && isIgnored(*rule)) {
            continue;
        }
        if (directive.block) {
            // A connection block was parsed by check().
            const bool isConnection = rule != nullptr && rule->values == Values::Connection;
            const auto within =
                isConnection ? parseBlock(directive) : Result<std::vector<Directive>>(Failure{});
            text += '<' + directive.name() + ">\n" +
                    (within ? privateCopy(within.value()) : *directive.block) + "</" + directive.name() +
                    ">\n";
            continue;
        }
        text += directive.name();
        for (const std::string &parameter : Parameters(directive.tokens).subspan(1)) {
            text += isPlain(parameter) ? ' ' + parameter : " \"" + parameter + '"';
        }
        text += '\n';
    }
    return text;
}

} // namespace quorvane::guard
