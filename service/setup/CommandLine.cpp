#include "CommandLine.h"

#include <boost/program_options.hpp>

#include <map>
#include <sstream>

namespace quorvane::service {

namespace {

namespace options = boost::program_options;

using Arguments = std::vector<std::string>;

const std::map<std::string, Action> actions = {{"setup", Action::Setup},    {"renew", Action::Renew},
                                               {"routes", Action::Routes},  {"status", Action::Status},
                                               {"drain", Action::Drain},    {"revoke", Action::Revoke},
                                               {"release", Action::Release}};

options::value_semantic *textOf(const char *form, std::optional<std::string> &target) {
    return options::value<std::string>()->value_name(form)->notifier(
        [&target](const std::string &text) { target = text; });
}

void setRole(CommandLine &line, const std::string &name) {
    const auto role = roleNamed(name);
    if (!role) {
        throw options::error("there is no role \"" + name + '"');
    }
    line.role = *role;
}

options::options_description runOptions(CommandLine &line) {
    options::options_description described("Running the service");
    described.add_options()("config", options::value(&line.config)->value_name("FILE")->required(),
                            "the JSON configuration")(
        "role", options::value<std::string>()->value_name("ROLE")->notifier([&line](const std::string &name) {
            setRole(line, name);
        }),
        "\"api\" answers requests, \"gateway\" lends addresses, \"all\" does both")(
        "check", "read and check the configuration, then exit");
    return described;
}

options::options_description setupOptions(SetupArguments &setup) {
    options::options_description described(
        "setup: make everything that the service needs, start and check it");
    auto add = described.add_options();
    add("name", textOf("HOST", setup.name), "host name or IPv4 address by which clients reach the service");
    add("addresses", textOf("LIST", setup.addresses),
        "lent addresses: networks and addresses, 203.0.113.0/28,198.51.100.7");
    add("listen", textOf("ADDRESS[:PORT]", setup.listen),
        "where clients reach the service; default: the address of the default route's interface, port 443");
    add("country", textOf("CODE", setup.country), "country of the lent addresses, two letters");
    add("country-name", textOf("NAME", setup.countryName), "its name, when the package iso-codes is missing");
    add("city", textOf("NAME", setup.city), "city of the lent addresses");
    add("location-code", textOf("CODE", setup.locationCode), "default: three letters of the city");
    add("dns", textOf("LIST", setup.dns), "resolvers for clients; default: 8.8.8.8,8.8.4.4");
    add("tls-certificate", textOf("FILE", setup.tlsCertificate),
        "certificate with its chain that another program renews, with --tls-key");
    add("tls-key", textOf("FILE", setup.tlsKey), "its private key");
    add("check", "only check the running service by a session of its own");
    return described;
}

options::options_description statusOptions(CommandLine &line) {
    options::options_description described(
        "status: exit status 0 when ready, 3 when not, 4 when not running");
    described.add_options()("config", options::value(&line.config)->value_name("FILE"),
                            "the running service's configuration")("json", "as JSON");
    return described;
}

options::options_description drainOptions(CommandLine &line) {
    options::options_description described("drain: no new sessions");
    described.add_options()("config", options::value(&line.config)->value_name("FILE"),
                            "the running service's configuration")("off", "new sessions again");
    return described;
}

options::options_description revokeOptions(CommandLine &line) {
    options::options_description described("revoke USER|ADDRESS: end sessions");
    described.add_options()("config", options::value(&line.config)->value_name("FILE"),
                            "the running service's configuration");
    return described;
}

options::options_description releaseOptions(CommandLine &line) {
    options::options_description described("release NAME: the addresses of a gateway that is gone for good");
    described.add_options()("config", options::value(&line.config)->value_name("FILE"),
                            "the configuration of any running node");
    return described;
}

options::variables_map parse(const Arguments &arguments, const options::options_description &described,
                             const options::positional_options_description &positions = {}) {
    namespace style = options::command_line_style;
    const int exact = style::allow_long | style::long_allow_adjacent | style::long_allow_next;
    options::variables_map values;
    options::store(
        options::command_line_parser(arguments).options(described).positional(positions).style(exact).run(),
        values);
    options::notify(values);
    return values;
}

void parseRun(CommandLine &line, const Arguments &arguments) {
    const auto values = parse(arguments, runOptions(line));
    line.action = values.count("check") > 0 ? Action::CheckConfiguration : Action::Run;
}

/// Options and one argument that is none.
void parseWithName(options::options_description described, std::string &name, const Arguments &arguments) {
    described.add_options()("of", options::value(&name)->required());
    options::positional_options_description positions;
    positions.add("of", 1);
    parse(arguments, described, positions);
}

void parseCommand(CommandLine &line, const Arguments &arguments) {
    switch (line.action) {
    case Action::Setup:
        if (parse(arguments, setupOptions(line.setup)).count("check") > 0) {
            line.action = Action::CheckService;
        }
        break;
    case Action::Status:
        line.json = parse(arguments, statusOptions(line)).count("json") > 0;
        break;
    case Action::Drain:
        line.off = parse(arguments, drainOptions(line)).count("off") > 0;
        break;
    case Action::Revoke:
        parseWithName(revokeOptions(line), line.revokedOf, arguments);
        break;
    case Action::Release:
        parseWithName(releaseOptions(line), line.released, arguments);
        break;
    case Action::Help:
    case Action::Run:
    case Action::CheckConfiguration:
    case Action::CheckService:
    case Action::Renew:
    case Action::Routes:
        parse(arguments, {});
        break;
    }
}

} // namespace

Result<CommandLine> parseCommandLine(const Arguments &arguments) {
    CommandLine line;
    try {
        if (!arguments.empty() && arguments.front() == "--help") {
            line.action = Action::Help;
        } else if (arguments.empty() || arguments.front().rfind('-', 0) == 0) {
            parseRun(line, arguments);
        } else if (const auto found = actions.find(arguments.front()); found != actions.end()) {
            line.action = found->second;
            parseCommand(line, Arguments(arguments.begin() + 1, arguments.end()));
        } else {
            return Failure{"there is no command \"" + arguments.front() + '"'};
        }
    } catch (const options::error &error) {
        return Failure{error.what()};
    }
    if (line.setup.tlsCertificate.has_value() != line.setup.tlsKey.has_value()) {
        return Failure{"--tls-certificate and --tls-key belong together"};
    }
    return line;
}

std::string usageText() {
    CommandLine line;
    std::ostringstream text;
    text << "usage: quorvane-service --config FILE [--role ROLE] [--check]\n"
            "       quorvane-service setup [OPTION...]\n"
            "       quorvane-service renew\n"
            "       quorvane-service routes\n"
            "       quorvane-service status [--json] [--config FILE]\n"
            "       quorvane-service drain [--off] [--config FILE]\n"
            "       quorvane-service revoke USER|ADDRESS [--config FILE]\n"
            "       quorvane-service release NAME [--config FILE]\n\n"
         << runOptions(line) << '\n'
         << setupOptions(line.setup) << '\n'
         << "renew: new certificates for those near their end; the package's timer does it every day\n"
            "routes: make the lent addresses the machine's own; the package's unit does it at each start\n\n"
         << statusOptions(line) << '\n'
         << drainOptions(line) << '\n'
         << revokeOptions(line) << '\n'
         << releaseOptions(line);
    return text.str();
}

} // namespace quorvane::service
