// The record of routes that a killed guard leaves. What is written must be read as it was; a record that is
// cut off or damaged must not be used; arbitrary entries that are used must be well formed. The first byte
// selects which of them is tried.

#include "Bytes.h"
#include "Fuzz.h"
#include "common/FileDescriptor.h"
#include "guard/RouteRecord.h"
#include "tests/unit/guard/KernelMessages.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvane::guard;
using quorvane::FileDescriptor;

namespace {

const std::string &path() {
    static const std::string file = [] {
        const char *folder = getenv("TMPDIR");
        std::string made = std::string(folder != nullptr ? folder : "/tmp") + "/record-XXXXXX";
        must(mkdtemp(made.data()) != nullptr, "a folder can be made");
        return made + "/record";
    }();
    return file;
}

void store(std::string_view content) {
    const FileDescriptor file(open(path().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    must(write(file.get(), content.data(), content.size()) == static_cast<ssize_t>(content.size()),
         "the record can be stored");
}

std::string stored() {
    const FileDescriptor file(open(path().c_str(), O_RDONLY | O_CLOEXEC));

    struct stat state {};

    must(fstat(file.get(), &state) == 0, "the record is there");
    std::string content(static_cast<std::size_t>(state.st_size), '\0');
    must(read(file.get(), content.data(), content.size()) == static_cast<ssize_t>(content.size()),
         "the record can be read");
    return content;
}

Network networkOf(Bytes &bytes) {
    const bool isFour = bytes.next() % 2 == 0;
    const unsigned size = isFour ? 4 : 16;
    Network network{isFour ? AF_INET : AF_INET6, bytes.text(size), 0};
    network.length = bytes.next() % (size * 8 + 1);
    return network;
}

std::string dottedFrom(Bytes &bytes) {
    std::string text = std::to_string(bytes.next());
    for (int part = 0; part < 3; ++part) {
        text += '.' + std::to_string(bytes.next());
    }
    return text;
}

Route routeMadeOf(Bytes &bytes) {
    KernelMessage message;
    message.destination = dottedFrom(bytes);
    message.length = static_cast<unsigned char>(bytes.next() % 33);
    if (bytes.next() % 2 == 0) {
        message.gateway = dottedFrom(bytes);
    }
    message.device = bytes.number();
    message.nextHopObject = bytes.next() % 4 == 0 ? bytes.number() : 0;
    return message.route();
}

RouteRecord recordMadeOf(Bytes &bytes) {
    RouteRecord record;
    while (!bytes.areUsedUp()) {
        switch (bytes.next() % 4) {
        case 0: {
            const unsigned index = bytes.number();
            record.before.devices[index] = bytes.text(bytes.next() % 16);
            break;
        }
        case 1: {
            const unsigned device = bytes.number();
            record.before.addresses.insert({device, networkOf(bytes)});
            break;
        }
        case 2:
            record.servers.insert(networkOf(bytes));
            break;
        default:
            record.before.routes.insert(routeMadeOf(bytes));
            break;
        }
    }
    return record;
}

bool areSame(const RouteRecord &one, const RouteRecord &other) {
    const auto isSameAddress = [](const DeviceAddress &left, const DeviceAddress &right) {
        return left.device == right.device && left.address == right.address;
    };
    return one.servers == other.servers && one.before.devices == other.before.devices &&
           one.before.routes == other.before.routes &&
           std::ranges::equal(one.before.addresses, other.before.addresses, isSameAddress);
}

/// The first bytes say where the record is damaged, and how.
void checkDamaged(const std::string &content, Bytes bytes) {
    const std::size_t at = bytes.number() % content.size();
    store(content.substr(0, at));
    must(!readRecord(path()), "a record that is cut off is not used");
    std::string damaged = content;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 + bytes.next() % 255));
    store(damaged);
    must(!readRecord(path()), "a record with a damaged byte is not used");
    store(content + damaged.substr(at));
    must(!readRecord(path()), "a record that something follows is not used");
}

void checkWritten(const RouteRecord &record, Bytes bytes) {
    must(writeRecord(path(), record).ok(), "the record can be written");
    const auto read = readRecord(path());
    must(read && areSame(*read, record), "what is written is read");
    checkDamaged(stored(), bytes);
}

std::string fieldOf(const std::string &bytes) {
    return std::to_string(bytes.size()) + ":" + bytes;
}

/// 64-bit FNV-1a.
std::string checkSumOf(std::string_view entries) {
    std::uint64_t sum = 14695981039346656037U;
    for (const char character : entries) {
        sum ^= static_cast<unsigned char>(character);
        // The factor is 2^40 + 2^8 + 0xB3; unsigned numbers wrap round.
        sum = (sum << 40U) + (sum << 8U) + sum * 0xB3U;
    }
    return std::to_string(sum);
}

/// What precedes the entries: the head of a record without entries, with the check sum of these.
std::string headFor(std::string_view entries) {
    static const std::string start = [] {
        must(writeRecord(path(), {}).ok(), "an empty record can be written");
        const std::string empty = stored();
        const std::string sum = fieldOf(checkSumOf(""));
        must(empty.ends_with(sum), "a record without entries ends with their check sum");
        return empty.substr(0, empty.size() - sum.size());
    }();
    return start + fieldOf(checkSumOf(entries));
}

void checkNetwork(const Network &network) {
    must(network.family == AF_INET || network.family == AF_INET6, "the family of an address is known");
    const std::size_t size = network.family == AF_INET ? 4 : 16;
    must(network.address.size() == size && network.length <= size * 8, "an address is well formed");
}

void checkEntries(std::string_view entries, Bytes bytes) {
    store(headFor(entries) + std::string(entries));
    const auto read = readRecord(path());
    if (!read) {
        return;
    }
    for (const Network &server : read->servers) {
        checkNetwork(server);
    }
    for (const DeviceAddress &address : read->before.addresses) {
        checkNetwork(address.address);
    }
    for (const Route &route : read->before.routes) {
        const auto again = storedRoute(route.message);
        must(again && again->message == route.message, "a route is one that the kernel could report");
    }
    checkWritten(*read, bytes);
}

} // namespace

void fuzzOne(std::string_view bytes) {
    if (bytes.empty()) {
        return;
    }
    const std::string_view rest = bytes.substr(1);
    switch (static_cast<unsigned char>(bytes.front()) % 4) {
    case 0:
        store(rest);
        must(!readRecord(path()), "arbitrary bytes are no record");
        break;
    case 1:
        checkEntries(rest, Bytes(rest));
        break;
    default: {
        Bytes source(rest);
        checkWritten(recordMadeOf(source), Bytes(rest));
        break;
    }
    }
}
