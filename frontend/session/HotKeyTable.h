#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace quorvane {

/// The key combinations that can become global hot keys, and the tags under which the preferences keep the
/// choice. Any thread.
namespace HotKeyTable {

/// The tag that means no hot key.
constexpr qint32 none = -1;

/// Virtual key code (ANSI keyboard, by position) and modifier mask, as platform::HotKeyService expects them.
struct Combination {
    quint32 keyCode = 0;
    quint32 modifiers = 0;

    bool operator==(const Combination &) const = default;
};

struct Offer {
    QString label;
    qint32 tag = none;
};

/// The user's choices, in order; "None" first. The tags have gaps: no family has an F8, and only Command has
/// the arrow keys. The labels are in the language of the moment.
[[nodiscard]] std::vector<Offer> offers();

/// The combination with this tag; absent for "None" and for tags outside every family. A tag in a gap of a
/// family has that family's modifier and key code 0.
[[nodiscard]] std::optional<Combination> combination(qint32 tag);

/// A stored number as a tag. A number too large for a tag becomes a tag without a combination.
[[nodiscard]] qint32 tagOf(qint64 stored);

} // namespace HotKeyTable

} // namespace quorvane
