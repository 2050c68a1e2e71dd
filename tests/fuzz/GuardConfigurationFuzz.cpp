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
        must(end != std::string_view::npos, "every line of the copy ends with a line feed");
        must(end < 255, "every line of the copy fits OpenVPN's buffer");
        rest.remove_prefix(end + 1);
    }
    const auto parsed = parse(copy);
    must(std::holds_alternative<std::vector<Directive>>(parsed), "the copy can be read again");
    const auto &again = std::get<std::vector<Directive>>(parsed);
    must(std::ranges::equal(again, directives,
                            [](const Directive &one, const Directive &other) {
                                return one.words == other.words && one.block == other.block;
                            }),
         "the copy says what was understood");
    must(privateCopy(again) == copy, "copying the copy changes nothing");
    must(!check(again).has_value(), "the copy is accepted as well");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const auto parsed = parse(bytes);
    if (const auto *refusal = std::get_if<Refusal>(&parsed)) {
        must(isPlainText(refusal->text()) && refusal->text().find('\n') == std::string::npos,
             "a refusal is one plain line");
        return;
    }
    const auto &directives = std::get<std::vector<Directive>>(parsed);
    for (const Directive &directive : directives) {
        must(!directive.words.empty() && directive.words.size() <= 8, "a directive has a name and few words");
        must(directive.line >= 1, "a directive has a line number");
    }
    if (const auto refusal = check(directives)) {
        must(refusal->line >= 1 && refusal->text().find("directive \"") != std::string::npos,
             "a refusal names the directive and its line");
        must(isPlainText(refusal->text()), "a refusal is plain text");
        return;
    }
    must(bytes.find('\0') == std::string_view::npos, "no NUL byte is accepted");
    checkCopy(privateCopy(directives), directives);
}
