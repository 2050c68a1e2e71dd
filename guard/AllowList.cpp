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
    Numbers, ///< each a decimal number within the bounds
    Choices, ///< each one of the listed words
    List,    ///< one word, listed words joined by colons
    Retry,   ///< a number, or "infinite"
    Server,  ///< host, port, protocol
    CommonName,
    Interface, ///< "tun" and up to three digits
    Ipv6Pair,  ///< address/bits and address
    NameServer,
    Block, ///< an inline block: the files of other configurations would be read as root
};

struct Rule {
    std::string_view name;
    Values values = Values::None;
    std::size_t least = 0;
    std::size_t most = 0;
    std::string_view choices = {};
    unsigned low = 0;
    unsigned high = 0;
};

constexpr std::string_view Protocols = "udp udp4 udp6 tcp tcp4 tcp6 tcp-client tcp4-client tcp6-client";
constexpr std::string_view Ciphers =
    "AES-256-GCM AES-192-GCM AES-128-GCM CHACHA20-POLY1305 AES-256-CBC AES-192-CBC AES-128-CBC";
constexpr unsigned Day = 86400;

constexpr Rule flag(std::string_view name) {
    return {name};
}

constexpr Rule number(std::string_view name, unsigned low, unsigned high, std::size_t least = 1,
                      std::size_t most = 1) {
    return {name, Values::Numbers, least, most, {}, low, high};
}

constexpr Rule choice(std::string_view name, std::string_view choices, std::size_t most = 1) {
    return {name, Values::Choices, 1, most, choices};
}

constexpr Rule block(std::string_view name) {
    return {name, Values::Block};
}

constexpr std::array Rules{
    // What it is
    flag("client"),
    flag("tls-client"),
    flag("pull"),
    Rule{"dev", Values::Interface, 1, 1},
    choice("dev-type", "tun"),
    choice("topology", "subnet net30 p2p"),
    // Where the server is, and how long it is tried
    Rule{"remote", Values::Server, 1, 3},
    flag("remote-random"),
    choice("proto", Protocols),
    number("port", 1, 65535),
    number("rport", 1, 65535),
    flag("nobind"),
    flag("float"),
    Rule{"resolv-retry", Values::Retry, 1, 1, {}, 0, Day},
    number("connect-retry", 1, Day, 1, 2),
    number("connect-retry-max", 1, 1000),
    number("connect-timeout", 1, Day),
    number("server-poll-timeout", 1, Day),
    number("hand-window", 1, Day),
    number("tran-window", 1, Day),
    number("tls-timeout", 1, Day),
    number("ping", 1, Day),
    number("ping-exit", 1, Day),
    number("ping-restart", 0, Day),
    number("keepalive", 1, Day, 2, 2),
    number("explicit-exit-notify", 0, 10, 0, 1),
    // Who is there, and what protects the connection. Nothing that switches a protection off.
    flag("auth-user-pass"),
    flag("auth-nocache"),
    choice("auth-retry", "none nointeract"),
    choice("remote-cert-tls", "server"),
    Rule{"verify-x509-name", Values::CommonName, 1, 2},
    block("ca"),
    block("cert"),
    block("key"),
    block("extra-certs"),
    block("tls-auth"),
    block("tls-crypt"),
    block("tls-crypt-v2"),
    choice("key-direction", "0 1"),
    choice("cipher", Ciphers),
    Rule{"data-ciphers", Values::List, 1, 1, Ciphers},
    choice("data-ciphers-fallback", Ciphers),
    choice("auth", "SHA1 SHA224 SHA256 SHA384 SHA512"),
    choice("tls-version-min", "1.2 1.3"),
    choice("tls-version-max", "1.2 1.3"),
    number("reneg-sec", 0, 7 * Day, 1, 2),
    // Compression gives away what was sent; these switch it off.
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
};

