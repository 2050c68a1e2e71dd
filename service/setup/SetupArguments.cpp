#include "SetupArguments.h"

#include "LentAddresses.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

namespace quorvane::service {

namespace {

constexpr std::size_t maximumHostLength = 253;

bool isHost(const std::string &name) {
    const auto allowed = [](char character) {
        return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
               (character >= '0' && character <= '9') || character == '-' || character == '.';
    };
    return !name.empty() && name.size() <= maximumHostLength &&
           std::all_of(name.begin(), name.end(), allowed) && name.front() != '-' && name.front() != '.';
}

Result<> readListen(const std::string &text, ServiceSettings &settings) {
    const auto colon = text.find(':');
    const auto address = Ipv4Address::parse(text.substr(0, colon));
    std::uint16_t port = 443;
    if (colon != std::string::npos) {
        const char *end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data() + colon + 1, end, port);
        if (error != std::errc() || rest != end || port == 0) {
            return Failure{"--listen: \"" + text + "\" has no usable port"};
        }
    }
    if (!address) {
        return Failure{"--listen: \"" + text + "\" is not an IPv4 address with or without a port"};
    }
    settings.listenAddress = address;
    settings.listenPort = port;
    return {};
}

Result<> readCountry(const SetupArguments &arguments, const Places &places, ServiceSettings &settings) {
    settings.country = arguments.countryName;
    if (!arguments.country) {
        return {};
    }
    std::string code = *arguments.country;
    for (char &letter : code) {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    if (code.size() != 2 ||
        !std::all_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'Z'; })) {
        return Failure{"--country: \"" + *arguments.country + "\" is not a code of two letters"};
    }
    settings.countryCode = code;
    if (!settings.country) {
        const auto list = FileStore::text(places.countries);
        settings.country = (list ? countryName(list.value(), code) : std::nullopt).value_or(code);
    }
    return {};
}

} // namespace

Result<ServiceSettings> readSettings(const SetupArguments &arguments, const MachineNetwork &machine,
                                     const Places &places) {
    ServiceSettings settings;
    if (arguments.listen) {
        if (auto read = readListen(*arguments.listen, settings); !read) {
            return Failure{read.error()};
        }
    }
    if (auto read = readCountry(arguments, places, settings); !read) {
        return Failure{read.error()};
    }
    if (arguments.addresses) {
        auto lent = lentAddresses(*arguments.addresses, machine);
        if (!lent) {
            return Failure{"--addresses: " + lent.error()};
        }
        settings.addresses = std::move(lent).value();
    }
    if (arguments.dns) {
        auto resolvers = lentAddresses(*arguments.dns, {});
        if (!resolvers) {
            return Failure{"--dns: " + resolvers.error()};
        }
        settings.dns = std::move(resolvers).value();
    }
    settings.city = arguments.city;
    settings.locationCode = arguments.locationCode;
    if (settings.city && !settings.locationCode) {
        settings.locationCode = defaultLocationCode(*settings.city, settings.countryCode.value_or("XX"));
    }
    settings.givenCertificate = arguments.tlsCertificate.has_value();
    return settings;
}

Result<SetupRecord> readRecord(const SetupArguments &arguments, const std::optional<SetupRecord> &earlier) {
    SetupRecord record = earlier.value_or(SetupRecord());
    if (arguments.name) {
        record.name = *arguments.name;
    }
    if (arguments.tlsCertificate) {
        record.tlsCertificate = std::filesystem::absolute(*arguments.tlsCertificate);
        record.tlsKey = std::filesystem::absolute(*arguments.tlsKey);
    }
    if (record.name.empty()) {
        return Failure{"--name is needed: the host name or address by which clients reach the service"};
    }
    if (!isHost(record.name)) {
        return Failure{"--name: \"" + record.name + "\" is neither a host name nor an IPv4 address"};
    }
    return record;
}

} // namespace quorvane::service
