#include "VirtualKeys.h"

#include <algorithm>
#include <array>

namespace quorvane::platform {

namespace {

constexpr std::array keys{
    HotKeyKey{0, 38, "a"},       HotKeyKey{29, 19, "0"},       HotKeyKey{18, 10, "1"},
    HotKeyKey{19, 11, "2"},      HotKeyKey{20, 12, "3"},       HotKeyKey{21, 13, "4"},
    HotKeyKey{23, 14, "5"},      HotKeyKey{22, 15, "6"},       HotKeyKey{26, 16, "7"},
    HotKeyKey{28, 17, "8"},      HotKeyKey{25, 18, "9"},       HotKeyKey{122, 67, "F1"},
    HotKeyKey{120, 68, "F2"},    HotKeyKey{99, 69, "F3"},      HotKeyKey{118, 70, "F4"},
    HotKeyKey{96, 71, "F5"},     HotKeyKey{97, 72, "F6"},      HotKeyKey{98, 73, "F7"},
    HotKeyKey{100, 74, "F8"},    HotKeyKey{101, 75, "F9"},     HotKeyKey{109, 76, "F10"},
    HotKeyKey{103, 95, "F11"},   HotKeyKey{111, 96, "F12"},    HotKeyKey{125, 116, "Down"},
    HotKeyKey{123, 113, "Left"}, HotKeyKey{124, 114, "Right"}, HotKeyKey{126, 111, "Up"},
};

} // namespace

const HotKeyKey *findHotKeyKey(quint32 keyCode) {
    const auto *const found = std::find_if(
        keys.begin(), keys.end(), [keyCode](const HotKeyKey &key) { return key.keyCode == keyCode; });
    return found == keys.end() ? nullptr : found;
}

} // namespace quorvane::platform
