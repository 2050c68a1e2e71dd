#include "TextFile.h"

#include "platform/Files.h"

#include <QStringDecoder>

namespace quorvane {

namespace {

constexpr qint64 maximumFileSize = 16LL * 1024 * 1024;

} // namespace

QByteArray TextFile::readBytes(const QString &path) {
    QByteArray bytes;
    const bool isRead = platform::readPlainFile(path, maximumFileSize, bytes) == 0;
    return isRead && !bytes.isEmpty() ? bytes : QByteArray();
}

QString TextFile::read(const QString &path, qint64 begin) {
    const QByteArray bytes = readBytes(path).mid(begin);
    if (bytes.isEmpty()) {
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
