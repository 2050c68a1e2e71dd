#include "Fuzz.h"
#include "core/UserTokens.h"

#include <algorithm>
#include <string>

namespace {

using quorvane::service::UserTokens;

const UserTokens &tokens() {
    static const UserTokens made({UserTokens::Key{1}, UserTokens::Key{2}});
    return made;
}

const UserTokens::Sealed &sealedToken() {
    static const auto sealed = tokens().seal(UserTokens::TimePoint(std::chrono::seconds(1000)));
    return sealed;
}

void checkKeyFile(std::string_view text) {
    const auto read = UserTokens::parse(text);
    if (!read) {
        return;
    }
    const auto digits = std::count_if(text.begin(), text.end(), [](char byte) { return byte != '\n'; });
    must(digits % 64 == 0 && digits / 64 >= 1 && digits / 64 <= 16, "a key file has 1 to 16 keys");
    must(text.find_first_not_of("0123456789abcdef\n") == std::string_view::npos, "keys are hexadecimal");
}

/// The only token that is ever sealed here. The fuzzer watches comparisons, so it learns the token and sends
/// it, too.
void checkToken(std::string_view text) {
    const auto &sealed = sealedToken();
    const auto opened = tokens().open(text);
    must(opened.has_value() == (text == sealed.token), "a token is valid only as it was made");
    must(!opened || opened->password == sealed.password, "the password follows from the token");
}

/// Changes a right token as the input says: pairs of a place and another byte.
void checkChanged(std::string_view bytes) {
    std::string changed = sealedToken().token;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        changed[static_cast<unsigned char>(bytes[i]) % changed.size()] = bytes[i + 1];
    }
    checkToken(changed);
}

} // namespace

void fuzzOne(std::string_view bytes) {
    checkKeyFile(bytes);
    checkChanged(bytes);
    checkToken(bytes);
}
