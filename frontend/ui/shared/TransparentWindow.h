#pragma once

#include <QPixmap>
#include <QPoint>
#include <QWidget>

namespace quorvane {

/// A borderless, see-through square window that the user drags by its background, which may be a picture.
/// Main thread.
class TransparentWindow final : public QWidget {
    Q_OBJECT

public:
    /// The window is borderless whatever style is requested.
    explicit TransparentWindow(Qt::WindowFlags style = {}, QWidget *parent = nullptr);

    /// The side of the square content, in points; 500 at first.
    void setWindowSize(int side);

    [[nodiscard]] int windowSize() const { return m_side; }

    /// The picture fills the window, in whatever shape it has. A name without an image does nothing.
    void setWindowImage(const QString &name);

    [[nodiscard]] QPixmap backgroundImage() const { return m_background; }

    [[nodiscard]] static bool canBecomeKeyWindow() { return true; }

    [[nodiscard]] static bool canBecomeMainWindow() { return true; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] QPixmap scaledImage() const;

    int m_side = 0;
    QString m_imageName;
    QPixmap m_background;
    QPoint m_grip;
};

} // namespace quorvane
