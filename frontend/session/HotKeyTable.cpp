#include "HotKeyTable.h"

#include "platform/HotKeyService.h"

#include <QCoreApplication>
#include <array>
#include <limits>

namespace quorvane {

namespace {

using platform::HotKeyService;

constexpr std::array<quint32, 10> digitKeys = {29, 18, 19, 20, 21, 23, 22, 26, 28, 25};
constexpr quint32 missingKey = 0;
// F1 to F12 without F8, which is left to the desktop; then four tags that never had a key.
constexpr std::array<quint32, 12> functionKeys = {122, 120,        99,  118, 96,  97,
                                                  98,  missingKey, 101, 109, 103, 111};
constexpr std::array<quint32, 4> unassignedKeys = {missingKey, missingKey, missingKey, missingKey};
constexpr std::array<quint32, 4> arrowKeys = {125, 123, 124, 126};
constexpr std::array<const char *, 4> arrowNames = {
    QT_TRANSLATE_NOOP("HotKeyTable", "Down arrow"), QT_TRANSLATE_NOOP("HotKeyTable", "Left arrow"),
    QT_TRANSLATE_NOOP("HotKeyTable", "Right arrow"), QT_TRANSLATE_NOOP("HotKeyTable", "Up arrow")};

struct Family {
    qint32 firstTag;
    quint32 modifier;
    const quint32 *keys;
    qint32 count;
};

template <std::size_t Count>
constexpr Family family(qint32 firstTag, quint32 modifier, const std::array<quint32, Count> &keys) {
    return {firstTag, modifier, keys.data(), static_cast<qint32>(Count)};
}

constexpr std::array families = {
    family(1, HotKeyService::command, digitKeys),       family(11, HotKeyService::command, functionKeys),
    family(23, HotKeyService::command, unassignedKeys), family(27, HotKeyService::command, arrowKeys),
    family(31, HotKeyService::control, digitKeys),      family(41, HotKeyService::control, functionKeys),
    family(57, HotKeyService::shift, functionKeys),
};

void offerDigits(std::vector<HotKeyTable::Offer> &list, const QString &modifier, qint32 firstTag) {
    for (qint32 digit = 0; digit <= 9; ++digit) {
        list.push_back({modifier.arg(digit), firstTag + digit});
    }
}

void offerFunctionKeys(std::vector<HotKeyTable::Offer> &list, const QString &modifier, qint32 base) {
    constexpr qint32 leftOut = 8;
    for (qint32 number = 1; number <= 12; ++number) {
        if (number != leftOut) {
            list.push_back({modifier.arg(QChar(u'F') + QString::number(number)), base + number});
        }
    }
}

} // namespace

std::vector<HotKeyTable::Offer> HotKeyTable::offers() {
    const QString command = QCoreApplication::translate("HotKeyTable", "Cmd + %1");
    const QString control = QCoreApplication::translate("HotKeyTable", "Ctrl + %1");
    const QString shift = QCoreApplication::translate("HotKeyTable", "Shift + %1");
    std::vector<Offer> list = {{QCoreApplication::translate("HotKeyTable", "None"), none}};
    offerDigits(list, command, 1);
    offerFunctionKeys(list, command, 10);
    qint32 arrowTag = 27;
    for (const char *name : arrowNames) {
        list.push_back({command.arg(QCoreApplication::translate("HotKeyTable", name)), arrowTag++});
    }
    offerDigits(list, control, 31);
    offerFunctionKeys(list, control, 40);
    offerFunctionKeys(list, shift, 56);
    return list;
}

std::optional<HotKeyTable::Combination> HotKeyTable::combination(qint32 tag) {
    for (const Family &candidates : families) {
        const qint64 at = qint64{tag} - candidates.firstTag;
        if (at >= 0 && at < candidates.count) {
            return Combination{candidates.keys[at], candidates.modifier};
        }
    }
    return std::nullopt;
}

qint32 HotKeyTable::tagOf(qint64 stored) {
    constexpr qint32 nothing = 0;
    const bool fits =
        stored >= std::numeric_limits<qint32>::min() && stored <= std::numeric_limits<qint32>::max();
    return fits ? static_cast<qint32>(stored) : nothing;
}

} // namespace quorvane
