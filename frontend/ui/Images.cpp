#include "Images.h"

#include "PictureEngine.h"
#include "platform/Platform.h"

#include <QFile>
#include <QHash>
#include <algorithm>

namespace {

bool isName(const QString &name) {
    return !name.isEmpty() && name.size() <= 32 && std::all_of(name.begin(), name.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'-';
    });
}

QString pathOf(const QString &name, QLatin1String variant) {
    return platform::Platform::current().bundle->resourcesPath() + QStringLiteral("/images/") + name +
           variant + QStringLiteral(".png");
}

} // namespace

bool Images::exists(const QString &name) {
    return isName(name) && QFile::exists(pathOf(name, QLatin1String()));
}

QIcon Images::icon(const QString &name) {
    static QHash<QString, QIcon> loaded;
    const auto known = loaded.constFind(name);
    if (known != loaded.constEnd()) {
        return *known;
    }
    QIcon icon;
    if (exists(name)) {
        icon = QIcon(new PictureEngine({pathOf(name, QLatin1String()), pathOf(name, QLatin1String("@2x"))}));
    }
    loaded.insert(name, icon);
    return icon;
}

QPixmap Images::pixmap(const QString &name, const QSize &size, qreal devicePixelRatio) {
    return icon(name).pixmap(size, devicePixelRatio);
}
