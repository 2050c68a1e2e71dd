// Loaded into OpenVPN before its libraries, and once more by OpenVPN itself as a plugin: writes to standard
// error what OpenVPN has read and does not print.
//
// OpenVPN copies the text of each inline block once it has read its end tag, and measures it with strlen()
// for that; so it does with the variables for scripts, which contain the name servers. The call is recognised
// by its place in the program, which RECORDED_CALL contains; without that variable every text with a line
// feed is reported with the place of the call.
//
// As a plugin it is called when OpenVPN has read all options: it finds some of them in memory by the numbers
// that the command line sets beside them (OpenVpnRecorder.h).

#include "OpenVpnRecorder.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <string>
#include <sys/auxv.h>
#include <unistd.h>

#define EXPORTED extern "C" [[gnu::visibility("default")]]

namespace {

constexpr const char *variableBegin = "foreign_option_";

std::array<char, 100> endTag{"none"};

void writeLine(const std::string &line) {
    std::size_t written = 0;
    while (written < line.size()) {
        const ssize_t count = write(STDERR_FILENO, line.data() + written, line.size() - written);
        if (count < 0) {
            std::abort();
        }
        written += static_cast<std::size_t>(count);
    }
}

/// The place of an address in the program's own file, 0 for an address in a library.
std::uintptr_t placeInProgram(const void *address) {
    const auto headers = getauxval(AT_PHDR);
    const auto count = getauxval(AT_PHNUM);
    const auto *header = reinterpret_cast<const Elf64_Phdr *>(headers);
    // The headers follow the one of the file, at the beginning of the program.
    const auto begin = headers - sizeof(Elf64_Ehdr);
    const auto place = reinterpret_cast<std::uintptr_t>(address) - begin;
    for (unsigned long number = 0; number < count; ++number) {
        if (header[number].p_type == PT_LOAD && place - header[number].p_vaddr < header[number].p_memsz) {
            return place;
        }
    }
    return 0;
}

std::string hexadecimal(const char *text, std::size_t size) {
    static constexpr const char *digits = "0123456789abcdef";
    std::string result;
    for (std::size_t at = 0; at < size; ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        result += digits[byte >> 4U];
        result += digits[byte & 15U];
    }
    return result;
}

void noteText(const char *text, std::size_t size, const void *caller) {
    const auto place = placeInProgram(caller);
    if (place == 0) {
        return;
    }
    const char *const call = std::getenv("RECORDED_CALL");
    const bool isCopied = call != nullptr && std::strtoul(call, nullptr, 10) == place;
    if (size >= 4 && size < endTag.size() && std::memcmp(text, "</", 2) == 0 && text[size - 1] == '>') {
        std::memcpy(endTag.data(), text, size + 1);
    } else if (isCopied && std::strncmp(text, variableBegin, std::strlen(variableBegin)) == 0 &&
               std::memchr(text, '=', size) != nullptr) {
        writeLine("recorded variable: " + std::string(text) + '\n');
    } else if (std::memchr(text, '\n', size) != nullptr) {
        if (call == nullptr) {
            writeLine("recorded call: " + std::to_string(place) + ' ' + hexadecimal(text, size) + '\n');
        } else if (isCopied) {
            writeLine("recorded block: " + std::string(endTag.data()) + ' ' + hexadecimal(text, size) + '\n');
        }
    }
}

template <typename Value>
Value at(const char *place) {
    Value value{};
    std::memcpy(&value, place, sizeof value);
    return value;
}

/// The flags of a list of routes, with which it begins; 0 when there is none.
unsigned flagsOf(const char *pointer) {
    const auto *list = at<const unsigned *>(pointer);
    return list == nullptr ? 0 : *list;
}

std::string numbersAt(const char *place) {
    return std::to_string(at<int>(place)) + ' ' + std::to_string(at<int>(place + sizeof(int))) + '\n';
}

/// The options proper and the way to a server that they contain are on the stack, the one of each connection
/// block is on the heap.
void reportOptions(const char *from, const char *end, bool isStack) {
    static constexpr std::size_t longest = 64;
    for (const char *place = from; place + longest <= end; place += sizeof(int)) {
        const int first = at<int>(place);
        const int second = at<int>(place + sizeof(int));
        if (at<int>(place + 2 * sizeof(int)) == recorder::connectTimeout) {
            writeLine((isStack ? "recorded connect-retry: " : "recorded connect-retry of a block: ") +
                      numbersAt(place));
        }
        if (isStack && first == recorder::renegotiateBytes && second == recorder::renegotiatePackets) {
            writeLine("recorded reneg-sec: " + numbersAt(place + 2 * sizeof(int)));
        }
        if (isStack && first == recorder::routeDelay && second == recorder::routeDelayWindow) {
            // A truth value of its own word precedes the two lists of routes, one follows them.
            writeLine("recorded redirect-gateway: " + std::to_string(flagsOf(place + 16)) + ' ' +
                      std::to_string(flagsOf(place + 24)) + '\n');
            writeLine("recorded block-ipv6: " + std::to_string(at<unsigned char>(place + 32)) + '\n');
        }
    }
}

/// Searches the stack from the caller's frame to its end, and the heap.
void searchMemory(const char *frame) {
    std::FILE *maps = std::fopen("/proc/self/maps", "re");
    std::array<char, 4096> line{};
    while (maps != nullptr && std::fgets(line.data(), line.size(), maps) != nullptr) {
        char *rest = nullptr;
        const auto begin = std::strtoul(line.data(), &rest, 16);
        const auto end = std::strtoul(rest + 1, nullptr, 16);
        const bool isStack = std::strstr(line.data(), "[stack]") != nullptr;
        if (isStack || std::strstr(line.data(), "[heap]") != nullptr) {
            reportOptions(isStack ? frame : reinterpret_cast<const char *>(begin),
                          reinterpret_cast<const char *>(end), isStack);
        }
    }
    if (maps == nullptr) {
        std::abort();
    }
    std::fclose(maps);
}

} // namespace

// NOLINTBEGIN(readability-identifier-naming): the names of the C library and of OpenVPN
EXPORTED std::size_t strlen(const char *text) {
    std::size_t size = 0;
    while (text[size] != '\0') {
        ++size;
    }
    noteText(text, size, __builtin_return_address(0));
    return size;
}

EXPORTED int openvpn_plugin_select_initialization_point_v1() {
    return 1; // before the options are checked
}

/// Returns a handle, which must not be null. No events are selected.
EXPORTED void *openvpn_plugin_open_v1(unsigned *events, const char *const * /*arguments*/,
                                      const char *const * /*variables*/) {
    *events = 0;
    searchMemory(static_cast<const char *>(__builtin_frame_address(0)));
    writeLine("recorded all options\n");
    return endTag.data();
}

EXPORTED int openvpn_plugin_func_v1(void * /*handle*/, int /*event*/, const char *const * /*arguments*/,
                                    const char *const * /*variables*/) {
    return 0;
}

EXPORTED void openvpn_plugin_close_v1(void * /*handle*/) {}

// NOLINTEND(readability-identifier-naming)
