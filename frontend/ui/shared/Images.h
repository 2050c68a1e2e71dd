#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

namespace quorvane {

/// The program's named images, from Resources/images. Loaded once each and kept. Main thread.
namespace Images {

/// Names come from the service too: anything but letters, digits and hyphens names no image.
[[nodiscard]] bool exists(const QString &name);
/// A null image when there is none of this name.
[[nodiscard]] QIcon icon(const QString &name);
[[nodiscard]] QPixmap pixmap(const QString &name, const QSize &size, qreal devicePixelRatio);

} // namespace Images

} // namespace quorvane
