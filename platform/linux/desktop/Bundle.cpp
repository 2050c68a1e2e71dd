#include "platform/Bundle.h"

#include "platform/PropertyList.h"

#include <QFileInfo>

namespace quorvane::platform {

Bundle::Bundle(const QString &contents)
    : m_contents(contents),
      m_dictionary(PropertyList::readFile(contents + QStringLiteral("/Info.plist")).value_or(QVariantMap())) {
}

Bundle Bundle::ofExecutable() {
    const QString executable = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
    return Bundle(QFileInfo(QFileInfo(executable).path()).path());
}

QString Bundle::resourcesPath() const {
    return m_contents + QStringLiteral("/Resources");
}

QString Bundle::pathForResource(const QString &name, const QString &type) const {
    const QString file = type.isEmpty() ? name : name + QLatin1Char('.') + type;
    const QString path = resourcesPath() + QLatin1Char('/') + file;
    return !file.isEmpty() && QFileInfo(path).isFile() ? path : QString();
}

QString Bundle::info(const QString &key) const {
    const QVariant value = m_dictionary.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

QString Bundle::version() const {
    const QString text = info(QStringLiteral("CFBundleVersion"));
    return text.isNull() ? QStringLiteral("") : text;
}

QString Bundle::identifier() const {
    return info(QStringLiteral("CFBundleIdentifier"));
}

} // namespace quorvane::platform
