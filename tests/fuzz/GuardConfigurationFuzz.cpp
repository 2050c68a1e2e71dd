#include "Fuzz.h"
#include "guard/AllowList.h"

#include <algorithm>

using namespace quorvane::guard;

namespace {

bool isPlainText(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c == '\n' || c == '\t' || (c >= ' ' && c <= '~'); });
}

void checkCopy(const std::string &copy, const std::vector<Directive> &directives) {
    must(isPlainText(copy), "the copy is plain text");
    for (std::string_view rest = copy; !rest.empty();) {
        const auto end = rest.find('\n');
        must(end != std::string_view::npos, "every line of the copy has its end");
        must(end < 255, "every line of the copy fits OpenVPN's buffer");
        rest.remove_prefix(end + 1);
    }
    const auto parsed = parse(copy);
    must(parsed.ok(), "the copy can be parsed again");
    const auto &again = parsed.value();
    must(std::ranges::equal(again, directives,
                            [](const Directive &one, const Directive &other) {
                                return one.tokens == other.tokens && one.block == other.block;
                            }),
         "the copy means what was parsed");
    must(privateCopy(again) == copy, "the copy of the copy is the copy");
    must(check(again).ok(), "the copy is allowed as well");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const auto parsed = parse(bytes);
    if (!parsed) {
        must(isPlainText(parsed.error()) && parsed.error().find('\n') == std::string::npos,
             "a refusal is one plain line");
        return;
    }
    const auto &directives = parsed.value();
    for (const Directive &directive : directives) {
        must(!directive.tokens.empty() && directive.tokens.size() <= 8,
             "a directive has a name and few parameters");
        must(directive.line >= 1, "a directive has its line number");
    }
    if (const auto checked = check(directives); !checked) {
        must(checked.error().find(": line ") != std::string::npos &&
                 checked.error().find("directive \"") != std::string::npos,
             "a refusal names the directive and its line");
        must(isPlainText(checked.error()), "a refusal is plain text");
        return;
    }
    must(bytes.find('\0') == std::string_view::npos, "no zero byte is allowed");
    checkCopy(privateCopy(directives), directives);
}
