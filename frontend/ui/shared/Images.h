#pragma once

#include <QIcon>
#include <QPixmap>
#include <QString>

namespace quorvane {

/// The program's named images, from Resources/images. Loaded once each and kept. Main thread.
namespace Images {

/// Whether there is an image of this name. Names can come from the service: only those that consist of
/// letters, digits and hyphens are looked up.
[[nodiscard]] bool exists(const QString &name);
/// A null image when there is none of this name.
[[nodiscard]] QIcon icon(const QString &name);
[[nodiscard]] QPixmap pixmap(const QString &name, const QSize &size, qreal devicePixelRatio);

/// The image's own size in points, which is that of its file for a device pixel ratio of 1. Empty when there
/// is none of this name.
[[nodiscard]] QSize size(const QString &name);

} // namespace Images

} // namespace quorvane
