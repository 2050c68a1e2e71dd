#include "Grant.h"

#include <charconv>

namespace quorvane::service {

namespace {

constexpr const char *userName = "CN";
constexpr const char *addressName = "O";
constexpr const char *protocolAttribute = "OU";
constexpr const char *issuedName = "serialNumber";
constexpr const char *limitName = "dnQualifier";

std::string variableOf(const char *name) {
    return std::string("X509_0_") + name;
}

std::string textOf(Grant::TimePoint time) {
    return std::to_string(time.time_since_epoch().count());
}

std::optional<Grant::TimePoint> timeOf(std::string_view text) {
    std::int64_t microseconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), microseconds);
    if (error != std::errc() || end != text.data() + text.size() || microseconds < 0) {
        return std::nullopt;
    }
    return Grant::TimePoint(std::chrono::microseconds(microseconds));
}

std::optional<Protocol> protocolOf(std::string_view name) {
    for (const Protocol protocol : {Protocol::Udp, Protocol::Tcp}) {
        if (protocolName(protocol) == name) {
            return protocol;
        }
    }
    return std::nullopt;
}

} // namespace

std::vector<SubjectAttribute> subjectOf(const Grant &grant) {
    return {{userName, grant.user},
            {addressName, grant.address.text()},
            {protocolAttribute, protocolName(grant.protocol)},
            {issuedName, textOf(grant.issued)},
            {limitName, textOf(grant.limit)}};
}

const std::vector<std::string_view> &grantVariables() {
    static const std::vector<std::string> names = {variableOf(userName), variableOf(addressName),
                                                   variableOf(protocolAttribute), variableOf(issuedName),
                                                   variableOf(limitName)};
    static const std::vector<std::string_view> views(names.begin(), names.end());
    return views;
}

std::optional<Grant> grantOf(const std::function<std::string(std::string_view)> &variables) {
    const auto value = [&variables](const char *name) {
        return variables(variableOf(name));
    };
    const std::string user = value(userName);
    const auto address = Ipv4Address::parse(value(addressName));
    const auto protocol = protocolOf(value(protocolAttribute));
    const auto issued = timeOf(value(issuedName));
    const auto limit = timeOf(value(limitName));
    if (user.empty() || !address || !protocol || !issued || !limit) {
        return std::nullopt;
    }
    return Grant{user, *address, *protocol, *issued, *limit};
}

} // namespace quorvane::service
