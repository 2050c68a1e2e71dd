#include "RouteRecord.h"

#include "Files.h"
#include "RouteMessages.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

namespace quorvane::guard {

namespace {

constexpr std::string_view version = "quorvane-routes 2";
/// A hundred thousand routes have some 8 MiB.
constexpr off_t maximumRecordSize = 256 * 1024 * 1024;

enum class Kind { Route = 'r', Address = 'a', Device = 'd', Server = 's' };

/// Which start of the computer and which network namespace the record belongs to.
std::string placeOfRecord() {
    const FileDescriptor file(open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC));
    const auto start = file.isOpen() ? readAll(file, 64) : Result<std::string>(Failure{});

    struct stat state {};

    if (!start || stat("/proc/self/ns/net", &state) != 0) {
        return "unknown";
    }
    return start.value() + std::to_string(state.st_ino);
}

/// The check sum of the entries (64-bit FNV-1a). A record that was cut off between two entries, or has a
/// damaged byte, would otherwise be one of a computer that had other routes before.
std::string checkSumOf(std::string_view entries) {
    constexpr std::uint64_t start = 0xcbf29ce484222325;
    constexpr std::uint64_t factor = 0x100000001b3;
    std::uint64_t sum = start;
    for (const char character : entries) {
        sum = (sum ^ static_cast<unsigned char>(character)) * factor;
    }
    return std::to_string(sum);
}

class Writer {
public:
    explicit Writer(std::string &text) : m_text(text) {}

    /// A field is its length, a colon and its bytes.
    void field(std::string_view bytes) {
        m_text.append(std::to_string(bytes.size())).append(":").append(bytes);
    }

    void number(std::uint64_t value) { field(std::to_string(value)); }

    void kind(Kind kind) { field(std::string(1, static_cast<char>(kind))); }

    void network(const Network &network) {
        number(static_cast<std::uint64_t>(network.family));
        number(network.length);
        field(network.address);
    }

private:
    std::string &m_text;
};

/// Reads what Writer has written; after the first error everything is empty.
class Reader {
public:
    explicit Reader(std::string_view text) : m_rest(text) {}

    [[nodiscard]] bool atEnd() const { return m_rest.empty(); }

    [[nodiscard]] bool isWhole() const { return m_isWhole; }

    [[nodiscard]] std::string_view rest() const { return m_rest; }

    std::string field() {
        std::size_t size = 0;
        const char *const end = m_rest.data() + m_rest.size();
        const auto read = std::from_chars(m_rest.data(), end, size);
        if (read.ec != std::errc() || read.ptr == end || *read.ptr != ':' ||
            static_cast<std::size_t>(end - read.ptr) <= size) {
            m_isWhole = false;
            m_rest = {};
            return {};
        }
        std::string bytes(read.ptr + 1, size);
        m_rest = m_rest.substr(static_cast<std::size_t>(read.ptr - m_rest.data()) + 1 + size);
        return bytes;
    }

    unsigned number() {
        const std::string digits = field();
        unsigned value = 0;
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        m_isWhole = m_isWhole && read.ec == std::errc() && read.ptr == digits.data() + digits.size();
        return value;
    }

    Network network() {
        Network network;
        network.family = static_cast<int>(number());
        network.length = number();
        network.address = field();
        const std::size_t size = network.family == AF_INET ? 4 : 16;
        m_isWhole = m_isWhole && (network.family == AF_INET || network.family == AF_INET6) &&
                    network.address.size() == size && network.length <= size * 8;
        return network;
    }

private:
    std::string_view m_rest;
    bool m_isWhole = true;
};

std::string entriesOf(const RouteRecord &record) {
    std::string text;
    Writer writer(text);
    for (const auto &[index, name] : record.before.devices) {
        writer.kind(Kind::Device);
        writer.number(index);
        writer.field(name);
    }
    for (const DeviceAddress &address : record.before.addresses) {
        writer.kind(Kind::Address);
        writer.number(address.device);
        writer.network(address.address);
    }
    for (const Network &server : record.servers) {
        writer.kind(Kind::Server);
        writer.network(server);
    }
    for (const Route &route : record.before.routes) {
        writer.kind(Kind::Route);
        writer.field(route.message);
    }
    return text;
}

std::string textOf(const RouteRecord &record) {
    const std::string entries = entriesOf(record);
    std::string text;
    Writer writer(text);
    writer.field(version);
    writer.field(placeOfRecord());
    writer.field(checkSumOf(entries));
    return text + entries;
}

bool readEntry(Reader &reader, RouteRecord &record) {
    const std::string kind = reader.field();
    if (kind == "d") {
        const unsigned index = reader.number();
        record.before.devices[index] = reader.field();
    } else if (kind == "a") {
        const unsigned device = reader.number();
        record.before.addresses.insert({device, reader.network()});
    } else if (kind == "s") {
        record.servers.insert(reader.network());
    } else if (auto route = storedRoute(reader.field()); kind == "r" && route) {
        record.before.routes.insert(std::move(*route));
    } else {
        return false;
    }
    return reader.isWhole();
}

} // namespace

Result<> writeRecord(const std::string &path, const RouteRecord &record) {
    const std::string unfinished = path + ".new";
    unlink(unfinished.c_str());
    const FileDescriptor file(
        open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen() || !writeAll(file, textOf(record)) || rename(unfinished.c_str(), path.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        unlink(unfinished.c_str());
        return Failure{"the routes cannot be recorded: " + reason};
    }
    return {};
}

std::optional<RouteRecord> readRecord(const std::string &path) {
    const auto file = openPlainFile(path, O_RDONLY);
    if (!file || file.value().owner != geteuid()) {
        return std::nullopt;
    }

    struct stat state {};

    if (fstat(file.value().descriptor.get(), &state) != 0 || state.st_size > maximumRecordSize) {
        return std::nullopt;
    }
    const auto text = readAll(file.value().descriptor, static_cast<std::size_t>(state.st_size));
    if (!text) {
        return std::nullopt;
    }
    Reader reader(text.value());
    if (reader.field() != version || reader.field() != placeOfRecord()) {
        return std::nullopt;
    }
    const std::string checkSum = reader.field();
    if (checkSum != checkSumOf(reader.rest())) {
        return std::nullopt;
    }
    RouteRecord record;
    while (!reader.atEnd()) {
        if (!readEntry(reader, record)) {
            return std::nullopt;
        }
    }
    return reader.isWhole() ? std::optional(record) : std::nullopt;
}

void removeRecord(const std::string &path) {
    unlink(path.c_str());
}

} // namespace quorvane::guard
