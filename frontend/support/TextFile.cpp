#include "TextFile.h"

#include "platform/Files.h"

#include <QFile>
#include <QStringDecoder>
#include <algorithm>

namespace quorvane {

namespace {

constexpr qint64 maximumFileSize = 16LL * 1024 * 1024;
constexpr qint64 shortestPiece = 4096;

} // namespace

QByteArray TextFile::readBytes(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return {};
    }
    // Most files are short and read often. One that grows meanwhile, or has no size, is read to its end.
    QByteArray bytes;
    QByteArray piece;
    do {
        const qint64 expected = std::max(file.size() - bytes.size(), shortestPiece) + 1;
        piece = file.read(std::min(expected, maximumFileSize + 1 - bytes.size()));
        bytes += piece;
    } while (!piece.isEmpty() && bytes.size() <= maximumFileSize);
    return bytes.size() > maximumFileSize ? QByteArray() : bytes;
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
