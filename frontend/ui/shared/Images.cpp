#include "Images.h"

#include "PictureEngine.h"
#include "platform/Platform.h"

#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QSet>
#include <algorithm>

namespace quorvane {

namespace {

/// Further sizes, for images whose size the desktop chooses.
constexpr int otherSizes[] = {16, 24, 32, 48};

bool isName(const QString &name) {
    return !name.isEmpty() && name.size() <= 32 && std::all_of(name.begin(), name.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'-';
    });
}

/// The images of one folder. They belong to the program, so an image that was found once stays available.
struct Folder {
    QString resources;
    QSet<QString> existing;
    QHash<QString, QIcon> icons;

    [[nodiscard]] QString pathOf(const QString &name, const QString &variant = {}) const {
        return resources + QStringLiteral("/images/") + name + variant + QStringLiteral(".png");
    }
};

Folder &folder() {
    static Folder known;
    if (const QString resources = platform::Platform::current().bundle->resourcesPath();
        resources != known.resources) {
        known = {resources, {}, {}};
    }
    return known;
}

} // namespace

bool Images::exists(const QString &name) {
    Folder &images = folder();
    if (images.existing.contains(name)) {
        return true;
    }
    if (!isName(name) || !QFile::exists(images.pathOf(name))) {
        return false;
    }
    images.existing.insert(name);
    return true;
}

QIcon Images::icon(const QString &name) {
    Folder &images = folder();
    const auto known = images.icons.constFind(name);
    if (known != images.icons.constEnd()) {
        return *known;
    }
    if (!exists(name)) {
        return {};
    }
    QStringList paths{images.pathOf(name), images.pathOf(name, QStringLiteral("@2x"))};
    for (const int size : otherSizes) {
        paths.append(images.pathOf(name, QStringLiteral("-%1").arg(size)));
    }
    const QIcon icon(new PictureEngine(paths));
    images.icons.insert(name, icon);
    return icon;
}

QPixmap Images::pixmap(const QString &name, const QSize &size, qreal devicePixelRatio) {
    return icon(name).pixmap(size, devicePixelRatio);
}

QSize Images::size(const QString &name) {
    if (!exists(name)) {
        return {0, 0};
    }
    const QSize size = QImageReader(folder().pathOf(name), QByteArrayLiteral("png")).size();
    return size.isValid() ? size : QSize(0, 0);
}

} // namespace quorvane
