#include "RoleAnswers.h"

#include <algorithm>

namespace quorvane::service {

namespace {

using nlohmann::json;

std::int64_t numberIn(const json &value) {
    return value.is_number_integer() ? value.get<std::int64_t>() : 0;
}

void addCounts(json &sum, const json &counts) {
    for (const auto &[name, count] : counts.items()) {
        sum[name] = numberIn(sum[name]) + numberIn(count);
    }
}

/// Adds what another process reports. Of everything else, such as what it knows of other machines, one
/// account is enough.
void addField(json &field, const std::string &key, const json &value) {
    if (field.is_null()) {
        field = value;
    } else if (key == "ready") {
        field = field == true && value == true;
    } else if (key == "draining" || key == "confined") {
        field = field == true || value == true;
    } else if (key == "credentials") {
        field = numberIn(field) + numberIn(value);
    } else if (key == "revocations") {
        field = std::max(numberIn(field), numberIn(value));
    } else if ((key == "lends" || key == "refused") && field.is_object() && value.is_object()) {
        addCounts(field, value);
    } else if ((key == "servers" || key == "certificates") && field.is_object() && value.is_object()) {
        field.update(value);
    }
}

} // namespace

json mergedStatus(const std::map<std::string, json> &statuses, const std::vector<std::string> &missing) {
    json sum = json::object();
    for (const auto &[role, status] : statuses) {
        for (const auto &[key, value] : status.items()) {
            addField(sum[key], key, value);
        }
    }
    if (!missing.empty()) {
        sum["ready"] = false;
        sum["not_running"] = missing;
    }
    return sum;
}

} // namespace quorvane::service
