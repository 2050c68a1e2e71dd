// The real OpenVPN must read a configuration that the guard accepts in the same way as the guard. OpenVPN is
// started with the original and with the guard's copy, prints all its settings, and ends before it opens
// anything, because its management socket cannot be created. Both prints must be equal, and contain nothing
// that the guard did not read.

#include "Fuzz.h"
#include "guard/AllowList.h"
#include "guard/Files.h"

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

constexpr int descriptorNumber =
    200; ///< the same descriptor number for both, so that both prints name the same path

constexpr std::string_view base =
    "client\ndev tun\nremote 192.0.2.1 1194\nauth-user-pass\n"
    "<ca>\n-----BEGIN CERTIFICATE-----\nTUlJQg==\n-----END CERTIFICATE-----\n</ca>\n";

/// OpenVPN under another name, so that programs that look for processes called openvpn do not find these.
const char *renamedOpenVpn() {
    static const std::string link = [] {
        const char *folder = getenv("TMPDIR");
        std::string made = std::string(folder != nullptr ? folder : "/tmp") + "/reads-as-guard-XXXXXX";
        must(mkdtemp(made.data()) != nullptr, "a folder can be created");
        made += "/vpnread";
        must(symlink("/usr/sbin/openvpn", made.c_str()) == 0, "a link can be created");
        return made;
    }();
    return link.c_str();
}

struct Print {
    int status = 0;
    std::string settings;
};

Print printOf(std::string_view configuration) {
    const FileDescriptor copy = sealedCopy("configuration", configuration);
    const FileDescriptor credentials = sealedCopy("credentials", "user\npassword\n");
    std::array<int, 2> pipe{};
    must(copy.isOpen() && credentials.isOpen() && pipe2(pipe.data(), O_CLOEXEC) == 0,
         "descriptors can be created");
    FileDescriptor output(pipe[0]);
    FileDescriptor written(pipe[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, written.get(), 1);
    posix_spawn_file_actions_adddup2(&actions, written.get(), 2);
    posix_spawn_file_actions_adddup2(&actions, copy.get(), descriptorNumber);
    posix_spawn_file_actions_adddup2(&actions, credentials.get(), descriptorNumber + 1);
    std::array<const char *, 13> arguments{
        "openvpn", "--config",         "/proc/self/fd/200", "--verb",
        "4",       "--auth-user-pass", "/proc/self/fd/201", "--script-security",
        "0",       "--management",     "/nonexistent/none", "unix",
        nullptr};
    std::array<char *, 1> environment{nullptr};
    pid_t pid = 0;
    must(posix_spawn(&pid, renamedOpenVpn(), &actions, nullptr, const_cast<char **>(arguments.data()),
                     environment.data()) == 0,
         "OpenVPN can be started");
    posix_spawn_file_actions_destroy(&actions);
    written.reset();
    Print print;
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; (count = read(output.get(), piece.data(), piece.size())) > 0;) {
        print.settings.append(piece.data(), static_cast<std::size_t>(count));
    }
    waitpid(pid, &print.status, 0);
    // The time of each line, and the place of an error in the configuration.
    static const std::regex varying("(^|\n)[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8} (us=[0-9]+ )?|fd/200:[0-9]+");
    print.settings = std::regex_replace(print.settings, varying, "$1");
    return print;
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
             "no setting runs a program or names a file");
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

void checkServers(const std::string &settings, const std::vector<Directive> &directives) {
    std::set<std::string> hosts;
    for (const Directive &directive : directives) {
        if (directive.name() == "remote") {
            hosts.insert(directive.words[1]);
        }
    }
    if (settings.find("Current Parameter Settings:") != std::string::npos) {
        must(valuesOf(settings, "remote") == hosts,
             "OpenVPN would use exactly the servers that the guard read");
    }
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const std::string text = std::string(base).append(bytes);
    const auto parsed = parse(text);
    const auto *directives = std::get_if<std::vector<Directive>>(&parsed);
    if (directives == nullptr || check(*directives)) {
        return;
    }
    const Print original = printOf(text);
    const Print copied = printOf(privateCopy(*directives));
    if (original.settings != copied.settings) {
        std::fprintf(stderr, "--- the original\n%s\n--- the copy\n%s\n", original.settings.c_str(),
                     copied.settings.c_str());
    }
    must(original.status == copied.status,
         "OpenVPN ends in the same way with the original and with the copy");
    must(original.settings == copied.settings, "OpenVPN reads the original as the guard did");
    must(original.settings.find("Options error: Unrecognized option") == std::string::npos,
         "OpenVPN knows every accepted directive");
    checkNothingElseIsSet(original.settings);
    checkServers(original.settings, *directives);
}
