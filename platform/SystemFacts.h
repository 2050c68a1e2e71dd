#pragma once

#include <QString>
#include <QStringList>

namespace quorvane::platform {

/// What a report of a problem needs to know of the computer and its desktop, as lines "name: value" in
/// English. Needs a QGuiApplication. Main thread; reads small files and queries the session bus itself only.
[[nodiscard]] QStringList systemFacts();

} // namespace quorvane::platform
