#include "GrantJournal.h"

#include "PrivateFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane::service {

namespace {

using nlohmann::json;
using std::chrono::microseconds;

constexpr std::size_t maximumLength = 512 << 20;
constexpr std::size_t fieldCount = 6;

std::int64_t numberOf(std::chrono::system_clock::time_point time) {
    return std::chrono::floor<microseconds>(time.time_since_epoch()).count();
}

/// A time since 1970 that the clock can express.
bool isTime(const json &number) {
    constexpr std::chrono::nanoseconds latest(std::numeric_limits<std::int64_t>::max());
    constexpr auto maximum = static_cast<std::uint64_t>(std::chrono::floor<microseconds>(latest).count());
    return number.is_number_unsigned() && number.get<std::uint64_t>() <= maximum;
}

Grant::TimePoint timeIn(const json &number) {
    return Grant::TimePoint(microseconds(number.get<std::int64_t>()));
}

} // namespace

std::string journalLine(const UsedGrant &grant) {
    const json tunnel = grant.tunnel ? json(grant.tunnel->text()) : json();
    const json fields = {grant.user, numberOf(grant.issued), grant.address.text(), grant.source,
                         tunnel,     numberOf(grant.userEnd)};
    return fields.dump(-1, ' ', false, json::error_handler_t::replace) + '\n';
}

std::optional<UsedGrant> usedGrantIn(std::string_view line) {
    const json fields = json::parse(line, nullptr, false);
    if (!fields.is_array() || fields.size() != fieldCount || !fields[0].is_string() || !isTime(fields[1]) ||
        !fields[2].is_string() || !fields[3].is_string() || !isTime(fields[5])) {
        return std::nullopt;
    }
    const auto address = Ipv4Address::parse(fields[2].get_ref<const std::string &>());
    std::optional<Ipv4Address> tunnel;
    if (fields[4].is_string()) {
        tunnel = Ipv4Address::parse(fields[4].get_ref<const std::string &>());
    }
    if (!address || (!tunnel && !fields[4].is_null())) {
        return std::nullopt;
    }
    return UsedGrant{fields[0].get<std::string>(),
                     timeIn(fields[1]),
                     *address,
                     fields[3].get<std::string>(),
                     tunnel,
                     timeIn(fields[5])};
}

Result<std::vector<UsedGrant>> GrantJournal::open(const std::string &path) {
    m_path = path;
    std::vector<UsedGrant> grants;
    if (access(path.c_str(), F_OK) == 0 || errno != ENOENT) {
        const auto text = privateFileText(path, maximumLength);
        if (!text) {
            return Failure{text.error()};
        }
        std::string_view rest = text.value();
        while (!rest.empty()) {
            const auto end = std::min(rest.find('\n'), rest.size());
            if (auto grant = usedGrantIn(rest.substr(0, end))) {
                grants.push_back(std::move(*grant));
            }
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
    }
    // A line that was written in part must not become the beginning of the next one.
    const auto written = rewrite(grants);
    return written ? Result(std::move(grants)) : Failure{written.error()};
}

Result<> GrantJournal::rewrite(const std::vector<UsedGrant> &grants) {
    std::string text;
    for (const UsedGrant &grant : grants) {
        text += journalLine(grant);
    }
    if (auto written = writePrivateFile(m_path, text); !written) {
        return written;
    }
    FileDescriptor file(::open(m_path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOFOLLOW));
    if (!file.isOpen()) {
        return Failure{"cannot write " + m_path + ": " + std::strerror(errno)};
    }
    m_file = std::move(file);
    m_lines = grants.size();
    return {};
}

void GrantJournal::append(const UsedGrant &grant) {
    const std::string line = journalLine(grant);

    struct stat before {};

    const bool isKnown = fstat(m_file.get(), &before) == 0;
    const ssize_t written = write(m_file.get(), line.data(), line.size());
    if (written == static_cast<ssize_t>(line.size())) {
        ++m_lines;
        return;
    }
    reportError(std::strerror(written < 0 ? errno : ENOSPC));
    // Of a full disk: a part of a line would make the next line useless, too.
    if (written > 0 && isKnown && ftruncate(m_file.get(), before.st_size) != 0) {
        reportError(std::strerror(errno));
    }
}

void GrantJournal::reportError(const std::string &reason) {
    if (m_reports.take(1, std::chrono::steady_clock::now())) {
        std::fprintf(stderr,
                     "quorvane-service: a used grant is unknown after a restart: cannot write %s: %s\n",
                     m_path.c_str(), reason.c_str());
    }
}

} // namespace quorvane::service
