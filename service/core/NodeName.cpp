#include "NodeName.h"

#include <algorithm>
#include <cctype>

namespace quorvane::service {

namespace {

constexpr std::size_t maximumName = 64;

} // namespace

bool isNodeName(std::string_view name) {
    return !name.empty() && name.size() <= maximumName &&
           std::all_of(name.begin(), name.end(), [](unsigned char letter) {
               return letter < 0x80 &&
                      (std::isalnum(letter) != 0 || letter == '.' || letter == '_' || letter == '-');
           });
}

} // namespace quorvane::service
