#pragma once

#include <QIconEngine>
#include <QPixmap>

#include <vector>

namespace quorvane {

/// Draws an icon from picture files of several sizes, each read only when it is drawn. Main thread.
class PictureEngine final : public QIconEngine {
public:
    /// Files that are no pictures are left out.
    explicit PictureEngine(const QStringList &paths);

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    /// The smallest picture that is large enough, made smaller to fit; never made larger.
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    bool isNull() override;
    [[nodiscard]] QIconEngine *clone() const override;

private:
    struct Picture {
        QString path;
        QSize size;
        QPixmap read;
    };

    /// The picture to use for this size. There must be at least one picture.
    [[nodiscard]] Picture &fitting(const QSize &size);

    std::vector<Picture> m_pictures; ///< the smallest first
};

} // namespace quorvane
