#include "PictureEngine.h"

#include <QApplication>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>

namespace quorvane {

namespace {

/// Opens one of the program's own pictures. The format is set because detecting it would load the plugins of
/// all other formats.
void open(QImageReader &reader, const QString &path) {
    reader.setAutoDetectImageFormat(false);
    reader.setFormat(QByteArrayLiteral("png"));
    reader.setFileName(path);
}

} // namespace

PictureEngine::PictureEngine(const QStringList &paths) {
    for (const QString &path : paths) {
        // Not every picture has every size, and the reader would print a warning for a missing file.
        if (!QFile::exists(path)) {
            continue;
        }
        QImageReader reader;
        open(reader, path);
        if (const QSize size = reader.size(); size.isValid()) {
            m_pictures.push_back({path, size, {}});
        }
    }
    std::sort(m_pictures.begin(), m_pictures.end(),
              [](const Picture &a, const Picture &b) { return a.size.width() < b.size.width(); });
}

PictureEngine::Picture &PictureEngine::fitting(const QSize &size) {
    const auto found = std::find_if(m_pictures.begin(), m_pictures.end(), [&size](const Picture &picture) {
        return picture.size.width() >= size.width() && picture.size.height() >= size.height();
    });
    return found != m_pictures.end() ? *found : m_pictures.back();
}

QSize PictureEngine::actualSize(const QSize &size, QIcon::Mode /*mode*/, QIcon::State /*state*/) {
    if (m_pictures.empty()) {
        return {};
    }
    const QSize whole = fitting(size).size;
    return whole.width() > size.width() || whole.height() > size.height()
               ? whole.scaled(size, Qt::KeepAspectRatio)
               : whole;
}

QPixmap PictureEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) {
    if (m_pictures.empty()) {
        return {};
    }
    Picture &picture = fitting(size);
    if (picture.read.isNull()) {
        QImageReader reader;
        open(reader, picture.path);
        QImage image = reader.read();
        image.setDevicePixelRatio(1.0); // the "@2x" in the name is handled by the icon, not by the picture
        picture.read = QPixmap::fromImage(std::move(image));
    }
    const QSize wanted = actualSize(size, mode, state);
    const QPixmap scaled = picture.read.size() == wanted
                               ? picture.read
                               : picture.read.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // A flag keeps its colours in the selected row of a list.
    if (mode != QIcon::Disabled) {
        return scaled;
    }
    QStyleOption option;
    option.palette = QGuiApplication::palette();
    return QApplication::style()->generatedIconPixmap(mode, scaled, &option);
}

void PictureEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) {
    const qreal ratio = painter->device()->devicePixelRatioF();
    QPixmap drawn = pixmap(rect.size() * ratio, mode, state);
    if (drawn.isNull()) {
        return;
    }
    drawn.setDevicePixelRatio(ratio);
    const QSize size = (QSizeF(drawn.size()) / ratio).toSize();
    painter->drawPixmap(
        QStyle::alignedRect(painter->layoutDirection(), Qt::AlignCenter, size, rect).topLeft(), drawn);
}

QList<QSize> PictureEngine::availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) {
    QList<QSize> sizes;
    for (const Picture &picture : m_pictures) {
        sizes.append(picture.size);
    }
    return sizes;
}

bool PictureEngine::isNull() {
    return m_pictures.empty();
}

QIconEngine *PictureEngine::clone() const {
    return new PictureEngine(*this);
}

} // namespace quorvane
