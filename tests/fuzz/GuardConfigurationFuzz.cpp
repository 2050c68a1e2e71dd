#include "Fuzz.h"
#include "guard/AllowList.h"

#include <algorithm>
#include <array>

using namespace quorvane::guard;

namespace {

bool isPlainText(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c == '\n' || c == '\t' || (c >= ' ' && c <= '~'); });
}

bool hasEffect(const Directive &directive) {
    static constexpr std::array<std::string_view, 3> ignored{"block-outside-dns", "setenv",
                                                             "ignore-unknown-option"};
    return std::ranges::find(ignored, directive.name()) == ignored.end();
}

/// The directives that OpenVPN has to receive, with those of a connection block in the block's place.
std::vector<Directive> effective(const std::vector<Directive> &directives) {
    std::vector<Directive> result;
    for (const Directive &directive : directives) {
        if (directive.name() == "connection") {
            const auto within = parseBlock(directive);
            must(within.ok(), "an allowed connection block can be parsed");
            result.push_back({0, {"<connection>"}, std::nullopt});
            result.insert(result.end(), within.value().begin(), within.value().end());
            result.push_back({0, {"</connection>"}, std::nullopt});
        } else if (hasEffect(directive)) {
            result.push_back(directive);
        }
    }
    return result;
}

bool saySame(const std::vector<Directive> &some, const std::vector<Directive> &others) {
    return std::ranges::equal(some, others, [](const Directive &one, const Directive &other) {
        return one.tokens == other.tokens && one.block == other.block;
    });
}

bool hasUnreadableConnection(const std::vector<Directive> &directives) {
    return std::ranges::any_of(directives, [](const Directive &directive) {
        return directive.name() == "connection" && directive.block && !parseBlock(directive).ok();
    });
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
    must(saySame(effective(again), effective(directives)), "the copy means what was parsed");
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
        must(checked.error().find(": line ") != std::string::npos, "a refusal names its line");
        must(checked.error().find("directive \"") != std::string::npos || hasUnreadableConnection(directives),
             "a refusal of what can be read names the directive");
        must(isPlainText(checked.error()), "a refusal is plain text");
        return;
    }
    must(bytes.find('\0') == std::string_view::npos, "no zero byte is allowed");
    checkCopy(privateCopy(directives), directives);
}
