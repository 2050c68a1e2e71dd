#include "Fuzz.h"
#include "core/Target.h"

#include <algorithm>
#include <string>

using namespace quorvane;

namespace {

using quorvane::service::Target;

/// Every byte as an escape, so that none of them is a delimiter of the target.
std::string escaped(std::string_view text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string result;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        result += {'%', digits[value >> 4U], digits[value & 15U]};
    }
    return result;
}

void checkParameters(std::string_view raw, const Target &target) {
    const auto mark = std::min(raw.find('?'), raw.size());
    const auto bars = std::count(raw.begin() + static_cast<std::ptrdiff_t>(mark), raw.end(), '&');
    must(static_cast<std::ptrdiff_t>(target.parameters().size()) <= bars + 1,
         "there is a piece for each parameter");
    must(mark != raw.size() || target.parameters().empty(), "without a query there are no parameters");
    for (const auto &[key, value] : target.parameters()) {
        must(target.has(key), "a parameter that was read is present");
        const auto last = std::find_if(target.parameters().rbegin(), target.parameters().rend(),
                                       [&key = key](const auto &other) { return other.first == key; });
        must(target.last(key) == last->second, "the last occurrence of a key counts");
    }
}

void checkRoundTrip(const Target &target) {
    std::string rewritten = '/' + escaped(target.path().substr(1)) + '?';
    for (const auto &[key, value] : target.parameters()) {
        rewritten += escaped(key) + '=' + escaped(value) + '&';
    }
    const auto again = Target::parse(rewritten);
    must(again && again->path() == target.path() && again->parameters() == target.parameters(),
         "a written target is read again");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const auto target = Target::parse(bytes);
    if (target) {
        must(target->path().front() == '/', "a path begins with a slash");
        must(bytes.find_first_of(std::string_view(" #\r\n\t\0\x7f", 7)) == std::string_view::npos,
             "a target contains no blanks, fragment marks or control characters");
        checkParameters(bytes, *target);
        checkRoundTrip(*target);
    }
    const auto decoded = quorvane::service::percentDecoded(escaped(bytes));
    must(decoded && *decoded == bytes, "any bytes can be escaped and decoded");
    const auto value = Target::parse("/?v=" + escaped(bytes));
    must(value && value->last("v") == std::string(bytes), "any bytes can be a value");
}
