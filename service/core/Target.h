#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvane::service {

/// A parsed request target: the path and the parameters of the query in their order.
///
/// Keys may repeat and parameters may be empty ("a=1&&b=2" has an empty one in the middle, which is
/// dropped). Percent escapes are decoded; a plus sign stays a plus sign.
class Target {
public:
    /// Nothing for a target that does not begin with "/", contains a "#", a control character or a blank, or
    /// has an escape that is not "%" and two hexadecimal digits.
    [[nodiscard]] static std::optional<Target> parse(std::string_view raw);

    [[nodiscard]] const std::string &path() const { return m_path; }

    [[nodiscard]] bool has(std::string_view key) const;
    /// Value of the key's last occurrence; a parameter without "=" has the value "".
    [[nodiscard]] std::optional<std::string> last(std::string_view key) const;

    [[nodiscard]] const std::vector<std::pair<std::string, std::string>> &parameters() const {
        return m_parameters;
    }

private:
    std::string m_path;
    std::vector<std::pair<std::string, std::string>> m_parameters;
};

/// Decodes percent escapes. Nothing when one is malformed.
[[nodiscard]] std::optional<std::string> percentDecoded(std::string_view text);

} // namespace quorvane::service
