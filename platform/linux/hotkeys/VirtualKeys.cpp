#include "VirtualKeys.h"

#include <algorithm>
#include <array>

namespace quorvane::platform {

namespace {

constexpr std::array keys{
    VirtualKey{0, 38, "a"},       VirtualKey{29, 19, "0"},       VirtualKey{18, 10, "1"},
    VirtualKey{19, 11, "2"},      VirtualKey{20, 12, "3"},       VirtualKey{21, 13, "4"},
    VirtualKey{23, 14, "5"},      VirtualKey{22, 15, "6"},       VirtualKey{26, 16, "7"},
    VirtualKey{28, 17, "8"},      VirtualKey{25, 18, "9"},       VirtualKey{122, 67, "F1"},
    VirtualKey{120, 68, "F2"},    VirtualKey{99, 69, "F3"},      VirtualKey{118, 70, "F4"},
    VirtualKey{96, 71, "F5"},     VirtualKey{97, 72, "F6"},      VirtualKey{98, 73, "F7"},
    VirtualKey{100, 74, "F8"},    VirtualKey{101, 75, "F9"},     VirtualKey{109, 76, "F10"},
    VirtualKey{103, 95, "F11"},   VirtualKey{111, 96, "F12"},    VirtualKey{125, 116, "Down"},
    VirtualKey{123, 113, "Left"}, VirtualKey{124, 114, "Right"}, VirtualKey{126, 111, "Up"},
};

} // namespace

const VirtualKey *findVirtualKey(quint32 keyCode) {
    const auto *const found = std::find_if(
        keys.begin(), keys.end(), [keyCode](const VirtualKey &key) { return key.keyCode == keyCode; });
    return found == keys.end() ? nullptr : found;
}

} // namespace quorvane::platform
