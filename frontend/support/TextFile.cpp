#include "TextFile.h"

#include "platform/Files.h"

#include <QFile>
#include <QStringDecoder>

namespace quorvane {

namespace {

constexpr qint64 maximumFileSize = 16LL * 1024 * 1024;

} // namespace

QString TextFile::read(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.read(maximumFileSize + 1);
    if (bytes.isEmpty() || bytes.size() > maximumFileSize) {
        return {};
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? QString() : text;
}

bool TextFile::replace(const QString &path, const QByteArray &bytes) {
    return platform::replaceFile(path, bytes) == 0;
}

} // namespace quorvane
