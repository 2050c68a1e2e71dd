// The real OpenVPN must read an allowed configuration as the guard did. OpenVPN is started with the original
// and with the guard's copy. It prints all its settings and ends at a management socket that cannot be made,
// before it opens anything. Both outputs must be the same and contain no setting that the guard did not read.

#include "Fuzz.h"
#include "guard/AllowList.h"
#include "guard/Files.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <regex>
#include <set>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quorvane::guard;
using quorvane::FileDescriptor;

namespace {

constexpr int inheritedNumber = 200; ///< of both descriptors, so that both outputs contain the same path

constexpr std::string_view base =
    "client\ndev tun\nremote 192.0.2.1 1194\nauth-user-pass\n"
    "<ca>\n-----BEGIN CERTIFICATE-----\nTUlJQg==\n-----END CERTIFICATE-----\n</ca>\n";

/// OpenVPN under a name of its own, so that a search for processes named openvpn does not find these.
const char *renamedOpenVpn() {
    static const std::string link = [] {
        const char *folder = getenv("TMPDIR");
        std::string made = std::string(folder != nullptr ? folder : "/tmp") + "/reads-as-guard-XXXXXX";
        must(mkdtemp(made.data()) != nullptr, "a folder can be made");
        made += "/vpnread";
        must(symlink("/usr/sbin/openvpn", made.c_str()) == 0, "a link can be made");
        return made;
    }();
    return link.c_str();
}

struct Output {
    int status = 0;
    std::string settings;
};

Output outputFor(std::string_view configuration) {
    const auto copy = sealedCopy("configuration", configuration);
    const auto credentials = sealedCopy("credentials", "user\npassword\n");
    std::array<int, 2> pipe{};
    must(copy.ok() && credentials.ok() && pipe2(pipe.data(), O_CLOEXEC) == 0, "descriptors can be made");
    FileDescriptor output(pipe[0]);
    FileDescriptor childOutput(pipe[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, childOutput.get(), 1);
    posix_spawn_file_actions_adddup2(&actions, childOutput.get(), 2);
    posix_spawn_file_actions_adddup2(&actions, copy.value().get(), inheritedNumber);
    posix_spawn_file_actions_adddup2(&actions, credentials.value().get(), inheritedNumber + 1);
    // A configuration may shorten the log; all settings are needed here.
    std::array<const char *, 15> arguments{"openvpn",
                                           "--config",
                                           "/proc/self/fd/200",
                                           "--verb",
                                           "4",
                                           "--auth-user-pass",
                                           "/proc/self/fd/201",
                                           "--script-security",
                                           "0",
                                           "--management",
                                           "/nonexistent/none",
                                           "unix",
                                           "--mute",
                                           "0",
                                           nullptr};
    std::array<char *, 1> environment{nullptr};
    pid_t pid = 0;
    must(posix_spawn(&pid, renamedOpenVpn(), &actions, nullptr, const_cast<char **>(arguments.data()),
                     environment.data()) == 0,
         "OpenVPN can be started");
    posix_spawn_file_actions_destroy(&actions);
    childOutput.reset();
    Output result;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(output.get(), buffer.data(), buffer.size())) > 0;) {
        result.settings.append(buffer.data(), static_cast<std::size_t>(count));
    }
    waitpid(pid, &result.status, 0);
    // The time of each line, and where in the configuration an error was found.
    static const std::regex varying("(^|\n)[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8} (us=[0-9]+ )?|fd/200:[0-9]+");
    result.settings = std::regex_replace(result.settings, varying, "$1");
    return result;
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

} // namespace

void fuzzOne(std::string_view bytes) {
    const std::string text = std::string(base).append(bytes);
    const auto parsed = parse(text);
    if (!parsed || !check(parsed.value())) {
        return;
    }
    if (std::any_of(parsed.value().begin(), parsed.value().end(), isLeftOutOfCopy)) {
        checkServers(outputFor(privateCopy(parsed.value())).settings, parsed.value());
        return;
    }
    const Output original = outputFor(text);
    const Output copied = outputFor(privateCopy(parsed.value()));
    if (original.settings != copied.settings) {
        std::fprintf(stderr, "--- the original\n%s\n--- the copy\n%s\n", original.settings.c_str(),
                     copied.settings.c_str());
    }
    must(original.status == copied.status, "OpenVPN ends with the same status for the original and the copy");
    must(original.settings == copied.settings, "OpenVPN reads the original as the guard did");
    must(original.settings.find("Options error: Unrecognized option") == std::string::npos,
         "OpenVPN knows every allowed directive");
    checkNothingElseIsSet(original.settings);
    checkServers(original.settings, parsed.value());
}