bool isOneOf(std::string_view word, std::string_view choices) {
    while (!choices.empty()) {
        const auto end = choices.find(' ');
        if (word == choices.substr(0, end)) {
            return true;
        }
        choices.remove_prefix(end == std::string_view::npos ? choices.size() : end + 1);
    }
    return false;
}

bool isNumber(std::string_view word, unsigned low, unsigned high) {
    unsigned value = 0;
    const char *const end = word.data() + word.size();
    const auto read = std::from_chars(word.data(), end, value);
    return read.ec == std::errc() && read.ptr == end && value >= low && value <= high;
}

/// True for a text of one of these lengths, made of the given characters only.
bool isMadeOf(std::string_view word, std::string_view characters, std::size_t most) {
    return !word.empty() && word.size() <= most &&
           word.find_first_not_of(characters) == std::string_view::npos;
}

constexpr std::string_view Digits = "0123456789";
constexpr std::string_view HostCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-:";
constexpr std::string_view NameCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-_:@ /=,+*()";

bool isServer(Parameters given) {
    return isMadeOf(given[0], HostCharacters, 253) && given[0].front() != '-' &&
           (given.size() < 2 || isNumber(given[1], 1, 65535)) &&
           (given.size() < 3 || isOneOf(given[2], Protocols));
}

bool isInterface(std::string_view word) {
    return word == "tun" || (word.starts_with("tun") && isMadeOf(word.substr(3), Digits, 3));
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

bool isList(std::string_view word, std::string_view choices) {
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = word.find(':');
        if (!isOneOf(word.substr(0, end), choices)) {
            return false;
        }
        word.remove_prefix(end == std::string_view::npos ? word.size() : end + 1);
    }
    return true;
}

bool valuesFit(const Rule &rule, Parameters given) {
    switch (rule.values) {
    case Values::None:
    case Values::Block:
        return true;
    case Values::Numbers:
        return std::ranges::all_of(given,
                                   [&](const auto &word) { return isNumber(word, rule.low, rule.high); });
    case Values::Choices:
        return std::ranges::all_of(given, [&](const auto &word) { return isOneOf(word, rule.choices); });
    case Values::List:
        return isList(given[0], rule.choices);
    case Values::Retry:
        return given[0] == "infinite" || isNumber(given[0], rule.low, rule.high);
    case Values::Server:
        return isServer(given);
    case Values::CommonName:
        return isMadeOf(given[0], NameCharacters, 200) && given[0].front() != '-' &&
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

bool isPlain(std::string_view word) {
    return !word.empty() && word.find_first_not_of(HostCharacters) == std::string_view::npos;
}

} // namespace

std::optional<Refusal> check(const std::vector<Directive> &directives) {
    for (const Directive &directive : directives) {
        const auto rule = std::ranges::find(Rules, directive.name(), &Rule::name);
        if (rule == Rules.end()) {
            return Refusal{directive.line, "the directive " + shown(directive.name()) + " is not allowed"};
        }
        if (directive.block.has_value() != (rule->values == Values::Block)) {
            return Refusal{directive.line, "the directive " + shown(directive.name()) +
                                               (directive.block ? " may not be" : " must be") +
                                               " an inline block"};
        }
        const Parameters given = Parameters(directive.words).subspan(1);
        if (given.size() < rule->least || given.size() > rule->most || !valuesFit(*rule, given)) {
            return Refusal{directive.line, "the directive " + shown(directive.name()) +
                                               " has a parameter that is not allowed"};
        }
    }
    return std::nullopt;
}

std::string privateCopy(const std::vector<Directive> &directives) {
    std::string text;
    for (const Directive &directive : directives) {
        if (directive.block) {
            text += '<' + directive.name() + ">\n" + *directive.block + "</" + directive.name() + ">\n";
            continue;
        }
        text += directive.name();
        for (const std::string &word : Parameters(directive.words).subspan(1)) {
            text += isPlain(word) ? ' ' + word : " \"" + word + '"';
        }
        text += '\n';
    }
    return text;
}

} // namespace quorvane::guard
